#include "media/gallery.h"

#include "tests/support/command_fixture.h"

namespace korvadex::test {
namespace {

using Names = std::vector<std::string>;

class GalleryTest : public CommandTest {
  protected:
    // "Jets\Lear\(b).jpg" for each picture.
    Names Collect(const std::string& below = "") {
        gallery = CollectGalleryImages(drive.Files(), locations, locations.HangarDir + below, limits);
        Names names;
        for (const auto& picture : gallery.pictures) {
            EXPECT_TRUE(picture.path.starts_with(locations.HangarDir + picture.package.Text() + "\\Images\\"));
            names.push_back(picture.package.Text() + picture.path.substr(picture.path.rfind('\\')));
        }
        return names;
    }

    Gallery gallery;
};

TEST_F(GalleryTest, EveryPictureOfEveryPackage) {
    for (const char* name : {
             "Jets\\Lear\\Images\\a.jpg",
             "Jets\\Lear\\Images\\(b).JPG",
             "Jets\\Lear\\Images\\More\\c.gif",
             "Jets\\Lear\\Images\\notes.txt",
             "Jets\\Lear\\Images\\d.bmp",
             "Jets\\Lear\\e.jpg",
             "Jets\\beech\\images\\x.jpg", // in another case
             "Jets\\~kx~scratch\\Images\\x.jpg",
             "Jets\\Lear\\Images\\~kx~scratch\\x.jpg",
             "Jets\\Images\\no package.jpg", // neither is this one
             "Jets\\None\\Images\\read.txt", // a directory without a picture
             "Props\\Lear\\Images\\a.jpg",   // of the same name
             "Elsewhere\\x.jpg",
         })
        drive.Put("Hangar\\" + std::string(name), "x");
    const bool hasLink = drive.MakeLink("Hangar\\Jets\\Linked", "Hangar\\Props\\Lear");
    drive.MakeDirectory("Hangar\\Props\\LinkedImages");
    drive.MakeLink("Hangar\\Props\\LinkedImages\\Images", "Hangar\\Jets\\Lear\\Images");
    Names jets = {"Jets\\beech\\x.jpg", "Jets\\Lear\\(b).JPG", "Jets\\Lear\\a.jpg", "Jets\\Lear\\c.gif"};
    if (hasLink)
        jets.push_back("Jets\\Linked\\a.jpg");
    EXPECT_EQ(Collect("Jets\\"), jets);
    Names all = jets;
    all.push_back("Props\\Lear\\a.jpg");
    EXPECT_EQ(Collect(), all);
    EXPECT_EQ(Collect("Gone\\"), Names());
    EXPECT_EQ(DescribeGaps(gallery, limits), "");
}

TEST_F(GalleryTest, ALevelIsCutWhereAWalkCutsIt) {
    for (int i = 0; i < MaxSubdirectoriesPerLevel; ++i)
        drive.MakeDirectory("Hangar\\Many\\" + std::to_string(i));
    drive.Put("Hangar\\Many\\999\\Images\\last.jpg", "x");
    EXPECT_EQ(Collect("Many\\"), Names{"Many\\999\\last.jpg"});
    EXPECT_EQ(DescribeGaps(gallery, limits), "");
    drive.MakeDirectory("Hangar\\Many\\0 in front");
    EXPECT_EQ(Collect("Many\\"), Names());
    EXPECT_NE(DescribeGaps(gallery, limits), "");
}

TEST(GalleryPages, PagesOfFifteen) {
    const struct {
        int pictures, pages, onLast;
    } rows[] = {{0, 1, 0}, {1, 1, 1}, {15, 1, 15}, {16, 2, 1}, {31, 3, 1}, {45, 3, 15}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.pictures);
        GalleryPages pages(row.pictures);
        EXPECT_EQ(pages.Count(), row.pages);
        for (int page = 1; page <= row.pages; ++page) {
            EXPECT_EQ(pages.Number(), page);
            EXPECT_EQ(pages.Start(), 15 * page - 14);
            EXPECT_EQ(pages.HasPrevious(), page > 1);
            EXPECT_EQ(pages.HasNext(), page < row.pages);
            const int count = page < row.pages ? 15 : row.onLast;
            for (int thumbnail = 0; thumbnail < 15; ++thumbnail)
                EXPECT_EQ(pages.At(thumbnail), thumbnail < count ? pages.Start() + thumbnail : 0);
            pages.Next();
        }
        EXPECT_EQ(pages.Number(), row.pages); // there is none behind
        for (int page = 0; page < row.pages; ++page)
            pages.Previous();
        EXPECT_EQ(pages.Start(), 1);
    }
}

TEST(GalleryPages, KeysMoveTheMark) {
    using enum GalleryStep;
    const struct {
        int from;
        GalleryStep step;
        int to;
    } rows[] = {// 18 pictures: three rows of five, and one of three on the second page
                {0, Right, 1},      {0, PageDown, 16}, {0, Last, 18},  {1, Left, 1},      {15, Right, 16},
                {16, Left, 15},     {18, Right, 18},   {3, Up, 3},     {8, Up, 3},        {12, Down, 17},
                {15, Down, 18},     {16, Up, 11},      {17, Down, 17}, {2, PageDown, 17}, {9, PageDown, 18},
                {16, PageDown, 16}, {18, PageUp, 3},   {7, PageUp, 7}, {9, First, 1}};
    for (const auto& row : rows) {
        GalleryPages pages(18);
        pages.Mark(row.from);
        pages.Move(row.step);
        EXPECT_EQ(pages.Marked(), row.to) << row.from << " by " << static_cast<int>(row.step);
        EXPECT_EQ(pages.Number(), row.to > 15 ? 2 : 1);
    }
}

} // namespace
} // namespace korvadex::test
