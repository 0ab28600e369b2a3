#include "package/name_list.h"

namespace korvadex {

std::string ListNames(const std::vector<std::string>& names) {
    std::string text;
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (i > 0)
            text += "\r\n";
        if (i == MaxNamesInMessage)
            return text + "... and " + std::to_string(names.size() - i) + " more";
        text += names[i];
    }
    return text;
}

} // namespace korvadex
