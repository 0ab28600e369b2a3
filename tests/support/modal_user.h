// A person at mouse and keyboard: answers the modal windows that a command opens, one step for each.
#pragma once

#include <QObject>
#include <QString>
#include <QWidget>

#include <deque>
#include <functional>

class QListWidget;

namespace korvadex::test {

// A left click in the middle of the control of that name.
void Click(const QWidget& window, const char* control);
// Replaces what stands in the text box.
void Type(const QWidget& window, const char* control, const QString& text);
// Chooses by keyboard, as a person does: opens nothing, moves until the item is current.
void Pick(const QWidget& window, const char* comboBox, const QString& item);
void PressKey(QWidget& window, Qt::Key key);
// A row of a list: one click, or two.
void ClickRow(QListWidget& list, int row);
void DoubleClickRow(QListWidget& list, int row);

template<class T>
T& Control(const QWidget& window, const char* name) {
    auto* found = window.findChild<T*>(name);
    if (!found)
        qFatal("no control %s", name);
    return *found;
}

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
