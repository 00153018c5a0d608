// del, delbut and rd through ombc.exe: the all-files question, forced and
// confirmed deletion, recursive runs, descriptions kept in step, and no
// recursive command ever reaching through a junction.
#include "command_run.h"
#include "files_fixture.h"

#include <gtest/gtest.h>

#include <string>

namespace {

void Files(const TempFolder& f, std::initializer_list<const wchar_t*> names)
{
    for (const wchar_t* name : names) f.WriteBytes(name, "x");
}

TEST(Del, AllFilesAreDeletedOnlyOnConsent)
{
    TempFolder f;
    MakeDirectory(f, L"d");
    struct Case {
        const wchar_t* line;
        const char* answer;
        bool asks;
        bool deletes;
    } cases[] = {
        {L"del d\\*", "n\n", true, false},
        {L"del d\\*.*", "y\n", true, true},
        {L"del d", "y\n", true, true},
        {L"del /q d\\*.*", "", false, true},
        {L"del /y d\\*.", "", false, true},
    };
    for (const Case& c : cases) {
        Files(f, {L"d\\a.txt", L"d\\b"});
        f.WriteBytes(L"d\\descript.ion", "a.txt about a\r\n");
        SetFileAttributesW((f / L"d\\descript.ion").c_str(), FILE_ATTRIBUTE_HIDDEN);
        std::wstring out = RunLine(f, c.line, c.answer);
        std::wstring question = L"All files in " + f.Path() + L"\\d will be deleted!\nDelete ALL files (Y/N)?";
        EXPECT_EQ(out.find(question) == 0, c.asks) << c.line << L"\n" << out;
        EXPECT_EQ(!f.Exists(L"d\\b"), c.deletes) << c.line;
        // With all files the description file goes too, unless it still
        // describes a file that stays ("*." leaves a.txt, except under Wine,
        // whose find functions give every name for "*.").
        EXPECT_EQ(f.Exists(L"d\\descript.ion"), f.Exists(L"d\\a.txt")) << c.line;
    }
}

TEST(Del, SwitchesAttributesAndFailures)
{
    TempFolder f;
    Files(f, {L"a.txt", L"b.txt", L"r.txt"});
    SetFileAttributesW((f / L"r.txt").c_str(), FILE_ATTRIBUTE_READONLY);
    EXPECT_EQ(RunLine(f, L"del /x a.txt"), L"Invalid switch\n\n");
    EXPECT_EQ(RunLine(f, L"del a.txt b.txt"), L"Invalid number of parameters\n\n");
    EXPECT_EQ(RunLine(f, L"del none.txt"), L"No such file or directory\n\n");
    // A read-only file needs /f, which clears the attribute first.
    EXPECT_EQ(RunLine(f, L"del /q /a:r *.*"), L"Permission denied\n\n");
    EXPECT_TRUE(f.Exists(L"r.txt"));
    EXPECT_EQ(RunLine(f, L"del /q /f /a:r *.*"), L"");
    EXPECT_FALSE(f.Exists(L"r.txt"));
    EXPECT_TRUE(f.Exists(L"a.txt"));
    // /p asks for each file; one that cannot go is reported and the run goes on.
    f.WriteBytes(L"0.txt", "x");
    SetFileAttributesW((f / L"0.txt").c_str(), FILE_ATTRIBUTE_READONLY);
    EXPECT_EQ(RunLine(f, L"del /p *.txt", "yyn\n"),
              L"Delete 0.txt (Y/N)?Y\nPermission denied\n\nDelete a.txt (Y/N)?Y\nDelete b.txt (Y/N)?N\n");
    EXPECT_TRUE(f.Exists(L"0.txt"));
    EXPECT_FALSE(f.Exists(L"a.txt"));
    EXPECT_TRUE(f.Exists(L"b.txt"));
    SetFileAttributesW((f / L"0.txt").c_str(), FILE_ATTRIBUTE_NORMAL);
}

TEST(Del, DescriptionsFollowTheFiles)
{
    TempFolder f;
    Files(f, {L"a.txt", L"b.txt"});
    f.WriteBytes(L"descript.ion", "a.txt about a\r\nb.txt about b\r\n");
    RunLine(f, L"del a.txt");
    std::wstring text = f.ReadText(L"descript.ion");
    EXPECT_EQ(text.find(L"a.txt"), std::wstring::npos) << text;
    EXPECT_NE(text.find(L"b.txt about b"), std::wstring::npos) << text;
    // The last described file takes the description file with it.
    RunLine(f, L"del b.txt");
    EXPECT_FALSE(f.Exists(L"descript.ion"));
}

TEST(Del, RecursiveRunsAndTheirDirectories)
{
    TempFolder f;
    MakeDirectory(f, L"t");
    MakeDirectory(f, L"t\\(old)");
    MakeDirectory(f, L"t\\s");
    Files(f, {L"t\\a.txt", L"t\\s\\b.txt", L"t\\s\\c.doc", L"t\\(old)\\d.txt"});
    // A pattern deletes files in every directory and leaves the directories.
    EXPECT_EQ(RunLine(f, L"del /s t\\*.txt"), L"");
    EXPECT_FALSE(f.Exists(L"t\\s\\b.txt"));
    EXPECT_FALSE(f.Exists(L"t\\(old)\\d.txt"));
    EXPECT_TRUE(f.Exists(L"t\\s\\c.doc"));
    // A directory goes with everything in it, after the question.
    EXPECT_EQ(RunLine(f, L"del /s t", "y\n"),
              L"All files from " + f.Path() + L"\\t will be deleted!\nDelete ALL files (Y/N)?Y\n");
    EXPECT_FALSE(f.Exists(L"t"));
    MakeDirectory(f, L"e");
    MakeDirectory(f, L"e\\f");
    EXPECT_EQ(RunLine(f, L"del /s /q e"), L"");
    EXPECT_FALSE(f.Exists(L"e"));
}

TEST(Delbut, DeletesAllButTheExceptions)
{
    TempFolder f;
    Files(f, {L"a.txt", L"b.txt", L"c.doc", L"d.bat"});
    f.WriteBytes(L"descript.ion", "c.doc about c\r\nd.bat about d\r\n");
    SetFileAttributesW((f / L"descript.ion").c_str(), FILE_ATTRIBUTE_HIDDEN);
    EXPECT_EQ(RunLine(f, L"delbut *.*"), L"Nothing to delete\n\n");
    EXPECT_EQ(RunLine(f, L"delbut a.txt c:\\b.txt"), L"Invalid parameter\n\n");
    EXPECT_EQ(RunLine(f, L"delbut /p /q a.txt"), L"Invalid switch\n\n");
    EXPECT_EQ(RunLine(f, L"delbut"), L"Invalid number of parameters\n\n");
    EXPECT_EQ(RunLine(f, L"delbut /p *.txt", "n\n"), L"Delete c.doc (Y/N)?N\nDelete d.bat (Y/N)?^C\n");
    EXPECT_TRUE(f.Exists(L"d.bat"));
    EXPECT_EQ(RunLine(f, L"delbut *.txt C.DOC"), L"");
    EXPECT_TRUE(f.Exists(L"a.txt"));
    EXPECT_TRUE(f.Exists(L"b.txt"));
    EXPECT_TRUE(f.Exists(L"c.doc"));
    EXPECT_FALSE(f.Exists(L"d.bat"));
    std::wstring text = f.ReadText(L"descript.ion");
    EXPECT_NE(text.find(L"c.doc about c"), std::wstring::npos) << text;
    EXPECT_EQ(text.find(L"d.bat"), std::wstring::npos) << text;
}

TEST(Rd, RemovesEmptyDirectoriesAndTheirDescriptions)
{
    TempFolder f;
    MakeDirectory(f, L"e");
    MakeDirectory(f, L"full");
    Files(f, {L"full\\a.txt"});
    f.WriteBytes(L"descript.ion", "e an empty one\r\nfull a full one\r\n");
    EXPECT_EQ(RunLine(f, L"rd /x e"), L"Invalid switch\n\n");
    EXPECT_EQ(RunLine(f, L"rd"), L"Invalid number of parameters\n\n");
    EXPECT_EQ(RunLine(f, L"rd none"), L"No such file or directory\n\n");
    EXPECT_EQ(LevelOf(f, L"rd full"), 1);
    EXPECT_TRUE(f.Exists(L"full\\a.txt"));
    EXPECT_EQ(RunLine(f, L"rd e"), L"");
    EXPECT_FALSE(f.Exists(L"e"));
    std::wstring text = f.ReadText(L"descript.ion");
    EXPECT_EQ(text.find(L"an empty one"), std::wstring::npos) << text;
    EXPECT_NE(text.find(L"a full one"), std::wstring::npos) << text;
    // /s removes a tree of directories; a file in it stops the run there.
    MakeDirectory(f, L"t");
    MakeDirectory(f, L"t\\a");
    MakeDirectory(f, L"t\\a\\(b)");
    EXPECT_EQ(RunLine(f, L"rd /s t"), L"");
    EXPECT_FALSE(f.Exists(L"t"));
    EXPECT_EQ(LevelOf(f, L"rd /s full"), 1);
    EXPECT_TRUE(f.Exists(L"full\\a.txt"));
}

TEST(Junctions, RecursiveCommandsRemoveTheLinkAndLeaveItsTarget)
{
    TempFolder f;
    MakeDirectory(f, L"outside");
    MakeDirectory(f, L"outside\\sub");
    Files(f, {L"outside\\keep.txt"});
    const wchar_t* lines[] = {L"rd /s t", L"del /s /q t", L"del /s /q t\\*.txt"};
    for (const wchar_t* line : lines) {
        MakeDirectory(f, L"t");
        MakeDirectory(f, L"t\\a");
        // A junction where the file system makes one, else a directory link.
        if (!MakeJunction(f / L"t\\link", f / L"outside") && !MakeDirectoryLink(f / L"t\\link", f / L"outside"))
            GTEST_SKIP() << "this file system makes neither a junction nor a directory link";
        RunLine(f, line);
        EXPECT_TRUE(f.Exists(L"outside\\keep.txt")) << line;
        EXPECT_TRUE(f.Exists(L"outside\\sub")) << line;
        // What remains of the tree goes before the next turn, link first.
        RemoveLink(f / L"t\\link");
        RemoveDirectoryW((f / L"t\\a").c_str());
        RemoveDirectoryW((f / L"t").c_str());
    }
}

} // namespace
