// The waits of a running command: key, line and yes/no reads from the
// keyboard (a scripted host) and from a redirected input file.
#include "input_fixture.h"

#include "support/temp_folder.h"

#include <windows.h>

namespace {

using EventPumpTest = InputTest;

TEST_F(EventPumpTest, LineReadEditsUpTo78Units)
{
    TheScreen.LineFeed();
    TheScreen.Write(L"Name? ");
    CommandRunning = 1;
    host.Chars(L"ab\tc");
    host.KeyDown(VK_HOME);
    host.Chars(L"<");
    host.KeyDown(VK_END);
    host.Chars(std::wstring(100, L'x') + L"\r");
    wchar_t buffer[80];
    ASSERT_NE(ReadLine(buffer), nullptr);
    std::wstring expected = L"<ab c" + std::wstring(78 - 5, L'x');
    EXPECT_EQ(std::wstring(buffer), expected);
    EXPECT_EQ(InputMode, 0);
    // The typed text stays on the screen behind the question, and the read
    // ended the line.
    EXPECT_EQ(Row(1) + Row(2), L"Name? " + expected);
    EXPECT_EQ(TheScreen.CursorX, 0);
    EXPECT_EQ(TheScreen.CursorY, 3);
    CommandRunning = 0;
}

TEST_F(EventPumpTest, CtrlCAndCtrlZEndALineRead)
{
    TheScreen.LineFeed();
    CommandRunning = 1;
    host.Chars(L"ab\x03" L"cd\r");
    wchar_t buffer[80];
    EXPECT_EQ(ReadLine(buffer), nullptr);
    EXPECT_EQ(TheScreen.BreakFlag, 1);
    EXPECT_EQ(Row(1), L"ab^C");
    TheScreen.BreakFlag = 0;

    // What follows the break is still waiting; Ctrl-Z ends the input for good.
    host.Script.clear();
    host.Chars(L"q\x1A");
    EXPECT_EQ(ReadLine(buffer), nullptr);
    EXPECT_EQ(TheEditor.EndOfInput, 1);
    EXPECT_EQ(TheScreen.BreakFlag, 0);
    EXPECT_EQ(Row(1), L"ab^Cq^Z");
    host.Chars(L"more\r");
    EXPECT_EQ(ReadLine(buffer), nullptr);
    EXPECT_EQ(ReadKey(), 0xFFFF);
    EXPECT_EQ(host.Script.size(), 5u);
    CommandRunning = 0;
}

TEST_F(EventPumpTest, AskYesNoTakesOnlyItsAnswers)
{
    host.Chars(L"q1 y");
    EXPECT_EQ(AskYesNo(), 1);
    EXPECT_EQ(Row(0), L">Y");
    host.Chars(L"\rN");
    EXPECT_EQ(AskYesNo(), 0);
    EXPECT_EQ(Row(1), L"N");
    host.Chars(L"x\x03");
    EXPECT_EQ(AskYesNo(), -1);
    EXPECT_EQ(Row(2), L"^C");
    EXPECT_EQ(TheScreen.BreakFlag, 1);
    TheScreen.BreakFlag = 0;
    // A program that is ending answers nothing, which is taken as a break.
    EXPECT_EQ(AskYesNo(), -1);
    EXPECT_EQ(InputMode, 0);
}

TEST_F(EventPumpTest, KeyReadsEchoAndBreak)
{
    host.Chars(L"z\t\r\x01");
    EXPECT_EQ(ReadKey(), L'z');
    EXPECT_EQ(ReadKey(), L'\t');
    EXPECT_EQ(Row(0), L">z");
    EXPECT_EQ(TheScreen.CursorX, 3); // a tab shows as one blank
    EXPECT_EQ(ReadKey(), L'\n');
    EXPECT_EQ(TheScreen.CursorY, 1);
    EXPECT_EQ(ReadKeyEcho(), 1); // no echo for other control keys
    EXPECT_EQ(TheScreen.CursorX, 0);

    host.Chars(L"k\x03");
    EXPECT_EQ(PauseKey(), 0);
    EXPECT_EQ(PauseKey(), 1);
    EXPECT_EQ(TheScreen.BreakFlag, 1);
    TheScreen.BreakFlag = 0;
    host.Chars(L"\x03");
    EXPECT_EQ(WaitKey(), 3);
    EXPECT_EQ(TheScreen.BreakFlag, 1);
    EXPECT_EQ(WaitKey(), 0); // nothing more will come
    EXPECT_EQ(host.CaretShows, host.CaretHides + 1); // only the prompt's caret is up

    host.Chars(L"\x1A");
    EXPECT_EQ(ReadKey(), 0xFFFF);
    EXPECT_EQ(TheEditor.EndOfInput, 1);
}

TEST_F(EventPumpTest, RedirectedLinesEndAtLfAndHideWhatFollowsALoneCr)
{
    TempFolder folder;
    folder.WriteBytes(L"in.txt", "one\r\ntwo\rhidden\nthree");
    ASSERT_TRUE(TheEditor.Input.Open((folder / L"in.txt").c_str()));
    wchar_t buffer[80];
    ASSERT_NE(ReadLine(buffer), nullptr);
    EXPECT_STREQ(buffer, L"one");
    ASSERT_NE(ReadLine(buffer), nullptr);
    EXPECT_STREQ(buffer, L"two");
    EXPECT_STREQ(buffer + 4, L"hidden");
    // The last line has no line end: it is read, and the input is over.
    ASSERT_NE(ReadLine(buffer), nullptr);
    EXPECT_STREQ(buffer, L"three");
    EXPECT_EQ(ReadLine(buffer), nullptr);
    EXPECT_EQ(ReadKey(), 0xFFFF);
    EXPECT_TRUE(host.Script.empty());
    EXPECT_EQ(Row(1), L""); // nothing was shown

    // A line without an end stops at 78 units and the next read goes on.
    TheEditor.EndOfInput = 0;
    folder.WriteBytes(L"long.txt", std::string(100, 'x') + "\x1A" + "after");
    ASSERT_TRUE(TheEditor.Input.Open((folder / L"long.txt").c_str()));
    ASSERT_NE(ReadLine(buffer), nullptr);
    EXPECT_EQ(lstrlenW(buffer), 78);
    ASSERT_NE(ReadLine(buffer), nullptr);
    EXPECT_EQ(std::wstring(buffer), std::wstring(22, L'x'));
    EXPECT_EQ(ReadLine(buffer), nullptr);
}

TEST_F(EventPumpTest, RedirectedKeysFollowTheByteOrderMark)
{
    TempFolder folder;
    struct Case {
        std::string bytes;
        std::wstring units;
    };
    // A byte above 0x7F is the code page's character.
    auto codePage = [](const std::string& bytes) {
        wchar_t wide[16];
        int n = MultiByteToWideChar(CP_OEMCP, 0, bytes.data(), int(bytes.size()), wide, 16);
        return std::wstring(wide, size_t(n));
    };
    const Case cases[] = {
        {"h\xE9", codePage("h\xE9")},
        {std::string("\xFF\xFEh\0\xE9\0", 6), L"h\xE9"},
        {std::string("\xFE\xFF\0h\x20\xAC", 6), L"h\x20AC"},
        {"\xEF\xBB\xBF" "a", codePage("\xEF\xBB\xBF" "a")}, // no other mark is known
        {"", L""},
        {"a\x1A" "b", L"a"},
    };
    for (const Case& c : cases) {
        TheEditor.EndOfInput = 0;
        folder.WriteBytes(L"keys.txt", c.bytes);
        ASSERT_TRUE(TheEditor.Input.Open((folder / L"keys.txt").c_str()));
        std::wstring read;
        for (wchar_t key; (key = ReadKey()) != 0xFFFF && read.size() < 10;) read += key;
        EXPECT_EQ(read, c.units) << c.bytes;
        EXPECT_EQ(TheEditor.EndOfInput, 1);
        TheEditor.Input.Close();
    }
    EXPECT_FALSE(TheEditor.Input.Open((folder / L"missing.txt").c_str()));
}

} // namespace
