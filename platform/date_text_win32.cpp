#include "platform/date_text.h"

#include "platform/win32.h"

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

} // namespace korvadex
