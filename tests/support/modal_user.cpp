#include "tests/support/modal_user.h"

#include <QApplication>
#include <QDialog>
#include <QMessageBox>
#include <QTimer>

#include <gtest/gtest.h>

#include <utility>

namespace korvadex::test {

namespace {

constexpr int Interval = 5; // ms

QString Describe(const QWidget& window) {
    const auto* message = qobject_cast<const QMessageBox*>(&window);
    return window.objectName() + ": " + (message ? message->text() : window.windowTitle());
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
