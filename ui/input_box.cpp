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

void InputBox::Propose(const QString& text) {
    ui->txtInput->setText(text);
    ui->txtInput->selectAll();
}

QString InputBox::Text() const {
    return ui->txtInput->text();
}

} // namespace korvadex
