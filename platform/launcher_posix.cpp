#include "platform/launcher.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdlib>
#include <fcntl.h>
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
    std::vector<std::string> words = {"sh", "-c", "cd -- \"$1\" && shift && { \"$@\" </dev/null >/dev/null 2>&1 & }",
                                      "sh", directory};
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

// Starts a program, found on the path, without input and output and away from our terminal. 0 when it cannot be.
pid_t Start(const char* program, const std::string& argument) {
    std::string words[] = {program, argument};
    char* const arguments[] = {words[0].data(), words[1].data(), nullptr};
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        posix_spawn_file_actions_addopen(&actions, stream, "/dev/null", O_RDWR, 0);
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSID);
    pid_t process = 0;
    const int error = posix_spawnp(&process, program, &actions, &attributes, arguments, environ);
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&actions);
    return error == 0 ? process : 0;
}

// One that ends with an error later than this has shown what it was to show.
constexpr std::chrono::seconds Patience{10};

class PosixLauncher : public Launcher {
  public:
    explicit PosixLauncher(const FileSystem& fileSystem) : files(fileSystem) {}

    bool OpenInEditor(const std::string& path) override { return OpenWithDesktop(OpenedIn::Editor, path); }
    bool OpenInFileManager(const std::string& directory, WindowState /*state*/) override {
        return OpenWithDesktop(OpenedIn::FileManager, directory);
    }
    int OpenDocument(const std::string& path) override {
        return OpenWithDesktop(OpenedIn::ItsProgram, path) ? Started : NoAssociation;
    }
    std::vector<FailedOpening> TakeFailures() override {
        std::vector<FailedOpening> failures;
        std::erase_if(openings, [&](const Opening& opening) {
            int result = 0;
            const pid_t ended = waitpid(opening.process, &result, WNOHANG);
            if (ended == opening.process && WIFEXITED(result) && WEXITSTATUS(result) != 0 && opening.IsRecent())
                failures.push_back(opening.opened);
            return ended != 0;
        });
        return failures;
    }
    bool IsWaiting() const override {
        return std::any_of(openings.begin(), openings.end(), [](const Opening& opening) { return opening.IsRecent(); });
    }
    bool StartProgram(const std::string& hostPath) override {
        return access(hostPath.c_str(), X_OK) == 0 && StartDetached({hostPath});
    }
    std::string RunSimulator(const std::string& path) override {
        if (!IsOnPath("wine"))
            return "Flight Simulator is a program for Windows.  "
                   "Wine, which runs such programs on this system, is not installed.  "
                   "Please install the package wine first.";
        const std::string hostPath = files.HostPath(path);
        const std::string directory = hostPath.substr(0, hostPath.rfind('/') + 1);
        // Wine's own "start" knows the state of the window, and ends when the program runs.
        if (StartDetached({"wine", "start", "/max", "/unix", hostPath}, directory))
            return "";
        return path + " could not be started with Wine.";
    }

  private:
    struct Opening {
        FailedOpening opened; // should it fail
        pid_t process;
        std::chrono::steady_clock::time_point start = std::chrono::steady_clock::now();

        bool IsRecent() const { return std::chrono::steady_clock::now() - start < Patience; }
    };

    bool OpenWithDesktop(OpenedIn what, const std::string& path) {
        const std::string hostPath = files.HostPath(path);
        const pid_t process = access(hostPath.c_str(), F_OK) == 0 ? Start("xdg-open", hostPath) : 0;
        if (process != 0)
            openings.push_back({{what, path}, process});
        return process != 0;
    }

    const FileSystem& files;
    std::vector<Opening> openings; // those that have not ended yet
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
