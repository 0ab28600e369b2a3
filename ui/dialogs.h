// What a command asks the user, asked with modal windows.
#pragma once

#include "app/program_dialogs.h"
#include "package/dialogs.h"
#include "platform/file_system.h"

#include <QString>

#include <memory>

class QObject;
class QWidget;

namespace korvadex {

class Dialogs : public UserDialogs, public ProgramDialogs {
  public:
    explicit Dialogs(FileSystem& fileSystem);
    ~Dialogs() override;

    // The window that the dialogs belong to while it is visible.
    void SetMainWindow(QWidget* window) { mainWindow = window; }

    CheckedAnswer ShowMessage(const std::string& text, MessageButtons buttons, MessageIcon icon,
                              const MessageOptions& options) override;
    std::optional<std::string> AskText(const std::string& prompt, bool isSecret) override;
    std::optional<std::string> AskName(const std::string& prompt, const std::string& present) override;
    std::optional<std::string> ChooseZipFile(const std::string& title, const std::string& directory) override;
    std::vector<std::string> ChooseZipFiles(const std::string& title, const std::string& directory) override;
    std::optional<int> ChooseConfiguration(const std::vector<ConfigurationRow>& rows) override;
    void ShowInstallStatus(const std::string& text) override;
    void ShowImportStatus(const std::string& text) override;
    void ShowRename(const RenameForm& form) override;
    void ShowUnusedGauges(const UnusedGaugesForm& form) override;
    void ShowMSFSImport(const ImportForm& form) override;
    void ShowInfo(const InfoForm& form) override;
    std::optional<LocationsEntry> ShowLocations(Settings& settings, const LocationsForm& form) override;
    void ShowLocationProfiles(ProfileEditor& profiles) override;
    void ShowHistory(HistoryEditor& history) override;
    std::optional<std::string> ChooseCategory(const std::string& prompt, const std::vector<std::string>& categories,
                                              const std::string& preset) override;
    std::string ChooseArchiveDirectory(const std::string& directory) override;
    std::optional<int> ChooseAircraft(const std::vector<AircraftPart>& parts) override;
    OfferedPictures ChoosePictures(const std::string& directory) override;
    OfferedPictures ClipboardPictures() override;

  private:
    QWidget* Parent() const;

    FileSystem& files;
    QWidget* mainWindow = nullptr;
    QString archiveKind; // that the last choice of archives has shown
    std::unique_ptr<QObject> fitToScreen;
};

} // namespace korvadex
