#include "package/duplicates.h"

#include "package/file_primitives.h"
#include "package/progress.h"
#include "platform/date_text.h"
#include "platform/text_file.h"
#include "platform/windows_path.h"

#include <algorithm>
#include <array>
#include <functional>
#include <map>
#include <set>
#include <unordered_set>

namespace korvadex {

namespace {

constexpr std::array<std::string_view, 13> DocumentEndings = {".diz", ".doc", ".hlp", ".htm", ".html", ".pdf", ".txt",
                                                              ".1st", ".rtf", ".wri", ".xls", ".jpg",  ".gif"};
// A configuration of fewer bytes is taken for an alias stub where the other one is a whole file.
constexpr std::uint64_t StubLimit = 70;
constexpr std::uint64_t WholeFile = 1001;
constexpr int MaxNumber = 100000;
// So many documents of one name take their time.
constexpr std::size_t LongRun = 100;

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

// What becomes of one list of files, and of the tree that they were taken from.
class Settling {
  public:
    Settling(CommandContext& command, std::vector<FileEntry>& listed, Tree& listedTree)
        : context(command), files(listed), tree(listedTree) {}

    // To be called last: list and tree become what lies on the disk. True when something has changed there.
    bool Finish() {
        if (deleted.empty() && renamed.empty())
            return false;
        std::erase_if(files, [&](const FileEntry& file) { return deleted.contains(file.path); });
        tree.Remove(deleted);
        tree.Rename(renamed);
        SortByName(files);
        return true;
    }

    // One that cannot be deleted stays listed.
    void Delete(std::size_t index) {
        if (DeleteFileForced(context.files, files[index].path))
            deleted.insert(files[index].path);
    }
    bool IsDeleted(std::size_t index) const { return deleted.contains(files[index].path); }

    // Gives the file the first free number from `number` on.
    void Renumber(std::size_t index, int& number) {
        const std::string path = files[index].path;
        for (; number < MaxNumber; ++number) {
            const std::string wanted = NumberedName(path, number);
            if (IsTaken(FoldCase(LastPathComponent(wanted))))
                continue;
            const Status status = context.files.Rename(path, wanted);
            if (status.fault == FileFault::Exists)
                continue;
            if (status) {
                files[index] = FileEntry(wanted, files[index].info);
                names.insert(files[index].key);
                renamed.emplace(path, wanted);
                ++number;
            }
            return;
        }
    }

  private:
    bool IsTaken(const std::string& key) {
        if (names.empty())
            for (const FileEntry& file : tree.files)
                names.insert(file.key);
        return names.contains(key);
    }

    CommandContext& context;
    std::vector<FileEntry>& files;
    Tree& tree;
    std::set<std::string> deleted;
    std::map<std::string, std::string> renamed;
    std::unordered_set<std::string> names; // of all files of the tree, once one is to be renamed
};

std::string Described(const FileEntry& file) {
    return file.path + "  (Size: " + std::to_string(file.info.size) + " Date: " + ShortDateTime(file.info.time) + ")";
}

bool IsStubFor(const FileEntry& stub, const FileEntry& whole) {
    return stub.key.ends_with(".cfg") && whole.key.ends_with(".cfg") && stub.info.size < StubLimit &&
           whole.info.size >= WholeFile;
}

bool KeepsFirst(CommandContext& context, DuplicateChoice& choice, const FileEntry& first, const FileEntry& second) {
    if (SameBytes(context.files, first.path, second.path))
        return true;
    if (IsStubFor(first, second))
        return false;
    if (IsStubFor(second, first))
        return true;
    if (choice.keepFirst)
        return *choice.keepFirst;
    const CheckedAnswer answer = context.user.ShowMessage(
        "A duplicate filename condition has occurred.\r\n\r\nShould I use this file:\r\n\r\n" + Described(first) +
            "\r\n\r\nInstead of this file? :\r\n\r\n" + Described(second),
        MessageButtons::YesNo, MessageIcon::None, {.checkBox = "Do this for all further duplicates"});
    const bool keepsFirst = answer.answer == Answer::Yes;
    if (answer.isChecked)
        choice.keepFirst = keepsFirst;
    return keepsFirst;
}

// A number that files of equal bytes share, and hardly any others; none when the file cannot be read.
std::optional<std::uint64_t> HashBytes(const FileSystem& files, const std::string& path) {
    const auto file = files.OpenForReading(path);
    if (!file)
        return std::nullopt;
    std::vector<std::byte> buffer(1 << 16);
    std::uint64_t hash = 14695981039346656037u; // FNV-1a
    for (;;) {
        const auto count = (*file)->Read(buffer);
        if (!count)
            return std::nullopt;
        if (*count == 0)
            return hash;
        for (std::size_t i = 0; i < *count; ++i)
            hash = (hash ^ std::to_integer<std::uint64_t>(buffer[i])) * 1099511628211u;
    }
}

// For each file of a run, the place of the first one that holds the same bytes.
std::vector<std::size_t> FirstsOfEqualBytes(CommandContext& context, const std::vector<FileEntry>& files,
                                            std::size_t begin, std::size_t end,
                                            const std::function<void()>& afterEach) {
    std::map<std::uint64_t, std::size_t> sizes;
    for (std::size_t index = begin; index < end; ++index)
        ++sizes[files[index].info.size];
    std::map<std::pair<std::uint64_t, std::uint64_t>, std::vector<std::size_t>> different; // by size and hash
    std::vector<std::size_t> firsts;
    for (std::size_t index = begin; index < end; ++index) {
        afterEach();
        firsts.push_back(index);
        const std::uint64_t size = files[index].info.size;
        const auto hash = sizes[size] > 1 ? HashBytes(context.files, files[index].path) : std::nullopt;
        if (!hash)
            continue;
        auto& others = different[{size, *hash}];
        const auto equal = std::ranges::find_if(
            others, [&](std::size_t other) { return SameBytes(context.files, files[other].path, files[index].path); });
        if (equal == others.end())
            others.push_back(index);
        else
            firsts.back() = *equal;
    }
    return firsts;
}

// Documents of one name, from begin to end.
void SettleRun(CommandContext& context, bool isStaging, std::vector<FileEntry>& files, std::size_t begin,
               std::size_t end, Settling& settling) {
    std::optional<ProgressBar> progress;
    if (end - begin >= LongRun)
        progress.emplace(context.display, static_cast<int>(2 * (end - begin)));
    const auto step = [&] {
        if (progress)
            progress->Step();
    };
    const auto firsts = FirstsOfEqualBytes(context, files, begin, end, step);
    std::map<std::size_t, std::size_t> lasts; // of equal bytes, by the first
    for (std::size_t index = begin; index < end; ++index) {
        lasts[firsts[index - begin]] = index;
        if (isStaging && firsts[index - begin] != index)
            settling.Delete(index);
    }
    // The last of the run keeps its name; the others count upwards from the end.
    int number = 1;
    bool isLast = true;
    for (std::size_t index = end; index-- > begin; step()) {
        if (settling.IsDeleted(index))
            continue;
        // In the Hangar equal ones are listed as they are.
        if (!isLast && (isStaging || lasts[firsts[index - begin]] == index))
            settling.Renumber(index, number);
        isLast = false;
    }
}

} // namespace

void SortByName(std::vector<FileEntry>& files) {
    std::sort(files.begin(), files.end(), [](const FileEntry& a, const FileEntry& b) {
        const int order = a.key.compare(b.key);
        return order != 0 ? order < 0 : LessNoCase(a.path, b.path);
    });
}

bool SettleDocuments(CommandContext& context, bool isStaging, std::vector<FileEntry>& files, Tree& tree) {
    Settling settling(context, files, tree);
    for (std::size_t begin = 0, end = 0; begin < files.size(); begin = end) {
        end = EndOfRun(files, begin);
        if (end - begin > 1 && IsDocument(files[begin]))
            SettleRun(context, isStaging, files, begin, end, settling);
    }
    return settling.Finish();
}

bool SettleStagingDuplicates(CommandContext& context, DuplicateChoice& choice, std::vector<FileEntry>& files,
                             Tree& tree) {
    Settling settling(context, files, tree);
    std::size_t kept = files.size();
    for (std::size_t first = files.size(); first-- > 0;) {
        const bool isPair = kept < files.size() && files[first].key == files[kept].key;
        if (!isPair || IsDocument(files[first])) {
            kept = first;
        } else if (KeepsFirst(context, choice, files[first], files[kept])) {
            settling.Delete(kept);
            kept = first;
        } else {
            settling.Delete(first);
        }
    }
    return settling.Finish();
}

std::vector<std::string> FilesOfOneName(const std::vector<FileEntry>& files) {
    std::vector<std::string> paths;
    for (std::size_t begin = 0, end = 0; begin < files.size(); begin = end) {
        end = EndOfRun(files, begin);
        if (end - begin > 1 && !IsDocument(files[begin]))
            for (std::size_t index = begin; index < end; ++index)
                paths.push_back(files[index].path);
    }
    return paths;
}

void StopOnHangarDuplicate(CommandContext& context, const std::vector<std::string>& twins) {
    context.user.Tell(
        "Your Hangar directory location seems to be invalid as a duplicate filename condition occurred while "
        "loading components for a package:\r\n\r\n" +
            twins[0] + "\r\n\r\n" + twins[1] +
            "\r\n\r\nThis is a dangerous situation.  Korvadex will now stop.  "
            "Please restart Korvadex and double check the Hangar location.",
        MessageIcon::Critical);
    throw ProgramEnd{};
}

} // namespace korvadex
