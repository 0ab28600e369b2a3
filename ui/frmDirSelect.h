// The directory browser: the drives that can be named and the tree of directories on one of them.
#pragma once

#include "platform/file_system.h"

#include <QDialog>

#include <memory>
#include <string>

class QTreeWidgetItem;

namespace Ui {
class frmDirSelect;
}

namespace korvadex {

class frmDirSelect : public QDialog {
    Q_OBJECT

  public:
    // Opens on startDir where that exists.
    frmDirSelect(FileSystem& files, std::string startDir, QWidget* parent);
    ~frmDirSelect() override;

    // The directory chosen, without a trailing backslash except at a drive's root; startDir as it was given when the
    // browser was cancelled.
    const std::string& BrowseResult() const { return result; }
    bool BrowseCancelled() const { return isCancelled; }

  private:
    void ShowDrive(const std::string& root);
    void GoTo(const std::string& directory);
    void ReadSubdirectories(QTreeWidgetItem* item);
    void MakeDirectory();
    void TakeResult();

    FileSystem& files;
    std::string result;
    bool isCancelled = true;
    std::unique_ptr<Ui::frmDirSelect> ui;
};

} // namespace korvadex
