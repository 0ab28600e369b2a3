#include "media/gallery.h"

#include "tests/support/command_fixture.h"

namespace korvadex::test {
namespace {

TEST_F(CommandTest, AGalleryIsCutWhereAWalkIsCut) {
    for (int i = 0; i < MaxSubdirectoriesPerLevel; ++i)
        drive.MakeDirectory("Hangar\\Many\\" + std::to_string(i));
    drive.Put("Hangar\\Many\\999\\Images\\last.jpg", "x");
    const auto collect = [&] {
        return CollectGalleryImages(drive.Files(), locations, drive.At("Hangar\\Many\\"), limits);
    };
    Gallery gallery = collect();
    ASSERT_EQ(gallery.pictures.size(), 1u);
    EXPECT_EQ(gallery.pictures[0].path, drive.At("Hangar\\Many\\999\\Images\\last.jpg"));
    EXPECT_EQ(DescribeGaps(gallery, limits), "");
    drive.MakeDirectory("Hangar\\Many\\0 in front");
    gallery = collect();
    EXPECT_TRUE(gallery.pictures.empty());
    EXPECT_NE(DescribeGaps(gallery, limits), "");
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
