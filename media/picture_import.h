// Getting pictures into a package: files that were chosen, dropped or copied, and the picture on the clipboard.
#pragma once

#include "package/command_context.h"
#include "package/loaded_package.h"

#include <string>
#include <vector>

namespace korvadex {

// What the user offers.
struct OfferedPictures {
    std::vector<std::string> files; // full paths, of FileSystem::SourceFromHost
    std::string jpeg;               // a picture that is in no file, as JPEG
    std::string problem;            // why such a picture cannot be had, with the next step

    bool IsEmpty() const { return files.empty() && jpeg.empty() && problem.empty(); }
};

// What becomes of a picture file.
struct PreparedPicture {
    std::string extension; // ".jpg" or ".gif": the file is stored as it is, under this extension
    std::string jpeg;      // otherwise these bytes are stored
    std::string problem;   // why there is neither: the cause and the next step, "the file is empty.  ..."
};

// Decodes and encodes pictures.
class PictureConverter {
  public:
    virtual ~PictureConverter() = default;
    // Looks at the content, not at the name.
    virtual PreparedPicture Prepare(const std::string& path) = 0;
};

// Puts the pictures into the package's images directory, which is made where it is missing: whole or not at
// all, never over another file. A picture that is in no file gets the name. Says at the end which were not
// imported and why; the others' new paths.
std::vector<std::string> ImportPictures(CommandContext& context, PictureConverter& converter,
                                        const LoadedPackage& package, const OfferedPictures& offered,
                                        const std::string& name);

} // namespace korvadex
