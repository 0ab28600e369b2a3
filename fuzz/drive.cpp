#include "fuzz/drive.h"

#include "fuzz/check.h"
#include "package/reduce_staging.h"
#include "platform/descriptor_posix.h"
#include "platform/windows_path.h"
#include "tests/support/host_drive.h"

#include <algorithm>
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace korvadex::fuzz {

namespace {

class NoLauncher : public Launcher {
  public:
    bool OpenInEditor(const std::string& /*path*/) override { return true; }
    bool OpenInFileManager(const std::string& /*directory*/, WindowState /*state*/) override { return true; }
    int OpenDocument(const std::string& /*path*/) override { return 0; }
    bool StartProgram(const std::string& /*hostPath*/) override { return true; }
    std::string RunSimulator(const std::string& /*path*/) override { return ""; }
};

class NoDisplay : public CommandDisplay {
  public:
    void ShowProgress(int /*minimum*/, int /*maximum*/) override {}
    void SetProgress(int /*value*/) override {}
    void HideProgress() override {}
    void ShowStatus(const std::string& /*text*/) override {}
    void ShowFileList(const std::string& /*caption*/, const std::vector<ListLine>& /*lines*/) override {}
};

} // namespace

CheckedAnswer WillingUser::ShowMessage(const std::string& /*text*/, MessageButtons buttons, MessageIcon /*icon*/,
                                       const MessageOptions& /*options*/) {
    if (buttons == MessageButtons::YesNo)
        return {patience-- > 0 ? Answer::Yes : Answer::No, false};
    return {Answer::Ok, false};
}

std::optional<int> WillingUser::ChooseConfiguration(const std::vector<ConfigurationRow>& rows) {
    return configuration < 0 ? std::nullopt : std::optional(configuration % static_cast<int>(rows.size()));
}

Entries Outside(std::string_view directory, Entries entries) {
    std::erase_if(entries, [&](const auto& entry) { return entry.first.starts_with(directory); });
    return entries;
}

bool IsClean(const Entries& entries) {
    return std::ranges::none_of(entries, [](const auto& entry) {
        return IsOwnName(WithoutBackslash(LastPathComponent(entry.first))) || entry.first.ends_with('>');
    });
}

Drive::Drive()
    : launcher(std::make_unique<NoLauncher>()),
      display(std::make_unique<NoDisplay>()), locations{"C:\\Staging\\", "C:\\Hangar\\", "C:\\FS\\"} {
    test::HostDrive drive = test::MakeHostDrive();
    hostRoot = drive.hostRoot.string() + "/";
    files = std::move(drive.files);
    context.reset(new CommandContext{*files, *launcher, locations, limits, user, *display});
    for (const char* directory : {"Staging", "Hangar", "Hangar/Jets", "FS", "FS/aircraft"})
        mkdir((hostRoot + directory).c_str(), 0700);
    Put("FS\\gauges\\mine.gau", "mine");
}

Drive::~Drive() {
    test::RemoveHostDrive(hostRoot);
}

std::string Drive::HostPath(std::string_view relative) const {
    std::string path = hostRoot + std::string(relative);
    std::ranges::replace(path, '\\', '/');
    return path;
}

void Drive::Put(std::string_view relative, std::string_view bytes) {
    const std::string path = HostPath(relative);
    for (std::size_t at = path.find('/', hostRoot.size()); at != std::string::npos; at = path.find('/', at + 1))
        mkdir(path.substr(0, at).c_str(), 0700);
    const Descriptor file(open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600));
    Require(write(file.get(), bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size()), "the drive has room");
}

std::string Drive::Get(std::string_view relative) const {
    const Descriptor file(open(HostPath(relative).c_str(), O_RDONLY | O_NOFOLLOW));
    struct stat info {};
    Require(file && fstat(file.get(), &info) == 0, "a file is there");
    std::string bytes(static_cast<std::size_t>(info.st_size), '\0');
    Require(read(file.get(), bytes.data(), bytes.size()) == info.st_size, "a file can be read");
    return bytes;
}

Entries Drive::Tree() const {
    Entries entries;
    AddTree("", entries);
    return entries;
}

void Drive::AddTree(const std::string& directory, Entries& entries) const {
    DIR* open = opendir(HostPath(directory).c_str());
    Require(open != nullptr, "a directory can be read");
    while (const dirent* entry = readdir(open)) {
        const std::string name = directory + entry->d_name;
        if (entry->d_type == DT_REG)
            entries[name] = Get(name);
        else if (entry->d_type != DT_DIR)
            entries[name + ">"];
        else if (entry->d_name != std::string_view(".") && entry->d_name != std::string_view(".."))
            AddTree(entries.try_emplace(name + "\\").first->first, entries);
    }
    closedir(open);
}

} // namespace korvadex::fuzz
