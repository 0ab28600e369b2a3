// Mouse and keyboard on real windows. What a person could not do throws std::runtime_error: it is not there, not shown
// or not enabled.
#pragma once

#include <QString>
#include <QWidget>

#include <stdexcept>

class QListWidget;

namespace korvadex::test {

template<class T>
T& Control(const QWidget& window, const char* name) {
    auto* found = window.findChild<T*>(name);
    if (!found)
        throw std::runtime_error(std::string("no control ") + name);
    return *found;
}

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

// How much of it is not scrolled out of sight.
QSize InSight(const QWidget& control);

// The button with that caption, whatever its mnemonic.
void ClickButton(const QWidget& box, const QString& caption);

} // namespace korvadex::test
