#include "ui/message_box.h"

#include "ui/qt_text.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QProxyStyle>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>

namespace korvadex {

namespace {

constexpr int MostWide = 700;

QMessageBox::StandardButtons ButtonsOf(MessageButtons buttons) {
    switch (buttons) {
    case MessageButtons::OkCancel:
        return QMessageBox::Ok | QMessageBox::Cancel;
    case MessageButtons::YesNo:
        return QMessageBox::Yes | QMessageBox::No;
    case MessageButtons::Ok:
        break;
    }
    return QMessageBox::Ok;
}

QMessageBox::Icon IconOf(MessageIcon icon) {
    switch (icon) {
    case MessageIcon::Information:
        return QMessageBox::Information;
    case MessageIcon::Exclamation:
        return QMessageBox::Warning;
    case MessageIcon::Critical:
        return QMessageBox::Critical;
    case MessageIcon::None:
        break;
    }
    return QMessageBox::NoIcon;
}

Answer AnswerOf(int button) {
    switch (button) {
    case QMessageBox::Yes:
        return Answer::Yes;
    case QMessageBox::No:
        return Answer::No;
    case QMessageBox::Cancel:
        return Answer::Cancel;
    default:
        return Answer::Ok;
    }
}

// Yes before No and OK before Cancel, whatever the desktop's own order is.
class YesFirstStyle : public QProxyStyle {
  public:
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* returnData) const override {
        if (hint == SH_DialogButtonLayout)
            return QDialogButtonBox::WinLayout;
        return QProxyStyle::styleHint(hint, option, widget, returnData);
    }
};

} // namespace

MessageBox::MessageBox(const QString& text, MessageButtons buttons, MessageIcon icon, const MessageOptions& options,
                       QWidget* parent)
    : QMessageBox(parent), mustBeAnswered(buttons == MessageButtons::YesNo) {
    setObjectName("messageBox");
    setTextFormat(Qt::PlainText);
    setText(text);
    setIcon(IconOf(icon));
    setStandardButtons(ButtonsOf(buttons));
    setDefaultButton(!mustBeAnswered                ? QMessageBox::Ok
                     : options.preset == Answer::No ? QMessageBox::No
                                                    : QMessageBox::Yes);
    if (!options.checkBox.empty()) {
        auto* box = new QCheckBox(ToQt(options.checkBox), this);
        box->setObjectName("chkOption");
        setCheckBox(box);
    }
    if (mustBeAnswered)
        setWindowFlags((windowFlags() | Qt::CustomizeWindowHint | Qt::WindowTitleHint) & ~Qt::WindowCloseButtonHint &
                       ~Qt::WindowSystemMenuHint);
    OrderButtons();
    KeepWithinScreen();
}

void MessageBox::SetSubject(const QString& subject) {
    constexpr int roomOfFrame = 90; // its icon and buttons, without the margins of the box
    setWindowTitle("Korvadex  -  " + subject);
    QFont titleFont = font();
    titleFont.setBold(true);
    const int wide = QFontMetrics(titleFont).horizontalAdvance(windowTitle()) + roomOfFrame;
    const int most = qMin(MostWide, screen()->availableGeometry().width() - roomOfFrame);
    if (auto* grid = qobject_cast<QGridLayout*>(layout()))
        grid->addItem(new QSpacerItem(qMin(wide, most), 0), grid->rowCount(), 0, 1, grid->columnCount());
}

CheckedAnswer MessageBox::Ask() {
    const Answer answer = AnswerOf(exec());
    return {answer, checkBox() && checkBox()->isChecked()};
}

void MessageBox::OrderButtons() {
    auto* style = new YesFirstStyle;
    style->setParent(this);
    for (auto* box : findChildren<QDialogButtonBox*>())
        box->setStyle(style);
}

void MessageBox::KeepWithinScreen() {
    // A message that names many files, or one with a very long name, scrolls, so that its buttons stay on the screen
    // and all of it can be read.
    auto* label = findChild<QLabel*>("qt_msgbox_label");
    auto* grid = qobject_cast<QGridLayout*>(layout());
    if (!label || !grid)
        return;
    label->setWordWrap(true);
    const int mostHigh = screen()->availableGeometry().height() * 2 / 3;
    const int high = label->heightForWidth(500), wide = label->minimumSizeHint().width();
    if (high <= mostHigh && wide <= MostWide)
        return;
    auto* area = new QScrollArea(this);
    area->setAccessibleName("Message");
    area->setFrameShape(QFrame::NoFrame);
    area->setWidgetResizable(true);
    delete grid->replaceWidget(label, area);
    area->setWidget(label);
    const int bar = area->verticalScrollBar()->sizeHint().width();
    area->setMinimumHeight(qMin(high + bar, mostHigh));
    area->setMinimumWidth(qMin(qMax(500, wide) + bar, MostWide));
}

void MessageBox::closeEvent(QCloseEvent* event) {
    if (mustBeAnswered)
        event->ignore();
    else
        QMessageBox::closeEvent(event);
}

void MessageBox::keyPressEvent(QKeyEvent* event) {
    if (mustBeAnswered && event->matches(QKeySequence::Cancel))
        event->accept();
    else
        QMessageBox::keyPressEvent(event);
}

} // namespace korvadex
