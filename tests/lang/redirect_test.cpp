// Redirection and pipes on real files, checked byte for byte.
#include "lang/folder_snapshot.h"
#include "support/ombc_runner.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <set>
#include <string>

namespace {

using lang_test::TemporaryFiles;

std::wstring RunIn(const TempFolder& f, const std::wstring& line, const std::wstring& options = L"")
{
    return JoinLines(RunOmbcIn(f.Path(), options + L"/C \"" + line + L"\"").Output);
}

std::string Utf16(const std::string& ascii)
{
    std::string bytes;
    for (char c : ascii) bytes += {c, '\0'};
    return bytes;
}

TEST(Redirect, OutputAndAppendInCodePageText)
{
    TempFolder f;
    EXPECT_EQ(RunIn(f, L"echo hello>out.txt"), L"");
    EXPECT_EQ(f.ReadBytes(L"out.txt"), "hello\r\n");
    RunIn(f, L"echo again >> out.txt");
    EXPECT_EQ(f.ReadBytes(L"out.txt"), "hello\r\nagain \r\n");
    RunIn(f, L"echo fresh > out.txt");
    EXPECT_EQ(f.ReadBytes(L"out.txt"), "fresh \r\n");
    // rem runs after the file was opened: an empty file.
    RunIn(f, L"rem > empty.txt");
    EXPECT_TRUE(f.Exists(L"empty.txt"));
    EXPECT_EQ(f.ReadBytes(L"empty.txt"), "");
    // Quoted names, and text that only looks like an operator.
    RunIn(f, L"echo q>\"odd name.txt\"");
    EXPECT_EQ(f.ReadBytes(L"odd name.txt"), "q\r\n");
    EXPECT_EQ(RunIn(f, L"echo a^>b"), L"a>b\n");
    EXPECT_FALSE(f.Exists(L"b"));
    EXPECT_EQ(RunIn(f, L"echo \"a>b\""), L"\"a>b\"\n");
    // Errors still reach the screen, never the file.
    EXPECT_EQ(RunIn(f, L"nosuch > err.txt"), L"Bad command or file name\n\n");
    EXPECT_EQ(f.ReadBytes(L"err.txt"), "");
}

TEST(Redirect, UnicodeFilesGetOneMarkAndAppendingKeepsTheEncoding)
{
    TempFolder f;
    std::wstring ini = L"INI=" + (f / L"s.ini") + L" ";
    RunIn(f, L"echo one > u.txt", ini + L"/U ");
    RunIn(f, L"echo two >> u.txt", ini);
    EXPECT_EQ(f.ReadBytes(L"u.txt"), "\xFF\xFE" + Utf16("one \r\ntwo \r\n"));
    // An existing file keeps its own encoding, whatever the setting says.
    f.WriteBytes(L"u8.txt", "\xEF\xBB\xBFstart\r\n");
    RunIn(f, L"echo caf\x00E9 >> u8.txt", ini);
    EXPECT_EQ(f.ReadBytes(L"u8.txt"), "\xEF\xBB\xBFstart\r\ncaf\xC3\xA9 \r\n");
    f.WriteBytes(L"be.txt", std::string("\xFE\xFF\0a\0\r\0\n", 8));
    RunIn(f, L"echo b>>be.txt", ini);
    EXPECT_EQ(f.ReadBytes(L"be.txt"), std::string("\xFE\xFF\0a\0\r\0\n\0b\0\r\0\n", 14));
    RunIn(f, L"echo plain > a.txt", ini + L"/A ");
    EXPECT_EQ(f.ReadBytes(L"a.txt"), "plain \r\n");
}

TEST(Redirect, RepeatedOperatorsMakeATee)
{
    TempFolder f;
    // Operators and names go; the blanks around them stay in the text.
    RunIn(f, L"echo a > f1 >> f2");
    EXPECT_EQ(f.ReadBytes(L"f1"), "a  \r\n");
    EXPECT_EQ(f.ReadBytes(L"f2"), "a  \r\n");
    RunIn(f, L"echo b>>f1>>f2");
    EXPECT_EQ(f.ReadBytes(L"f1"), "a  \r\nb\r\n");
    EXPECT_EQ(f.ReadBytes(L"f2"), "a  \r\nb\r\n"); // only what this command added
    // A further ">" writes only over a file that exists, keeping a longer tail.
    RunIn(f, L"echo c > f3 > missing");
    EXPECT_FALSE(f.Exists(L"missing"));
    f.WriteBytes(L"long", "0123456789");
    RunIn(f, L"echo c>f3>long");
    EXPECT_EQ(f.ReadBytes(L"long"), "c\r\n3456789");
}

TEST(Redirect, PipesRunInTurnAndLeaveNoTemporaryFile)
{
    TempFolder f;
    std::set<std::wstring> before = TemporaryFiles();
    EXPECT_EQ(RunIn(f, L"echo left | echo right"), L"right\n");
    EXPECT_EQ(RunIn(f, L"echo a | echo b | echo c > end.txt"), L"");
    EXPECT_EQ(f.ReadBytes(L"end.txt"), "c \r\n");
    // || is two pipes with an empty stage between them.
    EXPECT_EQ(RunIn(f, L"echo a || echo b"), L"b\n");
    // A failing stage stops the chain; its file still goes.
    EXPECT_EQ(RunIn(f, L"nosuch | echo never"), L"Bad command or file name\n\n");
    EXPECT_EQ(RunIn(f, L"echo a | echo b > \"bad?name\""), L"Unable to redirect\n\n");
    EXPECT_EQ(TemporaryFiles(), before);
}

TEST(Redirect, FailuresRunNothingAndTouchNothing)
{
    TempFolder f;
    CreateDirectoryW((f / L"folder").c_str(), nullptr);
    f.WriteBytes(L"keep.txt", "precious\r\n");
    f.WriteBytes(L"ro.txt", "read only\r\n");
    SetFileAttributesW((f / L"ro.txt").c_str(), FILE_ATTRIBUTE_READONLY);
    const std::wstring refused = L"Unable to redirect\n\n";
    EXPECT_EQ(RunIn(f, L"echo x > folder"), refused);
    EXPECT_EQ(RunIn(f, L"echo x > ro.txt"), refused);
    EXPECT_EQ(f.ReadBytes(L"ro.txt"), "read only\r\n");
    EXPECT_EQ(RunIn(f, L"echo x > a?b"), refused);
    EXPECT_EQ(RunIn(f, L"echo x >"), refused);
    EXPECT_EQ(RunIn(f, L"echo x < nofile"), refused);
    // An output that opened is not emptied when the input then fails, and a
    // file made for it goes again.
    EXPECT_EQ(RunIn(f, L"echo x > keep.txt < nofile"), refused);
    EXPECT_EQ(f.ReadBytes(L"keep.txt"), "precious\r\n");
    EXPECT_EQ(RunIn(f, L"echo x > new.txt < nofile"), refused);
    EXPECT_FALSE(f.Exists(L"new.txt"));
    EXPECT_EQ(RunOmbcIn(f.Path(), L"/C \"echo x < nofile\"").ExitCode, 1);
    // More than 32 redirections refuse the statement.
    std::wstring many = L"echo x";
    for (int i = 0; i < 33; ++i) many += L" >> m" + std::to_wstring(i);
    EXPECT_EQ(RunIn(f, many), refused);
    // A binary file as input is read without harm.
    std::string binary(5000, '\0');
    for (size_t i = 0; i < binary.size(); ++i) binary[i] = char(i * 31);
    f.WriteBytes(L"bin", binary);
    EXPECT_EQ(RunIn(f, L"echo fine < bin"), L"fine\n");
}

TEST(Redirect, ABatchProgramRedirectedAsAWholeEndsWithoutAQuestion)
{
    TempFolder f;
    f.WriteBytes(L"e.bat", "@echo off\r\necho one\r\nnosuch\r\necho two\r\n");
    EXPECT_EQ(RunIn(f, L"e.bat > out.txt"), L"Bad command or file name\n\n");
    EXPECT_EQ(f.ReadBytes(L"out.txt"), "one\r\n");
    // One redirected statement inside still brings the question.
    f.WriteBytes(L"s.bat", "@echo off\r\nnosuch > x.txt\r\necho after\r\n");
    OmbcResult r = RunOmbcIn(f.Path(), L"/C s.bat", "n");
    EXPECT_EQ(JoinLines(r.Output),
              L"Bad command or file name\n\nTerminate Batch at line 2 (Y/N)? n\nafter\n");
}

} // namespace
