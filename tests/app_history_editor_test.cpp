// What the window History shows and does.
#include "app/history_editor.h"
#include "package/meg.h"
#include "platform/text_file.h"
#include "tests/support/command_fixture.h"

namespace korvadex::test {
namespace {

using testing::ElementsAre;

// Three commands: a file of the Hangar goes, one comes into the simulator, a directory of the Hangar goes.
class HistoryWindow : public CommandTest {
  protected:
    HistoryWindow() {
        drive.Fill("Hangar\\Jets", "Lear\\a.txt=0123456789, Cub\\b.txt=b, Cub\\sub\\c.txt=c");
        history.SetLocations({locations.HangarDir, locations.StagingDir, locations.MsfsDir});
        history.Open(drive.At("journal\\"));
        Do({"Delete files", "Jets\\Lear"}, [&](FileSystem& files) { return files.Delete(Lear); });
        Do({"Install", "Jets\\Cub"}, [&](FileSystem& files) { return files.Copy(drive.At(CubFile), Installed); });
        Do({"Remove from Hangar", "Jets\\Cub"},
           [&](FileSystem& files) { return files.SetAside(drive.At("Hangar\\Jets\\Cub")); });
    }

    void Do(const CommandTitle& title, const std::function<Status(FileSystem&)>& change) {
        history.Begin(title);
        EXPECT_TRUE(change(history.Files()));
        EXPECT_TRUE(history.End());
    }
    std::vector<std::string> States() {
        std::vector<std::string> states;
        for (const HistoryRow& row : editor.Rows())
            states.push_back(row.state);
        return states;
    }

    static constexpr const char* CubFile = "Hangar\\Jets\\Cub\\b.txt";
    const std::string Lear = drive.At("Hangar\\Jets\\Lear\\a.txt"), Installed = drive.At("FS\\b.txt");
    History history{drive.Files(), [](auto&, auto&, bool) { return std::vector<Status>(); }};
    Settings settings;
    std::vector<std::string> refusals;
    HistoryEditor editor{history, drive.Files(), user, settings, [this](const HistoryEntry*, bool isUndo) {
                             const std::string refusal = isUndo ? history.Undo() : history.Redo();
                             if (!refusal.empty())
                                 refusals.push_back(refusal);
                             return refusal.empty();
                         }};
};

TEST_F(HistoryWindow, ListsTheNewestFirst) {
    std::vector<std::string> lines;
    for (const HistoryRow& row : editor.Rows())
        lines.push_back(row.command + "|" + row.package + "|" + row.files + "|" + row.size + "|" + row.state);
    EXPECT_THAT(lines, ElementsAre("Remove from Hangar|Jets\\Cub|2|2 bytes|", "Install|Jets\\Cub|1|1 byte|",
                                   "Delete files|Jets\\Lear|1|10 bytes|"));
    EXPECT_THAT(editor.FilesOf(0),
                ElementsAre(FileChange{ChangeKind::Went, drive.At(CubFile)},
                            FileChange{ChangeKind::Went, drive.At("Hangar\\Jets\\Cub\\sub\\c.txt")}));
    EXPECT_EQ(editor.DescribeKept(), "Kept at the moment: 12 bytes in " + drive.At("Hangar\\~kx~kept\\") +
                                         ".  The list itself is in " + drive.At("journal\\") + ".");
}

TEST_F(HistoryWindow, GoesBackToTheChosenOneAndForthAgain) {
    const auto after = drive.Tree();
    user.Expect("Do you want to take back the last 2 commands, down to \"Install Jets\\Cub\" (...)?", Answer::No,
                MessageIcon::Exclamation);
    editor.TakeBackTo(1);
    EXPECT_EQ(drive.Tree(), after);

    user.Expect("Do you want to take back the last 3 commands, down to \"Delete files Jets\\Lear\"...", Answer::Yes);
    editor.TakeBackTo(2);
    EXPECT_EQ(drive.Outline("Hangar"), "Jets\\Cub\\b.txt=b, Jets\\Cub\\sub\\c.txt=c, Jets\\Lear\\a.txt=0123456789");
    EXPECT_FALSE(drive.Has("FS\\b.txt"));
    EXPECT_THAT(States(), testing::Each("Taken back"));
    EXPECT_EQ(editor.UndosTo(2), 0);
    EXPECT_EQ(editor.RedosTo(0), 3);
    EXPECT_THAT(editor.FilesOf(1), ElementsAre(FileChange{ChangeKind::Came, Installed}));

    editor.DoAgainTo(2); // the first of them: no question
    EXPECT_THAT(States(), ElementsAre("Taken back", "Taken back", ""));
    user.Expect("Do you want to do 2 commands again, up to \"Remove from Hangar Jets\\Cub\"...", Answer::Yes);
    editor.DoAgainTo(0);
    EXPECT_EQ(drive.Tree(), after);

    editor.TakeBackTo(0);
    Do({"Install", "Jets\\Cub"},
       [&](FileSystem& files) { return files.Copy(drive.At(CubFile), drive.At("FS\\c.txt")); });
    EXPECT_THAT(States(), ElementsAre("", "Taken back for good", "", ""));
}

TEST_F(HistoryWindow, StopsAtTheFirstThatCannot) {
    drive.Put("FS\\b.txt", "of the user");
    user.Expect("Do you want to take back the last 3 commands...", Answer::Yes);
    editor.TakeBackTo(2);
    EXPECT_THAT(refusals, ElementsAre(Installed + " was changed since."));
    EXPECT_THAT(States(), ElementsAre("Taken back", "", ""));
    EXPECT_FALSE(drive.Has("Hangar\\Jets\\Lear\\a.txt"));
    EXPECT_EQ(drive.Get("FS\\b.txt"), "of the user");
}

TEST_F(HistoryWindow, AsksBeforeWhatIsKeptGoes) {
    const HistoryLimits fewer{.commands = 2}, less{.bytes = 5}, more{.commands = 40};
    const char* const ask = "There is more in the history than that: the oldest...";
    editor.SetLimits(more); // loses nothing
    EXPECT_EQ(editor.Limits(), more);
    user.Expect(ask, Answer::No);
    editor.SetLimits(fewer);
    EXPECT_EQ(editor.Limits(), more);
    user.Expect(ask, Answer::Yes);
    editor.SetLimits(less);
    EXPECT_EQ(settings.historyLimits, less);
    EXPECT_THAT(States(), ElementsAre("", "", "Cannot be taken back"));
    EXPECT_EQ(editor.Rows().back().reason, "What it had kept had to go, as there was no more room for it.");
    user.Expect(ask, Answer::Yes);
    editor.SetLimits(fewer);
    EXPECT_EQ(editor.Rows().size(), 2u);

    user.Expect("Do you want to empty the history?  What is kept (2 bytes) will be deleted...", Answer::No);
    editor.Empty();
    EXPECT_EQ(editor.Rows().size(), 2u);
    user.Expect("Do you want to empty the history?...", Answer::Yes);
    editor.Empty();
    EXPECT_TRUE(editor.Rows().empty());
    EXPECT_FALSE(drive.Has("Hangar\\~kx~kept"));
    EXPECT_EQ(drive.Outline("Hangar"), "Jets\\Lear\\");
}

TEST_F(HistoryWindow, NamesWhatStaysWhenItIsEmptied) {
    const std::string kept = drive.At("Hangar\\~kx~kept\\");
    ASSERT_TRUE(drive.Files().Rename(drive.At("Hangar"), drive.At("Away")));
    EXPECT_EQ(editor.DescribeKept(), "Kept at the moment: 0 bytes.  More is in " + kept +
                                         ", which cannot be reached now.  The list itself is in " +
                                         drive.At("journal\\") + ".");
    user.Expect("Do you want to empty...\n\nWhat is kept in " + kept + " stays there, as it cannot be reached now.",
                Answer::No);
    editor.Empty();
    ASSERT_TRUE(drive.Files().Rename(drive.At("Away"), drive.At("Hangar")));

    drive.Put("Hangar\\Jets\\Lear\\b.txt", "b");
    history.Begin({"Remove", "Jets\\Lear"});
    EXPECT_TRUE(history.Files().SetAside(drive.At("Hangar\\Jets\\Lear")));
    drive.Put("Hangar\\Jets\\Lear", "of somebody else");
    EXPECT_TRUE(history.End(false));
    user.Expect("Do you want to empty...\n\nWhat could not be taken back of a command that was cut off stays...",
                Answer::Yes);
    editor.Empty();
    EXPECT_THAT(States(), ElementsAre("Taken back in part"));
    EXPECT_THAT(editor.Rows().front().reason, testing::HasSubstr("What was kept of it is in " + kept));
}

TEST(SizeText, HasOneDecimalAndAUnit) {
    const struct {
        std::uint64_t bytes;
        const char* text;
    } rows[] = {{1, "1 byte"},
                {1023, "1023 bytes"},
                {1535, "1.5 KB"},
                {(1 << 20) - 1, "1.0 MB"},
                {std::uint64_t{5000} << 40, "5000.0 TB"}};
    for (const auto& row : rows)
        EXPECT_EQ(SizeText(row.bytes), row.text);
}

} // namespace
} // namespace korvadex::test
