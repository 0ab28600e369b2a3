#include "tests/support/hands.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QtTest>

namespace korvadex::test {

namespace {

void Require(bool isUsable, const QString& what) {
    if (!isUsable)
        throw std::runtime_error("cannot be used: " + what.toStdString());
}

} // namespace

void Click(const QWidget& window, const char* control) {
    auto& button = Control<QWidget>(window, control);
    Require(button.isVisible() && button.isEnabled(), control);
    QTest::mouseClick(&button, Qt::LeftButton);
}

void Type(const QWidget& window, const char* control, const QString& text) {
    auto& box = Control<QLineEdit>(window, control);
    Require(box.isVisible() && box.isEnabled() && !box.isReadOnly(), control);
    box.setFocus();
    QTest::keyClick(&box, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(&box, Qt::Key_Delete);
    QTest::keyClicks(&box, text);
}

void Pick(const QWidget& window, const char* comboBox, const QString& item) {
    auto& box = Control<QComboBox>(window, comboBox);
    Require(box.isVisible() && box.isEnabled(), comboBox);
    const int wanted = box.findText(item);
    Require(wanted >= 0, item);
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

void ClickButton(const QWidget& box, const QString& caption) {
    for (auto* button : box.findChildren<QAbstractButton*>())
        if (button->isVisible() && button->text().remove('&') == caption)
            return QTest::mouseClick(button, Qt::LeftButton);
    throw std::runtime_error("no button " + caption.toStdString());
}

QSize InSight(const QWidget& control) {
    QRect seen = control.rect();
    for (const QWidget* inner = &control; !inner->isWindow(); inner = inner->parentWidget())
        seen = seen.translated(inner->pos()) & inner->parentWidget()->rect();
    return seen.size();
}

} // namespace korvadex::test
