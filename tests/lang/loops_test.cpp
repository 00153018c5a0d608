// while, until and do end to end through ombc.exe: their conditions, bodies,
// messages and ErrorLevel, goto out of a body, and Ctrl-C in an endless loop.
#include "support/ombc_runner.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <string>

namespace {

TEST(Loops, ConditionsAndBodies)
{
    struct Case {
        const char* lines;
        const wchar_t* output;
    } cases[] = {
        {"set i=0\nwhile (i<3) do {let i=i+1 & echo %i%}\n", L"1\n2\n3\n"},
        // A bracket body keeps the values of the moment the line was expanded.
        {"set i=0\nwhile (i<2) do (let i=i+1 & echo [%i%])\n", L"[0]\n[0]\n"},
        {"while (0) do echo x\n", L""},
        {"do (echo x) while (0)\n", L"x\n"},
        {"do (echo x) until (1)\n", L"x\n"},
        {"until (1) do echo x\n", L""},
        {"set i=0\nwhile not (i>=2) do let i=i+1\necho %i%\n", L"2\n"},
        {"set i=0\nuntil (i>=2) do let i=i+1\necho %i%\n", L"2\n"},
        {"set i=0\nuntil not (i<2) do let i=i+1\necho %i%\n", L"2\n"},
        {"set i=0\nwhile calc (i<1.5) do let i=i+1\necho %i%\n", L"2\n"},
        {"set i=0\nWHILE NOTcalc(i>=2)DO let i=i+1\necho %i%\n", L"2\n"},
        {"set i=0\ndo {let i=i+1} until calc (i==3) ignored\necho %i%\n", L"3\n"},
        // The low 32 bits of an integer decide.
        {"while (0x100000000) do echo x\n", L""},
    };
    for (const Case& c : cases) EXPECT_EQ(TypedOutput(c.lines), c.output) << c.lines;
}

TEST(Loops, MessagesAndErrorLevel)
{
    struct Case {
        const char* line;
        const wchar_t* message;
    } cases[] = {
        {"do echo x while (1)", L"Syntax Error"},
        {"do (echo x) (1)", L"WHILE or UNITL keyword expected"},
        {"do (echo x) while 1", L"Syntax Error"},
        {"while (1/0) do echo x", L"Divide by zero"},
        {"while (i<3) do", L"Syntax Error"},
        {"while (i<3)", L"DO keyword expected"},
        {"while (i<3) echo x", L"DO keyword expected"},
        {"while i do echo x", L"Syntax Error"},
        {"until calc i do echo x", L"Syntax Error"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(TypedOutput(std::string(c.line) + "\necho %errorlevel%\n"), std::wstring(c.message) + L"\n\n1\n")
            << c.line;
    // A loop that never turns leaves 0; otherwise its last statement decides.
    EXPECT_EQ(TypedOutput("nosuch\nwhile (0) do echo x\necho %errorlevel%\n"), L"Bad command or file name\n\n0\n");
    EXPECT_EQ(TypedOutput("set i=0\nwhile (i<1) do (let i=i+1 & nosuch)\nn\necho %errorlevel%\n"),
              L"Bad command or file name\n\nTerminate Batch (Y/N)? n\n1\n");
}

TEST(Loops, BatchProgramsAndBreaks)
{
    TempFolder f;
    f.WriteBytes(L"g.bat", "@echo off\r\nset i=0\r\n"
                           "while (1) do {let i=i+1 & if %%i%%==3 goto out}\r\necho no\r\n"
                           ":out\r\necho out at %i%\r\n"
                           "do {let i=i-1 & echo %%i%%} while (i>1)\r\n");
    EXPECT_EQ(JoinLines(RunOmbcIn(f.Path(), L"/C g.bat").Output), L"out at 3\n2\n1\n");

    // Ctrl-C on the input breaks an endless loop after its turn; no goes on,
    // yes stops it, and the prompt goes on.
    EXPECT_EQ(TypedOutput("while calc (1) do rem\n\x03n\x03y\necho after\n"),
              L"^C\nTerminate Batch (Y/N)? n\n^C\nTerminate Batch (Y/N)? y\nafter\n");
    // In a batch program yes ends the program. The key read first makes the
    // Ctrl-C behind it arrive while the loop runs, not before its line.
    f.WriteBytes(L"w.bat", "@echo off\r\ngetkey & while (1) do rem\r\necho never\r\n");
    EXPECT_EQ(JoinLines(RunOmbcIn(f.Path(), L"", "w.bat\nk\x03y\necho after\n").Output),
              L"k^C\nTerminate Batch (Y/N)? y\nafter\n");
}

} // namespace
