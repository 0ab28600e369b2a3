// The help page knows what the program offers: whoever adds a command, a setting or a picture is led here.
#include "app/settings.h"
#include "tests/support/temporary_drive.h"
#include "ui/frmHangar.h"
#include "ui/help_keys.h"

#include <QtCore>
#include <QtWidgets>

#include <gtest/gtest.h>

namespace korvadex::test {
namespace {

QString Read(const QString& path) {
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return QString::fromUtf8(file.readAll());
}

// What the first group of the expression takes, everywhere in the text.
QStringList All(const QString& text, const char* expression) {
    QStringList found;
    for (const auto& match : QRegularExpression(expression).globalMatch(text))
        found.append(match.captured(1));
    return found;
}

class HelpPage : public testing::Test {
  protected:
    const QDir docs{KORVADEX_DOCS};
    const QString page = Read(docs.filePath("kxdoc.htm"));
    TemporaryDrive drive;
};

TEST_F(HelpPage, NamesEveryCommand) {
    frmHangar window(drive.Files());
    QStringList captions;
    for (const auto* menu : window.findChild<QMenuBar*>("mnuBar")->actions())
        for (const auto* entry : menu->menu()->actions())
            captions.append(entry->text());
    EXPECT_GT(captions.size(), 40);
    for (const auto* button : window.findChildren<QPushButton*>())
        captions.append(button->text());
    for (QString caption : captions) {
        caption.remove('&');
        EXPECT_TRUE(page.contains(caption)) << caption.toStdString();
    }
}

TEST_F(HelpPage, NamesEverySetting) {
    Settings settings;
    settings.AppDir = drive.At("");
    settings.locations = {drive.At("S\\"), drive.At("H\\"), drive.At("M\\")};
    settings.LocationProfiles[0].name = "Main";
    settings.AskLocationAtStart = true;
    settings.limits = {.DirMax = 501, .FileMax = 5001};
    settings.historyLimits = {.commands = 3, .bytes = BytesOf(3)};
    settings.isCollectionShown = true;
    settings.layout = {.collectionWidth = 1, .pictureShare = 1, .queueShare = 1, .isMaximised = true};
    settings.LocationProfiles[0].lastPackage = "Jets\\Lear";
    settings.lastArchives = {"a.zip"};
    ASSERT_TRUE(SaveSettings(drive.Files(), settings, WindowGeometry{}));
    const auto keys = All(QString::fromStdString(drive.Get("kx.ini")), "(\\w+=)");
    EXPECT_EQ(keys.size(), 27);
    for (const auto& key : keys)
        EXPECT_TRUE(page.contains("<code>" + key)) << key.toStdString();
}

TEST_F(HelpPage, LeadsNowhereInVain) {
    const auto pictures = All(page, "src=\"([^\"]*)\"");
    for (const auto& picture : pictures)
        EXPECT_TRUE(docs.exists(picture)) << picture.toStdString();
    for (const auto& file : QDir(docs.filePath("pictures")).entryList({"*.png"}))
        EXPECT_TRUE(pictures.contains("pictures/" + file)) << file.toStdString() << " is not shown";
    for (const auto& link : All(page, "href=\"([^\"]*)\""))
        EXPECT_TRUE(link.startsWith('#') && page.contains("id=\"" + link.mid(1) + '"')) << link.toStdString();
}

TEST_F(HelpPage, HasAChapterForEveryWindow) {
    QStringList windows;
    for (const auto& [window, chapter] : HelpChapters()) {
        windows.append(window);
        EXPECT_TRUE(page.contains(QString("id=\"%1\"").arg(chapter))) << chapter;
    }
    for (const auto& form : QDir(docs.filePath("../ui")).entryList({"frm*.ui"}))
        EXPECT_TRUE(form == "frmHangar.ui" || form == "frmSplash.ui" || windows.contains(form.chopped(3)))
            << form.toStdString();
}

} // namespace
} // namespace korvadex::test
