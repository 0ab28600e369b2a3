#include "tests/support/temporary_drive.h"

#include "platform/text_file.h"
#include "platform/windows_path.h"
#include "tests/support/host_drive.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>

namespace korvadex::test {

namespace {

void Require(const Status& status, std::string_view what) {
    if (!status)
        ADD_FAILURE() << what << " " << status.path << ": " << DescribeFault(status.fault) << " (" << status.nativeCode
                      << ")";
}

void AddTree(const FileSystem& files, const std::string& directory, const std::string& relative,
             std::map<std::string, std::string>& tree) {
    const auto entries = files.List(directory + relative);
    Require(entries.status(), "cannot list");
    if (!entries)
        return;
    for (const DirectoryEntry& entry : *entries) {
        if (IsLastingName(entry.name) || entry.name == "journal")
            continue; // it shows that a program runs, and what that keeps, not what it has done
        const std::string name = relative + entry.name;
        if (entry.info.kind == EntryKind::Directory) {
            tree[name + "\\"];
            AddTree(files, directory, name + "\\", tree);
        } else if (entry.info.kind == EntryKind::Link) {
            tree[name] = "(link)";
        } else {
            const auto bytes = ReadBytes(files, directory + name);
            Require(bytes.status(), "cannot read");
            tree[name] = bytes ? *bytes : "(unreadable)";
        }
    }
}

} // namespace

std::string TwoByteText(std::string_view text, bool isBigEndian) {
    std::string bytes = isBigEndian ? "\xFE\xFF" : "\xFF\xFE";
    for (const char letter : text)
        bytes += isBigEndian ? std::string{'\0', letter} : std::string{letter, '\0'};
    return bytes;
}

TemporaryDrive::TemporaryDrive() {
    HostDrive drive = MakeHostDrive();
    hostRoot = drive.hostRoot;
    root = drive.root;
    files = std::move(drive.files);
}

TemporaryDrive::~TemporaryDrive() {
    RemoveHostDrive(hostRoot);
}

void TemporaryDrive::Put(std::string_view relative, std::string_view bytes) {
    MakeDirectory(ParentDirectory(relative));
    const std::string path = At(relative);
    if (const auto present = files->Info(path)) {
        Require(files->ClearAttributes(path), "cannot make writable");
        Require(files->Delete(path), "cannot delete");
    }
    auto file = files->CreateNew(path);
    Require(file.status(), "cannot create");
    if (!file)
        return;
    Require((*file)->Write(std::as_bytes(std::span(bytes.data(), bytes.size()))), "cannot write");
    Require((*file)->Close(false), "cannot close");
}

void TemporaryDrive::MakeDirectory(std::string_view relative) {
    const std::string path = WithoutBackslash(relative);
    if (path.empty() || files->IsDirectory(At(path)))
        return;
    MakeDirectory(ParentDirectory(path));
    Require(files->CreateDirectory(At(path)), "cannot make the directory");
}

void TemporaryDrive::Fill(std::string_view relative, std::string_view outline) {
    while (!outline.empty()) {
        const std::string_view entry = outline.substr(0, outline.find(", "));
        outline.remove_prefix(std::min(outline.size(), entry.size() + 2));
        const std::size_t equals = entry.find('=');
        const std::string name =
            (relative.empty() ? "" : AddBackslash(relative)) + std::string(entry.substr(0, equals));
        if (equals == entry.npos)
            MakeDirectory(name);
        else
            Put(name, entry.substr(equals + 1));
    }
}

bool TemporaryDrive::MakeLink(std::string_view relative, std::string_view target) {
    return MakeHostLink(*files, At(relative), At(target));
}

std::string TemporaryDrive::Get(std::string_view relative) const {
    const auto bytes = ReadBytes(*files, At(relative));
    Require(bytes.status(), "cannot read");
    return bytes ? *bytes : std::string();
}

bool TemporaryDrive::Has(std::string_view relative) const {
    return static_cast<bool>(files->Info(At(relative)));
}

std::map<std::string, std::string> TemporaryDrive::Tree(std::string_view relative) const {
    std::map<std::string, std::string> tree;
    AddTree(*files, AddBackslash(At(relative)), "", tree);
    return tree;
}

std::map<std::string, std::pair<std::string, FileInfo>> TemporaryDrive::States(std::string_view relative) const {
    std::map<std::string, std::pair<std::string, FileInfo>> states;
    for (const auto& [name, bytes] : Tree(relative)) {
        if (!name.ends_with('\\'))
            states[name] = {bytes, *files->Info(AddBackslash(At(relative)) + name)};
    }
    return states;
}

std::string TemporaryDrive::Outline(std::string_view relative) const {
    std::string outline;
    const auto tree = Tree(relative);
    for (auto entry = tree.begin(); entry != tree.end(); ++entry) {
        const auto& [name, bytes] = *entry;
        const auto next = std::next(entry);
        if (name.ends_with('\\') && next != tree.end() && next->first.starts_with(name))
            continue;
        outline += (outline.empty() ? "" : ", ") + name + (name.ends_with('\\') ? "" : "=" + bytes);
    }
    return outline;
}

std::vector<std::string> TemporaryDrive::Names(std::string_view relative) const {
    std::vector<std::string> names;
    for (const auto& [name, bytes] : Tree(relative))
        names.push_back(name);
    return names;
}

} // namespace korvadex::test
