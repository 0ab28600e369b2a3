// Which names the pictures of a package may take.
//
// Two files of one name, wherever they lie in the package, are a fault when it is loaded, so a name is free
// only when no file of the whole package bears it, in whatever case.
#pragma once

#include "package/loaded_package.h"
#include "platform/file_system.h"

#include <set>
#include <string>

namespace korvadex {

class PictureNames {
  public:
    explicit PictureNames(const LoadedPackage& package);

    // The first free name that does not mark the picture as the first, with a number where needed:
    //   shot .jpg -> shot.jpg, shot(1).jpg      (shot) .jpg -> shot.jpg      () .jpg -> picture.jpg
    std::string Free(std::string base, const std::string& extension) const;

    // Renames the file to a free name in directory (ends in a backslash), which may be another one on the
    // volume. Never replaces. The new path.
    Result<std::string> Move(FileSystem& files, const std::string& from, const std::string& directory,
                             const std::string& base, const std::string& extension);

  private:
    std::set<std::string> taken; // folded
};

} // namespace korvadex
