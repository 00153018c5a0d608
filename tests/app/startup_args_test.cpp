// The program's own command line, shared by both hosts.
#include "app/startup_args.h"

#include "support/ombc_runner.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <windows.h>

namespace {

TEST(StartupArgs, OptionsSettingsArgumentAndCommand)
{
    StartupArgs a = ParseStartupArgs(L"/C echo hi");
    EXPECT_TRUE(a.RunAndClose);
    EXPECT_EQ(a.Command, L"echo hi");
    EXPECT_EQ(a.Redirection, 0);

    a = ParseStartupArgs(L"INI=x.ini /c dir");
    EXPECT_TRUE(a.RunAndClose);
    EXPECT_EQ(a.Command, L"dir");
    a = ParseStartupArgs(L"\"use=My Settings.ini\" /U");
    EXPECT_EQ(a.Redirection, L'U');
    EXPECT_EQ(a.Command, L"");

    // The first of U and A wins, in one group or two.
    EXPECT_EQ(ParseStartupArgs(L"/U /A").Redirection, L'U');
    EXPECT_EQ(ParseStartupArgs(L"/UA").Redirection, L'U');
    EXPECT_EQ(ParseStartupArgs(L"/A /U").Redirection, L'A');
    // Unknown letters are ignored; the end of the text ends a group.
    a = ParseStartupArgs(L"/qzc");
    EXPECT_TRUE(a.RunAndClose);
    EXPECT_EQ(a.Command, L"");
    a = ParseStartupArgs(L"/C\tx");
    EXPECT_EQ(a.Command, L"x");

    // Only "/x" in lower case with text behind it is the directory form.
    a = ParseStartupArgs(L"/x C:\\some dir /C echo");
    EXPECT_EQ(a.Directory, L"C:\\some dir /C echo");
    EXPECT_FALSE(a.RunAndClose);
    EXPECT_EQ(ParseStartupArgs(L"/X C:\\d").Directory, L"");
    EXPECT_EQ(ParseStartupArgs(L"/X C:\\d").Command, L"C:\\d");
    EXPECT_EQ(ParseStartupArgs(L"/x   ").Directory, L"");
    EXPECT_EQ(ParseStartupArgs(L"/x").Command, L"");

    // A whole command in quotes loses them; a quoted existing file keeps them.
    EXPECT_EQ(ParseStartupArgs(L"/C \"echo a b\"").Command, L"echo a b");
    EXPECT_EQ(ParseStartupArgs(L"/C \"echo \"a b\"\"").Command, L"echo \"a b\"");
    TempFolder folder;
    folder.WriteBytes(L"has blank.txt", "x");
    std::wstring quoted = L"\"" + (folder / L"has blank.txt") + L"\"";
    EXPECT_EQ(ParseStartupArgs((L"/C " + quoted).c_str()).Command, quoted);
}

TEST(StartupArgs, RedirectionChoiceIsSavedAndOnlyCLeavesTheProgram)
{
    TempFolder folder;
    std::wstring ini = folder / L"s.ini";
    OmbcResult r = RunOmbc(L"INI=" + ini + L" /U /C rem");
    EXPECT_EQ(r.ExitCode, 0);
    EXPECT_NE(folder.ReadText(L"s.ini").find(L"UnicodeRedirection=1"), std::wstring::npos);
    r = RunOmbc(L"INI=" + ini + L" /A /C rem");
    EXPECT_NE(folder.ReadText(L"s.ini").find(L"UnicodeRedirection=0"), std::wstring::npos);

    // Without /C the command runs and the program goes on reading lines.
    r = RunOmbc(L"INI=" + ini + L" \"echo first\"", "echo second\n");
    EXPECT_EQ(r.Output, L"first\r\nsecond\r\n");
    // /C with no command text runs the input loop like no option at all.
    r = RunOmbc(L"INI=" + ini + L" /C", "echo read\n");
    EXPECT_EQ(r.Output, L"read\r\n");
}

TEST(StartupArgs, DirectoryFormStartsThere)
{
    TempFolder folder;
    CreateDirectoryW((folder / L"sub").c_str(), nullptr);
    OmbcResult r = RunOmbc(L"/x " + (folder / L"sub"), "echo %CD%\n");
    EXPECT_EQ(r.Output, folder / L"sub" + L"\r\n");
    // A missing folder is silently ignored.
    r = RunOmbc(L"/x " + (folder / L"missing"), "echo still here\n");
    EXPECT_EQ(r.Output, L"still here\r\n");
}

} // namespace
