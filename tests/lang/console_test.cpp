// Console-style commands driven with keys from standard input: output forms,
// questions, input into variables, cursor and box drawing, sleep.
#include "support/ombc_runner.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <string>

namespace {

TEST(Console, EchoSayAndTheFilter)
{
    EXPECT_EQ(TypedOutput("echo\necho off\necho\n"), L"echo is ON\necho is ON\n");
    EXPECT_EQ(TypedOutput("echo on off\necho   \n"), L"on off\necho is ON\n");
    EXPECT_EQ(TypedOutput("echo.\necho. x\necho.x\n"), L"\nx\nBad command or file name\n\n");
    EXPECT_EQ(TypedOutput("say a&say b&echo c\n"), L"abc\n");
    // Typed, each line's Enter ends the screen line.
    EXPECT_EQ(TypedOutput("say a\nsay b\n"), L"a\nb\n");
    // Escape sequences move the cursor instead of printing.
    TempFolder f;
    f.WriteBytes(L"esc.bat", "@echo off\r\necho ab\x1b[1Dc\r\nsay x\r\nsay y\r\necho.\r\n");
    EXPECT_EQ(JoinLines(RunOmbcIn(f.Path(), L"/C esc.bat").Output), L"ac\nxy\n");
    // One argument decides, whatever switches stand beside it.
    f.WriteBytes(L"off.bat", "@echo off /q\r\necho\r\n");
    EXPECT_EQ(JoinLines(RunOmbcIn(f.Path(), L"/C off.bat").Output), L"echo is OFF\n");
}

TEST(Console, AskSetsErrorLevelFromTheAnswer)
{
    EXPECT_EQ(RunOmbc(L"", "ask\ny").ExitCode, 0);
    OmbcResult no = RunOmbc(L"", "ask Sure?\nxn");
    EXPECT_EQ(no.ExitCode, 1);
    EXPECT_EQ(JoinLines(no.Output), L"Sure?N\n\n");
    EXPECT_EQ(JoinLines(RunOmbc(L"", "ask\nY").Output), L"Continue (Y/N)?Y\n\n");
    // The end of input is Ctrl-C: neither answer, a break, level 1.
    OmbcResult broken = RunOmbc(L"", "ask\n");
    EXPECT_EQ(broken.ExitCode, 1);
    // if errorlevel sees what ask left.
    EXPECT_EQ(TypedOutput("ask\nnif errorlevel 1 echo said no\n"), L"Continue (Y/N)?N\n\nsaid no\n");
}

TEST(Console, PauseWaitsAndCtrlCBreaksABatch)
{
    EXPECT_EQ(TypedOutput("pause\nxecho after\n"), L"Press any key to continue . . .\nafter\n");
    EXPECT_EQ(TypedOutput("pause Hit it\nxecho after\n"), L"Hit it\nafter\n");
    TempFolder f;
    f.WriteBytes(L"p.bat", "@echo off\r\npause\r\necho never\r\n");
    // No key at all: Ctrl-C, then the question, answered yes by Ctrl-C too.
    std::wstring out = JoinLines(RunOmbcIn(f.Path(), L"/C p.bat").Output);
    EXPECT_EQ(out.find(L"never"), std::wstring::npos) << out;
    EXPECT_NE(out.find(L"Terminate Batch at line 2 (Y/N)?"), std::wstring::npos) << out;
}

TEST(Console, GetkeyGetstrGetnumStoreTheirVariables)
{
    // The key shows; the next line's Enter ends its screen line.
    EXPECT_EQ(TypedOutput("getkey\nzecho [%GETKEY%]\n"), L"z\n[z]\n");
    EXPECT_EQ(TypedOutput("getstr Name? \nJoe Bloggs\necho [%GETSTR%]\n"), L"Name?\n[Joe Bloggs]\n");
    EXPECT_EQ(TypedOutput("getnum\n12.5\necho [%GETNUM%]\n"), L"[12.5]\n");
    EXPECT_EQ(TypedOutput("set GETNUM=old\ngetnum\n12x\necho [%GETNUM%]\n"), L"[]\n");
    // At the end of input the variable is deleted.
    EXPECT_EQ(TypedOutput("set GETSTR=old\ngetstr\n"), L"^C\n");

    // With input redirected, one line per call until the file runs out.
    TempFolder f;
    f.WriteBytes(L"in.txt", "first\r\nsecond\r\n");
    f.WriteBytes(L"read.bat", "@echo off\r\n"
                              "getstr < in.txt\r\necho [%GETSTR%]\r\n");
    EXPECT_EQ(JoinLines(RunOmbcIn(f.Path(), L"/C read.bat").Output), L"[first]\n");
    // getkey asks the keyboard, not the file.
    EXPECT_EQ(TypedOutput("getkey < in.txt\nqecho [%GETKEY%]\n", f.Path()), L"q\n[q]\n");
    for (const char* encoding : {"le", "be", "u8"}) {
        std::string bytes = encoding == std::string("le")   ? std::string("\xFF\xFE" "h\0i\0\r\0\n\0", 10)
                            : encoding == std::string("be") ? std::string("\xFE\xFF\0h\0i\0\r\0\n", 10)
                                                            : std::string("hi\r\n");
        f.WriteBytes(L"enc.txt", bytes);
        EXPECT_EQ(TypedOutput("getstr < enc.txt\necho [%GETSTR%]\n", f.Path()), L"[hi]\n") << encoding;
    }
}

TEST(Console, LocateAndBox)
{
    EXPECT_EQ(TypedOutput("locate 5\n"), L"Syntax Error\n\n");
    EXPECT_EQ(TypedOutput("box 1 1 5\n"), L"Syntax Error\n\n");
    // Too narrow, a bad style or a negative corner draw nothing.
    EXPECT_EQ(TypedOutput("box 1 1 1 5\nbox 0 0 3 3 6\nbox -1 0 3 3\n"), L"");
    EXPECT_EQ(TypedOutput("box 0 0 3 2\n"), L"\x250C\x2500\x2500\x2510\n\x2502  \x2502\n\x2514\x2500\x2500\x2518\n");
    EXPECT_EQ(TypedOutput("box 2 0 4 1 2\n"), L"  \x2554\x2550\x2557\n  \x255A\x2550\x255D\n");
}

TEST(Console, SleepAndBeepArguments)
{
    EXPECT_EQ(TypedOutput("sleep\nsleep 1 2\nsleep /x 1\n"),
              L"Invalid number of parameters\n\nInvalid number of parameters\n\nInvalid switch\n\n");
    EXPECT_EQ(RunOmbc(L"/C \"sleep 0\"").ExitCode, 0);
    EXPECT_EQ(TypedOutput("beep 440 10 880\nbeep 440 1\n"), L"");
}

} // namespace
