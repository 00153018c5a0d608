// for /f end to end through ombc.exe: options, data sources, encodings, and
// files that are not what a loop expects.
#include "support/ombc_runner.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <string>

namespace {

std::wstring TypedIn(const TempFolder& folder, const std::string& line, const std::string& input = {})
{
    return JoinLines(RunOmbcIn(folder.Path(), L"", line + "\n" + input).Output);
}

TEST(ForFile, OptionsCutLinesIntoTokens)
{
    TempFolder f;
    f.WriteBytes(L"d.txt", "; comment\r\n  a b  c\r\n#x y\r\n\r\n   \r\nl1 f2,f3\r\nlast\r\n");
    f.WriteBytes(L"n.txt", "1\r\n2\r\n3\r\n4\r\n5\r\n6\r\n");
    struct Case {
        const char* line;
        const wchar_t* output;
    } cases[] = {
        {"for /f \"tokens=1,3*\" %a in (\"x y z w v\") do echo %a %b %c", L"x z w v\n"},
        {"for /f \"tokens=2-3\" %a in (\"x y z\") do echo %a %b [%c]", L"y z [%c]\n"},
        {"for /f \"tokens=*\" %a in (\"  x  y \") do echo [%a]", L"[x  y ]\n"},
        // Lines of ";" are not seen; leading delimiters go; blank lines are no turn.
        {"for /f %a in (d.txt) do echo [%a]", L"[a]\n[#x]\n[l1]\n[last]\n"},
        // Adjacent delimiters make empty fields.
        {"for /f \"tokens=4\" %a in (d.txt) do echo [%a]", L"[c]\n"},
        {"for /f \"eol=# tokens=1*\" %a in (d.txt) do echo [%a %b]", L"[; comment]\n[a b  c]\n[l1 f2,f3]\n[last ]\n"},
        {"for /f \"eol= \" %a in (d.txt) do echo [%a]", L"[a]\n[#x]\n[l1]\n[last]\n"},
        // A blank that ends the delimiters counts, and brings the tab.
        {"for /f \"tokens=1-3 delims=; \" %a in (\"l1 f2;f3\") do echo %c %b %a", L"f3 f2 l1\n"},
        {"for /f \"delims=\" %a in (d.txt) do echo [%a]", L"[  a b  c]\n[#x y]\n[   ]\n[l1 f2,f3]\n[last]\n"},
        {"for /f \"delims=\" %a in (\"a b\") do echo [%a]", L"[a b]\n"},
        // Skipping happens before every line.
        {"for /f \"skip=1\" %a in (n.txt) do echo %a", L"2\n4\n6\n"},
        {"for /f \"skip=5\" %a in (n.txt) do echo %a", L"6\n"},
        // Letters go on past Z with a.
        {"for /f \"tokens=1,2\" %Z in (\"p q\") do echo %Z %a", L"p q\n"},
        {"for /f \"tokens=1,2\" %a in (\"p \"\"q r\"\"\") do echo %~b", L"q\n"},
        {"for /f %a in (n.txt,\"s\") do @echo %a", L"1\n2\n3\n4\n5\n6\ns\n"},
    };
    for (const Case& c : cases) EXPECT_EQ(TypedIn(f, c.line), c.output) << c.line;
}

TEST(ForFile, SourcesByTheirQuotes)
{
    TempFolder f;
    f.WriteBytes(L"my file.txt", "in file\r\n");
    f.WriteBytes(L"`q`", "back quoted name\r\n");
    struct Case {
        const char* line;
        const wchar_t* output;
    } cases[] = {
        {"for /f \"delims=\" %a in ('echo one two') do echo [%a]", L"[one two]\n"},
        {"for /f \"delims=\" %a in (`q`) do echo [%a]", L"[back quoted name]\n"},
        {"for /f \"usebackq delims=\" %a in (\"my file.txt\") do echo [%a]", L"[in file]\n"},
        {"for /f \"usebackq\" %a in ('a string') do echo [%a]", L"[a]\n"},
        {"for /f \"usebackq tokens=2\" %a in (`echo x y`) do echo [%a]", L"[y]\n"},
        // Commands run in a loop of their own.
        {"for /f %a in ('for %i is 1 to 2 do echo %i') do echo [%a]", L"[1]\n[2]\n"},
    };
    for (const Case& c : cases) EXPECT_EQ(TypedIn(f, c.line), c.output) << c.line;

    // Twenty temporary files at most; further strings are empty. None stays.
    std::string items;
    for (int i = 1; i <= 21; ++i) items += (i > 1 ? ",\"" : "\"") + std::to_string(i) + "\"";
    EXPECT_EQ(TypedIn(f, "set n=0\nfor /f %a in (" + items + ") do let n=n+1", "echo %n%\n"), L"20\n");
    WIN32_FIND_DATAW found;
    HANDLE h = FindFirstFileW((f / L"*.tmp").c_str(), &found);
    EXPECT_EQ(h, INVALID_HANDLE_VALUE);
    if (h != INVALID_HANDLE_VALUE) FindClose(h);
}

TEST(ForFile, EveryEncodingAndItsTabs)
{
    TempFolder f;
    f.WriteBytes(L"cp.txt", "a\tb\r\n");
    f.WriteBytes(L"u8.txt", "\xEF\xBB\xBF" "\xC3\xA9\tx\r\n");
    f.WriteBytes(L"le.txt", std::string("\xFF\xFE" "a\0\t\0b\0\r\0\n\0", 12));
    f.WriteBytes(L"be.txt", std::string("\xFE\xFF\0a\0\t\0b\0\r\0\n", 12));
    // Narrow files expand tabs to stops of 4; UTF-16 files make a tab one blank.
    EXPECT_EQ(TypedIn(f, "for /f \"delims=\" %a in (cp.txt,u8.txt,le.txt,be.txt) do echo [%a]"),
              L"[a   b]\n[\u00e9   x]\n[a b]\n[a b]\n");
    f.WriteBytes(L"empty.txt", "");
    f.WriteBytes(L"blank.txt", "\r\n  \r\n\t\r\n");
    EXPECT_EQ(TypedIn(f, "for /f %a in (empty.txt,blank.txt) do echo never", "echo %errorlevel%\n"), L"0\n");
}

TEST(ForFile, FilesThatCannotBeReadStopTheLoop)
{
    TempFolder f;
    f.WriteBytes(L"bin.dat", std::string("MZ\0\0\x90\0\x03\0\0\0", 10));
    f.WriteBytes(L"ok.txt", "ok\r\n");
    EXPECT_EQ(TypedIn(f, "for /f %a in (ok.txt,missing.txt,ok.txt) do echo %a"), L"ok\nNo such file or directory\n\n");
    EXPECT_EQ(TypedIn(f, "for /f %a in (bin.dat,ok.txt) do echo %a"), L"Not a text file\n\n");
    // In a batch program the failure is asked about.
    f.WriteBytes(L"t.bat", "@echo off\r\nfor /f %%a in (missing.txt) do echo %%a\r\necho after\r\n");
    EXPECT_EQ(JoinLines(RunOmbcIn(f.Path(), L"/C t.bat", "n").Output),
              L"No such file or directory\n\nTerminate Batch at line 2 (Y/N)? n\nafter\n");

    // A line of 100,000 units comes in pieces of 4,096; a body grown past
    // 4,095 units is cut.
    f.WriteBytes(L"long.txt", std::string(100000, 'x') + "\r\nend\r\n");
    EXPECT_EQ(TypedIn(f, "set n=0\nfor /f %a in (long.txt) do let n=n+1", "echo %n%\n"), L"26\n");
    EXPECT_EQ(TypedIn(f, "for /f %a in (long.txt) do set v=%a %a", "echo %v%\n"), L"end end\n");
}

TEST(ForFile, MalformedOptionsAreRefused)
{
    const char* options[] = {
        "tokens=",  "tokens=0",      "tokens=3-1",   "tokens=a",   "tokens=1*2", "tokens=1-300", "skip=",
        "skip=x",   "skip=99999999999", "usebackqx", "Eol=;",      "bogus",      "eol=;;",       "skip=1x",
    };
    for (const char* option : options)
        EXPECT_EQ(TypedOutput(std::string("for /f \"") + option + "\" %a in (\"x\") do echo no\n"),
                  L"Invalid option\n\n")
            << option;
    std::string delimiters(256, ',');
    EXPECT_EQ(TypedOutput("for /f \"delims=" + delimiters + "\" %a in (\"x\") do echo no\n"), L"Invalid option\n\n");
}

} // namespace
