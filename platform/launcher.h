// Starting other programs, without waiting for them.
#pragma once

#include "platform/file_system.h"
#include "platform/windows_path.h"

#include <memory>
#include <string>
#include <vector>

namespace korvadex {

enum class OpenedIn { Editor, FileManager, ItsProgram };
struct FailedOpening {
    OpenedIn what;
    std::string path;
};

enum class WindowState { Normal, Minimised, Maximised };

class Launcher {
  public:
    virtual ~Launcher() = default;

    // The system's text editor ("Notepad.exe " and the path) with a file.
    virtual bool OpenInEditor(const std::string& path) = 0;
    // The system's file manager ("Explorer.exe " and the path) on a directory.
    virtual bool OpenInFileManager(const std::string& directory, WindowState state) = 0;
    // The same on the directory of a file, with the file selected where the host can do that.
    virtual bool ShowInFileManager(const std::string& path) {
        return OpenInFileManager(ParentDirectory(path), WindowState::Normal);
    }
    // The program that the system associates with the file, by the shell's verb "Open". See IsStarted.
    virtual int OpenDocument(const std::string& path) = 0;
    // What of these three came to nothing after all: where a program of the desktop looks for the right one, it may
    // end with an error some time after it was started. Each is given once.
    virtual std::vector<FailedOpening> TakeFailures() { return {}; }
    // Whether there may be more to take, for some seconds after the last one was started.
    virtual bool IsWaiting() const { return false; }
    // A program of this system, normal window, focused.
    virtual bool StartProgram(const std::string& hostPath) = 0;
    // A program for Windows, in a maximised window with the focus, its own directory as the current one. ""
    // when it was started, otherwise the reason as whole sentences.
    virtual std::string RunSimulator(const std::string& path) = 0;
};

// What OpenDocument answered: below 33 nothing was started.
inline bool IsStarted(int code) {
    return code >= 33;
}

std::unique_ptr<Launcher> MakeHostLauncher(const FileSystem& files);

// The running executable, as the host names it.
std::string RunningExecutable();

} // namespace korvadex
