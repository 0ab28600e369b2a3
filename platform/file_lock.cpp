#include "platform/file_lock.h"

#include <algorithm>

namespace korvadex {

std::string TextOf(const LockHolder& holder) {
    return holder.user + "\r\n" + holder.machine + "\r\n" + holder.since + "\r\n" + holder.directory + "\r\n";
}

LockHolder HolderOf(std::string_view text) {
    LockHolder holder;
    for (std::string* line : {&holder.user, &holder.machine, &holder.since, &holder.directory}) {
        const auto end = std::min(text.find('\n'), text.size());
        *line = text.substr(0, end);
        // It goes into a message, and anybody may have written it.
        std::erase_if(*line, [](unsigned char letter) { return letter < ' ' || letter == 0x7F; });
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return holder;
}

} // namespace korvadex
