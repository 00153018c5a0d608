// dir end to end on scratch trees: each form, sort orders, attribute
// selection, recursion, descriptions, and hostile trees.
#include "files/files_fixture.h"

#include "app/toolkit/handles.h"
#include "support/ombc_runner.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

// A known date pattern for every listing in this program.
class DirTest : public ::testing::Test {
protected:
    void SetUp() override { UseKnownDatePattern(); }
};

std::wstring Dir(const TempFolder& f, const std::wstring& arguments)
{
    return JoinLines(RunOmbcIn(f.Path(), L"/C dir " + arguments).Output);
}

std::vector<std::wstring> Lines(const std::wstring& text)
{
    std::vector<std::wstring> lines;
    size_t start = 0;
    for (size_t end; (end = text.find(L'\n', start)) != std::wstring::npos; start = end + 1) {
        std::wstring line = text.substr(start, end - start);
        while (!line.empty() && line.back() == L' ') line.pop_back();
        lines.push_back(line);
    }
    return lines;
}

// Sets a file's last-write time to a local date and time.
void Stamp(const TempFolder& f, const std::wstring& name, WORD year, WORD month, WORD day, WORD hour, WORD minute)
{
    SYSTEMTIME local{year, month, 0, day, hour, minute, 0, 0};
    FILETIME localTime, utc;
    SystemTimeToFileTime(&local, &localTime);
    LocalFileTimeToFileTime(&localTime, &utc);
    HANDLE h = CreateFileW((f / name).c_str(), FILE_WRITE_ATTRIBUTES, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                           OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    SetFileTime(h, nullptr, nullptr, &utc);
    CloseHandle(h);
}

// A small tree: files of known sizes and times, a hidden and a system file,
// names with blanks, beyond 8.3 and outside ASCII, and two directories.
void MakeTree(const TempFolder& f)
{
    MakeFile(f, L"b.txt", std::string(1234, 'b'));
    MakeFile(f, L"a.log", std::string(20, 'a'));
    MakeFile(f, L"c.dat", "");
    MakeFile(f, L"with blank name.text", std::string(300, 'w'));
    MakeFile(f, L"\u00e9t\u00e9 \u0416.txt", "x");
    MakeFile(f, L"hidden.txt", "h", FILE_ATTRIBUTE_HIDDEN);
    MakeFile(f, L"system.sys", "s", FILE_ATTRIBUTE_SYSTEM);
    MakeFile(f, L"ro.txt", "r", FILE_ATTRIBUTE_READONLY);
    MakeDir(f, L"zdir");
    MakeDir(f, L"adir");
    Stamp(f, L"b.txt", 2020, 1, 2, 3, 4);
    Stamp(f, L"a.log", 2021, 5, 6, 17, 45);
    Stamp(f, L"c.dat", 2019, 12, 31, 23, 59);
    Stamp(f, L"with blank name.text", 2022, 2, 3, 10, 0);
    Stamp(f, L"\u00e9t\u00e9 \u0416.txt", 2023, 3, 4, 11, 0);
    Stamp(f, L"ro.txt", 2024, 4, 5, 12, 0);
}

TEST_F(DirTest, BareListsInEverySortOrderAndAttributeSelection)
{
    TempFolder f;
    MakeTree(f);
    const std::wstring files = L"a.log\nb.txt\nc.dat\nro.txt\nwith blank name.text\n\u00e9t\u00e9 \u0416.txt\n";
    struct Case {
        const wchar_t* switches;
        std::wstring expected;
    } cases[] = {
        {L"/b /o", L"adir\nzdir\n" + files},
        {L"/o:n /b", L"adir\nzdir\n" + files},
        {L"/b /o:-n", L"zdir\nadir\n\u00e9t\u00e9 \u0416.txt\nwith blank name.text\nro.txt\nc.dat\nb.txt\na.log\n"},
        {L"/b /o:-g", files + L"adir\nzdir\n"},
        {L"/b /a-d-h-s /o:e", L"c.dat\na.log\nwith blank name.text\nb.txt\nro.txt\n\u00e9t\u00e9 \u0416.txt\n"},
        {L"/b /a:-d-h-s /o:s", L"c.dat\nro.txt\n\u00e9t\u00e9 \u0416.txt\na.log\nwith blank name.text\nb.txt\n"},
        {L"/b /a-d-s-h /o-s", L"b.txt\nwith blank name.text\na.log\nro.txt\n\u00e9t\u00e9 \u0416.txt\nc.dat\n"},
        {L"/b /a-h-d-s /od", L"c.dat\nb.txt\na.log\nwith blank name.text\n\u00e9t\u00e9 \u0416.txt\nro.txt\n"},
        {L"/b /a-d-h-s /o:-d", L"ro.txt\n\u00e9t\u00e9 \u0416.txt\nwith blank name.text\na.log\nb.txt\nc.dat\n"},
        {L"/b /ah /o", L"hidden.txt\n"},
        {L"/b /a:hs /o", L""},
        {L"/b /as /o", L"system.sys\n"},
        {L"/b /ar /o", L"ro.txt\n"},
        {L"/b /a-d-r-h-s /o", L"a.log\nb.txt\nc.dat\nwith blank name.text\n\u00e9t\u00e9 \u0416.txt\n"},
        {L"/b /a /o", L"adir\nzdir\na.log\nb.txt\nc.dat\nhidden.txt\nro.txt\nsystem.sys\nwith blank name.text\n"
                      L"\u00e9t\u00e9 \u0416.txt\n"},
        {L"/b /l /o *.TXT", L"b.txt\nro.txt\n\u00e9t\u00e9 \u0436.txt\n"},
        {L"/b /w /o *.log", L"a.log\n"},
        {L"/a:h-h", L"Invalid switch combination\n\n"},
        {L"/q", L"Invalid switch\n\n"},
        {L"a b", L"Invalid number of parameters\n\n"},
    };
    for (const Case& c : cases) EXPECT_EQ(Dir(f, c.switches), c.expected) << c.switches;
}

TEST_F(DirTest, LongShortAndJustifiedLinesWithDescriptionsAndTotals)
{
    TempFolder f;
    MakeTree(f);
    f.WriteBytes(L"descript.ion", "b.txt The bee file\r\n\"with blank name.text\" Blanks\r\n");
    SetFileAttributesW((f / L"descript.ion").c_str(), FILE_ATTRIBUTE_HIDDEN);
    std::vector<std::wstring> lines = Lines(Dir(f, L"/o /a-d-h *.t*"));
    ASSERT_EQ(lines.size(), 8u) << Dir(f, L"/o /a-d-h *.t*");
    EXPECT_EQ(lines[0], L"     Directory of " + f.Path() + L"\\*.t*");
    EXPECT_EQ(lines[1], L"");
    EXPECT_EQ(lines[2], L" 02-01-2020  3:04 ----A--I         1,234 b.txt        The bee file");
    EXPECT_EQ(lines[3].substr(0, 17), L" 05-04-2024 12:00");
    EXPECT_EQ(lines[3].substr(17), L" R---A--I             1 ro.txt");
    EXPECT_EQ(lines[4].substr(17), L" ----A--I           300 with blank name.text Blanks");
    EXPECT_EQ(lines[5].substr(17), L" ----A--I             1 \u00e9t\u00e9 \u0416.txt");
    EXPECT_EQ(lines[6].substr(0, 40), L"     4 file(s)          1,536 bytes     ");
    EXPECT_EQ(lines[7].substr(0, 15), L"     0 dir(s)  ");
    EXPECT_NE(lines[7].find(L" bytes free"), std::wstring::npos);

    lines = Lines(Dir(f, L"/o /f /j /4 /l b.txt"));
    ASSERT_GE(lines.size(), 3u);
    EXPECT_EQ(lines[2], L" b       .txt         1,234 02-01-2020  3:04 ----A--I The bee file");
    lines = Lines(Dir(f, L"/f /-a /t:w b.*"));
    EXPECT_EQ(lines[2], L" b.txt                1,234 02-01-2020  3:04 ----A--I The bee file");
    lines = Lines(Dir(f, L"/o /n adir"));
    ASSERT_EQ(lines.size(), 6u);
    EXPECT_EQ(lines[2].substr(17), L" ---D---I <DIR>         .");
    EXPECT_EQ(lines[3].substr(17), L" ---D---I <DIR>         ..");
    EXPECT_EQ(lines[4].substr(0, 40), L"     0 file(s)              0 bytes     ");
    EXPECT_EQ(lines[5].substr(0, 15), L"     2 dir(s)  ");
}

TEST_F(DirTest, ColumnForms)
{
    TempFolder f;
    for (const wchar_t* name : {L"a1", L"a2", L"a3", L"a4", L"a5"}) MakeFile(f, name);
    MakeDir(f, L"d9");
    auto row = [](std::initializer_list<const wchar_t*> cells) {
        std::wstring text;
        for (const wchar_t* c : cells) text += c;
        while (!text.empty() && text.back() == L' ') text.pop_back();
        return text;
    };
    // Five columns of five on a screen of 80 would not wrap: use enough names.
    std::vector<std::wstring> wide = Lines(Dir(f, L"/w /o /a-d"));
    ASSERT_GE(wide.size(), 3u);
    EXPECT_EQ(wide[2], row({L"a1   ", L"a2   ", L"a3   ", L"a4   ", L"a5   "}));
    std::vector<std::wstring> columns = Lines(Dir(f, L"/d /o"));
    ASSERT_GE(columns.size(), 3u);
    EXPECT_EQ(columns[2], row({L"[.]  ", L"[..] ", L"[d9] ", L"a1   ", L"a2   ", L"a3   ", L"a4   ", L"a5   "}));
    EXPECT_EQ(Lines(Dir(f, L"/t:c /o /a-d"))[2], wide[2]);
    EXPECT_EQ(columns[3].substr(0, 14), L"     5 file(s)");
    EXPECT_EQ(columns[4].substr(0, 14), L"     3 dir(s) ");
}

TEST_F(DirTest, RecursionTotalsAndHostileTrees)
{
    TempFolder f;
    MakeDir(f, L"top");
    MakeDir(f, L"top\\one");
    MakeDir(f, L"top\\two");
    MakeFile(f, L"top\\one\\x.txt", "12345");
    MakeFile(f, L"top\\two\\y.txt", "1");
    MakeFile(f, L"top\\two\\z.bin", "1");
    bool junction = MakeJunction(f / L"top\\two\\back", f / L"top");
    bool symlink = MakeDirectoryLink(f / L"top\\one\\loop", f / L"top\\one");
    ScopeExit removeLinks([&] {
        RemoveLink(f / L"top\\two\\back");
        RemoveLink(f / L"top\\one\\loop");
    });

    std::wstring bare = Dir(f, L"/s /b top\\*.txt");
    // Each directory that found something ends with a blank line, bare or not.
    EXPECT_EQ(bare, L"x.txt\n\ny.txt\n\n");
    std::vector<std::wstring> lines = Lines(Dir(f, L"/s top\\*.txt"));
    ASSERT_EQ(lines.size(), 12u);
    EXPECT_EQ(lines[0], L"     Directory of " + f.Path() + L"\\top\\one\\*.txt");
    EXPECT_EQ(lines[3].substr(0, 14), L"     1 file(s)");
    EXPECT_EQ(lines[5], L"");
    EXPECT_EQ(lines[6], L"     Directory of " + f.Path() + L"\\top\\two\\*.txt");
    std::wstring nothing = Dir(f, L"/s top\\*.none");
    EXPECT_EQ(Lines(nothing).size(), 4u) << nothing;
    EXPECT_EQ(Lines(nothing)[0], L"     Directory of " + f.Path() + L"\\top\\*.none");
    EXPECT_EQ(Lines(nothing)[2].substr(0, 14), L"     0 file(s)");

    if (!junction && !symlink) GTEST_SKIP() << "Wine made neither a junction nor a directory link";
    // Each link is listed once where it stands, and never entered.
    std::wstring all = Dir(f, L"/s /a /o top");
    size_t links = 0;
    for (size_t at = 0; (at = all.find(L"<JUNCTION>", at)) != std::wstring::npos; ++at) ++links;
    EXPECT_EQ(links, size_t(junction) + size_t(symlink)) << all;
    EXPECT_EQ(Dir(f, L"/s /b /a-d /o top"), L"x.txt\n\ny.txt\nz.bin\n\n");
}

TEST_F(DirTest, MissingAndOverlongPaths)
{
    TempFolder f;
    std::vector<std::wstring> lines = Lines(Dir(f, L"nothere\\*.*"));
    ASSERT_EQ(lines.size(), 4u);
    EXPECT_EQ(lines[0], L"     Directory of " + f.Path() + L"\\nothere\\*.*");
    EXPECT_EQ(lines[2].substr(0, 14), L"     0 file(s)");

    std::wstring deep = L"\\\\?\\" + f.Path();
    std::wstring relative;
    for (int i = 0; i < 5; ++i) {
        std::wstring part = std::wstring(60, wchar_t(L'a' + i));
        deep += L"\\" + part;
        relative += (relative.empty() ? L"" : L"\\") + part;
        CreateDirectoryW(deep.c_str(), nullptr);
    }
    HANDLE h = CreateFileW((deep + L"\\deep.txt").c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    CloseHandle(h);
    OmbcResult r = RunOmbcIn(f.Path(), L"/C dir /s /b " + std::wstring(60, L'a'));
    EXPECT_EQ(r.ExitCode, 0);
    EXPECT_EQ(JoinLines(r.Output).substr(0, 7), L"bbbbbbb");
    EXPECT_NE(JoinLines(r.Output).find(L"deep.txt"), std::wstring::npos);
    r = RunOmbcIn(f.Path(), L"/C dir " + relative);
    EXPECT_NE(JoinLines(r.Output).find(L"deep.txt"), std::wstring::npos) << JoinLines(r.Output);
    DeleteFileW((deep + L"\\deep.txt").c_str());
    for (int i = 0; i < 5; ++i) {
        RemoveDirectoryW(deep.c_str());
        deep.resize(deep.find_last_of(L'\\'));
    }
}

} // namespace
