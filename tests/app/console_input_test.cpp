// ombc.exe reads its input lines through the same line editor as the window:
// groups span lines, long lines are cut, and Unix mode converts each line.
#include "support/ombc_runner.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <string>

namespace {

TEST(ConsoleInput, LinesOfAGroupRunTogether)
{
    OmbcResult r = RunOmbc(L"", "(echo a\r\n   \r\necho b\n)\necho c\n");
    EXPECT_EQ(r.Output, L"a\r\nb\r\nc\r\n");
    // A group still open when the input ends never runs.
    r = RunOmbc(L"", "echo first\n{echo never\necho inside\n");
    EXPECT_EQ(r.Output, L"first\r\n");
    // The same for a command given on the command line.
    r = RunOmbc(L"/C \"(echo x) & echo y\"");
    EXPECT_EQ(r.Output, L"x\r\ny\r\n");
}

TEST(ConsoleInput, TypedLinesAreCutAndTabsBecomeBlanks)
{
    OmbcResult r = RunOmbc(L"", "echo a\tb\necho " + std::string(5000, 'x') + "\necho done\n");
    std::wstring text = JoinLines(r.Output);
    ASSERT_EQ(text.substr(0, 4), L"a b\n");
    // 4,095 units of line: "echo " and the first 4,090 of the x's, shown
    // over as many screen rows as they need.
    size_t xs = 0;
    for (wchar_t unit : text) xs += unit == L'x';
    EXPECT_EQ(xs, 4090u);
    EXPECT_EQ(text.substr(text.size() - 5), L"done\n");
}

TEST(ConsoleInput, UnixModeFromTheSettings)
{
    TempFolder folder;
    folder.WriteBytes(L"u.ini", "[UnixMode]\r\nUnix=1\r\nDisplay=1\r\n");
    OmbcResult r = RunOmbc(L"INI=" + (folder / L"u.ini"), "echo --x /y \"/z\"\n");
    EXPECT_EQ(r.Output, L"echo -x \\y \"/z\"\r\n-x \\y \"/z\"\r\n");
}

} // namespace
