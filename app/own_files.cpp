#include "app/own_files.h"

#include "app/settings.h"
#include "package/scratch.h"
#include "platform/environment.h"
#include "platform/windows_path.h"

#include <algorithm>
#include <cctype>
#include <stdexcept>

namespace korvadex {

namespace {

constexpr const char* StandInDirectory = "C:\\Korvadex";

struct ProgramDirectories {
    std::string own;  // that of the executable
    std::string data; // that of the read-me page
};

ProgramDirectories DirectoriesOf(const FileSystem& files, const std::string& executable) {
    const auto own = ParentDirectory(files.SourceFromHost(executable));
    const auto data = ParentDirectory(own) + "share\\korvadex\\";
    return {own, files.Info(data + std::string(ReadMePage)) ? data : own};
}

Status MakeDirectories(FileSystem& files, const std::string& path) {
    if (path.empty() || files.IsDirectory(path))
        return {};
    if (const auto status = MakeDirectories(files, ParentDirectory(path)); !status)
        return status;
    return files.CreateDirectory(path);
}

Result<std::string> NamedDirectory(const FileSystem& files, const std::string& home) {
    const auto host = AbsoluteHostPath(home);
    const auto path = IsDrivePath(home) ? home : files.PathFromHost(host);
    if (!path)
        return Status{FileFault::BadName, host, 0};
    if (!files.IsDirectory(*path))
        throw std::runtime_error("KORVADEX_HOME names " + home + ", which is not a directory.");
    return AddBackslash(*path);
}

std::string UrlOf(std::string hostPath) {
    std::ranges::replace(hostPath, '\\', '/');
    std::string url = hostPath.starts_with("//") ? "file:" : hostPath.starts_with('/') ? "file://" : "file:///";
    for (const char c : hostPath) {
        constexpr std::string_view digits = "0123456789ABCDEF", marks = "-._~/:";
        const auto byte = static_cast<unsigned char>(c);
        if ((byte < 128 && std::isalnum(byte)) || marks.find(c) != marks.npos)
            url += c;
        else
            url += {'%', digits[byte / 16], digits[byte % 16]};
    }
    return url;
}

} // namespace

std::string PageAt(FileSystem& files, const std::string& appDir, const std::string& page, std::string_view chapter) {
    if (chapter.empty())
        return page;
    const std::string path = appDir + "kxhelp.htm", url = UrlOf(files.HostPath(page)) + "#" + std::string(chapter);
    const auto status = RewriteLines(files, {}, path,
                                     {"<!DOCTYPE html>", "<title>Korvadex</title>",
                                      "<meta http-equiv=\"refresh\" content=\"0; url=" + url + "\">",
                                      "<a href=\"" + url + "\">Korvadex: read me</a>"});
    return status ? path : page;
}

std::string DataDirectory(const FileSystem& files, const std::string& executable) {
    return DirectoriesOf(files, executable).data;
}

Result<std::string> SettingsDirectory(FileSystem& files, const std::string& executable,
                                      const std::string& userDirectory) {
    const auto program = DirectoriesOf(files, executable);
    const bool isInstalled = program.data != program.own;
    if (!isInstalled || files.Info(program.own + std::string(SettingsFileName))) {
        if (!IsDrivePath(program.own))
            return Status{FileFault::BadName, program.own, 0};
        return program.own;
    }
    const auto path = files.PathFromHost(userDirectory).value_or(StandInDirectory);
    if (const auto status = MakeDirectories(files, path); !status)
        return status;
    return AddBackslash(path);
}

std::string AppDirectory(FileSystem& files, const std::string& executable) {
    const auto home = EnvironmentVariable("KORVADEX_HOME");
    const auto directory = home.empty() ? SettingsDirectory(files, executable, UserDataDirectory() + "/korvadex")
                                        : NamedDirectory(files, home);
    if (directory)
        return *directory;
    const auto [fault, path, nativeCode] = directory.status();
    throw std::runtime_error("Korvadex keeps its settings in " + path +
                             (fault == FileFault::BadName
                                  ? ", but none of the drives that it knows leads there"
                                  : ", which could not be made (" + DescribeFault(directory.status()) + ")") +
                             ".  Set KORVADEX_HOME to a directory on one of the drives.");
}

} // namespace korvadex
