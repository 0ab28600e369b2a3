// The editor of the aircraft's information: what it changes in the file, and that nothing is ever lost.
#include "media/aircraft_info.h"
#include "media/info_offers.h"
#include "media/info_text.h"
#include "platform/windows_path.h"
#include "tests/support/sim_fixture.h"

namespace korvadex::test {
namespace {

TEST(InfoText, EscapesBothWays) {
    const struct {
        std::string file, dialog;
        bool isBothWays = true;
    } rows[] = {
        {"Cruise 120 kt\\nRange 480\\s see 5\\/6\\tend", "Cruise 120 kt\r\nRange 480; see 5/6\tend"},
        {"a\\n\\nb", "a\r\n\r\nb"},
        {"http:\\/\\/x", "http://x"},
        {"plain / slash; and \\q", "plain / slash; and \\q", false},
        {"\\\\//", "//", false}, // until no mark is left
        {"", ""},
    };
    for (const auto& row : rows) {
        std::string text = row.file;
        EXPECT_EQ(EscapeConfigText(text, true), row.dialog);
        if (row.isBothWays) {
            EXPECT_EQ(EscapeConfigText(text, false), row.file);
        }
    }
}

AircraftInfo Some() {
    AircraftInfo info;
    info.atcId = "N1";
    info.description = "One;\r\nTwo/\xC3\xA9";
    info.atcType = "GLIDER";
    return info;
}

std::string Written(std::string_view bytes, const AircraftInfo& info = Some()) {
    return WithAircraftInfo(ParseConfig(bytes), info);
}

struct FileRow {
    std::string name, before, after; // after Some()
};
class InfoFiles : public testing::TestWithParam<FileRow> {};

TEST_P(InfoFiles, ChangeInTheManagedKeysAlone) {
    const std::string after = Written(GetParam().before);
    EXPECT_EQ(after, GetParam().after);
    EXPECT_EQ(Written(after), after) << "a second time";
    ConfigInfo read = ReadAircraftInfo(ParseConfig(after));
    if (!read.hasConfiguration) {
        read.info.atcId = Some().atcId;
        read.info.description = Some().description;
    }
    EXPECT_EQ(read.info, Some());
}

#define CFG "atc_id=N1\r\ndescription=One\\s\\nTwo\\/\xE9\r\n"
#define GEN "atc_type=GLIDER\r\neditable=0\r\n"
const FileRow FileRows[] = {
    {"Comments",
     "; mine\r\n\r\n[fltsim.0]\r\ntitle=Caf\xE9\r\n//atc_id=no\r\n;description=no\r\natc_id=X\r\nsim=a\r\n"
     "\r\n[General]\r\n  key = v \r\neditable=1\r\n\r\n[other]\r\natc_id=kept\r\neditable=kept\r\n",
     "; mine\r\n\r\n[fltsim.0]\r\ntitle=Caf\xE9\r\n//atc_id=no\r\n;description=no\r\nsim=a\r\n" CFG
     "\r\n[General]\r\n  key = v \r\n" GEN "\r\n[other]\r\natc_id=kept\r\neditable=kept\r\n"},
    {"OddCaseTabsAndBlanks",
     "[FLTSIM.0]\r\n\tATC_ID\t=\tA\r\nAtc_Heavy= 1\r\natc_id=B\r\nUI_Type = C\r\nDescription = \"x\"\r\n\t\r\n"
     "[GENERAL]\r\nAtc_Model=B\r\n",
     "[FLTSIM.0]\r\n\tATC_ID\t=\tN1\r\nDescription = \"One\\s\\nTwo\\/\xE9\"\r\n\t\r\n[GENERAL]\r\n" GEN "\r\n"},
    {"MixedLineEnds", "[fltsim.0]\ntitle=a\r\nb=\r[General]\r\nc=1\n\r\n\n",
     "[fltsim.0]\ntitle=a\r\nb=\r" CFG "\r\n[General]\r\nc=1\n" GEN "\r\n\n"},
    {"LineFeeds", "[fltsim.0]\na=1\n[General]\n",
     "[fltsim.0]\na=1\natc_id=N1\ndescription=One\\s\\nTwo\\/"
     "\xE9\n\n[General]\natc_type=GLIDER\neditable=0\n\n"},
    {"NoFinalLineEnd", "[General]\r\na=1\r\n[fltsim.0]\r\ntitle=a",
     "[General]\r\na=1\r\n" GEN "\r\n[fltsim.0]\r\ntitle=a\r\n" CFG "\r\n"},
    {"AKeyAsTheUnendedLastLine", "[fltsim.0]\r\ntitle=a\r\nui_type=X",
     "[fltsim.0]\r\ntitle=a\r\n" CFG "\r\n[General]\r\n" GEN "\r\n"},
    {"SectionsTwice",
     "[fltsim.0]\r\natc_id=A\r\n[General]\r\n[fltsim.0]\r\natc_id=B\r\n[fltsim.1]\r\natc_id=C\r\n[general]\r\n"
     "editable=1\r\n",
     "[fltsim.0]\r\n" CFG "\r\n[General]\r\n" GEN
     "\r\n[fltsim.0]\r\natc_id=B\r\n[fltsim.1]\r\natc_id=C\r\n[general]\r\neditable=1\r\n"},
    {"AnIndentedSection", "[fltsim.0]\r\ntitle=a\r\n\t[fltsim.1]\r\natc_id=B\r\n",
     "[fltsim.0]\r\ntitle=a\r\n" CFG "\r\n\t[fltsim.1]\r\natc_id=B\r\n[General]\r\n" GEN "\r\n"},
    {"TheSameValuesAsTheyWereSpelt",
     "[fltsim.0]\r\nDescription=One;\\nTwo/\xE9 \r\nATC_ID= N1\r\n[General]\r\neditable=\"0\"\r\n",
     "[fltsim.0]\r\nATC_ID= N1\r\nDescription=One;\\nTwo/\xE9 \r\n\r\n[General]\r\n"
     "atc_type=GLIDER\r\neditable=\"0\"\r\n\r\n"},
    {"NoConfiguration", "[pilot]\r\natc_id=A", "[pilot]\r\natc_id=A\r\n[General]\r\n" GEN "\r\n"},
    {"TwoBytes", TwoByteText("[fltsim.0]\nui_type = A\n[General]\n"),
     TwoByteText("[fltsim.0]\natc_id=N1\ndescription=One\\s\\nTwo\\/\xE9\n\n[General]\n"
                 "atc_type=GLIDER\neditable=0\n\n")},
    {"MoreThan2000Lines", "[fltsim.0]\r\n" + std::string(6000, '\n') + "x=1\r\n[General]\r\n",
     "[fltsim.0]\r\n" + std::string(6000, '\n') + "x=1\r\n" CFG "\r\n[General]\r\n" GEN "\r\n"},
};
#undef CFG
#undef GEN
INSTANTIATE_TEST_SUITE_P(Files, InfoFiles, testing::ValuesIn(FileRows), RowName<FileRow>);

TEST(InfoText, EmptyFieldsHaveNoKey) {
    AircraftInfo info = Some();
    info.isHeavy = info.isEditable = true;
    const std::string full = Written("[fltsim.0]\r\nt=1\r\n\r\n[General]\r\n", info);
    EXPECT_NE(full.find("\r\natc_heavy=1\r\ndescription="), std::string::npos);
    EXPECT_EQ(ReadAircraftInfo(ParseConfig(full)).info, info);
    EXPECT_EQ(Written(full, {}), "[fltsim.0]\r\nt=1\r\n\r\n[General]\r\neditable=0\r\n\r\n");
    EXPECT_TRUE(ReadAircraftInfo(ParseConfig("[fltsim.0]\natc_heavy=\"01\"")).info.isHeavy);
    EXPECT_EQ(ReadAircraftInfo(ParseConfig("[fltsim.0]\natc_id=  A \natc_id=B")).info.atcId, "A");
}

TEST_F(SimTest, WhatWasNotAppliedIsDiscardedOnRequestOnly) {
    drive.Fill("", "Hangar\\Jets\\Lear\\aircraft.cfg=[fltsim.0]\r\ntitle=Lear, FS\\fs2002.exe=MZ");
    Select("Lear");
    user.ExpectInfo([&](const InfoForm& form) {
        EXPECT_EQ(form.aircraft, "Lear  -  Lear");
        AircraftInfo entered = form.info;
        EXPECT_TRUE(form.mayClose(entered));
        entered.isHeavy = true;
        const char* question = "What you have changed was not applied.  Do you want to discard it?";
        user.Expect(question, Answer::No).Expect(question, Answer::Yes);
        EXPECT_FALSE(form.mayClose(entered));
        EXPECT_TRUE(form.mayClose(entered));
    });
    EditAircraftInfo(context, package);
}

TEST_F(SimTest, InformationOffersWhatOthersUse) {
    drive.Put(
        "Hangar\\Props\\Cub\\aircraft.cfg",
        "[fltsim.0]\natc_airline=Zeta Air\nui_manufacturer=\"Orvane\"\n[fltsim.1]\n ATC_Airline=alpha\n[General]\n"
        "atc_type=orvane\natc_model=\n");
    drive.Put("FS\\aircraft\\Mine\\Aircraft.CFG", "ui_manufacturer=ORVANE\r\natc_type=Tern\r\natc_airline=ALPHA");
    drive.Put("FS\\aircraft\\Empty\\aircraft.cfg", "");
    drive.MakeDirectory("FS\\aircraft\\None");
    InfoOfferSearch search(drive.Files(), locations);
    const InfoOffers common = search.Offers();
    while (search.Continue(std::chrono::milliseconds(0))) {
    }
    const InfoOffers offers = search.Offers();
    EXPECT_EQ(offers.atcAirlines.size(), common.atcAirlines.size() + 2);
    EXPECT_EQ(offers.manufacturers.size(), common.manufacturers.size() + 1);
    EXPECT_EQ(offers.atcTypes.size(), common.atcTypes.size() + 2);
    EXPECT_EQ(offers.atcModels, common.atcModels);
    EXPECT_EQ(offers.atcAirlines.back(), "Zeta Air");
    EXPECT_TRUE(std::is_sorted(offers.atcTypes.begin(), offers.atcTypes.end(), LessNoCase));
}

} // namespace
} // namespace korvadex::test
