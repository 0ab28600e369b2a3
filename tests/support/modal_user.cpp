#include "tests/support/modal_user.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QFileDialog>
#include <QLabel>
#include <QMessageBox>
#include <QTimer>

#include <gtest/gtest.h>

#include <map>
#include <utility>

namespace korvadex::test {

namespace {

constexpr int Interval = 5; // ms

QString Describe(const QWidget& window) {
    const auto* message = qobject_cast<const QMessageBox*>(&window);
    return window.objectName() + ": " + (message ? message->text() : window.windowTitle());
}

#ifdef Q_OS_WIN
constexpr bool AreFontsKnown = false; // Wine has others than Windows
#else
constexpr bool AreFontsKnown = true;
#endif

// Each control says what it is, no letter stands for two of them, and a small screen has room for all.
void CheckControls(const QWidget& window) {
    if (AreFontsKnown && !qobject_cast<const QFileDialog*>(&window) && !qobject_cast<const QMessageBox*>(&window)) {
        EXPECT_LE(window.minimumSizeHint().width(), 660) << window.objectName().toStdString(); // 1366 x 768 at 200 %
        EXPECT_LE(window.minimumSizeHint().height(), 330) << window.objectName().toStdString();
    }
    std::map<QKeySequence, QString> letters;
    for (const QWidget* control : window.findChildren<QWidget*>()) {
        if (!control->isVisible() || !control->isEnabled() || control->objectName().startsWith("qt_"))
            continue;
        if ((control->focusPolicy() & Qt::TabFocus) && !control->focusProxy()) {
            auto* speaker = QAccessible::queryAccessibleInterface(const_cast<QWidget*>(control));
            EXPECT_FALSE(speaker->text(QAccessible::Name).isEmpty())
                << window.objectName().toStdString() << ": " << control->objectName().toStdString() << " "
                << control->metaObject()->className();
        }
        const auto* label = qobject_cast<const QLabel*>(control);
        const auto* button = qobject_cast<const QAbstractButton*>(control);
        const QKeySequence letter = label && label->buddy() ? QKeySequence::mnemonic(label->text())
                                    : button                ? button->shortcut()
                                                            : QKeySequence();
        if (!letter.isEmpty() && !letters.emplace(letter, control->objectName()).second)
            ADD_FAILURE() << window.objectName().toStdString() << ": " << letter.toString().toStdString()
                          << " stands for " << letters[letter].toStdString() << " and "
                          << control->objectName().toStdString();
    }
}

void Dismiss(QWidget& window) {
    if (auto* dialog = qobject_cast<QDialog*>(&window))
        dialog->done(0);
}

} // namespace

ModalUser::ModalUser() {
    LookAgain();
}

ModalUser::~ModalUser() {
    Finish();
}

void ModalUser::Finish() {
    for (const auto& step : steps)
        ADD_FAILURE() << "never shown: " << step.window.toStdString() << " " << step.text.toStdString();
    steps.clear();
}

ModalUser& ModalUser::Expect(const QString& window, std::function<void(QWidget&)> act) {
    steps.push_back({window, std::move(act), {}});
    return *this;
}

ModalUser& ModalUser::ExpectMessage(const QString& text, const QString& button) {
    Expect("messageBox", [text, button](QWidget& window) {
        auto& box = dynamic_cast<QMessageBox&>(window);
        if (text.endsWith('*')) {
            EXPECT_TRUE(box.text().startsWith(text.chopped(1))) << box.text().toStdString();
        } else {
            EXPECT_EQ(box.text().toStdString(), text.toStdString());
        }
        ClickButton(box, button);
    });
    steps.back().text = text;
    return *this;
}

void ModalUser::LookAgain() {
    // A new timer each time: one whose handler sits in a nested event loop would not fire again.
    QTimer::singleShot(Interval, this, &ModalUser::Look);
}

void ModalUser::Look() {
    LookAgain();
    QWidget* window = QApplication::activeModalWidget();
    if (!window || !window->isVisible() || window == acting) // its step may wait for something
        return;
    if (steps.empty() || steps.front().window != window->objectName()) {
        ADD_FAILURE() << "unexpected: " << Describe(*window).toStdString();
        Dismiss(*window);
        return;
    }
    const Step step = std::move(steps.front());
    steps.pop_front();
    if (!qobject_cast<QFileDialog*>(window))
        CheckControls(*window);
    QWidget* former = std::exchange(acting, window);
    try {
        step.act(*window);
    } catch (const std::exception& trouble) { // not through Qt's event loop
        ADD_FAILURE() << trouble.what();
        Dismiss(*window);
    }
    acting = former;
}

} // namespace korvadex::test
