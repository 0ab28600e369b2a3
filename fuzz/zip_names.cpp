// The names in an archive. Each line of the input is one: alone it tells where the member would lie, and a sound
// archive of all of them goes through "Process ZIP file".
#include "archive/member_names.h"
#include "archive/process_zip.h"
#include "fuzz/check.h"
#include "fuzz/drive.h"
#include "platform/text_file.h"
#include "platform/windows_path.h"
#include "tests/support/zip_builder.h"

#include <algorithm>

namespace korvadex::fuzz {

namespace {

void CheckName(std::string_view stored) {
    const MemberName name = ReadMemberName(stored);
    const std::string shown = NameForMessage(name.text);
    Require(std::ranges::none_of(shown, [](char c) { return static_cast<unsigned char>(c) < ' '; }),
            "a name in a message stands on one line");
    if (!name.refusal.empty())
        return;
    Require(name.isDirectory || !name.components.empty(), "a file has a name");
    for (const std::string& component : name.components)
        Require(IsStorableName(component) && !IsOwnName(component), "a name that is taken can be stored");
}

} // namespace

void Run(std::string_view input) {
    test::ZipBuilder zip;
    ForEachLine(input, [&](std::string_view line, std::string_view) {
        CheckName(line);
        zip.Add(line.substr(0, 0xFFFF), line);
    });
    Drive drive;
    drive.Put("add-on.zip", zip.Bytes());
    const Entries before = drive.Tree();
    modUnzip unzip;
    std::string lastZipPath;
    Require(ProcessZipFile(drive.Context(), unzip, lastZipPath, "C:\\add-on.zip").has_value(), "the archive is there");
    const Entries after = drive.Tree();
    Require(Outside("Staging\\", after) == Outside("Staging\\", before), "nothing changes outside of Staging");
    Require(IsClean(after), "nothing of the program's own is left, and no link");
}

} // namespace korvadex::fuzz
