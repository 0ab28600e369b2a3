#include "cuts/trees.h"

#include <array>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <regex>
#include <set>
#include <sstream>
#include <sys/stat.h>
#include <sys/xattr.h>

namespace korvadex::test {

namespace {

namespace fs = std::filesystem;

bool IsNew(std::time_t time) {
    return std::time(nullptr) - time < 24 * 60 * 60;
}

// The record of an installation names the times of files, some of which were made by it.
std::string WithoutNewTimes(const std::string& record) {
    static const std::regex time("\\t([0-9]{10})[0-9]{9}\\t");
    std::string text, rest = record;
    for (std::smatch found; std::regex_search(rest, found, time); rest = found.suffix())
        text += found.prefix().str() + (IsNew(std::stoll(found[1])) ? "\tnew\t" : found.str());
    return text + rest;
}

TreeEntry ReadEntry(const fs::path& path, bool isExact) {
    TreeEntry entry;
    struct stat info {};
    if (lstat(path.c_str(), &info) != 0)
        return entry;
    std::ostringstream mode;
    mode << std::oct << (info.st_mode & 07777);
    entry.kind = (S_ISDIR(info.st_mode) ? "directory " : S_ISLNK(info.st_mode) ? "link " : "file ") + mode.str();
    entry.time = IsNew(info.st_mtim.tv_sec) && !isExact
                     ? "new"
                     : std::to_string(info.st_mtim.tv_sec) + "." + std::to_string(info.st_mtim.tv_nsec);
    std::array<char, 64> value{};
    if (const ssize_t length = lgetxattr(path.c_str(), "user.DOSATTRIB", value.data(), value.size()); length > 0)
        entry.attributes.assign(value.data(), std::size_t(length));
    if (S_ISLNK(info.st_mode)) {
        entry.bytes = fs::read_symlink(path).string();
    } else if (S_ISREG(info.st_mode)) {
        std::ostringstream bytes;
        bytes << std::ifstream(path, std::ios::binary).rdbuf();
        entry.bytes = path.filename() == "kx_installed.txt" && !isExact ? WithoutNewTimes(bytes.str()) : bytes.str();
    }
    return entry;
}

std::string Difference(const TreeEntry& expected, const TreeEntry& there) {
    if (there.bytes != expected.bytes)
        return there.bytes.size() == expected.bytes.size()
                   ? "other bytes"
                   : std::to_string(there.bytes.size()) + " bytes for " + std::to_string(expected.bytes.size());
    if (there.kind != expected.kind)
        return there.kind + " for " + expected.kind;
    if (there.time != expected.time)
        return "its time is " + there.time + " for " + expected.time;
    return "its attributes are '" + there.attributes + "' for '" + expected.attributes + "'";
}

} // namespace

HostTree ReadTree(const std::string& directory, const std::function<bool(const std::string& path)>& isLeftOut,
                  bool isExact) {
    HostTree tree;
    for (auto at = fs::recursive_directory_iterator(directory); at != fs::recursive_directory_iterator(); ++at) {
        const std::string path = at->path().string().substr(directory.size() + 1);
        if (isLeftOut(path))
            at.disable_recursion_pending();
        else
            tree[path] = ReadEntry(at->path(), isExact);
    }
    return tree;
}

std::vector<std::string> Differences(const HostTree& expected, const HostTree& there) {
    std::vector<std::string> differences;
    for (const auto& [path, entry] : expected) {
        const auto found = there.find(path);
        if (found == there.end())
            differences.push_back(path + ": missing");
        else if (found->second != entry)
            differences.push_back(path + ": " + Difference(entry, found->second));
    }
    for (const auto& [path, entry] : there)
        if (!expected.contains(path))
            differences.push_back(path + ": too much");
    return differences;
}

} // namespace korvadex::test
