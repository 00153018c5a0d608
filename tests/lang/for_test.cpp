// for end to end through ombc.exe: lists, numbers, substitution, its
// messages, nesting, goto out of a body, and a break of an endless count.
#include "support/ombc_runner.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <string>

namespace {

std::wstring Batch(const TempFolder& folder, const std::string& lines, const std::string& input = {})
{
    folder.WriteBytes(L"t.bat", "@echo off\r\n" + lines);
    return JoinLines(RunOmbcIn(folder.Path(), L"/C t.bat", input).Output);
}

TEST(For, ListsAndSubstitution)
{
    struct Case {
        const char* line;
        const wchar_t* output;
    } cases[] = {
        {"for %i in (a b) do echo %i", L"a b\n"},
        {"for %i in (a,b) do echo %i", L"a\nb\n"},
        // Blanks around items go, quotes go, an empty item is no turn.
        {"for %i in ( a ,\"b c\" ,, x?y ) do echo [%i]", L"[a]\n[b c]\n[x?y]\n"},
        {"for %i in () do echo never", L""},
        // Quotes do not hide a comma.
        {"for %i in (\"a,b\") do echo [%i]", L"[a]\n[b\"]\n"},
        {"for %I in (a) do echo %i %I", L"%i a\n"},
        // Anything else behind "%" is copied with its unit.
        {"for %i in (a) do echo %j %%i %", L"%j %%i %\n"},
        {"for %i in (\"sub\\name.txt\") do echo %~ni %~xi", L"name .txt\n"},
        // A loop letter that is also a modifier ends the form.
        {"for %x in (sub\\name.txt) do echo %~nxx %~x", L"name.txt sub\\name.txt\n"},
        // A variable without "%" is not put in, and not set.
        {"for x in (1,2) do echo hi %x", L"hi %x\nhi %x\n"},
        {"for %i in (1,2) do for %j in (a,b) do echo %i %j", L"1 a\n1 b\n2 a\n2 b\n"},
        {"for %i in (a,b) do (echo %i & echo .%i)", L"a\n.a\nb\n.b\n"},
        {"for %i in (x) do @echo %i", L"x\n"},
    };
    for (const Case& c : cases) EXPECT_EQ(TypedOutput(std::string(c.line) + "\n"), c.output) << c.line;
}

TEST(For, NumbersWithRealsAndSteps)
{
    struct Case {
        const char* line;
        const wchar_t* output;
    } cases[] = {
        {"for %i is 1 to 3 do echo %i", L"1\n2\n3\n"},
        {"for %i is 3 to 1 step -1 do echo %i", L"3\n2\n1\n"},
        {"for %i is 1 to 3 step 0 do echo %i", L""},
        {"for %i is 3 to 1 do echo %i", L""},
        {"for %i is 0 to 1 STEP 0.25 do echo %i", L"0\n0.25\n0.5\n0.75\n1\n"},
        // Nineteen digits show what the sum of reals really holds.
        {"for %i is 0.1 to 0.35 step 0.1 do echo %i", L"0.1000000000000000056\n0.2000000000000000111\n"
                                                       L"0.3000000000000000444\n"},
        {"for %i is -1.5e1 to -14 do echo %i", L"-15\n-14\n"},
        // A word that is no number counts as 0.
        {"for %i is x to 1 do echo %i", L"0\n1\n"},
        // Without "%" the variable is set for each turn; a brace body sees it.
        {"for n is 1 to 2 do {echo [%n%]}", L"[1]\n[2]\n"},
    };
    for (const Case& c : cases) EXPECT_EQ(TypedOutput(std::string(c.line) + "\n"), c.output) << c.line;
}

TEST(For, MalformedStatementsRunNothing)
{
    struct Case {
        const char* line;
        const wchar_t* message;
    } cases[] = {
        {"for /x %i in (a) do echo no", L"Invalid switch"},
        {"for /d/r %i in (a) do echo no", L"Invalid switch"},
        {"for %ii in (a) do echo no", L"Percentage followed by a single letter is expected"},
        {"for % in (a) do echo no", L"Percentage followed by a single letter is expected"},
        {"for %i on (a) do echo no", L"IN or IS keyword expected"},
        {"for %i in a do echo no", L"Open bracket expected"},
        {"for %i in (a)", L"Close bracket expected"},
        {"for %i in (a) echo no", L"DO keyword expected"},
        {"for %i in (a) do ", L"Syntax Error"},
        {"for %i is 1e999 to 2 do echo no", L"Start number expected"},
        {"for %i is 1 2 do echo no", L"TO keyword expected"},
        {"for %i is 1 to -1e999 do echo no", L"Finish number expected"},
        {"for %i is 1 to 2 step 1e999 do echo no", L"Step number expected"},
        {"for %i is 1 to 2 echo no", L"DO keyword expected"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(TypedOutput(std::string(c.line) + "\n"), std::wstring(c.message) + L"\n\n") << c.line;
}

TEST(For, PatternsAndTrees)
{
    TempFolder f;
    CreateDirectoryW((f / L"sub").c_str(), nullptr);
    f.WriteBytes(L"sub\\c.txt", "");
    f.WriteBytes(L"a.txt", "");
    auto typed = [&](const std::string& line) { return TypedOutput(line + "\n", f.Path()); };
    // Each match behind its directory as written, nothing for no match, then the literal.
    EXPECT_EQ(typed("for %i in (sub\\*.txt, *.none, x) do echo %i"), L"sub\\c.txt\nx\n");
    EXPECT_EQ(typed("for /d %i in (s*) do echo %i"), L"sub\n");
    EXPECT_EQ(typed("for %i in (s*) do echo %i"), L"");
    // A /r loop runs in each directory of the tree and comes back.
    EXPECT_EQ(typed("for /r %i in (*.txt) do echo %~fi"), f.Path() + L"\\a.txt\n" + f.Path() + L"\\sub\\c.txt\n");
    EXPECT_EQ(typed("for /r sub %i is 1 to 1 do echo %~fi\nfor %i in (.) do echo %~fi"),
              f.Path() + L"\\sub\\1\n" + f.Path() + L"\n");
}

TEST(For, BatchBodiesGotoAndErrors)
{
    TempFolder f;
    // %% becomes one %, and the loop leaves ErrorLevel to its body.
    EXPECT_EQ(Batch(f, "for %%i in (a,b) do echo %%i\r\nfor %%i in (x) do rem\r\necho %errorlevel%\r\n"),
              L"a\nb\n0\n");
    // A goto in the body ends the loop and jumps.
    EXPECT_EQ(Batch(f, "for %%i in (1,2,3) do (echo %%i & if %%i==2 goto out)\r\necho no\r\n:out\r\necho out\r\n"),
              L"1\n2\nout\n");
    // An error in the body is asked about after its turn; no goes on.
    EXPECT_EQ(Batch(f, "for %%i in (1,2) do (echo %%i & nosuchcommand)\r\necho end\r\n", "ny"),
              L"1\nBad command or file name\n\nTerminate Batch (Y/N)? n\n2\nBad command or file name\n\n"
              L"Terminate Batch (Y/N)? y\n");
}

TEST(For, EndlessCountIsBrokenByCtrlC)
{
    // The step is too small to change the value: the count never ends by
    // itself, and Ctrl-C on the input reaches the question after a turn.
    std::wstring out = TypedOutput("for %i is 1 to 2 step 1e-300 do rem\n\x03n\x03y\necho after\n");
    EXPECT_EQ(out, L"^C\nTerminate Batch (Y/N)? n\n^C\nTerminate Batch (Y/N)? y\nafter\n");
}

} // namespace
