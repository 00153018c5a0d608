// md and ren through ombc.exe: directories made with their parents, and
// renames by template that never replace a file and take descriptions along.
#include "command_run.h"

#include <gtest/gtest.h>

#include <string>

namespace {

TEST(Md, MakesEveryMissingDirectory)
{
    TempFolder f;
    EXPECT_EQ(RunLine(f, L"md a\\b\\c d"), L"");
    EXPECT_TRUE(AttributesOf(f, L"a\\b\\c") & FILE_ATTRIBUTE_DIRECTORY);
    EXPECT_TRUE(AttributesOf(f, L"d") & FILE_ATTRIBUTE_DIRECTORY);
    EXPECT_EQ(RunLine(f, L"mkdir " + f.Path() + L"\\x\\y"), L"");
    EXPECT_TRUE(f.Exists(L"x\\y"));
    EXPECT_EQ(LevelOf(f, L"md a\\b"), 1); // it is there already
    f.WriteBytes(L"file", "x");
    EXPECT_EQ(LevelOf(f, L"md file\\sub"), 1);
    EXPECT_EQ(RunLine(f, L"md"), L"Invalid number of parameters\n\n");
    EXPECT_EQ(RunLine(f, L"md /x q"), L"Invalid switch\n\n");
}

TEST(Ren, RenamesByTemplateWithoutReplacingAnything)
{
    TempFolder f;
    f.WriteBytes(L"a.txt", "a");
    f.WriteBytes(L"b.txt", "b");
    f.WriteBytes(L"c.log", "c");
    CreateDirectoryW((f / L"dir").c_str(), nullptr);
    f.WriteBytes(L"descript.ion", "a.txt about a\r\ndir about dir\r\n");
    EXPECT_EQ(RunLine(f, L"ren *.txt *.bak"), L"");
    EXPECT_EQ(f.ReadBytes(L"a.bak"), "a");
    EXPECT_EQ(f.ReadBytes(L"b.bak"), "b");
    EXPECT_EQ(RunLine(f, L"rename dir folder"), L"");
    EXPECT_TRUE(AttributesOf(f, L"folder") & FILE_ATTRIBUTE_DIRECTORY);
    std::wstring text = f.ReadText(L"descript.ion");
    EXPECT_NE(text.find(L"a.bak about a"), std::wstring::npos) << text;
    EXPECT_NE(text.find(L"folder about dir"), std::wstring::npos) << text;
    EXPECT_EQ(text.find(L"a.txt"), std::wstring::npos) << text;
    // A clash renames nothing at all: with a file that stands there, or
    // between two new names.
    EXPECT_EQ(RunLine(f, L"ren c.log a.bak"), L"Duplicate file name or Permission denied\n\n");
    EXPECT_EQ(RunLine(f, L"ren *.bak x.bak"), L"Duplicate file name or Permission denied\n\n");
    EXPECT_EQ(f.ReadBytes(L"a.bak"), "a");
    EXPECT_EQ(f.ReadBytes(L"c.log"), "c");
    // A change of case is a rename of its own.
    EXPECT_EQ(RunLine(f, L"ren c.log C.LOG"), L"");
    WIN32_FIND_DATAW found;
    HANDLE h = FindFirstFileW((f / L"c.log").c_str(), &found);
    ASSERT_NE(h, INVALID_HANDLE_VALUE);
    FindClose(h);
    EXPECT_STREQ(found.cFileName, L"C.LOG");
    EXPECT_EQ(RunLine(f, L"ren a.bak sub\\a.bak"), L"Invalid parameter\n\n");
    EXPECT_EQ(RunLine(f, L"ren none.* x"), L"No such file or directory\n\n");
    EXPECT_EQ(RunLine(f, L"ren a.bak"), L"Invalid number of parameters\n\n");
}

} // namespace
