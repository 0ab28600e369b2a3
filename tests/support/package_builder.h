// A realistic package on a test's drive: a small aircraft with everything that add-ons bring, and changes to
// it.
#pragma once

#include "tests/support/temporary_drive.h"

#include <string>
#include <string_view>

namespace korvadex::test {

class PackageBuilder {
  public:
    // The directory, relative to the drive's root, ends in a backslash: "Hangar\\Jets\\Lear\\". A whole
    // aircraft in the layout of the Hangar is put there; its files are those of Files().
    PackageBuilder(TemporaryDrive& testDrive, std::string packageDirectory);

    // A further file, or other bytes for one that is there.
    PackageBuilder& With(std::string_view relative, std::string_view bytes);
    PackageBuilder& Without(std::string_view relative);
    PackageBuilder& WithoutAll();
    // The file becomes an archive of itself under its own name, as in a compressed package.
    PackageBuilder& Packed(std::string_view relative);

    // What the aircraft consists of: relative names and bytes.
    static const std::map<std::string, std::string>& Files();

  private:
    TemporaryDrive& drive;
    std::string directory;
};

} // namespace korvadex::test
