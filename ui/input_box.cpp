#include "ui/input_box.h"

#include "ui_input_box.h"

#include <QKeyEvent>

namespace korvadex {

InputBox::InputBox(const QString& prompt, bool isSecret, QWidget* parent)
    : QDialog(parent), ui(std::make_unique<Ui::InputBox>()) {
    ui->setupUi(this);
    ui->lblPrompt->setText(prompt);
    ui->txtInput->setAccessibleName(prompt);
    if (isSecret)
        ui->txtInput->setEchoMode(QLineEdit::Password);
    ui->txtInput->setFocus();
    connect(ui->cmdOK, &QPushButton::clicked, this, &QDialog::accept);
    connect(ui->cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
}

InputBox::~InputBox() = default;

void InputBox::Offer(const QStringList& texts) {
    ui->txtInput->hide();
    ui->cboInput->addItems(texts);
    ui->cboInput->installEventFilter(this);
    ui->cboInput->setAccessibleName(ui->lblPrompt->text());
    ui->cboInput->show();
    setMinimumHeight(layout()->totalHeightForWidth(width()));
    ui->cboInput->setFocus();
}

void InputBox::Propose(const QString& text) {
    ui->cboInput->setCurrentIndex(ui->cboInput->findText(text));
    Field()->setText(text);
    Field()->selectAll();
}

// By itself Enter would bring back the item that was chosen before the text was typed.
bool InputBox::eventFilter(QObject* watched, QEvent* event) {
    if (watched == ui->cboInput && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            accept();
            return true;
        }
    }
    return QDialog::eventFilter(watched, event);
}

QString InputBox::Text() const {
    return Field()->text();
}

QLineEdit* InputBox::Field() const {
    return ui->cboInput->count() > 0 ? ui->cboInput->lineEdit() : ui->txtInput;
}

} // namespace korvadex
