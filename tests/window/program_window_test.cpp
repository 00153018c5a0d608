// Console programs started from the real main window: their output shows on
// the screen as it comes, a line typed while one runs reaches its standard
// input, and Ctrl-C ends the wait.
#include "app/event_pump.h"
#include "app/globals.h"
#include "app/main_window.h"
#include "app/window_host.h"
#include "exec/capture_settings.h"
#include "input/editor.h"
#include "lang/shell_command.h"
#include "screen/screen_store.h"
#include "window_fixture.h"

#include <gtest/gtest.h>

#include <string>

namespace {

class ProgramWindowTest : public MainWindowTest {
protected:
    void SetUp() override
    {
        MainWindowTest::SetUp();
        // Earlier tests in this process may leave a stop or a break behind.
        TheShell.Terminate = 0;
        TheEditor.EndOfInput = 0;
        InputMode = 0;
        TheScreen.BreakFlag = 0;
        TheScreen.ClearScreen();
        // These are the pipe route's cases: the console loader stays out.
        TheCaptureSettings.Emulator = 0;
    }
    void TearDown() override
    {
        MainWindowTest::TearDown();
        TheScreen.BreakFlag = 0;
        TheCaptureSettings.Emulator = 1;
    }

    // Runs a line as a command does, with the typing already in the queue.
    static void Run(const std::wstring& line)
    {
        CommandRunning = 1;
        TheShell.RunLine(line.c_str());
        CommandRunning = 0;
    }
    static std::wstring Screen()
    {
        std::wstring text;
        for (int y = 0; y <= TheScreen.CursorY; ++y) text += TheScreen.RowText(y) + L"\n";
        return text;
    }
};

TEST_F(ProgramWindowTest, OutputShowsAndTypedLinesReachTheProgram)
{
    Post(L"hello\r");
    Post(L"second line\r");
    Post(L"\x1A");
    Run(L"\"" + Program(L"echo_in.exe") + L"\"");
    // The typed lines stand where they were typed, the program's answers below.
    EXPECT_EQ(Screen(), L"hello\nsecond line\n^Z\ngot: hello\ngot: second line\nlines: 2\n\n");
    EXPECT_EQ(ErrorLevel, 2);
}

TEST_F(ProgramWindowTest, AProgramsEchoOfATypedLineShowsOnce)
{
    Post(L"hello\r");
    Run(L"\"" + Program(L"echo_in.exe") + L"\" once");
    EXPECT_EQ(Screen(), L"hello\ndone\n\n");
    EXPECT_EQ(ErrorLevel, 1);
}

TEST_F(ProgramWindowTest, CtrlCClosesTheProgramsPipes)
{
    // A program that writes fails once its output is gone, and ends.
    Post(L"\x03");
    Run(L"\"" + Program(L"forever.exe") + L"\"");
    EXPECT_EQ(ErrorLevel, 7);
    EXPECT_NE(Screen().find(L"^C"), std::wstring::npos);
}

TEST_F(ProgramWindowTest, AProgramThatIgnoresCtrlCIsLeftRunning)
{
    Post(L"\x03");
    Run(L"\"" + Program(L"forever.exe") + L"\" quiet");
    EXPECT_EQ(ErrorLevel, 259);
    EXPECT_NE(Screen().find(L"Process still active"), std::wstring::npos);
}

TEST_F(ProgramWindowTest, CtrlZSendsAWaitedProgramToTheBackground)
{
    // Without capture a console program is waited for plainly, and may go.
    TheCaptureSettings.Capture = 0;
    Post(L"\x1A");
    Run(L"\"" + Program(L"forever.exe") + L"\" quiet");
    EXPECT_EQ(ErrorLevel, 259);
    EXPECT_NE(Screen().find(L"Task 1 forever.exe executing in the background"), std::wstring::npos);
    TheScreen.ClearScreen();
    Run(L"tasks");
    EXPECT_NE(Screen().find(L"    1 forever.exe  process "), std::wstring::npos);
    EXPECT_NE(Screen().find(L"     1 task(s) running"), std::wstring::npos);
    Run(L"tasks /k 1");
    TheScreen.ClearScreen();
    Run(L"tasks");
    EXPECT_NE(Screen().find(L"     0 task(s) running"), std::wstring::npos);
    TheCaptureSettings.Capture = 1;
}

} // namespace
