#include "platform/launcher.h"

#include "platform/win32.h"
#include "platform/windows_path.h"

#include <shellapi.h>

namespace korvadex {

namespace {

std::wstring WindowsDirectory() {
    std::wstring directory(MAX_PATH, L'\0');
    directory.resize(GetSystemWindowsDirectoryW(directory.data(), MAX_PATH));
    return directory + L"\\";
}

// Runs `program` (a whole path, so that no program of that name in the current directory is taken for it)
// with the command line; the program's parts are told apart by the marks around them.
bool Start(const std::wstring& program, std::wstring commandLine, const wchar_t* workingDirectory, WORD show) {
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESHOWWINDOW;
    startup.wShowWindow = show;
    PROCESS_INFORMATION started{};
    if (!CreateProcessW(program.c_str(), commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr, workingDirectory,
                        &startup, &started))
        return false;
    UniqueHandle(started.hProcess).reset();
    UniqueHandle(started.hThread).reset();
    return true;
}

// A path can hold no mark of its own, but a backslash before the closing one would make it part of the path.
std::wstring Quoted(const std::wstring& path) {
    return L"\"" + path + (path.ends_with(L'\\') ? L"\\\"" : L"\"");
}

WORD ShowCommand(WindowState state) {
    switch (state) {
    case WindowState::Minimised:
        return SW_SHOWMINNOACTIVE;
    case WindowState::Maximised:
        return SW_SHOWMAXIMIZED;
    case WindowState::Normal:
        break;
    }
    return SW_SHOWNORMAL;
}

class WindowsLauncher final : public Launcher {
  public:
    bool OpenInEditor(const std::string& path) override {
        const std::optional<std::wstring> wide = ToWide(path);
        return wide &&
               Start(WindowsDirectory() + L"notepad.exe", L"Notepad.exe " + Quoted(*wide), nullptr, SW_SHOWNORMAL);
    }

    bool OpenInFileManager(const std::string& directory, WindowState state) override {
        const std::optional<std::wstring> wide = ToWide(WithoutBackslash(directory));
        return wide && Start(WindowsDirectory() + L"explorer.exe", L"Explorer.exe " + Quoted(*wide), nullptr,
                             ShowCommand(state));
    }

    bool ShowInFileManager(const std::string& path) override {
        const std::optional<std::wstring> wide = ToWide(path);
        return wide && Start(WindowsDirectory() + L"explorer.exe", L"Explorer.exe /select," + Quoted(*wide), nullptr,
                             SW_SHOWNORMAL);
    }

    int OpenDocument(const std::string& path) override {
        const std::optional<std::wstring> wide = ToWide(path);
        if (!wide)
            return ERROR_FILE_NOT_FOUND;
        return static_cast<int>(
            reinterpret_cast<INT_PTR>(ShellExecuteW(nullptr, L"open", wide->c_str(), nullptr, nullptr, SW_SHOWNORMAL)));
    }

    bool StartProgram(const std::string& hostPath) override {
        const std::optional<std::wstring> wide = ToWide(hostPath);
        const std::optional<std::wstring> directory = ToWide(ParentDirectory(hostPath));
        return wide && directory && Start(*wide, Quoted(*wide), directory->c_str(), SW_SHOWNORMAL);
    }

    std::string RunSimulator(const std::string& path) override {
        const std::optional<std::wstring> wide = ToWide(path);
        const std::optional<std::wstring> directory = ToWide(ParentDirectory(path));
        if (wide && directory && Start(*wide, Quoted(*wide), directory->c_str(), SW_SHOWMAXIMIZED))
            return "";
        return path + " could not be started (code " + std::to_string(GetLastError()) + ").";
    }
};

} // namespace

std::unique_ptr<Launcher> MakeHostLauncher(const FileSystem&) {
    return std::make_unique<WindowsLauncher>();
}

std::string RunningExecutable() {
    std::wstring path(MAX_PATH, L'\0');
    for (;;) {
        const DWORD length = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
        if (length < path.size())
            return FromWide(path.substr(0, length));
        path.resize(path.size() * 2);
    }
}

} // namespace korvadex
