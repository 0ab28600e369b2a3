#include "platform/date_text.h"

#include <array>
#include <clocale>
#include <ctime>
#include <locale.h>
#include <memory>
#include <type_traits>

namespace korvadex {

namespace {

using LocaleHandle = std::unique_ptr<std::remove_pointer_t<locale_t>, decltype(&freelocale)>;

} // namespace

std::string ShortDateTime(FileTime time) {
    const std::time_t seconds =
        std::chrono::system_clock::to_time_t(std::chrono::time_point_cast<std::chrono::system_clock::duration>(time));
    std::tm local{};
    localtime_r(&seconds, &local);
    const LocaleHandle user(newlocale(LC_TIME_MASK, "", nullptr), &freelocale);
    std::array<char, 128> text{};
    const std::size_t length = user ? strftime_l(text.data(), text.size(), "%x %X", &local, user.get())
                                    : std::strftime(text.data(), text.size(), "%x %X", &local);
    return std::string(text.data(), length);
}

FileTime FileTimeFromDos(unsigned date, unsigned time) {
    std::tm local{};
    local.tm_year = static_cast<int>(date >> 9) + 80;
    local.tm_mon = static_cast<int>((date >> 5) & 15) - 1;
    local.tm_mday = static_cast<int>(date & 31);
    local.tm_hour = static_cast<int>(time >> 11);
    local.tm_min = static_cast<int>((time >> 5) & 63);
    local.tm_sec = static_cast<int>((time & 31) * 2);
    local.tm_isdst = -1;
    return std::chrono::time_point_cast<std::chrono::nanoseconds>(
        std::chrono::system_clock::from_time_t(std::mktime(&local)));
}

} // namespace korvadex
