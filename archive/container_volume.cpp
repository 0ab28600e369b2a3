#include "archive/container_volume.h"

#include "archive/container_bytes.h"
#include "platform/windows_path.h"

namespace korvadex {

namespace {

bool IsRarVolume(std::string_view bytes) {
    constexpr std::uint64_t mainHeader4 = 0x73, mainHeader5 = 1, isVolume = 1, hasExtra = 1;
    constexpr std::size_t mark = OldRarMark.size();
    if (bytes.starts_with(OldRarMark))
        return NumberAt(bytes, mark + 2, 1) == mainHeader4 && (NumberAt(bytes, mark + 3, 2) & isVolume) != 0;
    if (!bytes.starts_with(NewRarMark) || bytes.size() < mark + 5)
        return false;
    bytes.remove_prefix(mark + 5);
    TakeNumber(bytes); // size
    if (TakeNumber(bytes) != mainHeader5)
        return false;
    if ((TakeNumber(bytes) & hasExtra) != 0)
        TakeNumber(bytes);
    return (TakeNumber(bytes) & isVolume) != 0;
}

bool IsCabinetVolume(std::string_view bytes) {
    constexpr std::uint64_t hasPrevious = 1, hasNext = 2;
    return bytes.starts_with(CabinetMark) && (NumberAt(bytes, 30, 2) & (hasPrevious | hasNext)) != 0;
}

} // namespace

bool IsOneOfSeveral(ContainerSource& source, std::string_view path) {
    constexpr std::size_t enough = 64;
    const std::string head = source.Peek(0, enough);
    const bool isFirst7z = head.starts_with(SevenZipMark) && EndsWithNoCase(path, ".001");
    return isFirst7z || IsRarVolume(head) || IsCabinetVolume(head);
}

} // namespace korvadex
