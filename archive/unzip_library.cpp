#include "archive/unzip_library.h"

#include <algorithm>
#include <limits>
#include <zip.h>
#include <zlib.h>

namespace korvadex {

namespace {

std::uint32_t Bounded(std::uint64_t value) {
    return static_cast<std::uint32_t>(std::min<std::uint64_t>(value, std::numeric_limits<std::uint32_t>::max()));
}

bool IsOffered(const DCL& options) {
    return options == DCL{.PromptToOverwrite = options.PromptToOverwrite,
                          .fQuiet = options.fQuiet,
                          .ntflag = options.ntflag,
                          .nvflag = options.nvflag,
                          .ndflag = options.ndflag,
                          .noflag = options.noflag,
                          .lpszZipFN = options.lpszZipFN,
                          .lpszExtractDir = options.lpszExtractDir};
}

UnpackJob JobOf(const DCL& options, const UnzipCallbacks& callbacks) {
    UnpackJob job{.archive = options.lpszZipFN,
                  .target = options.lpszExtractDir,
                  .isTest = options.ntflag != 0,
                  .keepsDirectories = options.ndflag != 0,
                  .password = callbacks.rightPassword,
                  .progress = callbacks.progress};
    job.mayReplace = [&](const std::string& path) {
        return options.noflag != 0 ||
               (options.PromptToOverwrite != 0 && callbacks.replace && callbacks.replace(path) == ReplaceYes);
    };
    job.askPassword = [&] {
        std::string entered;
        return callbacks.password && callbacks.password(entered) == PasswordEntered ? entered : "";
    };
    job.mayGoOn = [&](const std::string& member, std::uint64_t size) {
        return !callbacks.service || callbacks.service(member, size) == 0;
    };
    return job;
}

UnpackReport ListMembers(const FileSystem& files, const DCL& options, const UnzipCallbacks& callbacks) {
    const OpenedArchive archive = OpenArchive(files, options.lpszZipFN);
    if (archive.reader && callbacks.message)
        std::ranges::for_each(archive.reader->Members(), callbacks.message);
    return {.code = archive.code};
}

// Per cent.
std::uint32_t SavedOf(const UnpackReport& report) {
    if (report.size == 0 || report.packedSize > report.size)
        return 0;
    return static_cast<std::uint32_t>(100 -
                                      static_cast<double>(report.packedSize) * 100 / static_cast<double>(report.size));
}

} // namespace

void UzpVersion2(UnzipVersion& version) {
    const auto fill = [](auto& field, const std::string& text) {
        const std::size_t length = std::min(text.size(), field.size() - 1);
        std::copy_n(text.begin(), length, field.begin());
        field[length] = '\0';
    };
    fill(version.betalevel, "");
    // A library of the system bears a version instead of a date.
    fill(version.date, std::string("libzip ") + zip_libzip_version());
    fill(version.zlibversion, zlibVersion());
}

UnpackReport Wiz_SingleEntryUnzip(UnpackDisk disk, std::int32_t includedCount, const NameList&,
                                  std::int32_t excludedCount, const NameList&, const DCL& options,
                                  UnzipCallbacks& callbacks) {
    if (includedCount != 0 || excludedCount != 0 || !IsOffered(options))
        return {.code = UnzipCode::BadParameter};
    if (options.nvflag != 0)
        return ListMembers(disk.files, options, callbacks);
    UnpackReport report = Unpack(disk, JobOf(options, callbacks));
    callbacks.TotalSizeComp = Bounded(report.packedSize);
    callbacks.TotalSize = Bounded(report.size);
    callbacks.CompFactor = SavedOf(report);
    callbacks.NumMembers = Bounded(report.memberCount);
    callbacks.cchComment = Bounded(report.commentSize);
    for (const auto& [name, reason] : report.refused) {
        if (options.fQuiet == 0 && callbacks.print)
            callbacks.print(name + ": " + reason + "\r\n");
    }
    return report;
}

} // namespace korvadex
