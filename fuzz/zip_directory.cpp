// The directory at the end of an archive: what is written anew of it is the same directory.
#include "archive/zip_directory.h"
#include "archive/zip_source.h"
#include "fuzz/check.h"

#include <optional>

namespace korvadex::fuzz {

namespace {

std::optional<ZipDirectory> Read(const std::string& bytes) {
    ZipError error;
    const ZipSource source(zip_source_buffer_create(bytes.data(), bytes.size(), 0, error.get()));
    Require(source && zip_source_open(source.get()) == 0, "a buffer can be opened");
    ZipDirectory directory;
    const int code = ReadZipDirectory(source.get(), directory);
    zip_source_close(source.get());
    return code == ZIP_ER_OK ? std::optional(std::move(directory)) : std::nullopt;
}

// All before the records of its end.
std::string_view MemberRecords(const ZipDirectory& directory) {
    return std::string_view(directory.records).substr(0, directory.records.rfind("PK\x06\x06"));
}

} // namespace

void Run(std::string_view input) {
    if (input.empty())
        return; // the library's own source of bytes, which is used here alone, does not seek where there are none
    const std::string bytes(input);
    const auto directory = Read(bytes);
    if (!directory)
        return;
    Require(directory->begin <= bytes.size() && directory->size <= bytes.size() - directory->begin,
            "the archive lies in the file");
    Require(directory->comment.size() <= bytes.size() && directory->members.size() * 46 <= bytes.size(),
            "all that is told of members stands in the file");
    if (directory->members.empty())
        return;
    const auto again = Read(bytes.substr(directory->begin, directory->size) + directory->records);
    Require(again && again->begin == 0, "the new directory can be read");
    Require(MemberRecords(*again) == MemberRecords(*directory), "written again it is the same");
    Require(again->members.size() == directory->members.size() && again->comment.empty(), "it has the same members");
}

} // namespace korvadex::fuzz
