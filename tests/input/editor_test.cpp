// The line editor driven through its real key and character handlers, with
// the screen as the user sees it: the row text, and the cursor where the
// caret is drawn.
#include "input_fixture.h"

#include <windows.h>

namespace {

using EditorTest = InputTest;

void ExpectCaret(int x, int y)
{
    EXPECT_EQ(TheScreen.CursorX, x);
    EXPECT_EQ(TheScreen.CursorY, y);
}

TEST_F(EditorTest, CaretMovesByCharacterAndWord)
{
    Type(L"echo hllo");
    EXPECT_EQ(Row(0), L">echo hllo");
    ExpectCaret(10, 0);

    Key(VK_HOME);
    ExpectCaret(1, 0);
    Key(VK_LEFT); // at the start Left does nothing
    ExpectCaret(1, 0);
    Key(VK_RIGHT, ModCtrl); // onto the next word's first letter
    ExpectCaret(6, 0);
    Key(VK_RIGHT);
    Type(L"e");
    EXPECT_EQ(Row(0), L">echo hello");
    EXPECT_EQ(Line(), L"echo hello");
    ExpectCaret(8, 0);

    Key(VK_END);
    ExpectCaret(11, 0);
    Key(VK_RIGHT); // at the end Right does nothing
    ExpectCaret(11, 0);
    Key(VK_LEFT, ModCtrl);
    ExpectCaret(6, 0);
    Key(VK_LEFT, ModCtrl);
    ExpectCaret(1, 0);
    Key(VK_RIGHT);
    Key(VK_LEFT, ModCtrl); // from column 1 word left goes to column 0
    ExpectCaret(1, 0);

    // Several blanks between words: word right skips them all, word left
    // comes back to the first letter.
    Key(VK_END);
    Type(L"   x");
    Key(VK_LEFT, ModCtrl);
    ExpectCaret(14, 0);
    Key(VK_HOME);
    Key(VK_RIGHT, ModCtrl, 2);
    ExpectCaret(14, 0);
}

TEST_F(EditorTest, InsertAndOverwriteModes)
{
    Type(L"echo hello");
    EXPECT_EQ(TheEditor.InsertMode, 1);
    Key(VK_INSERT);
    EXPECT_EQ(TheEditor.InsertMode, 0);
    EXPECT_EQ(host.CaretRebuilds, 1); // the caret takes the overwrite shape

    Key(VK_LEFT, ModCtrl);
    Type(L"J");
    EXPECT_EQ(Line(), L"echo Jello");
    ExpectCaret(7, 0);
    // Overwriting at the end appends.
    Key(VK_END);
    Type(L"!?");
    EXPECT_EQ(Line(), L"echo Jello!?");
    EXPECT_EQ(Row(0), L">echo Jello!?");

    Key(VK_INSERT);
    EXPECT_EQ(TheEditor.InsertMode, 1);
    Key(VK_HOME);
    Type(L"@");
    EXPECT_EQ(Line(), L"@echo Jello!?");
    ExpectCaret(2, 0);
}

TEST_F(EditorTest, BackspaceRemovesUnitsAndDeleteRemovesCharacters)
{
    const std::wstring face = L"\xD83D\xDE00"; // one character, two units
    Type(L"a" + face + L"b");
    EXPECT_EQ(TheScreen.RowText(0).substr(TheScreen.RowText(0).size() - 4, 3), L"a" + face);
    ExpectCaret(4, 0);

    TheEditor.EditorChar(8);
    EXPECT_EQ(Line(), L"a" + face);
    // Behind a surrogate pair Backspace takes its second unit only.
    TheEditor.EditorChar(8);
    EXPECT_EQ(Line(), L"a\xD83D");
    EXPECT_EQ(lstrlenW(TheEditor.Line), 2);

    TheEditor.EditorChar(0x1B);
    Type(face + L"b");
    Key(VK_HOME);
    // Delete at column 0 takes the whole pair.
    Key(VK_DELETE);
    EXPECT_EQ(Line(), L"b");
    EXPECT_EQ(Row(0), L">b");
    ExpectCaret(1, 0);
    TheEditor.EditorChar(8); // nothing in front of the caret
    Key(VK_END);
    Key(VK_DELETE); // nothing behind it
    EXPECT_EQ(Line(), L"b");
}

TEST_F(EditorTest, EscClearsTheLineOnTheScreen)
{
    Type(L"dir /w *.txt");
    Key(VK_LEFT, ModCtrl);
    TheEditor.EditorChar(0x1B);
    EXPECT_EQ(Line(), L"");
    EXPECT_EQ(TheEditor.Caret, 0);
    EXPECT_EQ(Row(0), L">");
    ExpectCaret(1, 0);
    Type(L"x");
    EXPECT_EQ(Row(0), L">x");
}

TEST_F(EditorTest, GroupOverSeveralLinesAsksMoreAndRunsOnce)
{
    Type(L"(echo a");
    EXPECT_EQ(EnterAndRun(), 0);
    EXPECT_EQ(Row(1), L"More?");
    ExpectCaret(6, 1);
    // Blanks alone neither run nor end the group.
    Type(L"   ");
    EXPECT_EQ(EnterAndRun(), 0);
    EXPECT_EQ(Row(2), L"More?");
    Type(L"echo b");
    EXPECT_EQ(EnterAndRun(), 0);
    Type(L")");
    EXPECT_EQ(TheEditor.EditorChar(L'\r'), 1);
    EXPECT_STREQ(TheEditor.Submitted, L"(echo a&echo b)");
    RunTopLevelLine();

    EXPECT_EQ(Row(0), L">(echo a");
    EXPECT_EQ(Row(2), L"More? echo b");
    EXPECT_EQ(Row(3), L"More? )");
    EXPECT_EQ(Row(4), L"a");
    EXPECT_EQ(Row(5), L"b");
    EXPECT_EQ(Row(6), L">");
    EXPECT_TRUE(OpenGroup.Empty());
    EXPECT_EQ(CommandRunning, 0);

    // A group opened behind an opening bracket needs no separator, and one
    // on a single line runs at once.
    Type(L"echo x & (");
    EXPECT_EQ(EnterAndRun(), 0);
    EXPECT_STREQ(OpenGroup.Text(), L"echo x & (");
    Type(L"echo y)");
    EXPECT_EQ(TheEditor.EditorChar(L'\r'), 1);
    EXPECT_STREQ(TheEditor.Submitted, L"echo x & (echo y)");
}

TEST_F(EditorTest, GroupTooLongForItsBufferIsDroppedWhole)
{
    wchar_t message[128];
    LoadStringW(GetModuleHandleW(nullptr), 59, message, 128);
    TheEditor.TypeLine((L"(echo " + std::wstring(3000, L'a')).c_str(), false);
    EXPECT_EQ(EnterAndRun(), 0);
    TheEditor.TypeLine((L"echo " + std::wstring(1100, L'b') + L")").c_str(), false);
    EXPECT_EQ(EnterAndRun(), 0);
    EXPECT_TRUE(OpenGroup.Empty());
    EXPECT_EQ(Row(TheScreen.CursorY - 2), message);
    EXPECT_EQ(Row(TheScreen.CursorY), L">");
    // The next line starts afresh.
    Type(L"echo ok");
    EXPECT_EQ(EnterAndRun(), 1);
    EXPECT_EQ(Row(TheScreen.CursorY - 1), L"ok");
}

TEST_F(EditorTest, LineTakes4095UnitsAndWrapsWithTheCaret)
{
    TheEditor.TypeLine(std::wstring(4100, L'x').c_str(), false);
    EXPECT_EQ(lstrlenW(TheEditor.Line), 4095);
    Type(L"y"); // the 4,096th unit is ignored
    EXPECT_EQ(lstrlenW(TheEditor.Line), 4095);
    EXPECT_EQ(TheEditor.Line[4094], L'x');

    // The line scrolled the screen; its anchor went up with it, above the
    // top, and the caret stands behind the last unit.
    int cells = 1 + 4095;
    EXPECT_LT(TheScreen.EditY, 0);
    ExpectCaret(cells % ScreenWidth, TheScreen.EditY + cells / ScreenWidth);
    EXPECT_EQ(Row(TheScreen.CursorY), std::wstring(size_t(cells % ScreenWidth), L'x'));

    // Typed into the middle, the line is full all the same.
    Key(VK_HOME);
    Type(L"z");
    EXPECT_EQ(TheEditor.Line[0], L'x');

    // At the start the caret's cell is above the screen: the caret is hidden
    // once, and shown again when it comes back.
    EXPECT_EQ(CaretHidden, 1);
    EXPECT_EQ(host.CaretShows - host.CaretHides, 0);
    Key(VK_END);
    EXPECT_EQ(CaretHidden, 0);
    EXPECT_EQ(host.CaretShows - host.CaretHides, 1);
}

TEST_F(EditorTest, CtrlCMidLineKeepsTheTextAndStartsAfresh)
{
    Type(L"(echo a");
    EnterAndRun();
    Type(L"echo hello");
    Key(VK_LEFT, 0, 3);
    EXPECT_EQ(Type(L"\x03"), 0);
    EXPECT_EQ(Row(1), L"More? echo he^Co");
    EXPECT_EQ(Row(2), L">");
    EXPECT_EQ(Line(), L"");
    EXPECT_TRUE(OpenGroup.Empty());
    ExpectCaret(1, 2);

    // Nothing of the dropped group runs later.
    Type(L"echo c");
    EXPECT_EQ(EnterAndRun(), 1);
    EXPECT_EQ(Row(3), L"c");
}

TEST_F(EditorTest, TypeLineWithSubmitReplacesTheLine)
{
    Type(L"old text");
    TheEditor.TypeLine(L"echo new", true);
    EXPECT_STREQ(TheEditor.Submitted, L"echo new");
    EXPECT_EQ(Row(0), L">echo new");
    EXPECT_EQ(Line(), L"");
    // Control units in typed text are ignored, as at the keyboard.
    TheEditor.TypeLine(L"a\tb\x01" L"c", false);
    EXPECT_EQ(Line(), L"abc");
}

TEST_F(EditorTest, DroppedFilesAreTypedAtTheCaret)
{
    Type(L"copy ");
    DroppedFile files[] = {{L"C:\\My Files\\Report.TXT", false}, {L"C:\\Data", true}};
    TheEditor.DropFiles(files, false);
    EXPECT_EQ(Line(), L"copy \"c:\\my files\\report.txt\" c:\\data\\ ");

    TheEditor.EditorChar(0x1B);
    DroppedFile folder[] = {{L"C:\\Some Dir", true}};
    TheEditor.DropFiles(folder, true);
    // A lone folder gets its backslash and, with a blank, no closing quote.
    EXPECT_EQ(Line(), L"\"C:\\Some Dir\\");

    TheEditor.EditorChar(0x1B);
    TheUnixMode.Unix = 1;
    DroppedFile file[] = {{L"C:\\Tmp\\A.txt", false}};
    TheEditor.DropFiles(file, true);
    EXPECT_EQ(Line(), L"C:/Tmp/A.txt ");
}

} // namespace
