#include "app/settings.h"
#include "platform/text_file.h"
#include "tests/support/temporary_drive.h"

#include <gmock/gmock.h>

#include <functional>
#include <sstream>

namespace korvadex::test {
namespace {

constexpr ScreenSize Screen{.height = 15000, .width = 20000};

// Lines as they stand in the file.
std::string Lines(std::string_view text) {
    std::string lines;
    for (const char c : text)
        lines += c == '\n' ? "\r\n" : std::string(1, c);
    return lines;
}

constexpr const char* ExampleFile =
    "ALTLOCATION0=FS2002\n"
    "ALTSTAGINGDIR0=C:\\Staging\\\n"
    "ALTHANGARDIR0=C:\\Hangar\\\n"
    "ALTMSFSDIR0=C:\\Program Files\\Microsoft Games\\FS2002\\\n"
    "ALTFIRSTPACKAGE0=\n"
    "ALTLOCATION2=CFS2\n"
    "ALTSTAGINGDIR2=D:\\Staging2\\\n"
    "ALTHANGARDIR2=D:\\H\xE4ngar2\\\n" // one byte of the code page
    "ALTMSFSDIR2=D:\\CFS2\\\nALTFIRSTPACKAGE2=Jets\\Lear\nLOCATIONLAST=0\nLOCATIONLASTZIP=C:\\Downloads\\\n";
constexpr WindowGeometry MainWindowGeometry{.top = 1200, .left = 900.5, .height = 7200, .width = 9600};

// What the rows of the table below are about.
std::string Describe(const Settings& settings) {
    std::ostringstream text;
    const auto add = [&](const char* name, const auto& geometry) {
        text << name;
        for (const std::optional<double> value :
             {std::optional<double>(geometry.top), std::optional<double>(geometry.left),
              std::optional<double>(geometry.height), std::optional<double>(geometry.width)})
            (value ? text << *value : text) << ' ';
    };
    text << "profile=" << settings.CurrentProfile << " "
         << settings.LocationProfiles[static_cast<std::size_t>(settings.CurrentProfile)].name;
    text << "|hangar=" << settings.locations.HangarDir
         << "|first=" << settings.LocationProfiles[static_cast<std::size_t>(settings.CurrentProfile)].firstPackage;
    text << "|ask=" << settings.AskLocationAtStart;
    add("|main=", settings.mainWindow);
    add("|list=", settings.ListWindowGeometry);
    text << "|limits=" << settings.limits.DirMax << " " << settings.limits.FileMax << "|";
    text << "collection=" << (settings.isCollectionShown ? *settings.isCollectionShown ? "shown" : "hidden" : "open")
         << " " << settings.layout.collectionWidth << "|layout=" << settings.layout.pictureShare << " "
         << settings.layout.queueShare << " " << settings.layout.isMaximised << " "
         << settings.layout.isOnePicturePerPackage
         << "|last=" << settings.LocationProfiles[static_cast<std::size_t>(settings.CurrentProfile)].lastPackage << "|";
    text << "history=" << settings.historyLimits.commands << " " << MegabytesOf(settings.historyLimits.bytes) << "|";
    text << "archives=";
    for (const auto& archive : settings.lastArchives)
        text << archive << " ";
    return text.str();
}

class SettingsFile : public testing::Test {
  protected:
    // Loads the text from nothing.
    const Settings& Loaded(std::string_view text) {
        drive.Put("App\\kx.ini", Lines(text));
        settings = {};
        settings.AppDir = drive.At("App\\");
        const auto isLoaded = LoadSettings(drive.Files(), Screen, settings);
        EXPECT_TRUE(isLoaded && *isLoaded);
        return settings;
    }

    TemporaryDrive drive;
    Settings settings;
};

TEST_F(SettingsFile, EachLineMeansWhatItSays) {
    const char* const none = "profile=0 A Location Profile|hangar=|";
    std::string wide = "\xFF\xFE";
    for (const char c : std::string("ALTLOCATION4=Wide"))
        wide += std::string{c, '\0'};
    const struct {
        const char* name;
        std::string text;
        const char* expected;
    } rows[] = {
        {"the first named profile is active", "ALTLOCATION5=Spare\n", "profile=5 Spare|"},
        {"a profile beyond the tenth", "ALTLOCATION0=Main\nLOCATIONLAST=12\n", "profile=0 Main|"},
        {"a negative profile", "ALTLOCATION0=Main\nLOCATIONLAST=-1\n", "profile=0 Main|"},
        {"no profile at all", "LOCATIONLAST=4\n", none},
        {"0 is free, 3 is named", "ALTLOCATION3=Spare\nLOCATIONLAST=0\n", "profile=3 Spare|"},
        {"a free slot above 0 stays", "ALTLOCATION3=Spare\nLOCATIONLAST=4\n", "profile=4 A Location Profile|"},
        {"a backslash is appended", "ALTLOCATION1=x\nALTHANGARDIR1=C:\\H\n", "profile=1 x|hangar=C:\\H\\|"},
        {"a slot without a name is emptied", "ALTHANGARDIR0=C:\\H\\\n", none},
        {"a name of blanks gets one", "ALTLOCATION2=  \nALTHANGARDIR2=C:\\H\\\n",
         "profile=2 A Location Profile|hangar=C:\\H\\|"},
        {"marked as UTF-8",
         "\xEF\xBB\xBF"
         "ALTLOCATION0=\xD0\x96",
         "profile=0 \xD0\x96|"},
        {"in letters of two bytes", wide, "profile=4 Wide|"},
        {"no digit before the equals sign", "ALTLOCATIONx=Main\nALT=x\n", none},
        {"the later line wins", "ALTLOCATION0=a\nALTLOCATION0=b=c\n", "profile=0 b=c|"},
        {"the first package of the active profile", "ALTLOCATION2=x\nALTFIRSTPACKAGE2=Jets\\Lear\n",
         "|first=Jets\\Lear|"},
        {"YES in capitals", "LOCATIONASK=YES\n", "|ask=1|"},
        {"yes in small letters", "LOCATIONASK=yes\n", "|ask=0|"},
        {"a blank after YES", "LOCATIONASK=YES \n", "|ask=0|"},
        {"a key in small letters", "locationask=YES\n", "|ask=0|"},
        {"a blank before the key", " MTOP=100\n", "|main=    |"},
        {"a blank after the key", "MTOP =100\n", "|main=    |"},
        {"a line without an equals sign", "MTOP\nMTOP=5", "|main=5 "},
        {"far above the screen", "MTOP=-100\n", "|main=-60 "},
        {"just above the screen", "MTOP=-70\n", "|main=-70 "},
        {"a number with a tail", "MTOP= 12.5twips\n", "|main=12.5 "},
        {"not a number to a person", "MTOP=nan\n", "|main=0 "},
        {"too large for a position", "MTOP=1e40\n", "|main=0 "},
        {"no size", "MHEIGHT=0\nMWIDTH=-5\n", "|main=    |"},
        {"as high as the screen", "MHEIGHT=15000\n", "|main=  15000  |"},
        {"larger than the screen", "MHEIGHT=15001\nMWIDTH=99999999999999999999\n", "|main=  14900 19900 |"},
        {"the list window", "LTOP=-71\nLLEFT=30\nLHEIGHT=900\nLWIDTH=2000\n", "|list=-60 30 900 2000 |"},
        {"a list window without a size", "LHEIGHT=0\nLWIDTH=-1\n", "|list=0 0 0 0 |"},
        {"limits below", "DIRMAX=10\nFILEMAX=10\n", "|limits=500 5000|"},
        {"limits above", "DIRMAX=800\nFILEMAX=5001\n", "|limits=800 5001|"},
        {"limits beyond all bounds", "DIRMAX=99999999999\n", "|limits=2147483647 5000|"},
        {"no word on the collection", "COLLECTION=yes\nCOLLECTIONWIDTH=-5\n", "|collection=open 0|"},
        {"the collection", "COLLECTION=YES\nCOLLECTIONWIDTH=3900\n", "|collection=shown 3900|"},
        {"no collection", "COLLECTION=YES\nCOLLECTION=NO\n", "|collection=hidden 0|"},
        {"a layout", "PICTURESHARE=40.5\nQUEUESHARE=25\nMMAXIMISED=YES\nONEPICTURE=YES\n", "|layout=40.5 25 1 1|"},
        {"no layout", "PICTURESHARE=-1\nMMAXIMISED=1\n", "|layout=0 0 0 0|"},
        {"the last package", "ALTLOCATION3=x\nLASTPACKAGE3=Jets\\Lear\n", "|last=Jets\\Lear|"},
        {"the last package of no profile", "LASTPACKAGE0=Jets\\Lear\nLASTPACKAGE=x\n", "|last=|"},
        {"the last archives", "LASTZIP0=C:\\b.zip\nLASTZIP4=\nLASTZIP9=C:\\a.zip\nLASTZIP=x\nLASTZIP10=x\n",
         "|archives=C:\\b.zip C:\\a.zip "},
        {"a history as it comes", "HISTORYCOMMANDS=0\nHISTORYMEGABYTES=none\n", "|history=30 2048|"},
        {"a shorter history", "HISTORYCOMMANDS=3\nHISTORYMEGABYTES=100\n", "|history=3 100|"},
        {"a history beyond all bounds", "HISTORYCOMMANDS=99999\nHISTORYMEGABYTES=99999999999\n",
         "|history=1000 1000000|"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_THAT(Describe(Loaded(row.text)), testing::HasSubstr(row.expected));
    }
}

TEST_F(SettingsFile, IsWrittenByteForByteOrStaysUntouched) {
    struct Row {
        const char* name;
        std::function<void(Settings&)> change;
        std::string written; // nothing: the file stays as it is
        bool isMinimised = true;
        FileFault fault = FileFault::None;
    };
    const std::string example = ExampleFile, window = "MTOP=1200\nMLEFT=900.5\nMHEIGHT=7200\nMWIDTH=9600\n";
    std::string asking = example;
    asking.insert(asking.find("LOCATIONLAST="), "LOCATIONASK=YES\n");
    std::string unstorableZip = example;
    unstorableZip.replace(unstorableZip.find("C:\\Downloads\\"), 13, "");

    const Row rows[] = {
        {"minimised", [](Settings&) {}, example},
        {"not minimised", [](Settings&) {}, example + window + "LTOP=0\nLLEFT=0\nLHEIGHT=4000\nLWIDTH=5000\n", false},
        {"a list window that is too small",
         [](Settings& s) { s.ListWindowGeometry = {.top = 10, .left = 20, .height = 900, .width = 1999}; },
         example + window + "LTOP=10\nLLEFT=20\nLHEIGHT=4000\nLWIDTH=5000\n", false},
        {"a list window of its own size",
         [](Settings& s) { s.ListWindowGeometry = {.top = 1, .left = 2, .height = 1000, .width = 2000}; },
         example + window + "LTOP=1\nLLEFT=2\nLHEIGHT=1000\nLWIDTH=2000\n", false},
        {"raised limits", [](Settings& s) { s.limits = {.DirMax = 800, .FileMax = 100000}; },
         example + "DIRMAX=800\nFILEMAX=100000\n"},
        {"another history", [](Settings& s) { s.historyLimits = {.commands = 5, .bytes = BytesOf(70)}; },
         example + "HISTORYCOMMANDS=5\nHISTORYMEGABYTES=70\n"},
        {"the collection hidden, and of its own width",
         [](Settings& s) {
             s.isCollectionShown = false;
             s.layout = {.collectionWidth = 3900,
                         .pictureShare = 40.5,
                         .queueShare = 25,
                         .isMaximised = true,
                         .isOnePicturePerPackage = true};
         },
         example +
             "COLLECTION=NO\nCOLLECTIONWIDTH=3900\nPICTURESHARE=40.5\nQUEUESHARE=25\nMMAXIMISED=YES\nONEPICTURE=YES\n"},
        {"the last package where there is no first one",
         [](Settings& s) {
             for (const std::size_t profile : {0U, 1U, 2U})
                 s.LocationProfiles[profile].lastPackage = "Jets\\Cub";
         },
         example + "LASTPACKAGE0=Jets\\Cub\n"},
        {"the last archives, but those that the file cannot hold",
         [](Settings& s) {
             s.NoteArchive("C:\\a.zip");
             s.NoteArchive("C:\\\xD0\x96.zip");
             s.NoteArchive("C:\\b.zip");
             s.NoteArchive("C:\\A.zip");
             for (int i = 0; i < 8; ++i)
                 s.lastArchives.push_back("C:\\" + std::to_string(i) + ".zip");
             s.NoteArchive("C:\\b.zip");
         },
         example + "LASTZIP0=C:\\b.zip\nLASTZIP1=C:\\A.zip\nLASTZIP3=C:\\0.zip\nLASTZIP4=C:\\1.zip\n"
                   "LASTZIP5=C:\\2.zip\nLASTZIP6=C:\\3.zip\nLASTZIP7=C:\\4.zip\nLASTZIP8=C:\\5.zip\n"
                   "LASTZIP9=C:\\6.zip\n"},
        {"asking at every start", [](Settings& s) { s.AskLocationAtStart = true; }, asking},
        {"blanks around a profile's values", [](Settings& s) { s.LocationProfiles[0].name = "  FS2002 "; }, example},
        {"an archive directory that the file cannot hold", [](Settings& s) { s.LastZipPath = "C:\\\xD0\x96\\"; },
         unstorableZip},
        {"no Hangar", [](Settings& s) { s.locations.HangarDir = ""; }, ""},
        {"a character without a byte", [](Settings& s) { s.LocationProfiles[2].HangarDir = "D:\\\xD0\x96\\"; }, "",
         true, FileFault::BadName},
        {"a value of two lines", [](Settings& s) { s.LocationProfiles[0].name = "a\r\nLOCATIONLAST=7"; }, "", true,
         FileFault::BadName},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const std::string before = example + "; a remark of the user\n";
        Loaded(before);
        row.change(settings);
        const auto main = row.isMinimised ? std::nullopt : std::optional(MainWindowGeometry);
        EXPECT_EQ(SaveSettings(drive.Files(), settings, main).fault, row.fault);
        EXPECT_EQ(drive.Get("App\\kx.ini"),
                  Lines(row.written.empty() ? before : row.written + "; a remark of the user\n"));
        EXPECT_EQ(drive.Names("App"), std::vector<std::string>{"kx.ini"});
    }
}

TEST_F(SettingsFile, WhatThisRunDidNotChangeStaysAsItWasEditedMeanwhile) {
    const std::string example = ExampleFile, spare = "ALTLOCATION2=CFS2\n";
    const auto with = [&](const std::string& from, const std::string& to) {
        std::string text = example;
        return text.replace(text.find(from), from.size(), to);
    };
    const auto none = [](Settings&) {};
    const struct {
        const char* name;
        std::function<void(Settings&)> change;
        std::string edited, written;
    } rows[] = {
        {"limits", none, example + "FILEMAX=20000\nHISTORYCOMMANDS=5\nHISTORYMEGABYTES=70\nCOLLECTION=YES\n",
         example + "FILEMAX=20000\nHISTORYCOMMANDS=5\nHISTORYMEGABYTES=70\nCOLLECTION=YES\n"},
        {"two keys of one profile", [](Settings& s) { s.LocationProfiles[2].firstPackage = "Jets\\Cub"; },
         with("D:\\CFS2\\", "D:\\CFS3"),
         with("D:\\CFS2\\\nALTFIRSTPACKAGE2=Jets\\Lear", "D:\\CFS3\\\nALTFIRSTPACKAGE2=Jets\\Cub")},
        {"the same key", [](Settings& s) { s.LastZipPath = "C:\\New\\"; }, with("C:\\Downloads", "C:\\Old"),
         with("C:\\Downloads", "C:\\New")},
        {"a profile that is gone", none, with(spare, ""),
         example.substr(0, example.find(spare)) + example.substr(example.find("LOCATIONLAST"))},
        {"the profile in use that is gone", none, with("ALTLOCATION0=FS2002\n", ""), example},
        {"all gone", none, "", example},
        {"keys that nobody knows", none, "[korvadex]\n" + example + "\nMTOP\nALTLOCATIONx=a\n",
         example + "[korvadex]\nMTOP\nALTLOCATIONx=a\n"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        Loaded(example);
        row.change(settings);
        drive.Put("App\\kx.ini", Lines(row.edited));
        // A second time: what was taken from the file is no change of this run.
        for (int i = 0; i < 2; ++i) {
            EXPECT_TRUE(SaveSettings(drive.Files(), settings, std::nullopt));
            EXPECT_EQ(drive.Get("App\\kx.ini"), Lines(row.written));
        }
    }
}

} // namespace
} // namespace korvadex::test
