#include "ui/frmMultipleCfg.h"

#include "ui/list_keys.h"
#include "ui/qt_text.h"
#include "ui_frmMultipleCfg.h"

#include <QPainter>

namespace korvadex {

namespace {

constexpr QSize PictureSize{96, 64}; // device-independent pixels

// In the middle of a picture of the same size for all rows, so that their texts stand below one another.
QIcon Framed(const QImage& image, qreal ratio) {
    QPixmap frame(PictureSize * ratio);
    frame.fill(Qt::transparent);
    QPainter painter(&frame);
    painter.drawImage((frame.width() - image.width()) / 2, (frame.height() - image.height()) / 2, image);
    painter.end();
    frame.setDevicePixelRatio(ratio);
    QIcon icon(frame);
    icon.addPixmap(frame, QIcon::Selected); // not tinted
    return icon;
}

} // namespace

frmMultipleCfg::frmMultipleCfg(std::vector<ConfigurationRow> offered, const FileSystem& files, UserDialogs& dialogs,
                               QWidget* parent)
    : QDialog(parent), rows(std::move(offered)), user(dialogs), ui(std::make_unique<Ui::frmMultipleCfg>()),
      pictures(files) {
    ui->setupUi(this);
    for (const auto& row : rows)
        ui->lstConfigs->addItem(ToQt(row.detail.empty() ? row.text : row.text + "\n" + row.detail));
    connect(ui->cmdOK, &QPushButton::clicked, this, &frmMultipleCfg::Choose);
    connect(ui->cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(ui->lstConfigs, &QListWidget::itemDoubleClicked, this, &frmMultipleCfg::Choose);
    SelectByFirstKey(*ui->lstConfigs);
    ui->lstConfigs->setFocus();
    ShowPictures();
}

frmMultipleCfg::~frmMultipleCfg() = default;

int frmMultipleCfg::Choice() const {
    return ui->lstConfigs->row(ui->lstConfigs->selectedItems().value(0));
}

void frmMultipleCfg::Choose() {
    if (!ui->lstConfigs->selectedItems().isEmpty())
        return accept();
    user.Tell("Please pick a configuration by selecting it and selecting 'OK', or by double clicking it.");
}

void frmMultipleCfg::ShowPictures() {
    std::vector<std::string> wanted;
    for (const auto& row : rows)
        if (!row.picture.empty())
            wanted.push_back(row.picture);
    if (wanted.empty())
        return;
    ui->lstConfigs->setIconSize(PictureSize);
    for (int row = 0; row < ui->lstConfigs->count(); ++row)
        ui->lstConfigs->item(row)->setIcon(Framed({}, devicePixelRatioF()));
    connect(&pictures, &PictureLoader::Loaded, this, &frmMultipleCfg::ShowPicture);
    pictures.Want(wanted, PictureSize * devicePixelRatioF());
}

void frmMultipleCfg::ShowPicture(const std::string& path) {
    const LoadedPicture* picture = pictures.Find(path);
    if (!picture || picture->image.isNull())
        return;
    for (std::size_t row = 0; row < rows.size(); ++row)
        if (rows[row].picture == path)
            ui->lstConfigs->item(int(row))->setIcon(Framed(picture->image, devicePixelRatioF()));
}

} // namespace korvadex
