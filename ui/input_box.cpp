#include "ui/input_box.h"

#include "ui_input_box.h"

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
    ui->cboInput->setAccessibleName(ui->lblPrompt->text());
    ui->cboInput->show();
    ui->cboInput->setFocus();
}

void InputBox::Propose(const QString& text) {
    Field()->setText(text);
    Field()->selectAll();
}

QString InputBox::Text() const {
    return Field()->text();
}

QLineEdit* InputBox::Field() const {
    return ui->cboInput->count() > 0 ? ui->cboInput->lineEdit() : ui->txtInput;
}

} // namespace korvadex
