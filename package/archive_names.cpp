#include "package/archive_names.h"

#include "platform/windows_path.h"

#include <algorithm>
#include <array>

namespace korvadex {

namespace {

// What can be packed in two steps has two endings, or one for both.
constexpr std::array<std::string_view, 15> Endings = {".zip",     ".7z",     ".rar",    ".lha",     ".lzh",
                                                      ".iso",     ".tar",    ".tar.gz", ".tgz",     ".tbz2",
                                                      ".tar.bz2", ".tar.xz", ".txz",    ".tar.zst", ".tzst"};
// The simulator keeps gauges in such files: they are archives only where somebody says so.
constexpr std::string_view CabinetEnding = ".cab";

auto FindEnding(std::string_view name) {
    return std::ranges::find_if(Endings, [&](std::string_view ending) { return EndsWithNoCase(name, ending); });
}

} // namespace

bool IsArchiveName(std::string_view name) {
    return FindEnding(name) != Endings.end();
}

bool MayBeArchiveName(std::string_view name) {
    return IsArchiveName(name) || EndsWithNoCase(name, CabinetEnding) || EndsWithNoCase(name, ".exe");
}

std::string WithoutArchiveEnding(std::string_view name) {
    const auto ending = FindEnding(name);
    return std::string(name.substr(0, ending != Endings.end() ? name.size() - ending->size() : name.rfind('.')));
}

std::string OtherArchivePatterns() {
    std::string patterns = "*" + std::string(CabinetEnding);
    for (const std::string_view ending : Endings)
        if (ending != ".zip")
            patterns.append(" *").append(ending);
    return patterns;
}

} // namespace korvadex
