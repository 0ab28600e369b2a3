// The pictures of a package: the names they take, which is the first, and how new ones get in.
#include "media/picture_import.h"
#include "media/shown_pictures.h"
#include "package/file_primitives.h"
#include "package/load_package.h"
#include "platform/windows_path.h"
#include "tests/support/command_fixture.h"
#include "tests/support/fake_converter.h"
#include "tests/support/faulty_files.h"

namespace korvadex::test {

namespace {

using Names = std::vector<std::string>;

class PicturesTest : public CommandTest {
  protected:
    // The package holds these pictures, each with its first name as its bytes.
    void Load(const Names& pictures) {
        drive.MakeDirectory("Hangar\\Jets\\Lear");
        for (const auto& name : pictures)
            drive.Put("Hangar\\Jets\\Lear\\" + name, name);
        Load();
    }
    void Load() { LoadPackage(context, {"Jets", "Lear"}, package); }
    std::map<std::string, std::string> Content() const { return drive.Tree("Hangar\\Jets\\Lear"); }
    Names Import(FileSystem& files, const Names& sources) {
        OfferedPictures offered;
        for (const auto& name : sources)
            offered.files.push_back(drive.At(name));
        CommandContext with{files, launcher, locations, limits, user, display};
        return ImportPictures(with, converter, package, offered, "Lear");
    }

    LoadedPackage package;
    FakeConverter converter;
};

} // namespace

TEST_F(PicturesTest, GoingRound) {
    const struct {
        int count, index, next, previous;
    } rows[] = {{0, 0, 0, 0}, {1, 1, 1, 1}, {3, 1, 2, 3}, {3, 2, 3, 1}, {3, 3, 1, 2}};
    for (const auto& row : rows) {
        package.pictures.assign(std::size_t(row.count), "a.jpg");
        EXPECT_EQ(NextImage(package, row.index), row.next) << row.count << ", " << row.index;
        EXPECT_EQ(PreviousImage(package, row.index), row.previous) << row.count << ", " << row.index;
    }
}

TEST_F(PicturesTest, OnePictureIsMadeTheFirst) {
    const struct {
        const char* title;
        Names before;
        const char* chosen;
        std::map<std::string, std::string> after; // new name, old name
    } rows[] = {
        {"the only mark", {"a.jpg", "b.GIF"}, "b.GIF", {{"a.jpg", "a.jpg"}, {"(b).GIF", "b.GIF"}}},
        {"it has the mark", {"(a).jpg", "b.jpg"}, "(a).jpg", {{"(a).jpg", "(a).jpg"}, {"b.jpg", "b.jpg"}}},
        {"its own plain name", {"(a).jpg", "A.jpg"}, "A.jpg", {{"A(1).jpg", "(a).jpg"}, {"(A).jpg", "A.jpg"}}},
        {"plain names are taken",
         {"(a).jpg", "a.jpg", "a(1).jpg", "c.jpg"},
         "c.jpg",
         {{"a(2).jpg", "(a).jpg"}, {"a.jpg", "a.jpg"}, {"a(1).jpg", "a(1).jpg"}, {"(c).jpg", "c.jpg"}}},
        {"several marks, one twice, one empty",
         {"(a).jpg", "((b)).jpg", "().gif", "c.jpg"},
         "c.jpg",
         {{"a.jpg", "(a).jpg"}, {"b.jpg", "((b)).jpg"}, {"picture.gif", "().gif"}, {"(c).jpg", "c.jpg"}}},
        {"a number must not make a mark",
         {"((a).jpg", "(a.jpg", "c.jpg"},
         "c.jpg",
         {{"a(1).jpg", "((a).jpg"}, {"(a.jpg", "(a.jpg"}, {"(c).jpg", "c.jpg"}}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.title);
        drive.MakeDirectory("Hangar\\Jets\\Lear");
        ASSERT_EQ(Content().size(), 0U);
        Load(row.before);
        EXPECT_TRUE(MakeFirstImage(context, package, drive.At("Hangar\\Jets\\Lear\\") + row.chosen));
        auto after = Content();
        if (row.after.contains("A(1).jpg") && after.contains("a(1).jpg")) // the case is that of the old name
            after["A(1).jpg"] = std::exchange(after["a(1).jpg"], ""), after.erase("a(1).jpg");
        EXPECT_EQ(after, row.after);
        DeleteTree(context, drive.At("Hangar\\Jets\\Lear\\"));
    }
}

TEST_F(PicturesTest, APictureThatCannotBeRenamedStaysAndIsNamed) {
    Load({"(a).jpg", "b.jpg"});
    const auto before = Content();
    FaultyFiles faulty(drive.Files());
    faulty.FailAt(1, FileFault::Denied);
    CommandContext with{faulty, launcher, locations, limits, user, display};
    user.Expect("The picture " + package.pictures[0] + " could not be renamed because access was denied...",
                Answer::Ok);
    EXPECT_FALSE(MakeFirstImage(with, package, package.pictures[1]));
    EXPECT_EQ(Content(), before);
}

TEST_F(PicturesTest, TheImagesDirectoryGoesWithItsLastPicture) {
    Load({"images\\a.jpg"});
    user.Expect("Delete a.jpg?", Answer::No).Expect("Delete a.jpg?", Answer::Yes);
    EXPECT_FALSE(DeleteImage(context, package.pictures[0]));
    ASSERT_TRUE(drive.Files().Info(package.pictures[0]));
    static_cast<void>(drive.Files().SetReadOnly(package.pictures[0], true));
    RemoveEmptyImagesDirectory(drive.Files(), package);
    EXPECT_TRUE(DeleteImage(context, package.pictures[0]));
    Load();
    RemoveEmptyImagesDirectory(drive.Files(), package);
    EXPECT_EQ(Content().size(), 0U);
    EXPECT_FALSE(HasChangedOnDisk(drive.Files(), package));
    drive.Put("Hangar\\Jets\\Lear\\images\\read.txt", "x");
    Load();
    RemoveEmptyImagesDirectory(drive.Files(), package);
    EXPECT_EQ(Content().size(), 2U);
}

TEST_F(PicturesTest, ImportsTakeFreeNames) {
    // A second shot.jpg anywhere in the package would make it unloadable.
    Load({"IMAGES\\one.jpg", "Texture\\Shot.JPG", "(first).jpg"});
    auto expected = Content();
    for (const char* name : {"ONE.jpg", "shot.jpeg", "flat.png", "(mark).gif", "note.txt", "a.b.jpg"})
        drive.Put("from\\" + std::string(name), "new " + std::string(name));
    const std::string own = package.pictures[1]; // one.jpg
    user.Expect("These pictures were not imported:\n\n" + drive.At("from\\note.txt") + ": no picture.\n" + own +
                    ": it is a picture of this package already.",
                Answer::Ok, MessageIcon::Exclamation);
    OfferedPictures offered{.files = {}, .jpeg = "pasted", .problem = ""};
    for (const char* name : {"ONE.jpg", "note.txt", "shot.jpeg", "flat.png", "(mark).gif", "a.b.jpg"})
        offered.files.push_back(drive.At("from\\") + name);
    offered.files.push_back(own);
    const auto paths = ImportPictures(context, converter, package, offered, "(Lear)");
    expected["IMAGES\\ONE(1).jpg"] = "new ONE.jpg";
    expected["IMAGES\\shot(1).jpg"] = "new shot.jpeg";
    expected["IMAGES\\flat.jpg"] = "a JPEG";
    expected["IMAGES\\mark.gif"] = "new (mark).gif";
    expected["IMAGES\\a.b.jpg"] = "new a.b.jpg";
    expected["IMAGES\\Lear.jpg"] = "pasted";
    EXPECT_EQ(Content(), expected);
    EXPECT_EQ(paths.size(), 6U);
    EXPECT_EQ(LastPathComponent(paths.front()), "ONE(1).jpg");
    Load(); // the package is whole
    EXPECT_EQ(package.pictures.size(), 9U);
    EXPECT_EQ(drive.Names("Hangar").size(), Content().size() + 2) << "scratch is left";
}

TEST_F(PicturesTest, NoFaultLeavesAHalfPicture) {
    drive.Put("one.jpg", "one");
    drive.Put("two.png", "two");
    const struct {
        const char* change;
        std::map<std::string, std::string> imported;
    } rows[] = {
        {"CreateDirectory", {}},
        {"Rename", {}},
        {"Copy", {{"Images\\", ""}, {"Images\\two.jpg", "a JPEG"}}},
        {"CreateNew", {{"Images\\", ""}, {"Images\\one.jpg", "one"}}},
        {"Write", {{"Images\\", ""}, {"Images\\one.jpg", "one"}}},
        {"Close", {{"Images\\", ""}, {"Images\\one.jpg", "one"}}},
        {"Flush", {{"Images\\", ""}, {"Images\\one.jpg", "one"}, {"Images\\two.jpg", "a JPEG"}}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.change);
        Load({});
        FaultyFiles faulty(drive.Files());
        faulty.FailWhere([&](const std::string& change, auto&) {
            return change == row.change ? FileFault::DiskFull : FileFault::None;
        });
        user.Expect(row.imported.empty()       ? "These pictures were not imported:..."
                    : row.imported.size() == 2 ? "This picture was not imported:..."
                                               : "Not all that was imported could be written to the disk:...",
                    Answer::Ok);
        Import(faulty, {"one.jpg", "two.png"});
        EXPECT_EQ(Content(), row.imported);
        EXPECT_FALSE(drive.Has("Hangar\\~kx~scratch"));
        EXPECT_NE(user.transcript.back().find("the disk is full"), std::string::npos);
        DeleteTree(context, drive.At("Hangar\\Jets\\Lear\\"));
    }
}

} // namespace korvadex::test
