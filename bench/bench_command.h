// What the benchmarks run commands with: a temporary drive, a person who agrees to everything, a window that shows
// nothing.
#pragma once

#include "journal/history.h"
#include "package/command_context.h"
#include "platform/drive_map_posix.h"
#include "sim/unused_gauges.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <stdexcept>

namespace korvadex::bench {

class AgreeableUser : public UserDialogs {
  public:
    CheckedAnswer ShowMessage(const std::string& text, MessageButtons buttons, MessageIcon icon,
                              const MessageOptions&) override {
        if (icon == MessageIcon::Exclamation || icon == MessageIcon::Critical)
            std::fprintf(stderr, "%s\n", text.c_str());
        isWarned = isWarned || icon == MessageIcon::Exclamation || icon == MessageIcon::Critical;
        return {buttons == MessageButtons::YesNo ? Answer::Yes : Answer::Ok, false};
    }
    std::optional<std::string> AskText(const std::string&, bool) override { return std::nullopt; }
    std::optional<std::string> ChooseZipFile(const std::string&, const std::string&) override { return std::nullopt; }
    std::optional<int> ChooseConfiguration(const std::vector<ConfigurationRow>&) override { return 0; }
    void ShowInstallStatus(const std::string&) override {}
    void ShowImportStatus(const std::string&) override {}
    void ShowRename(const RenameForm&) override {}
    void ShowMSFSImport(const ImportForm&) override {}
    void ShowInfo(const InfoForm&) override {}
    void ShowUnusedGauges(const UnusedGaugesForm& form) override {
        unusedGauges = form.search([](int, int) {}).size();
    }

    bool isWarned = false;
    std::size_t unusedGauges = 0;
};

class UnseenDisplay : public CommandDisplay {
  public:
    void ShowProgress(int, int) override {}
    void SetProgress(int) override {}
    void HideProgress() override {}
    void ShowStatus(const std::string&) override {}
    void ShowFileList(const std::string&, const std::vector<ListLine>&) override {}
};

class NoLauncher : public Launcher {
  public:
    bool OpenInEditor(const std::string&) override { return false; }
    bool OpenInFileManager(const std::string&, WindowState) override { return false; }
    int OpenDocument(const std::string&) override { return 0; }
    bool StartProgram(const std::string&) override { return false; }
    std::string RunSimulator(const std::string&) override { return ""; }
};

// A file with its directories.
inline void Put(const std::filesystem::path& path, const std::string& bytes) {
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << bytes;
}

// A temporary directory that serves as the drive C: of the commands; removed at the end.
class TemporaryDrive {
  public:
    TemporaryDrive() {
        std::string pattern = (std::filesystem::temp_directory_path() / "korvadex-bench-XXXXXX").string();
        if (mkdtemp(pattern.data()) == nullptr)
            throw std::runtime_error("no temporary directory could be made");
        root = pattern;
        for (const char* directory :
             {"App", "Staging", "Hangar/Bench", "FS/aircraft", "FS/gauges", "FS/effects", "FS/modules", "FS/sound"})
            std::filesystem::create_directories(root / directory);
    }
    ~TemporaryDrive() { std::filesystem::remove_all(root); }
    TemporaryDrive(const TemporaryDrive&) = delete;
    TemporaryDrive& operator=(const TemporaryDrive&) = delete;

    std::filesystem::path At(const std::string& relative) const { return root / relative; }
    // A settings file for a whole program that is started on the drive.
    void PutSettings() const {
        Put(At("App/kx.ini"), "ALTLOCATION0=Bench\r\nALTSTAGINGDIR0=C:\\Staging\\\r\nALTHANGARDIR0=C:\\Hangar\\\r\n"
                              "ALTMSFSDIR0=C:\\FS\\\r\nALTFIRSTPACKAGE0=\r\nLOCATIONLAST=0\r\nLOCATIONLASTZIP=\r\n");
    }
    std::unique_ptr<FileSystem> Files() const {
        DriveMap map;
        map.directories['c'] = root.string();
        return MakeDriveFileSystem(map);
    }

  private:
    std::filesystem::path root;
};

struct Command {
    explicit Command(const TemporaryDrive& drive) : files(drive.Files()) {}

    // As the program does it: written down first, and what goes is kept.
    template<class Work>
    bool Journaled(const Work& work) {
        history.SetLocations({locations.HangarDir, locations.StagingDir, locations.MsfsDir});
        history.Open("C:\\App\\journal\\");
        history.Begin({.name = "Bench"});
        const bool isDone = work(*this);
        return bool(history.End()) && isDone;
    }
    // What was kept by earlier turns.
    static void ForgetJournal(const TemporaryDrive& drive) {
        std::filesystem::remove_all(drive.At("App/journal"));
        std::filesystem::remove_all(drive.At("Hangar/~kx~kept"));
    }

    std::unique_ptr<FileSystem> files;
    History history{*files, {}};
    Locations locations{"C:\\Staging\\", "C:\\Hangar\\", "C:\\FS\\"};
    WalkLimits limits;
    AgreeableUser user;
    UnseenDisplay display;
    NoLauncher launcher;
    CommandContext context{history.Files(), launcher, locations, limits, user, display};
};

} // namespace korvadex::bench
