#include "app/collection.h"
#include "package/file_primitives.h"
#include "platform/windows_path.h"
#include "tests/support/temporary_drive.h"

#include <gmock/gmock.h>

#include <functional>

namespace korvadex::test {
namespace {

using namespace std::chrono_literals;

class CollectionTest : public testing::Test {
  protected:
    CollectionTest() {
        drive.Fill("Hangar", "Empty\\, Jets\\Beech\\Texture\\a.bmp=x, Props\\Cub\\panel\\panel.cfg=alias=Lear\\panel, "
                             "Props\\Cub\\KX_Compression.txt=3 Meg");
        drive.Put("Hangar\\Jets\\Lear\\aircraft.cfg", "[fltsim.0]\r\ntitle=Red Flyer\r\nui_manufacturer=Gates\r\n"
                                                      "[fltsim.1]\r\ntitle=Blue Flyer\r\n[General]\r\n"
                                                      "performance=Cruise\\nfast\r\n");
        drive.Put("Hangar\\Jets\\Lear\\Texture\\b.bmp", std::string(160'000, 'x'));
        drive.Put("Hangar\\Props\\Dakota\\aircraft.cfg", "[fltsim.0]\r\ntitle=Dakota of GATES\r\n");
        drive.Fill("FS\\aircraft", "Dakota\\, Lear\\");
        int day = 0; // Beech is the oldest
        for (const char* package : {"Jets\\Beech", "Props\\Dakota", "Jets\\Lear", "Props\\Cub"}) {
            const std::string path = drive.At("Hangar\\" + std::string(package));
            const FileTime time = std::chrono::sys_days(std::chrono::January / ++day / 2020);
            for (const std::string& name : SubdirectoryNames(drive.Files(), path + "\\"))
                EXPECT_TRUE(drive.Files().SetTime(path + "\\" + name, time));
            EXPECT_TRUE(drive.Files().SetTime(path, time + 1h));
        }
        Read();
    }

    void Read() {
        collection.Take(ListHangar(drive.Files(), locations, SubdirectoryNames(drive.Files(), locations.HangarDir)));
        collection.LookAgain();
        while (collection.ReadMore(5ms))
            continue;
    }
    // "Jets 2: Beech, Lear; Props 1: Cub"
    std::string Shown(const char* filter, CollectionOrder order = CollectionOrder::Name) const {
        std::string text;
        for (const CollectionCategory& category : collection.Arrange(filter, order)) {
            text += (text.empty() ? "" : "; ") + category.name + " " + std::to_string(category.count) + ":";
            for (const CollectionPackage& package : category.packages)
                text += " " + package.ref.name;
        }
        return text;
    }
    // What is known of the packages of Jets, or of one.
    std::string Known(const std::string& category, const std::string& name) const {
        for (const CollectionCategory& shown : collection.Arrange())
            for (const CollectionPackage& package : shown.packages)
                if (package.ref == PackageRef{category, name})
                    return DescribeMarks(package) + "|" + package.facts.title + "|" +
                           std::to_string(package.facts.bytes);
        return "none";
    }

    TemporaryDrive drive;
    const Locations locations{drive.At("Staging\\"), drive.At("Hangar\\"), drive.At("FS\\")};
    Collection collection{drive.Files(), locations};
};

TEST_F(CollectionTest, IsFilteredAndSorted) {
    const struct {
        const char* filter;
        CollectionOrder order;
        const char* shown;
    } rows[] = {
        {"", CollectionOrder::Name, "Empty 0:; Jets 2: Beech Lear; Props 2: Cub Dakota"},
        {" ", CollectionOrder::Installed, "Empty 0:; Jets 2: Lear Beech; Props 2: Dakota Cub"},
        {"", CollectionOrder::Size, "Empty 0:; Jets 2: Lear Beech; Props 2: Dakota Cub"},
        {"", CollectionOrder::Added, "Empty 0:; Jets 2: Lear Beech; Props 2: Cub Dakota"},
        {"CU", CollectionOrder::Name, "Props 2: Cub"},
        {"blue", CollectionOrder::Name, "Jets 2: Lear"},                      // one of several titles
        {"gates", CollectionOrder::Name, "Jets 2: Lear; Props 2: Dakota"},    // a manufacturer, a title
        {"  FAST\tflyer lear ", CollectionOrder::Name, "Jets 2: Lear"},       // all words, wherever
        {"gates cub", CollectionOrder::Name, ""},                             //
        {"jets", CollectionOrder::Name, ""},                                  // no category
        {"e", CollectionOrder::Added, "Jets 2: Lear Beech; Props 2: Dakota"}, //
    };
    for (const auto& row : rows)
        EXPECT_EQ(Shown(row.filter, row.order), row.shown) << row.filter;
}

TEST_F(CollectionTest, TellsWhatIsKnown) {
    EXPECT_EQ(Known("Jets", "Lear").substr(0, 26), "Lear, installed in MSFS||1");
    EXPECT_EQ(Known("Jets", "Beech"), "Beech||1");
    EXPECT_EQ(Known("Props", "Cub"), "Cub, compressed, uses lear\\panel||21");
    EXPECT_EQ(Known("Props", "Dakota"), "Dakota, installed in MSFS|Dakota of GATES|35");
    collection.NoteMissingGauges("LEAR", {"clock.gau", "dial.gau"});
    const CollectionPackage lear = collection.Arrange("lear").front().packages.front();
    EXPECT_THAT(DescribeMarks(lear), testing::EndsWith(", gauges are missing"));
    EXPECT_THAT(DescribePackage(lear), testing::MatchesRegex("Jets.Lear\r\nInstalled in MSFS\r\n0.2 Meg\r\nAdded .*\r\n"
                                                             "Gauges that were missing in MSFS at the last check: "
                                                             "clock.gau\r\ndial.gau"));
    EXPECT_TRUE(drive.Files().RemoveDirectory(drive.At("FS\\aircraft\\Lear")));
    Read();
    drive.MakeDirectory("FS\\aircraft\\Lear"); // installed anew, and not checked yet
    Read();
    EXPECT_EQ(DescribeMarks(collection.Arrange("lear").front().packages.front()), "Lear, installed in MSFS");
}

TEST_F(CollectionTest, FollowsWhatChangesOnTheDisk) {
    const struct {
        const char* name;
        std::function<void()> change;
        const char *category, *package, *known;
    } rows[] = {
        {"nothing", [] {}, "Jets", "Beech", "Beech||1"},
        {"a file of the package's own directory", [&] { drive.Put("Hangar\\Jets\\Beech\\aircraft.cfg", "title=x"); },
         "Jets", "Beech", "Beech|x|8"},
        {"a new file below", [&] { drive.Put("Hangar\\Jets\\Beech\\Texture\\b.bmp", "xx"); }, "Jets", "Beech",
         "Beech|x|10"},
        {"the bytes of a file below",
         [&] {
             drive.Put("Hangar\\Jets\\Beech\\Texture\\b.bmp", "xxx");
             collection.Forget({"Jets", "Beech"});
         },
         "Jets", "Beech", "Beech|x|11"},
        {"another name",
         [&] { EXPECT_TRUE(drive.Files().Rename(drive.At("Hangar\\Jets\\Beech"), drive.At("Hangar\\Empty\\New"))); },
         "Empty", "New", "New|x|11"},
        {"gone", [] {}, "Jets", "Beech", "none"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const int before = collection.Revision();
        const std::string knownBefore = Known(row.category, row.package);
        row.change();
        Read();
        EXPECT_EQ(Known(row.category, row.package), row.known);
        EXPECT_EQ(collection.Revision() != before, knownBefore != row.known) << "shown again for nothing";
    }
    EXPECT_EQ(Shown("beech"), "");
    EXPECT_EQ(Shown("new"), "Empty 1: New");
    // In the middle of reading all is there by its name.
    Collection fresh(drive.Files(), locations);
    fresh.Take(collection.Listing());
    EXPECT_TRUE(fresh.ReadMore(0ms));
    EXPECT_EQ(fresh.Arrange("new").size(), 1u);
    EXPECT_FALSE(fresh.Arrange("new").front().packages.front().facts.isRead);
}

} // namespace
} // namespace korvadex::test
