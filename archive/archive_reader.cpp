#include "archive/archive_reader.h"

#include "archive/container_reader.h"
#include "archive/unzip_code.h"
#include "archive/zip_reader.h"

#include <algorithm>
#include <span>
#include <string_view>
#include <utility>

namespace korvadex {

namespace {

// As much of the beginning as the programs take that stand before an archive.
std::string Beginning(const FileSystem& files, const std::string& path) {
    constexpr std::size_t enough = 1u << 20;
    const auto file = files.OpenForReading(path);
    std::string bytes(enough, '\0');
    const auto count =
        file ? (*file)->Read(std::as_writable_bytes(std::span(bytes))) : Result<std::size_t>(std::size_t{0});
    bytes.resize(count ? *count : 0);
    return bytes;
}

} // namespace

// An archive that is stored last in one of another kind looks like a zip archive with something before it.
OpenedArchive OpenArchive(const FileSystem& files, const std::string& path) {
    const std::string beginning = Beginning(files, path);
    if (beginning.starts_with("PK"))
        return OpenZipArchive(files, path);
    const bool isProgram = beginning.starts_with("MZ");
    if (isProgram && beginning.find("PK\3\4") < FindContainer(beginning, 0)) {
        if (OpenedArchive zip = OpenZipArchive(files, path); zip.reader)
            return zip;
    }
    // The marks of archives may stand anywhere in a program: only what can be read there counts, or says why not.
    OpenedArchive other = isProgram ? OpenContainerBehind(beginning, files, path) : OpenContainer(files, path);
    const bool isOther = isProgram ? other.reader || !other.explanation.empty() : other.code != UnzipCode::NotAnArchive;
    return !isOther ? OpenZipArchive(files, path) : std::move(other);
}

} // namespace korvadex
