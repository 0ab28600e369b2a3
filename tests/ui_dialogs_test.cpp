// The dialogs, answered with mouse and keys.
#include "app/profiles.h"
#include "media/aircraft_info.h"
#include "package/progress.h"
#include "package/reduce_staging.h"
#include "package/rename.h"
#include "sim/import.h"
#include "sim/unused_gauges.h"
#include "tests/support/modal_user.h"
#include "tests/support/temporary_drive.h"
#include "ui/dialogs.h"
#include "ui/frmFileList.h"
#include "ui/frmMultipleCfg.h"
#include "ui/frmSplash.h"

#include <QtTest>
#include <QtWidgets>

namespace korvadex::test {

namespace {

class DialogTest : public testing::Test {
  protected:
    TemporaryDrive drive;
    Dialogs dialogs{drive.Files()};
    ModalUser user;

    std::string Host(const char* relative) { return drive.Files().HostPath(drive.At(relative)); }
    Answer Ask(MessageButtons buttons, Answer preset = Answer::Yes) {
        return dialogs.ShowMessage("Sure?", buttons, MessageIcon::None, {.preset = preset}).answer;
    }
};

QAbstractButton* Button(QWidget& window, const QString& caption) {
    for (auto* button : window.findChildren<QAbstractButton*>())
        if (button->text().remove('&') == caption)
            return button;
    return nullptr;
}

} // namespace

TEST_F(DialogTest, AMessageShowsItsTextAsItStands) {
    const std::string text = "< B 17 >  &\r\n\r\n<b>not bold</b>";
    user.Expect("messageBox", [&](QWidget& box) {
        const auto& label = Control<QLabel>(box, "qt_msgbox_label");
        EXPECT_EQ(label.text().toStdString(), "< B 17 >  &\n\n<b>not bold</b>");
        EXPECT_EQ(label.textFormat(), Qt::PlainText);
        EXPECT_EQ(box.windowTitle(), "Korvadex  -  Aircraft of the war\\<B 17>");
        EXPECT_GT(box.width(), box.fontMetrics().horizontalAdvance(box.windowTitle()));
        QTest::mouseClick(Button(box, "OK"), Qt::LeftButton);
    });
    dialogs.subject = "Aircraft of the war\\<B 17>";
    dialogs.Tell(text);
}

TEST_F(DialogTest, AYesNoQuestionIsAnsweredOrStaysOpen) {
    const char* const option = "Do this for all further duplicates";
    for (const bool isYes : {true, false}) {
        user.Expect("messageBox", [&](QWidget& box) {
            PressKey(box, Qt::Key_Escape);
            EXPECT_FALSE(box.close());
            EXPECT_TRUE(box.isVisible());
            EXPECT_FALSE(box.windowFlags().testFlag(Qt::WindowCloseButtonHint));
            EXPECT_LT(Button(box, "Yes")->x(), Button(box, "No")->x());
            EXPECT_EQ(Control<QCheckBox>(box, "chkOption").text(), option);
            if (isYes)
                Click(box, "chkOption");
            QTest::mouseClick(Button(box, isYes ? "Yes" : "No"), Qt::LeftButton);
        });
        const auto given = dialogs.ShowMessage("Sure?", MessageButtons::YesNo, MessageIcon::None, {.checkBox = option});
        EXPECT_EQ(given.answer, isYes ? Answer::Yes : Answer::No);
        EXPECT_EQ(given.isChecked, isYes);
    }
}

TEST_F(DialogTest, EscapeAndEnterAnswerTheOtherBoxes) {
    const struct {
        const char* name;
        MessageButtons buttons;
        Qt::Key key;
        Answer answer;
        Answer preset = Answer::Yes;
    } rows[] = {
        {"Escape cancels", MessageButtons::OkCancel, Qt::Key_Escape, Answer::Cancel},
        {"Enter accepts", MessageButtons::OkCancel, Qt::Key_Return, Answer::Ok},
        {"Escape closes a message", MessageButtons::Ok, Qt::Key_Escape, Answer::Ok},
        {"Enter says yes", MessageButtons::YesNo, Qt::Key_Return, Answer::Yes},
        {"Enter says no", MessageButtons::YesNo, Qt::Key_Return, Answer::No, Answer::No},
        {"so does the blank", MessageButtons::YesNo, Qt::Key_Space, Answer::No, Answer::No},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        user.Expect("messageBox", [&](QWidget& box) { PressKey(box, row.key); });
        EXPECT_EQ(Ask(row.buttons, row.preset), row.answer);
    }
}

TEST_F(DialogTest, ALongMessageKeepsItsButtonsOnTheScreenAndCanBeRead) {
    const struct {
        int lines;
        std::string name;
    } rows[] = {{400, "gauge_"}, {20, std::string(150, 'x')}};
    for (const auto& row : rows) {
        std::string text = "These files:";
        for (int i = 0; i < row.lines; ++i)
            text += "\r\nC:\\FS2002\\gauges\\" + row.name + std::to_string(i) + ".gau";
        user.Expect("messageBox", [&](QWidget& box) {
            EXPECT_LT(box.height(), box.screen()->availableGeometry().height());
            EXPECT_LT(box.width(), box.screen()->availableGeometry().width());
            const auto& label = Control<QLabel>(box, "qt_msgbox_label");
            EXPECT_GE(label.width(), label.minimumSizeHint().width());
            QTest::mouseClick(Button(box, "Cancel"), Qt::LeftButton);
        });
        EXPECT_FALSE(dialogs.AskOkCancel(text));
    }
}

TEST_F(DialogTest, NoneIsLargerThanTheScreen) {
    QDialog large;
    large.resize(5000, 5000);
    large.move(0, -30);
    large.show();
    EXPECT_GE(large.y(), large.screen()->availableGeometry().top());
    EXPECT_LT(large.height(), large.screen()->availableGeometry().height());
    EXPECT_LT(large.width(), large.screen()->availableGeometry().width());
}

TEST_F(DialogTest, APasswordIsTypedUnseen) {
    user.Expect("InputBox", [](QWidget& box) {
        EXPECT_EQ(Control<QLabel>(box, "lblPrompt").text(), "Please Enter The Password!");
        EXPECT_EQ(Control<QLineEdit>(box, "txtInput").echoMode(), QLineEdit::Password);
        Type(box, "txtInput", "open sesame");
        PressKey(box, Qt::Key_Return);
    });
    EXPECT_EQ(dialogs.AskText("Please Enter The Password!", true), "open sesame");

    user.Expect("InputBox", [](QWidget& box) {
        Type(box, "txtInput", "no");
        PressKey(box, Qt::Key_Escape);
    });
    EXPECT_EQ(dialogs.AskText("Please Enter The Password!", true), std::nullopt);
}

TEST_F(DialogTest, AnArchiveIsChosenInItsDirectory) {
    drive.Put("Downloads\\Taymere 60.ZIP", "zip");
    user.Expect("zipFileDialog", [&](QWidget& window) {
        EXPECT_EQ(window.windowTitle(), "Process ZIP File ...");
        EXPECT_EQ(dynamic_cast<QFileDialog&>(window).nameFilters(),
                  QStringList({"Zip files (*.zip)",
                               "All archives (*.zip *.cab *.7z *.rar *.lha *.lzh *.iso *.tar *.tar.gz *.tgz *.tbz2 "
                               "*.tar.bz2 *.tar.xz *.txz *.tar.zst *.tzst)",
                               "Zip files that are programs (*.exe)"}));
        // Pasted, not typed: the completion of names would join in.
        Control<QLineEdit>(window, "fileNameEdit").setText("Taymere 60.ZIP");
        Control<QComboBox>(window, "fileTypeCombo").setCurrentIndex(1);
        PressKey(window, Qt::Key_Return);
    });
    EXPECT_EQ(dialogs.ChooseZipFile("Process ZIP File ...", drive.At("Downloads\\")),
              drive.At("Downloads\\Taymere 60.ZIP"));
    // The next one begins with the kind that was shown last.
    user.Expect("zipFileDialog", [&](QWidget& window) {
        EXPECT_EQ(Control<QComboBox>(window, "fileTypeCombo").currentIndex(), 1);
        PressKey(window, Qt::Key_Escape);
    });
    EXPECT_EQ(dialogs.ChooseZipFile("Process ZIP File ...", drive.At("Downloads\\")), std::nullopt);
    // Where nothing was chosen yet, or that is no longer there.
    drive.Fill("", "Photos\\, user-dirs.dirs=XDG_DOWNLOAD_DIR=\"" + Host("Downloads") + "\"\nXDG_PICTURES_DIR=\"" +
                       Host("Photos") + "\"\n");
    qputenv("XDG_CONFIG_HOME", QByteArray::fromStdString(Host("")));
    for (const char* directory : {"", "C:\\gone\\"}) {
        const auto opensOn = [&](QStandardPaths::StandardLocation place) {
            return [at = QStandardPaths::writableLocation(place).toStdString()](QWidget& window) {
                EXPECT_EQ(dynamic_cast<QFileDialog&>(window).directory().absolutePath().toStdString(), at);
                PressKey(window, Qt::Key_Escape);
            };
        };
        user.Expect("zipFileDialog", opensOn(QStandardPaths::DownloadLocation));
        EXPECT_EQ(dialogs.ChooseZipFile("Process ZIP File ...", directory), std::nullopt);
        user.Expect("pictureFileDialog", opensOn(QStandardPaths::PicturesLocation));
        EXPECT_TRUE(dialogs.ChoosePictures(directory).IsEmpty());
    }
    qunsetenv("XDG_CONFIG_HOME");
}

TEST_F(DialogTest, ALineIsPickedByButtonOrDoubleClickOrNotAtAll) {
    const std::vector<std::string> items = {"Brindle 8 Blue", "Brindle 8 Red"};
    const std::vector<ConfigurationRow> configurations = {{"Brindle 8 Blue", "Texture: blue", drive.At("gone.jpg")},
                                                          {"Brindle 8 Red", "", ""}};
    const std::vector<AircraftPart> aircraft = {{"C:\\a\\", ".", "Brindle 8 Blue", 3, 1},
                                                {"C:\\a\\b\\", "b", "Brindle 8 Red", 1, 20}};
    const auto imported = [&] {
        std::optional<int> picked;
        dialogs.ShowMSFSImport({.names = items, .accept = [&](int row) {
                                    if (row < 0)
                                        dialogs.Tell("Please pick an aircraft.");
                                    else
                                        picked = row;
                                    return picked.has_value();
                                }});
        return picked;
    };
    const struct {
        const char *form, *list;
        std::function<std::optional<int>()> pick;
    } rows[] = {{"frmMultipleCfg", "lstConfigs", [&] { return dialogs.ChooseConfiguration(configurations); }},
                {"frmSeveralAircraft", "lstAircraft", [&] { return dialogs.ChooseAircraft(aircraft); }},
                {"frmMSFSImport", "lstPackages", imported}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.form);
        const auto list = [&](QWidget& window) -> QListWidget& { return Control<QListWidget>(window, row.list); };
        user.Expect(row.form, [&](QWidget& window) {
            EXPECT_TRUE(list(window).item(1)->text().startsWith("Brindle 8 Red"));
            Click(window, "cmdOK"); // nothing is selected
            EXPECT_TRUE(window.isVisible());
            ClickRow(list(window), 1);
            Click(window, "cmdOK");
        });
        user.ExpectMessage("Please pick a*", "OK");
        EXPECT_EQ(row.pick(), 1);
        user.Expect(row.form, [&](QWidget& window) { DoubleClickRow(list(window), 0); });
        EXPECT_EQ(row.pick(), 0);
        for (const auto key : {Qt::Key_Down, Qt::Key_Home}) {
            user.Expect(row.form, [&](QWidget& window) {
                QTest::keyClick(&list(window), key);
                Click(window, "cmdOK");
            });
            EXPECT_EQ(row.pick(), 0) << "the first key selects the first row";
        }
        user.Expect(row.form, [&](QWidget& window) {
            ClickRow(list(window), 0);
            PressKey(window, Qt::Key_Escape);
        });
        EXPECT_EQ(row.pick(), std::nullopt);
    }
}

TEST_F(DialogTest, AConfigurationShowsItsPicture) {
    QImage red(40, 40, QImage::Format_RGB32);
    red.fill(Qt::red);
    drive.MakeDirectory("texture.red");
    ASSERT_TRUE(red.save(QString::fromStdString(drive.Files().HostPath(drive.At("texture.red\\shot.jpg")))));
    frmMultipleCfg window({{"Blue  (fltsim.0)", "", drive.At("gone.jpg")},
                           {"Red  (fltsim.1)", "Texture: red", drive.At("texture.red\\shot.jpg")}},
                          drive.Files(), dialogs, nullptr);
    window.show();
    const auto* item = Control<QListWidget>(window, "lstConfigs").item(1);
    EXPECT_EQ(item->text(), "Red  (fltsim.1)\nTexture: red");
    const auto middle = [&] { return item->icon().pixmap(96, 64).toImage().pixelColor(48, 32); };
    EXPECT_TRUE(QTest::qWaitFor([&] { return middle().alpha() == 255 && middle().red() > 200; }));
    Click(window, "cmdCancel");
    EXPECT_EQ(window.result(), QDialog::Rejected);
    EXPECT_FALSE(window.isVisible());
}

TEST_F(DialogTest, ARenameStaysOpenUntilItIsAccepted) {
    std::vector<std::string> entered;
    RenameForm form = {
        .entry = {"B 17 & Co", "<b>Fortress</b>"}, .hasTitle = true, .accept = [&](const RenameEntry& entry) {
            entered.push_back(entry.packageName + "|" + entry.aircraftTitle);
            return entered.size() > 1;
        }};
    user.Expect("frmRename", [&](QWidget& window) {
        Click(window, "cmdAccept");
        EXPECT_TRUE(window.isVisible());
        Type(window, "txtRenamePackageName", "B 17");
        PressKey(window, Qt::Key_Return);
    });
    dialogs.ShowRename(form);
    form.hasTitle = false;
    user.Expect("frmRename", [](QWidget& window) {
        EXPECT_FALSE(Control<QLineEdit>(window, "txtRenameAircraftTitle").isEnabled());
        Click(window, "cmdCancel");
    });
    dialogs.ShowRename(form);
    EXPECT_EQ(entered, (std::vector<std::string>{"B 17 & Co|<b>Fortress</b>", "B 17|<b>Fortress</b>"}));
}

TEST_F(DialogTest, InformationIsGivenBackAsItIsTyped) {
    AircraftInfo shown{.atcId = " N1\t",
                       .atcAirline = "Zeta",
                       .atcFlightNumber = "12",
                       .manufacturer = "\"Orvane\"",
                       .type = std::string(40000, 't'),
                       .variation = "V",
                       .atcType = "ORVANE",
                       .atcModel = "OC1",
                       .isHeavy = true,
                       .isEditable = true,
                       .description = "One;\r\n\r\n\tno\xC2\xA0"
                                      "break ",
                       .performance = "\r\n100 kt"};
    AircraftInfo entered;
    int applied = 0, asked = 0;
    bool isGathered = false;
    const InfoForm form = {.aircraft = "Lear",
                           .info = shown,
                           .offers = {.manufacturers = {"Homebuilt"}},
                           .gather = [&]() -> std::optional<InfoOffers> {
                               isGathered = true;
                               return InfoOffers{.atcAirlines = {"Alpha", "ZETA"}, .manufacturers = {"Orvane"}};
                           },
                           .accept =
                               [&](const AircraftInfo& entry) {
                                   entered = entry;
                                   return ++applied > 1;
                               },
                           .mayClose = [&](const AircraftInfo&) { return ++asked > 1; }};
    user.Expect("frmInfo", [&](QWidget& window) {
        EXPECT_EQ(window.windowTitle(), "FS2002 Information  -  Lear");
        auto& maker = Control<QComboBox>(window, "cboUIManufacturer");
        auto& airline = Control<QComboBox>(window, "cboAtcAirline");
        ASSERT_TRUE(QTest::qWaitFor([&] { return isGathered && airline.count() == 2; }));
        window.activateWindow();
        ASSERT_TRUE(QTest::qWaitFor([&] { return window.isActiveWindow(); })); // for the focus
        EXPECT_EQ(maker.itemText(0), "Orvane");
        airline.setFocus();
        maker.setFocus();
        Click(window, "cmdApply");
        EXPECT_EQ(entered, shown) << "neither filling the lists nor going through them changes anything";
        EXPECT_TRUE(window.isVisible());
        airline.setFocus();
        airline.lineEdit()->selectAll();
        QTest::keyClicks(airline.lineEdit(), "zeta");
        Type(window, "txtAtcID", "N2");
        auto& description = Control<QPlainTextEdit>(window, "txtUIDescription");
        description.setFocus();
        description.selectAll();
        QTest::keyClicks(&description, "a");
        QTest::keyClick(&description, Qt::Key_Return);
        QTest::keyClicks(&description, "b");
        QTest::keyClick(&description, Qt::Key_Tab, Qt::ControlModifier);
        QTest::keyClick(&description, Qt::Key_Tab);
        EXPECT_TRUE(Control<QWidget>(window, "txtUIPerformance").hasFocus());
        QTest::mouseClick(&Control<QCheckBox>(window, "chkAtcHeavy"), Qt::LeftButton);
        Click(window, "cmdApply");
    });
    dialogs.ShowInfo(form);
    shown.atcAirline = "zeta"; // not as the list writes it
    shown.atcId = "N2";
    shown.description = "a\r\nb\t";
    shown.isHeavy = false;
    EXPECT_EQ(entered, shown);

    user.Expect("frmInfo", [&](QWidget& window) {
        PressKey(window, Qt::Key_Escape);
        EXPECT_TRUE(window.isVisible());
        PressKey(window, Qt::Key_Escape);
    });
    dialogs.ShowInfo(form);
    InfoForm general = form;
    general.hasConfiguration = false;
    user.Expect("frmInfo", [&](QWidget& window) {
        EXPECT_TRUE(Control<QLabel>(window, "lblNoConfiguration").isVisible());
        EXPECT_FALSE(Control<QLineEdit>(window, "txtAtcID").isEnabled());
        EXPECT_TRUE(Control<QComboBox>(window, "cboAtcType").isEnabled());
        Click(window, "cmdCancel");
    });
    dialogs.ShowInfo(general);
    EXPECT_EQ(std::pair(applied, asked), std::pair(2, 2));
}

TEST_F(DialogTest, UnusedGaugesAreSearchedOnceAndLeaveTheListWhenDeleted) {
    std::vector<UnusedGauge> gauges = {
        {"twin.gau", "C:\\twin.gau"}, {"fuel.gau", "C:\\fuel.gau"}, {"twin.gau", "C:\\old\\twin.gau"}};
    int searches = 0;
    std::vector<std::vector<int>> removals;
    UnusedGaugesForm form;
    form.search = [&](const std::function<void(int, int)>& progress) {
        ++searches;
        QWidget& window = *QApplication::activeModalWidget();
        progress(2, 5);
        EXPECT_EQ(Control<QProgressBar>(window, "prbProgress").value(), 2);
        EXPECT_FALSE(window.close()) << "in the middle of the search";
        EXPECT_THROW(progress(3, 5), Stopped);
        EXPECT_FALSE(Control<QPushButton>(window, "cmdDelete").isEnabled());
        return gauges;
    };
    form.remove = [&](const std::vector<int>& rows) {
        removals.push_back(rows);
        std::ranges::sort(removals.back(), std::greater<>());
        for (const int row : removals.back())
            gauges.erase(gauges.begin() + row);
        return gauges;
    };
    user.Expect("frmUnusedGauges", [&](QWidget& window) {
        ASSERT_TRUE(QTest::qWaitFor([&] { return Control<QPushButton>(window, "cmdOK").isEnabled(); }));
        auto& list = Control<QListWidget>(window, "lstFileList");
        ASSERT_EQ(list.count(), 3);
        EXPECT_EQ(list.item(2)->toolTip(), "C:\\old\\twin.gau");
        Click(window, "cmdDelete"); // nothing is selected
        ClickRow(list, 0);
        QTest::mouseClick(list.viewport(), Qt::LeftButton, Qt::ControlModifier,
                          list.visualItemRect(list.item(2)).center());
        QTest::keyClick(&list, Qt::Key_Delete);
        ASSERT_EQ(list.count(), 1);
        EXPECT_EQ(list.item(0)->text(), "fuel.gau");
        Click(window, "cmdDelete"); // what took the place of a deleted row is not selected
        QTest::keyClick(&list, Qt::Key_Down);
        EXPECT_TRUE(list.item(0)->isSelected());
        Click(window, "cmdOK");
    });
    dialogs.ShowUnusedGauges(form);
    EXPECT_EQ(searches, 1);
    EXPECT_EQ(removals, (std::vector<std::vector<int>>{{}, {2, 0}, {}}));
}

TEST_F(DialogTest, TheEndOfTheProgramClosesTheDialogAndComesThrough) {
    RenameForm rename;
    rename.accept = [](const RenameEntry&) -> bool { throw ProgramEnd{}; };
    user.Expect("frmRename", [](QWidget& window) { Click(window, "cmdAccept"); });
    EXPECT_THROW(dialogs.ShowRename(rename), ProgramEnd);
    ImportForm imported;
    imported.accept = [](int) -> bool { throw ProgramEnd{}; };
    user.Expect("frmMSFSImport", [](QWidget& window) { Click(window, "cmdOK"); });
    EXPECT_THROW(dialogs.ShowMSFSImport(imported), ProgramEnd);
    UnusedGaugesForm gauges;
    bool isSeen = false;
    gauges.search = [&](const auto&) -> std::vector<UnusedGauge> {
        EXPECT_TRUE(QTest::qWaitFor([&] { return isSeen; })); // the user looks at it in the meantime
        throw ProgramEnd{};
    };
    user.Expect("frmUnusedGauges", [&](QWidget&) { isSeen = true; });
    EXPECT_THROW(dialogs.ShowUnusedGauges(gauges), ProgramEnd);
}

TEST_F(DialogTest, AStatusWindowShowsItsText) {
    user.Expect("frmImportStatus", [](QWidget& window) {
        EXPECT_EQ(Control<QPlainTextEdit>(window, "txtImportStatus").toPlainText(), "Lear ...\n\nx.gau");
        Click(window, "cmdOK");
    });
    dialogs.ShowImportStatus("Lear ...\r\n\r\nx.gau");
}

class LocationsTest : public DialogTest {
  protected:
    LocationsTest() {
        settings.LocationProfiles[0] = {"FS2002", "C:\\Staging\\", "C:\\Hangar\\", "C:\\FS2002\\", "", ""};
        settings.LocationProfiles[4] = {"CFS", "C:\\S4\\", "C:\\H4\\", "C:\\CFS\\", "", ""};
        settings.locations = {"C:\\Staging\\", "C:\\Hangar\\", "C:\\FS2002\\"};
    }
    Settings settings;
};

TEST_F(LocationsTest, AProfileFillsTheDirectoriesAndWhatIsTypedComesBack) {
    user.Expect("frmLocations", [](QWidget& window) {
        EXPECT_EQ(Control<QComboBox>(window, "cboLocationProfile").currentText(), "FS2002");
        EXPECT_EQ(Control<QLineEdit>(window, "txtHangarDir").text(), "C:\\Hangar\\");
        Pick(window, "cboLocationProfile", "CFS");
        EXPECT_EQ(Control<QLineEdit>(window, "txtStagingDir").text(), "C:\\S4\\");
        Type(window, "txtStagingDir", "c:\\staging");
        Type(window, "txtHangarDir", "");
        Click(window, "cmdAccept");
    });
    const auto entry = dialogs.ShowLocations(settings, {});
    ASSERT_TRUE(entry);
    EXPECT_EQ(entry->profileText, "CFS");
    EXPECT_EQ(entry->locations.StagingDir, "c:\\staging\\");
    EXPECT_EQ(entry->locations.HangarDir, "");
    EXPECT_EQ(entry->locations.MsfsDir, "C:\\CFS\\");
    EXPECT_EQ(settings.locations.StagingDir, "C:\\Staging\\") << "the settings are the program's to change";
}

TEST_F(LocationsTest, BrowsingFillsTheTextBoxAndCancelLeavesIt) {
    drive.Fill("New", "Staging\\, ~kx~scratch\\, list.txt=x");
    user.Expect("frmLocations", [&](QWidget& window) {
        Type(window, "txtStagingDir", QString::fromStdString(drive.At("new")));
        Click(window, "cmdStagingDir");
        EXPECT_EQ(Control<QLineEdit>(window, "txtStagingDir").text().toStdString(), drive.At("New\\Staging"));
        Type(window, "txtHangarDir", "q:\\nowhere");
        Click(window, "cmdHangarDir");
        EXPECT_EQ(Control<QLineEdit>(window, "txtHangarDir").text(), "q:\\nowhere");
        Type(window, "txtMSFSDir", QString::fromStdString(drive.At("New\\not there yet")));
        Click(window, "cmdMSFSDir");
        EXPECT_EQ(Control<QLineEdit>(window, "txtMSFSDir").text().toStdString(), drive.At("New\\Made"));
        Click(window, "chkAskForLocations"); // counts however the dialog ends
        PressKey(window, Qt::Key_Escape);
    });
    user.Expect("frmDirSelect", [](QWidget& window) {
        auto& tree = Control<QTreeWidget>(window, "Dir1");
        EXPECT_EQ(tree.currentItem()->text(0), "New");
        EXPECT_EQ(tree.currentItem()->childCount(), 1); // directories, but not the program's own
        QTest::keyClick(&tree, Qt::Key_Down);
        Click(window, "cmdOk");
    });
    user.Expect("frmDirSelect", [](QWidget& window) { Click(window, "cmdCancel"); });
    // It opens above what is not there, and makes directories.
    user.Expect("frmDirSelect", [](QWidget& window) {
        Click(window, "cmdNewDirectory");
        Click(window, "cmdNewDirectory");
        EXPECT_EQ(Control<QTreeWidget>(window, "Dir1").currentItem()->text(0), "Made");
        Click(window, "cmdOk");
    });
    const auto name = [&](const char* text) {
        user.Expect("InputBox", [=](QWidget& window) {
            Type(window, "txtInput", text);
            PressKey(window, Qt::Key_Return);
        });
    };
    name("staging");
    user.ExpectMessage(
        QString::fromStdString("The directory " + drive.At("New\\staging\\") +
                               " could not be made (a file or directory of that name is already there).  "
                               "Please choose another name or another place."),
        "OK");
    name("Made");
    EXPECT_FALSE(dialogs.ShowLocations(settings, {}));
    EXPECT_TRUE(settings.AskLocationAtStart);
}

TEST_F(LocationsTest, TheFirstStartExplainsProposesAndSaysWhatIsTyped) {
    settings = {};
    int helps = 0;
    const LocationsForm form{LocationsFor::FirstStart, [&] { ++helps; }, {}};
    user.Expect("frmLocations", [&](QWidget& window) {
        const auto& word = Control<QLabel>(window, "lblStagingWord");
        const auto says = [&](const QString& text) {
            EXPECT_TRUE(QTest::qWaitFor([&] { return word.text() == text; })) << word.text().toStdString();
        };
        EXPECT_TRUE(Control<QLabel>(window, "lblIntroduction").isVisible());
        EXPECT_FALSE(Control<QComboBox>(window, "cboLocationProfile").isVisible());
        const QSize before = window.minimumSizeHint();
        Type(window, "txtStagingDir", "fs");
        says("Enter a whole path that begins with a drive, such as c:\\staging.");
        EXPECT_EQ(Control<QLineEdit>(window, "txtStagingDir").accessibleDescription(), word.text());
        EXPECT_FALSE(Control<QLabel>(window, "imgStagingWord").pixmap(Qt::ReturnByValue).isNull());
        Type(window, "txtStagingDir", QString::fromStdString(drive.At("H")));
        EXPECT_EQ(word.text(), "") << "the word on what stood there goes at once";
        Type(window, "txtHangarDir", QString::fromStdString(drive.At("H")));
        says("The same as the Hangar location.  Choose another.");
        EXPECT_EQ(window.minimumSizeHint(), before) << "nothing moves for a word";
        Click(window, "cmdHelp");
        PressKey(window, Qt::Key_F1);
        EXPECT_EQ(helps, 2);
        EXPECT_EQ(Control<QPushButton>(window, "cmdCancel").text(), "E&xit");
        Click(window, "cmdCancel");
    });
    EXPECT_FALSE(dialogs.ShowLocations(settings, form));
}

TEST_F(LocationsTest, AProfileIsEnteredCorrectedAndCleared) {
    drive.Fill("", "S7\\, H7\\, CFS\\aircraft\\");
    ProfileEditor profiles(drive.Files(), dialogs, settings);
    const auto at = [&](const char* name) { return QString::fromStdString(drive.At(name)); };
    const auto text = [](const QWidget& window, const char* box) { return Control<QLineEdit>(window, box).text(); };
    user.Expect("frmLocationProfiles", [&](QWidget& window) {
        EXPECT_EQ(text(window, "txtLocationProfile_0") + text(window, "txtLocationProfile_9"), "FS2002");
        Click(window, "cmdModifyProfile_0"); // in use
        Click(window, "cmdModifyProfile_7");
        Click(window, "cmdModifyProfile_7");
        EXPECT_EQ(text(window, "txtLocationProfile_7"), "Seven") << "the second time cancelled";
        EXPECT_EQ(settings.LocationProfiles[7].StagingDir, drive.At("S7\\"));
        Click(window, "cmdModifyProfile_4");
        EXPECT_EQ(text(window, "txtLocationProfile_4"), "");
        Click(window, "OKButton");
    });
    user.ExpectMessage("You cannot modify a profile that is currently in use here.*", "OK");
    user.Expect("frmLocationProfileModify", [&](QWidget& window) {
        Type(window, "txtProfileName", "  cfs ");
        Type(window, "txtStagingDir", at("S7"));
        Type(window, "txtHangarDir", at("H7"));
        Type(window, "txtMSFSDir", at("CFS"));
        Click(window, "cmdAccept");
        EXPECT_TRUE(window.isVisible()) << "the name is another profile's";
        EXPECT_EQ(text(window, "txtProfileName") + text(window, "txtMSFSDir"), "cfs" + at("CFS\\"));
        Type(window, "txtProfileName", "Seven");
        PressKey(window, Qt::Key_Return); // Accept
    });
    user.ExpectMessage("The Profile Name you've entered already exists.", "OK");
    user.Expect("frmLocationProfileModify", [&](QWidget& window) {
        EXPECT_EQ(text(window, "txtHangarDir"), at("H7\\"));
        Type(window, "txtProfileName", "Eight");
        Click(window, "cmdCancel");
    });
    user.Expect("frmLocationProfileModify", [](QWidget& window) { Click(window, "cmdClear"); });
    dialogs.ShowLocationProfiles(profiles);
}

struct ListWindow : frmFileList {
    ListWindow() : frmFileList(nullptr) {}
    QListWidget& lines = Control<QListWidget>(*this, "lstFileList");
    QLineEdit& filter = Control<QLineEdit>(*this, "txtFilter");

    QStringList Seen() const {
        QStringList texts;
        for (int row = 0; row < lines.count(); ++row)
            if (!lines.isRowHidden(row))
                texts.append(lines.item(row)->text());
        return texts;
    }
};

TEST_F(DialogTest, TheListWindowTellsWhichLineWasChosen) {
    ListWindow list;
    EXPECT_FALSE(list.LastGeometry());
    list.ApplyGeometry({0, 0, 4000, 5000}); // as saved by a run that never showed it
    list.show();
    EXPECT_NE(list.pos(), QPoint());
    list.hide();
    list.ApplyGeometry({1500, 3000, 6000, 4500});
    QSignalSpy chosen(&list, &frmFileList::LineChosen);
    const std::vector<ListLine> lines = {
        {}, {{"Jets", ""}},  {}, {{"Jets", "B 17"}, true},  {{"Jets", "Orvane Courier"}},
        {}, {{"Props", ""}}, {}, {{"Props", "B 17"}, true}, {{"Props", "Pinehill Courier"}}};
    list.ShowLines("Package List", lines);
    EXPECT_EQ(list.windowTitle(), "Package List");
    EXPECT_EQ(list.size(), QSize(300, 400)); // 15 twips to the pixel
    ClickRow(list.lines, 3);
    QTest::keyClick(&list.lines, Qt::Key_Down);
    QTest::keyClick(&list.lines, Qt::Key_Return);

    // What is narrowed is only what is seen: a line keeps its position.
    Type(list, "txtFilter", "COUR");
    EXPECT_EQ(list.Seen(), QStringList({" -->  Jets", "Orvane Courier", " -->  Props", "Pinehill Courier"}));
    QTest::keyClick(&list.filter, Qt::Key_Down);
    QTest::keyClick(&list.filter, Qt::Key_Down);
    QTest::keyClick(&list.filter, Qt::Key_Return);
    Type(list, "txtFilter", "b 17");
    QTest::keyClick(&list.filter, Qt::Key_Enter); // the first that is left
    ClickRow(list.lines, 8);
    Type(list, "txtFilter", "jets");
    EXPECT_EQ(list.Seen(), QStringList()) << "a heading alone leads nowhere";
    QTest::keyClick(&list.filter, Qt::Key_Return);
    QTest::keyClick(&list.filter, Qt::Key_Escape);
    EXPECT_TRUE(list.isVisible());
    EXPECT_EQ(list.Seen().size(), 10);

    std::vector<int> rows;
    for (const auto& signal : chosen)
        rows.push_back(signal[0].toInt());
    EXPECT_EQ(rows, std::vector({3, 4, 9, 3, 8}));

    list.ShowLines("Package Categories", {{{"Jets", ""}}, {{"Props", ""}}});
    Type(list, "txtFilter", "prop");
    EXPECT_EQ(list.Seen(), QStringList(" -->  Props"));

    list.resize(330, 420);
    Click(list, "cmdCancel");
    EXPECT_FALSE(list.isVisible());
    ASSERT_TRUE(list.LastGeometry());
    EXPECT_EQ(list.LastGeometry()->width, 330 * 15);
}

TEST_F(DialogTest, ARefreshedListKeepsThePlaceAndTheFilter) {
    ListWindow list;
    std::vector<ListLine> lines;
    for (int i = 0; i < 2000; ++i)
        lines.push_back({{"Jets", "Package " + std::to_string(i)}});
    list.ShowLines("Package List", lines);
    list.lines.setCurrentRow(1500);
    auto& scroll = *list.lines.verticalScrollBar();
    const int place = scroll.value();
    ASSERT_GT(place, 0);

    lines.erase(lines.begin() + 3);
    lines[1499].isInstalled = true;
    list.ShowLines("Package List", lines);
    EXPECT_EQ(list.lines.currentItem()->text(), "< Package 1500 >");
    EXPECT_EQ(scroll.value(), place);

    Type(list, "txtFilter", "199");
    lines.pop_back();
    list.ShowLines("Package List", lines);
    EXPECT_EQ(list.Seen().size(), 11); // 199, 1199, 1990 to 1998
    list.ShowLines("Packages in Jets", lines);
    EXPECT_EQ(list.Seen().size(), 1998);
    EXPECT_EQ(scroll.value(), 0);
}

TEST_F(DialogTest, TheSplashMakesWayForTheMainWindow) {
    int shown = 0;
    frmSplash splash([&] { ++shown; });
    splash.show();
    EXPECT_EQ(Control<QLabel>(splash, "lblVersion").text(), "Version " KORVADEX_VERSION);
    EXPECT_TRUE(QTest::qWaitFor([&] { return shown > 0; }));
    EXPECT_EQ(shown, 1);
    EXPECT_FALSE(splash.isVisible());
}

} // namespace korvadex::test
