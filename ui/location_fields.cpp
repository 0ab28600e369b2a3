#include "ui/location_fields.h"

#include "platform/windows_path.h"
#include "ui/frmDirSelect.h"
#include "ui/location_advisor.h"
#include "ui/qt_text.h"
#include "ui_location_fields.h"

#include <QStyle>

namespace korvadex {

LocationFields::LocationFields(QWidget* parent) : QWidget(parent), ui(std::make_unique<Ui::LocationFields>()) {
    ui->setupUi(this);
    setFocusProxy(ui->txtStagingDir);
    // The words have their places before there are any.
    const int size = style()->pixelMetric(QStyle::PM_SmallIconSize);
    for (QLabel* image : {ui->imgStagingWord, ui->imgHangarWord, ui->imgMSFSWord})
        image->setFixedSize(size, std::max(size, image->fontMetrics().height()));
}

LocationFields::~LocationFields() = default;

void LocationFields::Begin(FileSystem& files, const Settings& settings, bool stagingMustBeEmpty) {
    advisor = new LocationAdvisor(files, settings, stagingMustBeEmpty, this);
    const auto begin = [this, &files](QPushButton* button, QLineEdit* box, QLabel* image, QLabel* label) {
        connect(button, &QPushButton::clicked, this, [this, &files, box] { Browse(files, box); });
        connect(box, &QLineEdit::textChanged, this, [=, this] {
            ShowWord({}, box, image, label); // the old one was about another directory
            advisor->Ask(Entry());
        });
    };
    begin(ui->cmdStagingDir, ui->txtStagingDir, ui->imgStagingWord, ui->lblStagingWord);
    begin(ui->cmdHangarDir, ui->txtHangarDir, ui->imgHangarWord, ui->lblHangarWord);
    begin(ui->cmdMSFSDir, ui->txtMSFSDir, ui->imgMSFSWord, ui->lblMSFSWord);
    connect(advisor, &LocationAdvisor::Answered, this, [this](const LocationWords& words) {
        ShowWord(words.staging, ui->txtStagingDir, ui->imgStagingWord, ui->lblStagingWord);
        ShowWord(words.hangar, ui->txtHangarDir, ui->imgHangarWord, ui->lblHangarWord);
        ShowWord(words.msfs, ui->txtMSFSDir, ui->imgMSFSWord, ui->lblMSFSWord);
    });
    advisor->Ask(Entry());
}

void LocationFields::Browse(FileSystem& files, QLineEdit* box) {
    // What is not there yet is to be made in the directory above it; an empty field begins where Staging is.
    std::string start = AddBackslash(FromQt((box->text().isEmpty() ? ui->txtStagingDir : box)->text()));
    while (IsDrivePath(start) && !files.IsDirectory(start))
        start = ParentDirectory(start);
    frmDirSelect browser(files, start, this);
    browser.exec();
    if (!browser.BrowseCancelled())
        box->setText(ToQt(browser.BrowseResult()));
    advisor->Ask(Entry()); // directories may have been made
}

void LocationFields::ShowWord(const LocationWord& word, QLineEdit* box, QLabel* image, QLabel* label) {
    const QString text = ToQt(word.text);
    label->setText(text);
    label->setToolTip(PlainToolTip(text));
    image->setPixmap(word.isTrouble ? style()->standardIcon(QStyle::SP_MessageBoxWarning).pixmap(image->width())
                                    : QPixmap());
    box->setAccessibleDescription(text);
}

void LocationFields::SetLocations(const Locations& locations) {
    ui->txtStagingDir->setText(ToQt(locations.StagingDir));
    ui->txtHangarDir->setText(ToQt(locations.HangarDir));
    ui->txtMSFSDir->setText(ToQt(locations.MsfsDir));
}

Locations LocationFields::Entry() const {
    const auto directory = [](const QLineEdit* box) { return AddBackslash(FromQt(box->text())); };
    return {directory(ui->txtStagingDir), directory(ui->txtHangarDir), directory(ui->txtMSFSDir)};
}

} // namespace korvadex
