// The list window beside the main window: the users of a panel or a sound, one line each.
#pragma once

#include "app/settings.h"

#include <QDialog>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace Ui {
class frmFileList;
}

namespace korvadex {

class frmFileList : public QDialog {
    Q_OBJECT

  public:
    explicit frmFileList(QWidget* parent);
    ~frmFileList() override;

    void ShowLines(const QString& caption, const std::vector<std::string>& lines);

    // Height and width of 0 leave the size as designed.
    void ApplyGeometry(const WindowGeometry& geometry);
    // None when the window was never shown.
    std::optional<WindowGeometry> LastGeometry() const;

  signals:
    // A click, or Enter, on a line.
    void LineChosen(const QString& line);

  protected:
    void hideEvent(QHideEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    std::unique_ptr<Ui::frmFileList> ui;
    std::optional<WindowGeometry> lastGeometry;
};

} // namespace korvadex
