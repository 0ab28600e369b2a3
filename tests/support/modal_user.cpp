#include "tests/support/modal_user.h"

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QTimer>
#include <QtTest>

#include <gtest/gtest.h>

#include <utility>

namespace korvadex::test {

namespace {

constexpr int Interval = 5; // ms

QString Describe(const QWidget& window) {
    const auto* message = qobject_cast<const QMessageBox*>(&window);
    return window.objectName() + ": " + (message ? message->text() : window.windowTitle());
}

void ClickButton(QMessageBox& box, const QString& caption) {
    for (auto* button : box.buttons())
        if (button->text().remove('&') == caption)
            return QTest::mouseClick(button, Qt::LeftButton);
    ADD_FAILURE() << "no button " << caption.toStdString() << " in " << Describe(box).toStdString();
    box.done(0);
}

} // namespace

void Click(const QWidget& window, const char* control) {
    auto& button = Control<QWidget>(window, control);
    EXPECT_TRUE(button.isVisible() && button.isEnabled()) << control;
    QTest::mouseClick(&button, Qt::LeftButton);
}

void Type(const QWidget& window, const char* control, const QString& text) {
    auto& box = Control<QLineEdit>(window, control);
    EXPECT_TRUE(box.isVisible() && box.isEnabled() && !box.isReadOnly()) << control;
    box.setFocus();
    QTest::keyClick(&box, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(&box, Qt::Key_Delete);
    QTest::keyClicks(&box, text);
}

void Pick(const QWidget& window, const char* comboBox, const QString& item) {
    auto& box = Control<QComboBox>(window, comboBox);
    EXPECT_TRUE(box.isVisible() && box.isEnabled()) << comboBox;
    const int wanted = box.findText(item);
    ASSERT_GE(wanted, 0) << item.toStdString();
    while (box.currentIndex() != wanted)
        QTest::keyClick(&box, box.currentIndex() < wanted ? Qt::Key_Down : Qt::Key_Up);
}

void PressKey(QWidget& window, Qt::Key key) {
    QWidget* focus = window.focusWidget();
    QTest::keyClick(focus ? focus : &window, key);
}

void ClickRow(QListWidget& list, int row) {
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, list.visualItemRect(list.item(row)).center());
}

void DoubleClickRow(QListWidget& list, int row) {
    ClickRow(list, row);
    QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, list.visualItemRect(list.item(row)).center());
}

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
        if (auto* dialog = qobject_cast<QDialog*>(window))
            dialog->done(0);
        return;
    }
    const Step step = std::move(steps.front());
    steps.pop_front();
    QWidget* former = std::exchange(acting, window);
    step.act(*window);
    acting = former;
}

} // namespace korvadex::test
