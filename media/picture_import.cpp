#include "media/picture_import.h"

#include "media/picture_names.h"
#include "package/name_list.h"
#include "package/package_name.h"
#include "package/scratch.h"
#include "platform/windows_path.h"

#include <algorithm>
#include <functional>
#include <span>
#include <string_view>

namespace korvadex {

namespace {

Status CopyPlain(FileSystem& files, const std::string& from, const std::string& to) {
    Status status = files.Copy(from, to);
    if (status)
        static_cast<void>(files.ClearAttributes(to)); // all is read-only on a CD
    return status;
}

std::string BaseOf(const std::string& path) {
    const std::string name = LastPathComponent(path);
    return name.substr(0, name.rfind('.'));
}

// A host may know names that others cannot store.
std::string Storable(const std::string& base) {
    for (const auto& candidate : {base, CleanPackageName(base)})
        if (IsStorableName(candidate + ".jpg"))
            return candidate;
    return "picture";
}

class PictureImport {
  public:
    PictureImport(CommandContext& commandContext, const LoadedPackage& loaded)
        : context(commandContext), files(commandContext.files), package(loaded), names(loaded),
          directory(loaded.path + std::string(ComponentGroupNames[Images]) + "\\") {}

    void AddFile(PictureConverter& converter, const std::string& path);
    void AddBytes(const std::string& subject, const std::string& base, const std::string& jpeg);
    void Refuse(const std::string& subject, const std::string& reason) { failures.push_back(subject + ": " + reason); }
    std::vector<std::string> Finish();

  private:
    using Write = std::function<Status(const std::string& path)>;
    void Add(const std::string& subject, const std::string& base, const std::string& extension, const Write& write);
    void FlushImported();
    Result<std::string> Place(const std::string& base, const std::string& extension, const Write& write);

    CommandContext& context;
    FileSystem& files;
    const LoadedPackage& package;
    PictureNames names;
    const std::string directory;
    bool isDirectoryMade = false;
    std::vector<std::string> imported, failures;
};

Result<std::string> PictureImport::Place(const std::string& base, const std::string& extension, const Write& write) {
    const auto made = EnsureRealDirectory(files, directory); // what lies behind a link is not listed
    if (!made)
        return made.status();
    isDirectoryMade = isDirectoryMade || *made;
    const auto scratch = MakeScratchName(files, context.locations, directory + "picture" + extension);
    if (!scratch)
        return scratch.status();
    Status status = write(*scratch);
    files.BeginFlush(*scratch);
    Result<std::string> placed =
        status ? names.Move(files, *scratch, directory, base, extension) : Result<std::string>(status);
    ReleaseScratch(files, *scratch);
    return placed;
}

void PictureImport::Add(const std::string& subject, const std::string& base, const std::string& extension,
                        const Write& write) {
    const auto placed = Place(Storable(base), extension, write);
    if (placed)
        return imported.push_back(*placed);
    const bool isForDirectory = EqualNoCase(AddBackslash(placed.status().path), directory);
    Refuse(subject, (isForDirectory ? "the directory " + directory + " cannot be used: " : "") +
                        DescribeFault(placed.status()) + ".  Please import it again when that is settled.");
}

void PictureImport::AddBytes(const std::string& subject, const std::string& base, const std::string& jpeg) {
    Add(subject, base, ".jpg",
        [&](const std::string& path) { return WriteNew(files, path, std::as_bytes(std::span(jpeg))); });
}

void PictureImport::AddFile(PictureConverter& converter, const std::string& path) {
    const auto isThisOne = [&](const std::string& picture) { return EqualNoCase(picture, path); };
    if (std::any_of(package.pictures.begin(), package.pictures.end(), isThisOne))
        return Refuse(path, "it is a picture of this package already.");
    const auto picture = converter.Prepare(path);
    if (!picture.problem.empty())
        return Refuse(path, picture.problem);
    if (picture.extension.empty())
        return AddBytes(path, BaseOf(path), picture.jpeg);
    Add(path, BaseOf(path), picture.extension,
        [&](const std::string& scratch) { return CopyPlain(files, path, scratch); });
}

// What is done is on the disk, however soon the power fails.
void PictureImport::FlushImported() {
    std::vector<std::string> written = imported;
    written.push_back(WithoutBackslash(directory));
    if (isDirectoryMade)
        written.push_back(WithoutBackslash(package.path));
    std::vector<std::string> unsure;
    for (const Status& flushed : files.Flush(written)) {
        if (!flushed)
            unsure.push_back(flushed.path + ": " + DescribeFault(flushed));
    }
    if (!unsure.empty())
        context.user.Tell("Not all that was imported could be written to the disk:\r\n\r\n" + ListNames(unsure) +
                              "\r\n\r\nPlease import it again when that is settled.",
                          MessageIcon::Exclamation);
}

std::vector<std::string> PictureImport::Finish() {
    if (!imported.empty())
        FlushImported();
    if (imported.empty() && isDirectoryMade)
        static_cast<void>(files.RemoveDirectory(WithoutBackslash(directory)));
    if (!failures.empty())
        context.user.Tell((failures.size() == 1 ? "This picture was not imported:\r\n\r\n"
                                                : "These pictures were not imported:\r\n\r\n") +
                              ListNames(failures),
                          MessageIcon::Exclamation);
    return imported;
}

} // namespace

std::vector<std::string> ImportPictures(CommandContext& context, PictureConverter& converter,
                                        const LoadedPackage& package, const OfferedPictures& offered,
                                        const std::string& name) {
    PictureImport import(context, package);
    const int count = static_cast<int>(offered.files.size());
    if (count > 1)
        context.display.ShowProgress(0, count);
    for (int i = 0; i < count; ++i) {
        import.AddFile(converter, offered.files[static_cast<std::size_t>(i)]);
        if (count > 1)
            context.display.SetProgress(i + 1);
    }
    if (count > 1)
        context.display.HideProgress();
    const std::string subject = "The picture on the clipboard";
    if (!offered.problem.empty())
        import.Refuse(subject, offered.problem);
    if (!offered.jpeg.empty())
        import.AddBytes(subject, name, offered.jpeg);
    return import.Finish();
}

} // namespace korvadex
