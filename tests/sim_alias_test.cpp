#include "sim/alias_users.h"
#include "tests/support/faulty_files.h"
#include "tests/support/sim_fixture.h"

namespace korvadex::test {

TEST_F(SimTest, RewritingAnAliasLine) {
    std::string text = "\xE9  \n; alias=no\r\n  Alias\t= old ; mine\r\n",
                expected = "\xE9  \n; alias=no\r\n  Alias\t= new\\panel ; mine\r\n";
    const std::string more = "x\r\n", beyond = "  alias=beyond\r\n";
    for (int line = 3; line < 2000; ++line) {
        text += more;
        expected += more;
    }
    text += beyond;
    expected += beyond;
    drive.Put("FS\\panel.cfg", text);
    const std::string path = drive.At("FS\\panel.cfg");
    ASSERT_TRUE(drive.Files().SetReadOnly(path, true));
    EXPECT_TRUE(RewriteAliasLine(context, "new\\panel", path));
    EXPECT_EQ(drive.Get("FS\\panel.cfg"), expected);

    // A second time there is nothing to write; a name that the file cannot hold leaves it alone.
    FaultyFiles watched(drive.Files());
    CommandContext watching = On(watched);
    EXPECT_TRUE(RewriteAliasLine(watching, "new\\panel", path));
    EXPECT_EQ(watched.Changes(), 0);
    EXPECT_EQ(RewriteAliasLine(watching, "\xD0\x96\\panel", path).fault, FileFault::BadName);
    EXPECT_EQ(drive.Get("FS\\panel.cfg"), expected);
}

} // namespace korvadex::test
