#include "ui/frmAbout.h"

#include "archive/library_versions.h"
#include "ui/icons.h"
#include "ui/qt_text.h"
#include "ui_frmAbout.h"

#include <QGridLayout>
#include <QLabel>

namespace korvadex {

namespace {

std::vector<LibraryVersion> Libraries() {
    auto libraries = ArchiveLibraries();
    libraries.insert(libraries.begin(), {"Qt", qVersion(), "GNU LGPL, version 3"});
    return libraries;
}

} // namespace

QString VersionText() {
    return "Version " KORVADEX_VERSION;
}

frmAbout::frmAbout(QWidget* parent) : QDialog(parent), ui(std::make_unique<Ui::frmAbout>()) {
    ui->setupUi(this);
    ui->lblVersion->setText(VersionText());
    ui->lblIcon->setPixmap(NamedIcon("korvadex").pixmap(QSize(64, 64), devicePixelRatioF()));
    int row = 0;
    for (const LibraryVersion& library : Libraries()) {
        int column = 0;
        for (const auto& text : {library.name, library.version, library.licence}) {
            auto* label = new QLabel(ToQt(text));
            label->setTextFormat(Qt::PlainText);
            label->setTextInteractionFlags(Qt::TextSelectableByMouse);
            ui->layLibraries->addWidget(label, row, column++);
        }
        ++row;
    }
    resize(width(), layout()->totalHeightForWidth(width()));
    connect(ui->cmdOK, &QPushButton::clicked, this, &QDialog::accept);
}

frmAbout::~frmAbout() = default;

} // namespace korvadex
