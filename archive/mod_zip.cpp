#include "archive/mod_zip.h"

namespace korvadex {

std::int16_t modZip::ZipArchive(CommandContext& context) {
    zZipMessage.clear();
    ZipState library;
    ZipCallbacks callbacks;
    callbacks.print = [this](std::string_view text) {
        zZipMessage += text;
        return static_cast<int>(text.size());
    };
    callbacks.comment = [](std::string&) { return 0; };
    callbacks.password = [&](std::string& password) {
        const auto entered = context.user.AskText("Please Enter The Password!", true);
        password = entered.value_or("");
        return entered ? 0 : -1;
    };
    callbacks.service = [](const std::string&, std::uint64_t) { return 0; };
    ZpInit(library, std::move(callbacks));

    ZPOPT options;
    options.Date = zDate;
    options.fEncrypt = zEncrypt;
    options.fJunkDir = zJunkDir;
    options.fUpdate = zUpdate;
    options.fFreshen = zFreshen;
    options.fComment = zComment;
    options.fRecurse = zRecurse;
    options.flevel = zLevel;
    ZpSetOptions(library, options);

    return static_cast<std::int16_t>(
        ZpArchive(library, context.files, {zNumberFiles, zZipFileName, zZipNames}, zPrepared));
}

} // namespace korvadex
