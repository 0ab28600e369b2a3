#include "archive/mod_unzip.h"

#include "package/progress.h"
#include "platform/code_page.h"
#include "platform/date_text.h"
#include "platform/windows_path.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <utility>

namespace korvadex {

namespace {

constexpr std::size_t MaxNameLetters = 255;
constexpr std::size_t MaxPasswordBytes = 256;

template<std::size_t Size>
std::string TextOf(const std::array<char, Size>& field) {
    return std::string(Trim(std::string_view(field.data(), strnlen(field.data(), Size))));
}

std::string LibraryInformation() {
    UnzipVersion version{.structlen = 64};
    UzpVersion2(version);
    return "DLL Date: " + TextOf(version.date) + "\r\nZip Info: " + TextOf(version.zlibversion) +
           "\r\nDLL Version: " + TextOf(version.betalevel) + "\r\n--------------\r\n";
}

std::string ArchiveInformation(const UnzipCallbacks& callbacks) {
    return "Only Shows If uExtractList = 1 List Contents\r\nComment         : " + std::to_string(callbacks.cchComment) +
           "\r\nTotal Size Comp : " + std::to_string(callbacks.TotalSizeComp) +
           "\r\nTotal Size      : " + std::to_string(callbacks.TotalSize) + "\r\nCompress Factor : %" +
           std::to_string(callbacks.CompFactor) + "\r\nNum Of Members  : " + std::to_string(callbacks.NumMembers) +
           "\r\n";
}

std::string ListingLine(std::string name, std::string size, const std::string& date) {
    name.resize(std::max<std::size_t>(name.size(), 40), ' ');
    size.resize(std::max<std::size_t>(size.size(), 10), ' ');
    return name + " " + size + " " + date + "\r\n";
}

DCL OptionsOf(const modUnzip& unzip) {
    return {.ExtractOnlyNewer = unzip.uExtractOnlyNewer,
            .SpaceToUnderscore = unzip.uSpaceToUnderscore,
            .PromptToOverwrite = unzip.uPromptOverwrite,
            .fQuiet = unzip.uQuiet,
            .ncflag = unzip.uWriteStdout,
            .ntflag = unzip.uTestZip,
            .nvflag = unzip.uExtractList,
            .nfflag = unzip.uFreshenExisting,
            .nzflag = unzip.uDisplayComment,
            .ndflag = unzip.uHonorDirectories,
            .noflag = unzip.uOverwriteFiles,
            .naflag = unzip.uConvertCRLF,
            .nZIflag = unzip.uVerbose,
            .C_flag = unzip.uCaseInsensitive,
            .fPrivilege = unzip.uPrivilege,
            .lpszZipFN = unzip.uZipFileName,
            .lpszExtractDir = unzip.uExtractDir};
}

// What the library asks and tells on the way, for one call.
class Dialogue {
  public:
    Dialogue(modUnzip& calledUnzip, CommandContext& commandContext) : unzip(calledUnzip), context(commandContext) {}

    int MayReplace(const std::string& file) {
        const std::string name(FirstLetters(file, MaxNameLetters));
        return context.user.AskYesNo("File " + name + " exists.  Overwrite?") ? ReplaceYes : ReplaceNone;
    }
    int AskPassword(std::string& password);
    void List(const ArchiveMember& member) {
        if (std::exchange(isListEmpty, false))
            unzip.uZipMessage += ListingLine("Filename:", "Size", "Date");
        unzip.uZipMessage += ListingLine(member.name.text, std::to_string(member.size), ShortDateTime(member.time));
    }
    void ShowProgress(std::uint64_t done, std::uint64_t total);

  private:
    modUnzip& unzip;
    CommandContext& context;
    std::optional<ProgressBar> bar; // once there is enough to do
    int shown = 0;
    bool isListEmpty = true;
};

int Dialogue::AskPassword(std::string& password) {
    if (unzip.uPasswordAsked == 1)
        return PasswordSkip;
    unzip.uPasswordAsked = 1;
    const auto entered = context.user.AskText("Please Enter The Password!", true);
    if (!entered || entered->empty())
        return PasswordSkip;
    // Archives hold passwords as bytes of the code page.
    password = ToCodePage(*entered).value_or(*entered);
    password.resize(strnlen(password.data(), std::min(password.size(), MaxPasswordBytes)));
    return PasswordEntered;
}

void Dialogue::ShowProgress(std::uint64_t done, std::uint64_t total) {
    constexpr std::uint64_t megaByte = 1u << 20, enough = 16 * megaByte; // less is done in the blink of an eye
    if (total < enough)
        return;
    if (!bar)
        bar.emplace(context.display, static_cast<int>(total / megaByte));
    const int now = static_cast<int>(std::min(done, total) / megaByte);
    if (std::exchange(shown, now) != now)
        bar->Set(now);
}

} // namespace

UnpackReport modUnzip::UnzipArchive(CommandContext& context) {
    uZipMessage = LibraryInformation();
    Dialogue dialogue(*this, context);
    UnzipCallbacks callbacks;
    callbacks.print = [&](std::string_view text) {
        uZipMessage += text;
        return static_cast<int>(text.size());
    };
    callbacks.replace = [&](const std::string& file) { return dialogue.MayReplace(file); };
    callbacks.password = [&](std::string& password) { return dialogue.AskPassword(password); };
    callbacks.message = [&](const ArchiveMember& member) { dialogue.List(member); };
    callbacks.service = [](const std::string&, std::uint64_t) { return 0; };
    if (uShowProgress)
        callbacks.progress = [&](std::uint64_t done, std::uint64_t total) { dialogue.ShowProgress(done, total); };
    callbacks.rightPassword = uRightPassword;

    UnpackReport report = Wiz_SingleEntryUnzip({context.files, context.locations}, uNumberFiles, uZipNames,
                                               uNumberXFiles, uExcludeNames, OptionsOf(*this), callbacks);
    uZipMessage += ArchiveInformation(callbacks);
    if (!report.password.empty())
        uRightPassword = report.password;
    return report;
}

} // namespace korvadex
