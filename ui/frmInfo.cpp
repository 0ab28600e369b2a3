#include "ui/frmInfo.h"

#include "ui/qt_text.h"
#include "ui/wheel_guard.h"
#include "ui_frmInfo.h"

#include <QAbstractItemView>
#include <QCompleter>
#include <QShortcut>

#include <limits>

namespace korvadex {

namespace {

constexpr int LookAgain = 200; // ms, while a list is open

// The text as it stands: toPlainText would make a plain blank of one that does not break.
std::string LinesOf(const QPlainTextEdit* box) {
    QString text = box->document()->toRawText();
    text.replace(QChar::ParagraphSeparator, "\r\n").replace(QChar::LineSeparator, "\r\n");
    return FromQt(text);
}

void SetText(QLineEdit* box, const std::string& text) {
    box->setMaxLength(std::numeric_limits<int>::max());
    box->setText(ToQt(text));
    box->setCursorPosition(0);
}

void SetText(QComboBox* box, const std::string& text) {
    SetText(box->lineEdit(), text);
    // When the focus leaves, the box would take the spelling that its list has for the same text.
    QObject::disconnect(box->lineEdit(), &QLineEdit::editingFinished, box, nullptr);
}

void SetItems(QComboBox* box, const std::vector<std::string>& texts) {
    QStringList items;
    for (const auto& text : texts)
        items.append(ToQt(text));
    // Filling must not touch what the user types, nor where.
    QLineEdit* field = box->lineEdit();
    const QString typed = field->text();
    const int cursor = field->cursorPosition(), start = field->selectionStart(), length = field->selectionLength();
    box->clear();
    box->addItems(items);
    box->setCurrentIndex(int(items.indexOf(typed)));
    field->setText(typed);
    field->setCursorPosition(cursor);
    if (start >= 0)
        field->setSelection(start, length);
    // Unlike the completion within the field, a list of proposals changes nothing that was typed.
    box->completer()->setCompletionMode(QCompleter::PopupCompletion);
}

} // namespace

frmInfo::frmInfo(const InfoForm& infoForm, QWidget* parent)
    : QDialog(parent), form(infoForm), ui(std::make_unique<Ui::frmInfo>()) {
    ui->setupUi(this);
    KeepWheelFromChoices(*this);
    setWindowTitle(windowTitle() + "  -  " + ToQt(form.aircraft));
    Show(form.info);
    Offer(form.offers);
    for (QWidget* control : std::initializer_list<QWidget*>{
             ui->txtAtcID, ui->cboAtcAirline, ui->txtAtcFlightNumber, ui->chkAtcHeavy, ui->cboUIManufacturer,
             ui->txtUIType, ui->txtUIVariation, ui->txtUIDescription, ui->lblAtcID, ui->lblAtcAirline,
             ui->lblAtcFlightNumber, ui->lblUIManufacturer, ui->lblUIType, ui->lblUIVariation, ui->lblUIDescription})
        control->setEnabled(form.hasConfiguration);
    ui->lblNoConfiguration->setVisible(!form.hasConfiguration);
    for (QPlainTextEdit* box : {ui->txtUIDescription, ui->txtUIPerformance}) {
        // The key Tab goes on to the next field.
        auto* tab = new QShortcut(QKeySequence("Ctrl+Tab"), box);
        tab->setContext(Qt::WidgetShortcut);
        connect(tab, &QShortcut::activated, box, [box] { box->insertPlainText("\t"); });
    }
    connect(ui->cmdApply, &QPushButton::clicked, this, &frmInfo::Apply);
    connect(ui->cmdCancel, &QPushButton::clicked, this, [this] { done(Rejected); });
    connect(&gathering, &QTimer::timeout, this, &frmInfo::Gather);
    if (form.hasConfiguration)
        ui->cboUIManufacturer->setFocus();
    else
        ui->txtUIPerformance->setFocus();
}

frmInfo::~frmInfo() = default;

void frmInfo::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    if (!event->spontaneous() && !gathered)
        gathering.start(0); // whenever there is nothing else to do
}

void frmInfo::reject() {
    if (form.mayClose(Entry()))
        QDialog::reject();
}

void frmInfo::Show(const AircraftInfo& info) {
    SetText(ui->txtAtcID, info.atcId);
    SetText(ui->cboAtcAirline, info.atcAirline);
    SetText(ui->txtAtcFlightNumber, info.atcFlightNumber);
    ui->chkAtcHeavy->setChecked(info.isHeavy);
    SetText(ui->cboUIManufacturer, info.manufacturer);
    SetText(ui->txtUIType, info.type);
    SetText(ui->txtUIVariation, info.variation);
    ui->txtUIDescription->setPlainText(LinesToQt(info.description));
    SetText(ui->cboAtcType, info.atcType);
    SetText(ui->cboAtcModel, info.atcModel);
    ui->chkHiddenEditable->setChecked(info.isEditable);
    ui->txtUIPerformance->setPlainText(LinesToQt(info.performance));
}

AircraftInfo frmInfo::Entry() const {
    return {.atcId = FromQt(ui->txtAtcID->text()),
            .atcAirline = FromQt(ui->cboAtcAirline->currentText()),
            .atcFlightNumber = FromQt(ui->txtAtcFlightNumber->text()),
            .manufacturer = FromQt(ui->cboUIManufacturer->currentText()),
            .type = FromQt(ui->txtUIType->text()),
            .variation = FromQt(ui->txtUIVariation->text()),
            .atcType = FromQt(ui->cboAtcType->currentText()),
            .atcModel = FromQt(ui->cboAtcModel->currentText()),
            .isHeavy = ui->chkAtcHeavy->isChecked(),
            .isEditable = ui->chkHiddenEditable->isChecked(),
            .description = LinesOf(ui->txtUIDescription),
            .performance = LinesOf(ui->txtUIPerformance)};
}

void frmInfo::Apply() {
    if (form.accept(Entry()))
        accept();
}

void frmInfo::Gather() {
    if (!gathered)
        gathered = form.gather();
    if (!gathered)
        return;
    // A list that the user has open does not change under the mouse.
    if (QApplication::activePopupWidget()) {
        gathering.start(LookAgain);
        return;
    }
    gathering.stop();
    Offer(*gathered);
}

void frmInfo::Offer(const InfoOffers& offers) {
    SetItems(ui->cboAtcAirline, offers.atcAirlines);
    SetItems(ui->cboUIManufacturer, offers.manufacturers);
    SetItems(ui->cboAtcType, offers.atcTypes);
    SetItems(ui->cboAtcModel, offers.atcModels);
}

} // namespace korvadex
