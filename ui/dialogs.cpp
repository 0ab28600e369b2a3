#include "ui/dialogs.h"

#include "ui/archive_files.h"
#include "ui/frmGaugeStatus.h"
#include "ui/frmHistory.h"
#include "ui/frmInfo.h"
#include "ui/frmLocationProfiles.h"
#include "ui/frmLocations.h"
#include "ui/frmMSFSImport.h"
#include "ui/frmMultipleCfg.h"
#include "ui/frmRename.h"
#include "ui/frmSeveralAircraft.h"
#include "ui/frmUnusedGauges.h"
#include "ui/input_box.h"
#include "ui/message_box.h"
#include "ui/picture_files.h"
#include "ui/qt_text.h"
#include "ui/window_geometry.h"

#include <QApplication>
#include <QClipboard>
#include <QFileDialog>
#include <QMimeData>
#include <QStandardPaths>

#include <exception>

namespace korvadex {

namespace {

// An exception must not leave through Qt's event loop: what the forms call while their dialog is open keeps it here,
// closes the dialog, and it goes on from there.
class KeptException {
  public:
    template<class Call, class Result>
    Result Guard(const Call& call, Result otherwise) {
        try {
            return call();
        } catch (...) {
            kept = std::current_exception();
            return otherwise;
        }
    }
    bool IsThere() const { return kept != nullptr; }
    void Rethrow() const {
        if (kept)
            std::rethrow_exception(kept);
    }

  private:
    std::exception_ptr kept;
};

// Where a file dialog opens: where the user was the last time, while that is there.
QString StartDirectory(const FileSystem& files, const std::string& last, QStandardPaths::StandardLocation first) {
    for (const QString& directory :
         {last.empty() ? QString() : ToQt(files.HostPath(last)), QStandardPaths::writableLocation(first)})
        if (!directory.isEmpty() && QDir(directory).exists())
            return directory;
    return QDir::homePath();
}

// What is chosen in the dialog; nothing when it was cancelled.
std::vector<std::string> SourcesOf(const FileSystem& files, QFileDialog& dialog) {
    std::vector<std::string> chosen;
    if (dialog.exec() == QDialog::Accepted)
        for (const QString& path : dialog.selectedFiles())
            chosen.push_back(files.SourceFromHost(FromQt(path)));
    return chosen;
}

std::optional<std::string> TextFrom(InputBox& box) {
    if (box.exec() != QDialog::Accepted)
        return std::nullopt;
    return FromQt(box.Text());
}

} // namespace

Dialogs::Dialogs(FileSystem& fileSystem) : files(fileSystem), fitToScreen(FitDialogsToScreen()) {}

Dialogs::~Dialogs() = default;

QWidget* Dialogs::Parent() const {
    if (QWidget* modal = QApplication::activeModalWidget())
        return modal;
    if (!mainWindow || !mainWindow->isVisible())
        return nullptr;
    // A message about what was chosen in the gallery, which is a window of its own, belongs there.
    QWidget* active = QApplication::activeWindow();
    return active && active->isVisible() && !active->parentWidget() ? active : mainWindow;
}

CheckedAnswer Dialogs::ShowMessage(const std::string& text, MessageButtons buttons, MessageIcon icon,
                                   const MessageOptions& options) {
    MessageBox box(LinesToQt(text), buttons, icon, options, Parent());
    if (!subject.empty())
        box.SetSubject(ToQt(subject));
    return box.Ask();
}

std::optional<std::string> Dialogs::AskText(const std::string& prompt, bool isSecret) {
    InputBox box(LinesToQt(prompt), isSecret, Parent());
    return TextFrom(box);
}

std::optional<std::string> Dialogs::AskName(const std::string& prompt, const std::string& present) {
    InputBox box(LinesToQt(prompt), false, Parent());
    box.Propose(ToQt(present));
    return TextFrom(box);
}

std::optional<std::string> Dialogs::ChooseZipFile(const std::string& title, const std::string& directory) {
    const auto chosen = ChooseZipFiles(title, directory);
    return chosen.empty() ? std::nullopt : std::optional(chosen.front());
}

std::vector<std::string> Dialogs::ChooseZipFiles(const std::string& title, const std::string& directory) {
    QFileDialog dialog(Parent(), ToQt(title), StartDirectory(files, directory, QStandardPaths::DownloadLocation));
    OfferArchives(dialog, archiveKind);
    dialog.setObjectName("zipFileDialog");
    dialog.setFileMode(QFileDialog::ExistingFiles);
    auto chosen = SourcesOf(files, dialog);
    archiveKind = dialog.selectedNameFilter();
    return chosen;
}

std::optional<int> Dialogs::ChooseConfiguration(const std::vector<ConfigurationRow>& rows) {
    frmMultipleCfg dialog(rows, files, *this, Parent());
    if (dialog.exec() != QDialog::Accepted)
        return std::nullopt;
    return dialog.Choice();
}

void Dialogs::ShowInstallStatus(const std::string& text) {
    frmGaugeStatus("frmInstallStatus", "txtInstallStatus", text, Parent()).exec();
}

void Dialogs::ShowImportStatus(const std::string& text) {
    frmGaugeStatus("frmImportStatus", "txtImportStatus", text, Parent()).exec();
}

void Dialogs::ShowRename(const RenameForm& form) {
    KeptException kept;
    RenameForm guarded = form;
    guarded.accept = [&](const RenameEntry& entered) { return kept.Guard([&] { return form.accept(entered); }, true); };
    frmRename(guarded, Parent()).exec();
    kept.Rethrow();
}

void Dialogs::ShowUnusedGauges(const UnusedGaugesForm& form) {
    KeptException kept;
    UnusedGaugesForm guarded;
    frmUnusedGauges* dialog = nullptr;
    const auto guard = [&](const auto& call) {
        auto gauges = kept.Guard(call, std::vector<UnusedGauge>());
        if (kept.IsThere())
            dialog->done(QDialog::Rejected);
        return gauges;
    };
    guarded.search = [&](const auto& progress) { return guard([&] { return form.search(progress); }); };
    guarded.remove = [&](const auto& rows) { return guard([&] { return form.remove(rows); }); };
    frmUnusedGauges window(guarded, Parent());
    dialog = &window;
    window.exec();
    kept.Rethrow();
}

void Dialogs::ShowMSFSImport(const ImportForm& form) {
    KeptException kept;
    ImportForm guarded = form;
    guarded.accept = [&](int row) { return kept.Guard([&] { return form.accept(row); }, true); };
    frmMSFSImport(guarded, Parent()).exec();
    kept.Rethrow();
}

void Dialogs::ShowInfo(const InfoForm& form) {
    KeptException kept;
    InfoForm guarded = form;
    guarded.gather = [&] { return kept.Guard([&] { return form.gather(); }, std::optional<InfoOffers>(InfoOffers())); };
    guarded.accept = [&](const AircraftInfo& entered) {
        return kept.Guard([&] { return form.accept(entered); }, true);
    };
    guarded.mayClose = [&](const AircraftInfo& entered) {
        return kept.Guard([&] { return form.mayClose(entered); }, true);
    };
    frmInfo(guarded, Parent()).exec();
    kept.Rethrow();
}

std::optional<LocationsEntry> Dialogs::ShowLocations(Settings& settings, const LocationsForm& form) {
    frmLocations dialog(files, settings, form, Parent());
    if (dialog.exec() != QDialog::Accepted)
        return std::nullopt;
    return dialog.Entry();
}

void Dialogs::ShowLocationProfiles(ProfileEditor& profiles) {
    frmLocationProfiles(files, profiles, Parent()).exec();
}

void Dialogs::ShowHistory(HistoryEditor& history) {
    KeptException kept;
    const auto guard = [&](const std::function<void()>& deed) {
        return kept.Guard([&] { return deed(), true; }, false);
    };
    frmHistory(history, guard, Parent()).exec();
    kept.Rethrow();
}

std::optional<std::string> Dialogs::ChooseCategory(const std::string& prompt,
                                                   const std::vector<std::string>& categories,
                                                   const std::string& preset) {
    InputBox box(LinesToQt(prompt), false, Parent());
    QStringList offered;
    for (const std::string& category : categories)
        offered.append(ToQt(category));
    box.Offer(offered);
    box.Propose(ToQt(preset));
    return TextFrom(box);
}

std::string Dialogs::ChooseArchiveDirectory(const std::string& directory) {
    QFileDialog dialog(Parent(), "Process a directory of archives",
                       StartDirectory(files, directory, QStandardPaths::DownloadLocation));
    dialog.setObjectName("archiveDirectoryDialog");
    dialog.setFileMode(QFileDialog::Directory);
    const auto chosen = SourcesOf(files, dialog);
    return chosen.empty() ? "" : chosen.front();
}

std::optional<int> Dialogs::ChooseAircraft(const std::vector<AircraftPart>& parts) {
    frmSeveralAircraft dialog(parts, *this, Parent());
    if (dialog.exec() != QDialog::Accepted)
        return std::nullopt;
    return dialog.Choice();
}

OfferedPictures Dialogs::ChoosePictures(const std::string& directory) {
    QFileDialog dialog(Parent(), "Import image files",
                       StartDirectory(files, directory, QStandardPaths::PicturesLocation), PictureFileFilter());
    dialog.setObjectName("pictureFileDialog");
    dialog.setFileMode(QFileDialog::ExistingFiles);
    if (dialog.exec() != QDialog::Accepted)
        return {};
    return OfferFiles(files, dialog.selectedFiles());
}

OfferedPictures Dialogs::ClipboardPictures() {
    const QMimeData* content = QApplication::clipboard()->mimeData(); // null where there is no clipboard
    return content ? OfferContent(files, *content) : OfferedPictures();
}

} // namespace korvadex
