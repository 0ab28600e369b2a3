#include "package/duplicates.h"

#include "package/file_primitives.h"
#include "platform/date_text.h"
#include "platform/text_file.h"
#include "platform/windows_path.h"

#include <algorithm>
#include <array>

namespace korvadex {

namespace {

constexpr std::array<std::string_view, 13> DocumentEndings = {
    ".diz", ".doc", ".hlp", ".htm", ".html", ".pdf", ".txt", ".1st", ".rtf", ".wri", ".xls", ".jpg", ".gif"};
// A configuration of fewer bytes is taken for an alias stub where the other one is a whole file.
constexpr std::uint64_t StubLimit = 70;
constexpr std::uint64_t WholeFile = 1001;
constexpr int MaxNumber = 100000;

bool IsDocument(const FileEntry& file) {
    return std::any_of(DocumentEndings.begin(), DocumentEndings.end(),
                       [&](std::string_view ending) { return file.key.ends_with(ending); });
}

std::size_t EndOfRun(const std::vector<FileEntry>& files, std::size_t begin) {
    std::size_t end = begin + 1;
    while (end < files.size() && files[end].key == files[begin].key)
        ++end;
    return end;
}

// readme.txt -> readme(1).txt, index.html -> index(1).html
std::string Numbered(const std::string& path, int number) {
    const std::size_t extension = EndsWithNoCase(path, ".html") ? 5 : 4;
    const std::size_t stem = path.size() - extension;
    return path.substr(0, stem) + "(" + std::to_string(number) + ")" + path.substr(stem);
}

bool IsNameTaken(const std::vector<FileEntry>& files, const std::string& path) {
    const std::string key = FoldCase(LastPathComponent(path));
    return std::any_of(files.begin(), files.end(), [&](const FileEntry& file) { return file.key == key; });
}

// Gives the file the first free number from `number` on.
void Renumber(CommandContext& context, std::vector<FileEntry>& files, std::size_t index, int& number,
              Tree& tree) {
    const std::string path = files[index].path;
    for (; number < MaxNumber; ++number) {
        const std::string wanted = Numbered(path, number);
        if (IsNameTaken(tree.files, wanted))
            continue;
        const Status status = context.files.Rename(path, wanted);
        if (status.fault == FileFault::Exists)
            continue;
        if (status) {
            files[index] = FileEntry(wanted, files[index].info);
            tree.Rename(path, wanted);
            ++number;
        }
        return;
    }
}

void RemoveFile(CommandContext& context, std::vector<FileEntry>& files, std::size_t index, Tree& tree) {
    const std::string path = files[index].path;
    if (DeleteFileForced(context.files, path))
        tree.Remove(path);
    files.erase(files.begin() + static_cast<std::ptrdiff_t>(index));
}

std::string Described(const FileEntry& file) {
    return file.path + "  (Size: " + std::to_string(file.info.size) +
           " Date: " + ShortDateTime(file.info.time) + ")";
}

bool IsStubFor(const FileEntry& stub, const FileEntry& whole) {
    return stub.key.ends_with(".cfg") && whole.key.ends_with(".cfg") && stub.info.size < StubLimit &&
           whole.info.size >= WholeFile;
}

bool KeepsFirst(CommandContext& context, DuplicateChoice& choice, const FileEntry& first,
                const FileEntry& second) {
    if (first.info.size == second.info.size && first.info.time == second.info.time &&
        SameBytes(context.files, first.path, second.path))
        return true;
    if (IsStubFor(first, second))
        return false;
    if (IsStubFor(second, first))
        return true;
    if (choice.keepFirst)
        return *choice.keepFirst;
    const CheckedAnswer answer = context.user.ShowMessage(
        "A duplicate filename condition has occurred.\r\n\r\nShould I use this file:\r\n\r\n" +
            Described(first) + "\r\n\r\nInstead of this file? :\r\n\r\n" + Described(second),
        MessageButtons::YesNo, MessageIcon::None, {.checkBox = "Do this for all further duplicates"});
    const bool keepsFirst = answer.answer == Answer::Yes;
    if (answer.isChecked)
        choice.keepFirst = keepsFirst;
    return keepsFirst;
}

// In a run of documents, deletes every later one that has the bytes of an earlier one; the new end of the
// run.
std::size_t DropEqualDocuments(CommandContext& context, std::vector<FileEntry>& files, std::size_t begin,
                               std::size_t end, Tree& tree) {
    for (std::size_t later = end - 1; later > begin; --later) {
        for (std::size_t earlier = begin; earlier < later; ++earlier) {
            if (SameBytes(context.files, files[earlier].path, files[later].path)) {
                RemoveFile(context, files, later, tree);
                --end;
                break;
            }
        }
    }
    return end;
}

// True when an earlier file of the run holds the same bytes: in the Hangar both are listed as they are.
bool HasTwin(CommandContext& context, const std::vector<FileEntry>& files, std::size_t index,
             std::size_t end) {
    for (std::size_t other = index + 1; other < end; ++other) {
        if (SameBytes(context.files, files[index].path, files[other].path))
            return true;
    }
    return false;
}

} // namespace

void SortByName(std::vector<FileEntry>& files) {
    std::sort(files.begin(), files.end(), [](const FileEntry& a, const FileEntry& b) {
        return a.key != b.key ? a.key < b.key : LessNoCase(a.path, b.path);
    });
}

void SettleDocuments(CommandContext& context, bool isStaging, std::vector<FileEntry>& files, Tree& tree) {
    for (std::size_t begin = 0; begin < files.size();) {
        std::size_t end = EndOfRun(files, begin);
        if (end - begin > 1 && IsDocument(files[begin])) {
            if (isStaging)
                end = DropEqualDocuments(context, files, begin, end, tree);
            // The last of the run keeps its name; the others count upwards from the end.
            int number = 1;
            for (std::size_t index = end - 1; index-- > begin;) {
                if (isStaging || !HasTwin(context, files, index, end))
                    Renumber(context, files, index, number, tree);
            }
        }
        begin = end;
    }
    SortByName(files);
}

void SettleStagingDuplicates(CommandContext& context, DuplicateChoice& choice, std::vector<FileEntry>& files,
                             Tree& tree) {
    for (std::size_t second = files.size(); second-- > 1;) {
        const std::size_t first = second - 1;
        if (files[first].key != files[second].key || IsDocument(files[first]))
            continue;
        const bool keepsFirst = KeepsFirst(context, choice, files[first], files[second]);
        RemoveFile(context, files, keepsFirst ? second : first, tree);
    }
}

void StopOnHangarDuplicate(CommandContext& context, const std::vector<FileEntry>& files) {
    for (std::size_t second = files.size(); second-- > 1;) {
        const FileEntry& first = files[second - 1];
        if (first.key != files[second].key || IsDocument(first))
            continue;
        context.user.Tell(
            "Your Hangar directory location seems to be invalid as a duplicate filename condition occurred "
            "while loading components for a package:\r\n\r\n" +
                first.path + "\r\n\r\n" + files[second].path +
                "\r\n\r\nThis is a dangerous situation.  Korvadex will now stop.  Please restart "
                "Korvadex and double check the Hangar location.",
            MessageIcon::Critical);
        throw ProgramEnd{};
    }
}

} // namespace korvadex
