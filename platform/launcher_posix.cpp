#include "platform/launcher.h"

#include <array>
#include <cstdlib>
#include <spawn.h>
#include <string_view>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

extern char** environ;

namespace korvadex {

namespace {

// What ShellExecute answers for success and for "no association"; callers test against 33.
constexpr int Started = 42;
constexpr int NoAssociation = 31;

bool IsOnPath(const std::string& program) {
    const char* path = std::getenv("PATH");
    std::string_view rest = path ? path : "/usr/local/bin:/usr/bin:/bin";
    while (!rest.empty()) {
        const std::size_t end = rest.find(':');
        const std::string candidate = std::string(rest.substr(0, end)) + "/" + program;
        if (access(candidate.c_str(), X_OK) == 0)
            return true;
        rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
    }
    return false;
}

// Starts a program that the desktop's init collects: a shell starts it in the background and ends at once.
bool StartDetached(const std::vector<std::string>& command, const std::string& directory = ".") {
    std::vector<std::string> words = {
        "sh", "-c", "cd -- \"$1\" && shift && { \"$@\" </dev/null >/dev/null 2>&1 & }", "sh", directory};
    words.insert(words.end(), command.begin(), command.end());
    std::vector<char*> arguments;
    for (auto& word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    pid_t process = 0;
    if (posix_spawn(&process, "/bin/sh", nullptr, nullptr, arguments.data(), environ) != 0)
        return false;
    int result = 0;
    return waitpid(process, &result, 0) == process && WIFEXITED(result) && WEXITSTATUS(result) == 0;
}

class PosixLauncher : public Launcher {
  public:
    explicit PosixLauncher(const FileSystem& fileSystem) : files(fileSystem) {}

    bool OpenInEditor(const std::string& path) override { return OpenWithDesktop(path); }
    bool OpenInFileManager(const std::string& directory, WindowState /*state*/) override {
        return OpenWithDesktop(directory);
    }
    int OpenDocument(const std::string& path) override {
        return OpenWithDesktop(path) ? Started : NoAssociation;
    }
    bool StartProgram(const std::string& hostPath) override {
        return access(hostPath.c_str(), X_OK) == 0 && StartDetached({hostPath});
    }
    std::string RunSimulator(const std::string& path) override {
        if (!IsOnPath("wine"))
            return "Flight Simulator is a program for Windows.  Wine, which runs such programs on this "
                   "system, is not installed.  Please install the package wine first.";
        const std::string hostPath = files.HostPath(path);
        const std::string directory = hostPath.substr(0, hostPath.rfind('/') + 1);
        // Wine's own "start" knows the state of the window, and ends when the program runs.
        if (StartDetached({"wine", "start", "/max", "/unix", hostPath}, directory))
            return "";
        return path + " could not be started with Wine.";
    }

  private:
    bool OpenWithDesktop(const std::string& path) const {
        const std::string hostPath = files.HostPath(path);
        return access(hostPath.c_str(), F_OK) == 0 && IsOnPath("xdg-open") &&
               StartDetached({"xdg-open", hostPath});
    }

    const FileSystem& files;
};

} // namespace

std::unique_ptr<Launcher> MakeHostLauncher(const FileSystem& files) {
    return std::make_unique<PosixLauncher>(files);
}

std::string RunningExecutable() {
    std::array<char, 4096> path{};
    const ssize_t length = readlink("/proc/self/exe", path.data(), path.size());
    return length > 0 ? std::string(path.data(), static_cast<std::size_t>(length)) : std::string();
}

} // namespace korvadex
