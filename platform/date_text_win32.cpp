#include "platform/date_text.h"

#include "platform/win32.h"

#include <algorithm>
#include <array>

namespace korvadex {

std::string ShortDateTime(FileTime time) {
    const FILETIME native = ToNativeTime(time);
    SYSTEMTIME utc{};
    SYSTEMTIME local{};
    // The rules of daylight saving of that date, not of today.
    if (!FileTimeToSystemTime(&native, &utc) || !SystemTimeToTzSpecificLocalTime(nullptr, &utc, &local))
        return {};
    std::array<wchar_t, 128> date{};
    std::array<wchar_t, 128> clock{};
    GetDateFormatEx(LOCALE_NAME_USER_DEFAULT, DATE_SHORTDATE, &local, nullptr, date.data(),
                    static_cast<int>(date.size()), nullptr);
    GetTimeFormatEx(LOCALE_NAME_USER_DEFAULT, TIME_NOSECONDS, &local, nullptr, clock.data(),
                    static_cast<int>(clock.size()));
    return FromWide(date.data()) + " " + FromWide(clock.data());
}

FileTime FileTimeFromDos(unsigned date, unsigned time) {
    // Archives without a date hold zeros, or worse: each part is brought into its range.
    SYSTEMTIME local{};
    local.wYear = static_cast<WORD>(1980 + ((date >> 9) & 0x7F));
    local.wMonth = static_cast<WORD>(std::clamp((date >> 5) & 0x0Fu, 1u, 12u));
    local.wDay = static_cast<WORD>(std::clamp(date & 0x1Fu, 1u, 31u));
    local.wHour = static_cast<WORD>(std::min((time >> 11) & 0x1Fu, 23u));
    local.wMinute = static_cast<WORD>(std::min((time >> 5) & 0x3Fu, 59u));
    local.wSecond = static_cast<WORD>(std::min((time & 0x1Fu) * 2, 58u));

    SYSTEMTIME utc{};
    FILETIME native{};
    // The 30th of February is refused: the nearest day before it is taken.
    while (local.wDay > 28 && !SystemTimeToFileTime(&local, &native))
        --local.wDay;
    if (!TzSpecificLocalTimeToSystemTime(nullptr, &local, &utc) || !SystemTimeToFileTime(&utc, &native))
        return {};
    return FromNativeTime(native);
}

} // namespace korvadex
