// cd, cdd, pushd, popd, dirs, path and chcp end to end: typed lines and batch
// files in, the screen text and the directories they leave behind out.
#include "support/ombc_runner.h"
#include "support/temp_folder.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <string>

namespace {

// The folder as cd shows it: without its drive.
std::wstring Shown(const std::wstring& path) { return L"Current directory is " + path.substr(2) + L"\n\n"; }

std::wstring Numbered(int n) { return (n < 10 ? L"0" : L"") + std::to_wstring(n); }

TEST(Directories, CdShowsAndChangesEachDrive)
{
    TempFolder f;
    CreateDirectoryW((f / L"my dir").c_str(), nullptr);
    CreateDirectoryW((f / L"Mixed").c_str(), nullptr);
    const std::wstring here = Shown(f.Path());
    struct Case {
        const char* typed;
        std::wstring expected;
    } cases[] = {
        {"cd\n", here},
        {"chdir\n", here},
        {"cd my dir  \ncd\n", Shown(f / L"my dir")},
        {"cd \"my dir\"\ncd\n", Shown(f / L"my dir")},
        {"cd \"my dir\" more\ncd\n", L"Invalid number of parameters\n\n" + here},
        {"cd MIXED\\\ncd\n", Shown(f / L"Mixed")},
        {"cd ..\\..\ncd\n", L"Current directory is \\\n\n"},
        {"cd\\\ncd\n", L"Current directory is \\\n\n"},
        {"cd /q x\n", L"Invalid switch\n\n"},
        {"cd nosuch\ncd\n", L"No such file or directory\n\n" + here},
        {"cd q:\n", L"No such file or directory\n\n"},
        // Another drive: its own directory changes, the current drive stays.
        {"cd c:\ncd c:\\WINDOWS\\system32\ncd\ncd c:\n",
         L"Current directory is \\\n\n" + here + L"Current directory is \\windows\\system32\n\n"},
        {"cd /d c:\\windows\ncd\n", L"Current directory is \\windows\n\n"},
        {"cdd c:\\windows\ncd\ncd t:\n", L"Current directory is \\windows\n\n" + here},
        {"cdd\ncdd /x y\n", L"Invalid number of parameters\n\nInvalid switch\n\n"},
    };
    for (const Case& c : cases) EXPECT_EQ(TypedOutput(c.typed, f.Path()), c.expected) << c.typed;
    // A failure is an error level of 1.
    EXPECT_EQ(RunOmbcIn(f.Path(), L"/C cd nosuch").ExitCode, 1);
    EXPECT_EQ(RunOmbcIn(f.Path(), L"/C cd my dir").ExitCode, 0);
}

TEST(Directories, TheStackHoldsSixteenAndPopdCounts)
{
    TempFolder f;
    std::string folder(f.Path().begin(), f.Path().end());
    std::string batch = "@echo off\r\n";
    for (int i = 1; i <= 17; ++i) {
        CreateDirectoryW((f / Numbered(i)).c_str(), nullptr);
        std::wstring name = Numbered(i);
        batch += "pushd " + folder + "\\" + std::string(name.begin(), name.end()) + "\r\n";
    }
    batch += "dirs\r\npopd 2\r\ncd\r\npopd 99\r\npopd 0\r\ncd\r\ndirs\r\n";
    f.WriteBytes(L"stack.bat", batch);
    // The seventeenth push lost the oldest entry, the batch's own folder.
    std::wstring expected;
    for (int i = 16; i >= 1; --i)
        expected += (i < 10 ? L"  " : L" ") + std::to_wstring(i) + L": " + (f / Numbered(17 - i)) + L"\n";
    // popd 2 dropped the newest entry and went to the one below it; 99 and 0 do nothing.
    expected += Shown(f / L"15") + Shown(f / L"15");
    for (int i = 14; i >= 1; --i)
        expected += (i < 10 ? L"  " : L" ") + std::to_wstring(i) + L": " + (f / Numbered(15 - i)) + L"\n";
    EXPECT_EQ(JoinLines(RunOmbcIn(f.Path(), L"/C stack.bat").Output), expected);
}

TEST(Directories, PushdPopdMoveAndKeepTheirEntries)
{
    TempFolder f;
    CreateDirectoryW((f / L"a").c_str(), nullptr);
    CreateDirectoryW((f / L"a\\b").c_str(), nullptr);
    const std::wstring here = Shown(f.Path());
    struct Case {
        const char* typed;
        std::wstring expected;
    } cases[] = {
        {"popd\ncd\n", here},
        {"pushd\ndirs\ncd\n", L"  1: " + f.Path() + L"\n" + here},
        {"pushd a\npushd b\ndirs\ncd\n", L"  2: " + f.Path() + L"\n  1: " + (f / L"a") + L"\n" + Shown(f / L"a\\b")},
        {"pushd \"a\"\npushd b\npopd 0x2\ncd\ndirs\n", here},
        // pushd and popd take the drive with the directory.
        {"pushd c:\\windows\ncd\npopd\ncd\n", L"Current directory is \\windows\n\n" + here},
        // A failing change keeps the entry it pushed.
        {"pushd nosuch\ndirs\ncd\n", L"No such file or directory\n\n  1: " + f.Path() + L"\n" + here},
        {"pushd a b\npushd /x\npopd 1 2\npopd /x\ndirs\n",
         L"Invalid number of parameters\n\nInvalid switch\n\nInvalid number of parameters\n\nInvalid switch\n\n"},
    };
    for (const Case& c : cases) EXPECT_EQ(TypedOutput(c.typed, f.Path()), c.expected) << c.typed;
}

TEST(Directories, PathSetsShowsAndDeletes)
{
    struct Case {
        const char* typed;
        std::wstring expected;
    } cases[] = {
        {"path c:\\my tools;c:\\bin  \npath\necho [%PATH%]\n",
         L"PATH=c:\\my tools;c:\\bin\n[c:\\my tools;c:\\bin]\n"},
        {"path ;\npath\nif not defined PATH echo gone\n", L"PATH=\ngone\n"},
        {"path ;whatever\npath\n", L"PATH=\n"},
        {"path /x\n", L"Invalid switch\n\n"},
    };
    for (const Case& c : cases) EXPECT_EQ(TypedOutput(c.typed), c.expected) << c.typed;
}

// The locale's default code page of a kind, as chcp names it.
std::wstring DefaultPage(LCTYPE kind)
{
    wchar_t digits[8] = {};
    GetLocaleInfoW(LOCALE_SYSTEM_DEFAULT, kind, digits, 8);
    return digits;
}

TEST(Directories, ChcpSelectsShowsAndRefuses)
{
    const std::wstring oem = DefaultPage(LOCALE_IDEFAULTCODEPAGE), ansi = DefaultPage(LOCALE_IDEFAULTANSICODEPAGE);
    const std::string oemNarrow(oem.begin(), oem.end());
    struct Case {
        std::string typed;
        std::wstring expected;
    } cases[] = {
        {"chcp\n", L"Active code page: " + oem + L" (DOS Default)\n"},
        {"chcp win\nchcp\n", L"Active code page: " + ansi + L" (WIN Default)\n"},
        {"chcp 65001\nchcp\nchcp DOS\nchcp\n", L"Active code page: 65001\nActive code page: " + oem + L" (DOS Default)\n"},
        // The default's own number is stored as the default.
        {"chcp win\nchcp " + oemNarrow + "\nchcp\n", L"Active code page: " + oem + L" (DOS Default)\n"},
        {"chcp 99999\nchcp\n", L"Code page is not available\n\nActive code page: " + oem + L" (DOS Default)\n"},
        {"chcp 12x\nchcp -1\n", L"Code page is not available\n\nCode page is not available\n\n"},
        {"chcp 1 2\nchcp /x\n", L"Invalid number of parameters\n\nInvalid switch\n\n"},
    };
    for (const Case& c : cases) EXPECT_EQ(TypedOutput(c.typed), c.expected) << c.typed;
    EXPECT_EQ(RunOmbc(L"/C chcp 99999").ExitCode, 1);
}

TEST(Directories, Utf8BatchWithoutAMarkAfterChcp65001)
{
    TempFolder f;
    // Text without a mark, past the first line, in characters of two, three and four bytes.
    f.WriteBytes(L"u8.bat", "@echo off\r\necho Gr\xC3\xBC\xC3\x9F" "e \xE2\x82\xAC \xF0\x9F\x98\x80\r\n"
                            "set V=\xC3\xA9t\xC3\xA9\r\necho %V%> out.txt\r\n");
    EXPECT_EQ(TypedOutput("chcp 65001\nu8.bat\n", f.Path()), L"Gr\u00FC\u00DFe \u20AC \U0001F600\n");
    EXPECT_EQ(f.ReadBytes(L"out.txt"), "\xC3\xA9t\xC3\xA9\r\n");
}

} // namespace
