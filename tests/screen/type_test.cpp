// type, more, page and cls end to end through the console program, whose
// output is a stream: nothing there ever waits at "-- more --".
#include "support/ombc_runner.h"
#include "support/temp_folder.h"

#include "app/toolkit/omdib.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::wstring Shown(const TempFolder& folder, const std::wstring& line)
{
    return JoinLines(RunOmbcIn(folder.Path(), L"/C " + line).Output);
}

// Bytes as the shell's code page reads them.
std::wstring CodePageText(const char* bytes)
{
    StringHolder holder;
    return ToWide(holder, bytes);
}

// Lines typed one after another, with ErrorLevel shown after the first.
std::wstring RunWithLevel(const TempFolder& folder, const std::string& line)
{
    return TypedOutput(line + "\necho [%errorlevel%]\n", folder.Path());
}

TEST(TypeMore, EveryEncodingComesOutAsText)
{
    TempFolder f;
    struct Case {
        const char* name;
        std::string bytes;
        std::wstring shown;
    };
    const Case cases[] = {
        {"UTF-8 with mark", "\xEF\xBB\xBF" "caf\xC3\xA9\r\nna\xC3\xAFve\r\n", L"caf\u00E9\nna\u00EFve\n"},
        {"plain ASCII without mark", "one\ntwo\r\n\r\nfour", L"one\ntwo\n\nfour\n"},
        {"UTF-16 LE", std::string("\xFF\xFE" "h\0i\0\r\0\n\0\xE9\0", 12), L"hi\n\u00E9\n"},
        {"UTF-16 BE", std::string("\xFE\xFF\0h\0i\0\n\x20\xAC", 10), L"hi\n\u20AC\n"},
        {"code page", "caf\xE9\r\n", CodePageText("caf\xE9") + L"\n"},
        {"Ctrl-Z ends the file", "kept\r\nhalf\x1Agone\r\nnever\r\n", L"kept\nhalf\n"},
        {"tabs to eight from column 0", "a\tb\r\n\tc\r\n", L"a       b\n        c\n"},
        {"escape sequences act", "\x1B[1;31mred\x1B[0m and \x1B[2Jx\x1B[9Z!\r\n", L"x[9Z!\n"},
        {"empty file", "", L""},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        f.WriteBytes(L"t.txt", c.bytes);
        EXPECT_EQ(Shown(f, L"type t.txt"), c.shown);
        EXPECT_EQ(Shown(f, L"more < t.txt"), c.shown);
    }
    // Through a pipe the text passes the redirection file's encoding first.
    f.WriteBytes(L"t.txt", "\xEF\xBB\xBFone\r\ntwo");
    EXPECT_EQ(Shown(f, L"type t.txt | more"), L"one\ntwo\n");
}

TEST(TypeMore, SwitchesNumberTabAndStrikeOver)
{
    TempFolder f;
    f.WriteBytes(L"t.txt", "first\r\n\tsecond\r\n");
    EXPECT_EQ(Shown(f, L"type /l t.txt"), L"   1: first\n   2:         second\n");
    EXPECT_EQ(Shown(f, L"type /4 t.txt"), L"first\n    second\n");
    EXPECT_EQ(Shown(f, L"type /l/3 t.txt"), L"   1: first\n   2:    second\n");
    // Printed manual pages: a character and the control unit behind it go.
    f.WriteBytes(L"man.txt", "_\bu_\bn\bnder B\bBo\bol\bld\r\n");
    EXPECT_EQ(Shown(f, L"type /m man.txt"), L"under Bold\n");
    // Typing out one character at a time ends the same.
    EXPECT_EQ(Shown(f, L"type /a t.txt"), L"first\n        second\n");
    // more takes a tab width and nothing else.
    EXPECT_EQ(Shown(f, L"more /2 < t.txt"), L"first\n  second\n");
    EXPECT_EQ(Shown(f, L"more /l < t.txt"), L"Invalid switch\n\n");
}

TEST(TypeMore, FailuresReportAndLeaveNothingHanging)
{
    TempFolder f;
    f.WriteBytes(L"t.txt", "x\r\n");
    f.WriteBytes(L"bin.exe", std::string("MZ\x90\0\x03\0\0\0\x04\0\0\0\xFF\xFF", 16) + std::string(4000, '\x7F'));
    EXPECT_EQ(RunWithLevel(f, "type bin.exe"), L"Not a text file\n\n[1]\n");
    EXPECT_EQ(RunWithLevel(f, "type"), L"Invalid number of parameters\n\n[1]\n");
    EXPECT_EQ(RunWithLevel(f, "type t.txt t.txt"), L"Invalid number of parameters\n\n[1]\n");
    EXPECT_EQ(RunWithLevel(f, "type /z t.txt"), L"Invalid switch\n\n[1]\n");
    // more leaves ErrorLevel alone, even after a report.
    EXPECT_EQ(RunWithLevel(f, "more t.txt"), L"Invalid number of parameters\n\n[0]\n");
    // A missing file is told in the system's own words.
    std::wstring missing = RunWithLevel(f, "type nosuch.txt");
    EXPECT_NE(missing.find(L"\n[1]\n"), std::wstring::npos) << missing;
    EXPECT_GT(missing.find(L"\n"), 5u) << missing;
    EXPECT_EQ(RunWithLevel(f, "type t.txt"), L"x\n[0]\n");
}

TEST(TypeMore, ControlCodesAndLongLinesStayOnTheScreen)
{
    TempFolder f;
    // No zero byte, so it is taken for text: its control codes show as
    // symbols instead of reaching the terminal.
    std::string noise;
    for (int i = 1; i < 2000; ++i) noise += char(i % 256 == 0 ? 1 : i % 256);
    f.WriteBytes(L"noise.dat", noise);
    std::wstring shown = Shown(f, L"type noise.dat");
    ASSERT_FALSE(shown.empty());
    for (wchar_t unit : shown) EXPECT_TRUE(unit >= 0x20 || unit == L'\n') << int(unit);
    EXPECT_NE(shown.find(L"\u263A\u263B\u2665"), std::wstring::npos);

    // A line longer than the buffer of 1,024 comes out as several lines: the
    // screen rows show the break after 12 full rows and 64 more characters.
    std::string longLine;
    for (int i = 0; i < 3000; ++i) longLine += char('a' + i % 26);
    f.WriteBytes(L"long.txt", longLine + "\r\nend\r\n");
    std::wstring rows = Shown(f, L"type long.txt");
    std::wstring expected;
    for (int piece = 0; piece < 3000; piece += 1024) {
        std::string part = longLine.substr(size_t(piece), 1024);
        for (size_t at = 0; at < part.size(); at += 80)
            expected += std::wstring(part.begin() + long(at), part.begin() + long(std::min(at + 80, part.size()))) + L"\n";
    }
    EXPECT_EQ(rows, expected + L"end\n");
}

TEST(TypeMore, MoreWithoutRedirectionEchoesTypedLines)
{
    // The end of the console program's input is Ctrl-C.
    EXPECT_EQ(TypedOutput("more\nabc\n  def\n"), L"abc\n  def\n^C\n");
}

TEST(TypeMore, ListingsRunWholeInTheConsoleProgram)
{
    // More lines than any screen holds: set and type page in the window, but
    // the console program's output is a stream and never waits.
    TempFolder f;
    std::string batch = "@echo off\r\n";
    for (int i = 0; i < 150; ++i) batch += "set V" + std::to_string(1000 + i) + "=" + std::to_string(i) + "\r\n";
    batch += "set\r\ntype many.txt\r\necho done\r\n";
    f.WriteBytes(L"list.bat", batch);
    std::string many;
    for (int i = 0; i < 150; ++i) many += "row " + std::to_string(i) + "\r\n";
    f.WriteBytes(L"many.txt", many);
    std::wstring out = Shown(f, L"list.bat");
    for (int i = 0; i < 150; ++i) {
        EXPECT_NE(out.find(L"V" + std::to_wstring(1000 + i) + L"=" + std::to_wstring(i) + L"\n"), std::wstring::npos);
        EXPECT_NE(out.find(L"row " + std::to_wstring(i) + L"\n"), std::wstring::npos);
    }
    EXPECT_NE(out.find(L"done\n"), std::wstring::npos);
}

TEST(TypeMore, PageAndClsTakeTheirArguments)
{
    TempFolder f;
    EXPECT_EQ(RunWithLevel(f, "page on"), L"[0]\n");
    EXPECT_EQ(RunWithLevel(f, "page OFF"), L"[0]\n");
    EXPECT_EQ(RunWithLevel(f, "page maybe"), L"Invalid parameter\n\n[1]\n");
    EXPECT_EQ(RunWithLevel(f, "page"), L"Invalid number of parameters\n\n[1]\n");
    EXPECT_EQ(RunWithLevel(f, "page on off"), L"Invalid number of parameters\n\n[1]\n");
    EXPECT_EQ(RunWithLevel(f, "cls /x"), L"Invalid switch\n\n[1]\n");
    EXPECT_EQ(RunWithLevel(f, "cls now"), L"Invalid parameter\n\n[1]\n");
    EXPECT_EQ(TypedOutput("echo a\ncls /b\necho [%errorlevel%]\n"), L"a\n[0]\n");
}

} // namespace
