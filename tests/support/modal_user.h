// A person at mouse and keyboard: answers the modal windows that a command opens, one step for each.
#pragma once

#include "tests/support/hands.h"

#include <QObject>

#include <deque>
#include <functional>

namespace korvadex::test {

// Runs a queue of steps while the code under test sits in a modal window. A window that no step expects fails the
// test and is dismissed; so does a step whose window never came.
class ModalUser : public QObject {
  public:
    ModalUser();
    ~ModalUser() override;

    // The next modal window bears this object name; act answers it.
    ModalUser& Expect(const QString& window, std::function<void(QWidget&)> act);
    // A message box whose text is (or, ending in "*", begins with) this; then the button with that caption.
    ModalUser& ExpectMessage(const QString& text, const QString& button);

    // The steps are to be done by now.
    void Finish();

  private:
    struct Step {
        QString window;
        std::function<void(QWidget&)> act;
        QString text; // for the report
    };
    void LookAgain();
    void Look();

    std::deque<Step> steps;
    QWidget* acting = nullptr; // the window whose step is being done
};

} // namespace korvadex::test
