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

} // namespace korvadex
