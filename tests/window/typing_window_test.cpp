// The real main window and window host in this process: characters posted to
// the window reach the editor through the window procedure, Ctrl-C and
// Ctrl-S posted during output act at the next line end, and the nested reads
// take their keys from the message queue.
#include "app/event_pump.h"
#include "app/globals.h"
#include "app/main_window.h"
#include "app/run_line.h"
#include "app/window_host.h"
#include "input/editor.h"
#include "input/editor_links.h"
#include "input/prompt.h"
#include "screen/screen_store.h"
#include "window_fixture.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>

namespace {

class WindowInputTest : public MainWindowTest {
protected:
    EditorLinks* savedLinks = nullptr;

    void SetUp() override
    {
        savedLinks = Links;
        MainWindowTest::SetUp();
        CommandRunning = 0;
        InputMode = 0;
        OpenGroup.Clear();
        TheEditor.InsertMode = 1;
        TheScreen.BreakFlag = 0;
        TheScreen.ClearScreen();
        ThePrompt.SetTemplate(L"$g");
    }
    void TearDown() override
    {
        MainWindowTest::TearDown();
        ThePrompt.LoadSetting();
        Links = savedLinks;
    }

    static void PostKey(WPARAM key) { PostMessageW(MainWindow, WM_KEYDOWN, key, 0); }
    static std::wstring Row(int y) { return TheScreen.RowText(y); }

    // A command printing lines, which posts the given characters to the
    // window right after line postAt, as if typed while it runs.
    static void PrintLines(int count, int postAt, std::initializer_list<wchar_t> typed)
    {
        CommandRunning = 1;
        for (int i = 0; i < count; ++i) {
            TheScreen.Write((L"line " + std::to_wstring(i)).c_str());
            TheScreen.NewLine();
            if (i == postAt)
                for (wchar_t unit : typed) PostMessageW(MainWindow, WM_CHAR, unit, 0);
        }
        CommandRunning = 0;
    }
};

TEST_F(WindowInputTest, CtrlCStopsOutputRightAfterTheLineItArrivedIn)
{
    PrintLines(200, 5, {3});
    EXPECT_EQ(Row(5), L"line 5");
    EXPECT_EQ(Row(6), L"line 6^C");
    for (int y = 7; y < ScreenHeight; ++y) EXPECT_EQ(Row(y), L"") << y;
    EXPECT_EQ(TheScreen.BreakFlag, 1);
}

TEST_F(WindowInputTest, CtrlSHoldsOutputUntilTheNextKey)
{
    // The key that ends the hold is used up, and typing ahead is dropped.
    PrintLines(20, 5, {0x13, L'x', L'z'});
    EXPECT_EQ(Row(19), L"line 19");
    EXPECT_EQ(TheScreen.BreakFlag, 0);
    MSG msg;
    EXPECT_FALSE(PeekMessageW(&msg, nullptr, WM_CHAR, WM_CHAR, PM_NOREMOVE));
    EXPECT_EQ(TheEditor.Line[0], 0);

    // Ctrl-C ends the hold and the output.
    TheScreen.ClearScreen();
    PrintLines(20, 5, {0x13, 3});
    EXPECT_EQ(Row(6), L"line 6^C");
    EXPECT_EQ(Row(7), L"");
}

TEST_F(WindowInputTest, QuitSeenByAPollIsPutBack)
{
    PostMessageW(MainWindow, WM_CHAR, 3, 0);
    PostQuitMessage(7);
    TheScreen.NewLine();
    EXPECT_EQ(TheScreen.BreakFlag, 1);
    MSG msg;
    ASSERT_TRUE(PeekMessageW(&msg, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE));
    EXPECT_EQ(msg.wParam, 7u);
}

TEST_F(WindowInputTest, TypedLinesRunThroughTheWindowProcedure)
{
    ShowPrompt();
    Post(L"echo hx");
    PostKey(VK_LEFT);
    Post(L"i");
    PostKey(VK_DELETE);
    Post(L"\r");
    Pump();
    EXPECT_EQ(Row(0), L">echo hi");
    EXPECT_EQ(Row(1), L"hi");
    EXPECT_EQ(Row(2), L">");

    Post(L"(echo a\recho b\r)\r");
    Pump();
    EXPECT_EQ(Row(3), L"More? echo b");
    EXPECT_EQ(Row(5), L"a");
    EXPECT_EQ(Row(6), L"b");
    EXPECT_EQ(CommandRunning, 0);
}

TEST_F(WindowInputTest, AWiderWindowLeavesNoStaleCopyOfAWrappedLine)
{
    ShowPrompt();
    int oldWidth = ScreenWidth;
    std::wstring typed(size_t(oldWidth + 20), L'a');
    Post(typed);
    Pump();
    ASSERT_EQ(Row(1), typed.substr(size_t(oldWidth - 1)));

    // Wide enough for the whole line on the prompt's row.
    int columns = oldWidth + 40;
    SendMessageW(MainWindow, WM_SIZE, SIZE_RESTORED,
                 MAKELPARAM(GetSystemMetrics(SM_CXVSCROLL) + columns * TheScreen.FontWidth,
                            ScreenHeight * TheScreen.FontHeight));
    ASSERT_EQ(ScreenWidth, columns);
    // The repaint that follows a size change shows the line laid out anew.
    SendMessageW(MainWindow, WM_PAINT, 0, 0);
    EXPECT_EQ(Row(0), L">" + typed);
    EXPECT_EQ(Row(1), L"");
    EXPECT_EQ(TheScreen.CursorX, 1 + int(typed.size()));
    EXPECT_EQ(TheScreen.CursorY, 0);
    EXPECT_EQ(std::wstring(TheEditor.Line), typed);
}

TEST_F(WindowInputTest, WhileACommandRunsKeysReachOnlyTheViewKeys)
{
    ShowPrompt();
    CommandRunning = 1;
    SendMessageW(MainWindow, WM_CHAR, L'x', 0);
    SendMessageW(MainWindow, WM_CHAR, L'\r', 0);
    SendMessageW(MainWindow, WM_KEYDOWN, VK_END, 0);
    EXPECT_EQ(TheEditor.Line[0], 0);
    EXPECT_EQ(TheScreen.CursorY, 0);
    // Insert is one of the keys that act whatever runs.
    SendMessageW(MainWindow, WM_KEYDOWN, VK_INSERT, 0);
    EXPECT_EQ(TheEditor.InsertMode, 0);
    SendMessageW(MainWindow, WM_KEYDOWN, VK_INSERT, 0);
    EXPECT_EQ(TheEditor.InsertMode, 1);
    CommandRunning = 0;
}

TEST_F(WindowInputTest, ReadsTakeTheirKeysFromTheQueue)
{
    CommandRunning = 1;
    int ticks = TickCount;
    PostMessageW(MainWindow, WM_TIMER, 300, 0);
    Post(L"abc");
    PostKey(VK_HOME);
    Post(L"<\r");
    wchar_t buffer[80];
    ASSERT_NE(ReadLine(buffer), nullptr);
    EXPECT_STREQ(buffer, L"<abc");
    EXPECT_EQ(TickCount, ticks + 1); // other messages are handled meanwhile
    EXPECT_EQ(Row(0), L"<abc");

    Post(L"ab\x03");
    EXPECT_EQ(ReadLine(buffer), nullptr);
    EXPECT_EQ(Row(1), L"ab^C");
    EXPECT_EQ(TheScreen.BreakFlag, 1);
    TheScreen.BreakFlag = 0;

    Post(L"q7y");
    EXPECT_EQ(AskYesNo(), 1);
    EXPECT_EQ(Row(1), L"ab^CY");
    Post(L"k");
    EXPECT_EQ(PauseKey(), 0);
    CommandRunning = 0;
}

} // namespace
