// A console program under the console loader, started from the real main
// window: what it paints lands on the window's screen (colours and cursor
// moves included), and keys typed while it runs reach its input.
#include "app/globals.h"
#include "exec/capture_settings.h"
#include "lang/shell_command.h"
#include "screen/screen_store.h"
#include "window_fixture.h"

#include <gtest/gtest.h>

#include <string>

namespace {

class LoaderWindowTest : public MainWindowTest {
protected:
    void SetUp() override
    {
        MainWindowTest::SetUp();
        TheShell.Terminate = 0;
        TheScreen.BreakFlag = 0;
        TheScreen.ClearScreen();
        TheCaptureSettings.Copyright = 0;
    }
    void TearDown() override
    {
        MainWindowTest::TearDown();
        TheCaptureSettings.Copyright = 1;
    }
};

TEST_F(LoaderWindowTest, PaintedOutputAndTypedKeysGoThroughTheLoader)
{
    TheScreen.Write(L"before");
    TheScreen.NewLine();
    // A key without a character goes as a terminal sends it: the console's
    // line editing puts the "o" of "Bb" in its place.
    Post(L"Bb");
    PostMessageW(MainWindow, WM_KEYDOWN, VK_LEFT, 0);
    Post(L"o\r");
    CommandRunning = 1;
    TheShell.RunLine((L"\"" + Program(L"paint_ask.exe") + L"\"").c_str());
    CommandRunning = 0;
    std::wstring screen;
    for (int y = 0; y <= TheScreen.CursorY; ++y) screen += TheScreen.RowText(y) + L"\n";
    // The program starts below what stood on the screen; its cursor move
    // leaves three blank columns.
    EXPECT_EQ(screen, L"before\nplain\nred   moved!\nname? Bob\nhello Bob\n\n");
    EXPECT_EQ(ErrorLevel, 3);
    // "red" in bright red, as the shell shows ESC[1;31m; "moved" no longer.
    const int brightRed = 2;
    EXPECT_EQ(TheScreen.CellAt(0, 2).Attr & 0xFF, brightRed);
    EXPECT_NE(TheScreen.CellAt(6, 2).Attr & 0xFF, brightRed);
}

TEST_F(LoaderWindowTest, CtrlCReachesTheProgram)
{
    // Ctrl-C once the program runs (the loader's greeting clears a break
    // that came before it).
    SetTimer(nullptr, 0, 500, [](HWND, UINT, UINT_PTR id, DWORD) {
        KillTimer(nullptr, id);
        PostMessageW(MainWindow, WM_CHAR, 3, 0);
    });
    CommandRunning = 1;
    TheShell.RunLine((L"\"" + Program(L"forever.exe") + L"\"").c_str());
    CommandRunning = 0;
    // The program ended (its exit code on Ctrl-C is the system's to give).
    EXPECT_EQ(TheScreen.RowText(0).substr(0, 7), L"running");
    std::wstring screen;
    for (int y = 0; y <= TheScreen.CursorY; ++y) screen += TheScreen.RowText(y);
    EXPECT_NE(screen.find(L"^C"), std::wstring::npos);
}

} // namespace
