// A message or a question: plain text, one or two buttons, at most one check box.
#pragma once

#include "package/dialogs.h"

#include <QMessageBox>

namespace korvadex {

class MessageBox : public QMessageBox {
    Q_OBJECT

  public:
    MessageBox(const QString& text, MessageButtons buttons, MessageIcon icon, const MessageOptions& options,
               QWidget* parent);

    // In the title line; the box is wide enough for it.
    void SetSubject(const QString& subject);
    CheckedAnswer Ask();

  protected:
    // A Yes/No question has no close box and takes no Escape.
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    void OrderButtons();
    void KeepWithinScreen();

    bool mustBeAnswered;
};

} // namespace korvadex
