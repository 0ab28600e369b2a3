#include "archive/mod_unzip.h"

#include "platform/code_page.h"
#include "platform/date_text.h"
#include "platform/windows_path.h"

#include <cstring>

namespace korvadex {

namespace {

constexpr std::size_t MaxNameLetters = 255;
constexpr std::size_t MaxPasswordBytes = 256;
constexpr std::uint64_t MegaByte = 1u << 20;
// Less than this is done in the blink of an eye.
constexpr std::uint64_t ProgressFrom = 16 * MegaByte;

std::string FirstLetters(const std::string& text, std::size_t count) {
    std::size_t end = 0;
    for (; end < text.size(); ++end) {
        const bool isContinued = (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80;
        if (!isContinued && count-- == 0)
            break;
    }
    return text.substr(0, end);
}

// The bar of the main window while an archive is unpacked.
class ProgressBar {
  public:
    explicit ProgressBar(CommandDisplay& mainWindow) : window(mainWindow) {}
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;
    ~ProgressBar() {
        if (shown >= 0)
            window.HideProgress();
    }
    void Show(std::uint64_t done, std::uint64_t total) {
        if (total < ProgressFrom)
            return;
        if (shown < 0)
            window.ShowProgress(0, static_cast<int>(total / MegaByte));
        const int now = static_cast<int>(std::min(done, total) / MegaByte);
        if (now != shown)
            window.SetProgress(now);
        shown = now;
    }

  private:
    CommandDisplay& window;
    int shown = -1;
};

template<std::size_t Size>
void FillWithBlanks(std::array<char, Size>& field) {
    field.fill(' ');
    field.back() = '\0';
}

template<std::size_t Size>
std::string TextOf(const std::array<char, Size>& field) {
    return std::string(Trim(std::string_view(field.data(), strnlen(field.data(), Size))));
}

std::string LibraryInformation() {
    UnzipVersion version;
    version.structlen = 64;
    FillWithBlanks(version.betalevel);
    FillWithBlanks(version.date);
    FillWithBlanks(version.zlibversion);
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

std::string Padded(std::string text, std::size_t width) {
    if (text.size() < width)
        text.append(width - text.size(), ' ');
    return text + " ";
}

std::string ListingLine(const std::string& name, const std::string& size, const std::string& date) {
    return Padded(name, 40) + Padded(size, 10) + date + "\r\n";
}

} // namespace

int modUnzip::UnzipArchive(CommandContext& context) {
    uZipMessage = LibraryInformation();
    uRefused.clear();
    uRoomNeeded = uRoomFree = 0;
    ProgressBar progress(context.display);
    int listed = 0;

    UnzipCallbacks callbacks;
    callbacks.print = [&](std::string_view text) {
        uZipMessage += text;
        return static_cast<int>(text.size());
    };
    callbacks.replace = [&](const std::string& file) {
        const std::string name = FirstLetters(file, MaxNameLetters);
        return context.user.AskYesNo("File " + name + " exists.  Overwrite?") ? ReplaceYes : ReplaceNone;
    };
    callbacks.password = [&](std::string& password, const std::string&) {
        if (uPasswordAsked == 1)
            return PasswordSkip;
        uPasswordAsked = 1;
        const auto entered = context.user.AskText("Please Enter The Password!", true);
        if (!entered || entered->empty())
            return PasswordSkip;
        // Archives hold passwords as bytes of the code page.
        password = ToCodePage(*entered).value_or(*entered);
        password.resize(strnlen(password.data(), std::min(password.size(), MaxPasswordBytes)));
        return PasswordEntered;
    };
    callbacks.message = [&](const ListedMember& member) {
        if (listed++ == 0)
            uZipMessage += ListingLine("Filename:", "Size", "Date");
        uZipMessage += ListingLine(member.name, std::to_string(member.size), ShortDateTime(member.time));
    };
    callbacks.service = [](const std::string&, std::uint64_t) { return 0; };
    callbacks.refused = [&](const std::string& name, const std::string& reason) { uRefused.push_back({name, reason}); };
    callbacks.noRoom = [&](std::uint64_t needed, std::uint64_t free) {
        uRoomNeeded = needed;
        uRoomFree = free;
    };
    if (uShowProgress)
        callbacks.progress = [&](std::uint64_t done, std::uint64_t total) { progress.Show(done, total); };

    callbacks.rightPassword = uRightPassword;

    DCL options;
    options.ExtractOnlyNewer = uExtractOnlyNewer;
    options.SpaceToUnderscore = uSpaceToUnderscore;
    options.PromptToOverwrite = uPromptOverwrite;
    options.fQuiet = uQuiet;
    options.ncflag = uWriteStdout;
    options.ntflag = uTestZip;
    options.nvflag = uExtractList;
    options.nfflag = uFreshenExisting;
    options.nzflag = uDisplayComment;
    options.ndflag = uHonorDirectories;
    options.noflag = uOverwriteFiles;
    options.naflag = uConvertCRLF;
    options.nZIflag = uVerbose;
    options.C_flag = uCaseInsensitive;
    options.fPrivilege = uPrivilege;
    options.lpszZipFN = uZipFileName;
    options.lpszExtractDir = uExtractDir;

    const int code = Wiz_SingleEntryUnzip({context.files, context.locations}, uNumberFiles, uZipNames, uNumberXFiles,
                                          uExcludeNames, options, callbacks);
    uZipMessage += ArchiveInformation(callbacks);
    uExplanations = std::move(callbacks.explanations);
    uWritten = std::move(callbacks.written);
    if (!callbacks.rightPassword.empty())
        uRightPassword = std::move(callbacks.rightPassword);
    return code;
}

} // namespace korvadex
