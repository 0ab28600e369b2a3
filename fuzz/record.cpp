// The record of an installation: it is written as it was read.
#include "fuzz/check.h"
#include "sim/install_record.h"

#include <algorithm>
#include <tuple>

namespace korvadex::fuzz {

namespace {

bool IsSame(const RecordedFile& a, const RecordedFile& b) {
    const auto all = [](const RecordedFile& file) {
        return std::tie(file.kind, file.name, file.isPlaced, file.size, file.time, file.checksum, file.origin);
    };
    return all(a) == all(b);
}

// The names that a record has no line for.
bool HasControlLetter(const RecordedFile& file) {
    return std::ranges::any_of(file.name + file.origin,
                               [](char letter) { return static_cast<unsigned char>(letter) < ' '; });
}

} // namespace

void Run(std::string_view input) {
    auto record = ParseInstallRecord(input);
    if (!record)
        return;
    const std::string bytes = BytesOf(*record);
    const auto again = ParseInstallRecord(bytes);
    std::erase_if(record->files, HasControlLetter);
    Require(again && again->package == record->package && std::ranges::equal(again->files, record->files, IsSame),
            "a record is read as it was written");
    Require(BytesOf(*again) == bytes, "written again it is the same");
}

} // namespace korvadex::fuzz
