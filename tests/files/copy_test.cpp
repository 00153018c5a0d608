// copy, move, scopy and smove through ombc.exe on scratch folders: listings
// and summaries, the overwrite question answered from standard input, the
// errors, descriptions carried along, and no other name of a file ever
// letting a copy truncate it.
#include "command_run.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

FILETIME LastWrite(const TempFolder& f, const std::wstring& name)
{
    WIN32_FILE_ATTRIBUTE_DATA data{};
    GetFileAttributesExW((f / name).c_str(), GetFileExInfoStandard, &data);
    return data.ftLastWriteTime;
}

TEST(Copy, CopiesListsAndSumsUp)
{
    TempFolder f;
    f.WriteBytes(L"a.txt", "alpha");
    f.WriteBytes(L"b.txt", "beta");
    MakeDirectory(f, L"sub");
    FILETIME old{0x11111110, 0x01C00000};
    HANDLE h = CreateFileW((f / L"a.txt").c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    SetFileTime(h, nullptr, nullptr, &old);
    CloseHandle(h);
    SetFileAttributesW((f / L"a.txt").c_str(), FILE_ATTRIBUTE_READONLY);

    EXPECT_EQ(RunLine(f, L"copy *.txt sub"),
              L"a.txt\nb.txt\n\n    2 file(s) copied from *.txt to " + f.Path() + L"\\sub\\*\n");
    EXPECT_EQ(f.ReadBytes(L"sub\\a.txt"), "alpha");
    EXPECT_EQ(f.ReadBytes(L"sub\\b.txt"), "beta");
    // The last-write time goes along; the attributes do not.
    FILETIME copied = LastWrite(f, L"sub\\a.txt");
    EXPECT_EQ(CompareFileTime(&copied, &old), 0);
    EXPECT_EQ(AttributesOf(f, L"sub\\a.txt") & FILE_ATTRIBUTE_READONLY, 0u);
    SetFileAttributesW((f / L"a.txt").c_str(), FILE_ATTRIBUTE_NORMAL);

    // A template renames; /q says nothing.
    EXPECT_EQ(RunLine(f, L"copy /q *.txt *.bak"), L"");
    EXPECT_EQ(f.ReadBytes(L"b.bak"), "beta");
    // An existing file is overwritten by copy and move without a question.
    EXPECT_EQ(RunLine(f, L"move /q a.bak b.bak"), L"");
    EXPECT_EQ(f.ReadBytes(L"b.bak"), "alpha");
    EXPECT_FALSE(f.Exists(L"a.bak"));
    EXPECT_EQ(RunLine(f, L"move b.bak sub\\c.txt"), L"b.bak\n\n    1 file(s) moved from b.bak to " + f.Path() +
                                                        L"\\sub\\c.txt\n");
    EXPECT_FALSE(f.Exists(L"b.bak"));
    // A move that cannot delete its source leaves both files and says nothing.
    SetFileAttributesW((f / L"b.txt").c_str(), FILE_ATTRIBUTE_READONLY);
    EXPECT_EQ(LevelOf(f, L"move /q b.txt moved.txt"), 0);
    EXPECT_TRUE(f.Exists(L"b.txt"));
    EXPECT_EQ(f.ReadBytes(L"moved.txt"), "beta");
    SetFileAttributesW((f / L"b.txt").c_str(), FILE_ATTRIBUTE_NORMAL);
}

TEST(Copy, RefusesBadLinesBeforeWritingAnything)
{
    TempFolder f;
    f.WriteBytes(L"a.txt", "alpha");
    f.WriteBytes(L"b.txt", "beta");
    struct Case {
        const wchar_t* line;
        const wchar_t* message;
    } cases[] = {
        {L"copy a.txt", L"File cannot be copied into itself"},
        {L"copy a.txt A.TXT", L"File cannot be copied into itself"},
        {L"copy *.txt x.bak", L"Cannot copy multiple files to single file"},
        {L"copy none.* x", L"No such file or directory"},
        {L"copy", L"Invalid number of parameters"},
        {L"copy a.txt b c", L"Invalid number of parameters"},
        {L"copy /z a.txt x", L"Invalid switch"},
        {L"scopy /q a.txt x", L"Invalid switch"},
        {L"smove /q a.txt x", L"Invalid switch"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(RunLine(f, c.line), std::wstring(c.message) + L"\n\n") << c.line;
        EXPECT_EQ(LevelOf(f, c.line), 1) << c.line;
    }
    EXPECT_EQ(f.ReadBytes(L"a.txt"), "alpha");
    EXPECT_FALSE(f.Exists(L"x.bak"));
    EXPECT_FALSE(f.Exists(L"x"));
}

TEST(Copy, AnotherNameOfTheSourceNeverTruncatesIt)
{
    TempFolder f;
    const std::string data(100000, 'd');
    f.WriteBytes(L"a long name.txt", data);
    f.WriteBytes(L"b.txt", "beta");
    MakeDirectory(f, L"sub");
    ASSERT_TRUE(CreateHardLinkW((f / L"linked.txt").c_str(), (f / L"a long name.txt").c_str(), nullptr));
    ASSERT_TRUE(CreateHardLinkW((f / L"sub\\a long name.txt").c_str(), (f / L"a long name.txt").c_str(), nullptr));
    // Wine makes up short names of its own; they name the file all the same.
    wchar_t shortPath[MAX_PATH];
    ASSERT_GT(GetShortPathNameW((f / L"a long name.txt").c_str(), shortPath, MAX_PATH), 0u);
    std::wstring shortName = std::wstring(shortPath).substr(std::wstring(shortPath).find_last_of(L'\\') + 1);
    ASSERT_NE(shortName, L"a long name.txt");

    std::vector<std::wstring> lines = {
        L"copy \"a long name.txt\" linked.txt",
        L"copy \"a long name.txt\" " + shortName,
        L"scopy \"a long name.txt\" " + shortName,
        L"move \"a long name.txt\" linked.txt",
        // Through a wildcard into a folder: b.txt is not copied either.
        L"copy *.txt sub",
    };
    // Another drive letter for the same folder, where the platform maps one
    // (Wine's mapping does not reach the file).
    bool substituted = DefineDosDeviceW(0, L"Q:", f.Path().c_str()) != 0;
    if (substituted && GetFileAttributesW(L"Q:\\a long name.txt") != INVALID_FILE_ATTRIBUTES)
        lines.push_back(L"copy \"a long name.txt\" \"Q:\\a long name.txt\"");
    for (const std::wstring& line : lines) {
        EXPECT_EQ(RunLine(f, line), L"File cannot be copied into itself\n\n") << line;
        EXPECT_EQ(f.ReadBytes(L"a long name.txt"), data) << line;
    }
    if (substituted) DefineDosDeviceW(DDD_REMOVE_DEFINITION, L"Q:", nullptr);
    EXPECT_FALSE(f.Exists(L"sub\\b.txt"));
}

TEST(Copy, TheOverwriteQuestionAndItsAnswers)
{
    TempFolder f;
    struct Case {
        const char* answers;
        const wchar_t* expected;
        const char* b; // b.txt afterwards
        const char* c; // c.txt afterwards, "" for none
    } cases[] = {
        {"y\n", L"b.txt        Overwrite (Y/N/S/A)?Y\n\n    1 file(s) copied from a.txt to ", "new", ""},
        {"xs\n", L"b.txt        Overwrite (Y/N/S/A)?S\n\n    1 file(s) copied from a.txt to ", "old", ""},
        {"nc.txt\n", L"b.txt        Overwrite (Y/N/S/A)?N\nEnter new file name:\n\n    1 file(s) copied from a.txt to ",
         "old", "new"},
        // The end of the input answers like Ctrl-C: nothing happens, no summary.
        {"", L"b.txt        Overwrite (Y/N/S/A)?^C\n", "old", ""},
    };
    for (const Case& c : cases) {
        f.WriteBytes(L"a.txt", "new");
        f.WriteBytes(L"b.txt", "old");
        DeleteFileW((f / L"c.txt").c_str());
        std::wstring out = RunLine(f, L"scopy a.txt b.txt", c.answers);
        std::wstring expected = c.expected;
        if (expected.back() == L' ') expected += f.Path() + L"\\b.txt\n";
        EXPECT_EQ(out, expected) << c.answers;
        EXPECT_EQ(f.ReadBytes(L"b.txt"), c.b) << c.answers;
        EXPECT_EQ(f.ReadBytes(L"c.txt"), c.c) << c.answers;
        EXPECT_TRUE(f.Exists(L"a.txt")) << c.answers;
    }
    // "A" answers for the files that follow; a new name asks nothing.
    MakeDirectory(f, L"sub");
    f.WriteBytes(L"d.txt", "dnew");
    f.WriteBytes(L"sub\\a.txt", "aold");
    f.WriteBytes(L"sub\\d.txt", "dold");
    EXPECT_EQ(RunLine(f, L"smove a.txt sub", "a\n"), L"a.txt        Overwrite (Y/N/S/A)?A\n\n    1 file(s) moved from a.txt to " +
                                                        f.Path() + L"\\sub\\*\n");
    EXPECT_FALSE(f.Exists(L"a.txt"));
    f.WriteBytes(L"a.txt", "anew");
    EXPECT_EQ(RunLine(f, L"scopy ?.txt sub", "a\n"),
              L"a.txt        Overwrite (Y/N/S/A)?A\nb.txt\nd.txt\n\n    3 file(s) copied from ?.txt to " + f.Path() +
                  L"\\sub\\*\n");
    EXPECT_EQ(f.ReadBytes(L"sub\\d.txt"), "dnew");
    // A skipped file stays with smove, and still counts.
    EXPECT_EQ(RunLine(f, L"smove d.txt sub", "s\n"), L"d.txt        Overwrite (Y/N/S/A)?S\n\n    1 file(s) moved from d.txt to " +
                                                        f.Path() + L"\\sub\\*\n");
    EXPECT_TRUE(f.Exists(L"d.txt"));
}

TEST(Copy, DescriptionsTravelWithTheFiles)
{
    TempFolder f;
    MakeDirectory(f, L"sub");
    f.WriteBytes(L"a.txt", "alpha");
    f.WriteBytes(L"b.txt", "beta");
    f.WriteBytes(L"descript.ion", "a.txt first letter\r\nb.txt second letter\r\n");
    EXPECT_EQ(RunLine(f, L"copy a.txt sub"), L"a.txt         first letter\n\n    1 file(s) copied from a.txt to " +
                                                 f.Path() + L"\\sub\\*\n");
    EXPECT_NE(f.ReadText(L"sub\\descript.ion").find(L"a.txt first letter"), std::wstring::npos);
    // Beside itself and renamed by move, one image of the file is changed:
    // the new entry is not undone by the removal of the old one.
    RunLine(f, L"copy /q a.txt c.txt");
    RunLine(f, L"move /q b.txt d.txt");
    std::wstring text = f.ReadText(L"descript.ion");
    EXPECT_NE(text.find(L"a.txt first letter"), std::wstring::npos) << text;
    EXPECT_NE(text.find(L"c.txt first letter"), std::wstring::npos) << text;
    EXPECT_NE(text.find(L"d.txt second letter"), std::wstring::npos) << text;
    EXPECT_EQ(text.find(L"b.txt"), std::wstring::npos) << text;
}

TEST(Copy, AFileThatCannotBeReplacedStaysAsItWas)
{
    TempFolder f;
    f.WriteBytes(L"a.txt", "new");
    f.WriteBytes(L"r.txt", "read-only");
    SetFileAttributesW((f / L"r.txt").c_str(), FILE_ATTRIBUTE_READONLY);
    EXPECT_EQ(LevelOf(f, L"copy /q a.txt r.txt"), 1);
    EXPECT_EQ(f.ReadBytes(L"r.txt"), "read-only");
    SetFileAttributesW((f / L"r.txt").c_str(), FILE_ATTRIBUTE_NORMAL);
    // No folder to make the file in: the platform's message, nothing left.
    EXPECT_EQ(LevelOf(f, L"copy /q a.txt none\\x.txt"), 1);
    EXPECT_EQ(LevelOf(f, L"scopy a.txt none\\x.txt"), 1);
    EXPECT_EQ(RunLine(f, L"scopy a.txt none\\x.txt"), L"x.txt\nNo such file or directory\n\n");
}

} // namespace
