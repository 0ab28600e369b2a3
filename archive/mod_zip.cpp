#include "archive/mod_zip.h"

namespace korvadex {

std::int16_t modZip::ZipArchive(CommandContext& context) {
    ZipState library;
    ZipCallbacks callbacks;
    callbacks.print = [](std::string_view text) { return static_cast<int>(text.size()); };
    callbacks.comment = [](std::string&) { return 0; };
    callbacks.password = [&](std::string& password) {
        const auto entered = context.user.AskText("Please Enter The Password!", true);
        password = entered.value_or("");
        return entered ? 0 : -1;
    };
    callbacks.service = [](const std::string&, std::uint64_t) { return 0; };
    ZpInit(library, std::move(callbacks));
    ZpSetOptions(library, options);
    return static_cast<std::int16_t>(ZpArchive(library, context.files, names, prepared));
}

} // namespace korvadex
