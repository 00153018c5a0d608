// The further file commands end to end: attrib, tree, where, go, dump,
// readln, the file* variables, the drive commands, ver, date, time and mem.
#include "files/files_fixture.h"

#include "app/toolkit/handles.h"
#include "support/ombc_runner.h"

#include <gtest/gtest.h>

#include <winioctl.h>

#include <string>

namespace {

class FileCommands : public ::testing::Test {
protected:
    void SetUp() override
    {
        UseKnownDatePattern();
        MakeFile(f, L"two.txt", "first\r\nsecond\r\n");
        MakeFile(f, L"empty.bin", "");
        MakeDir(f, L"sub");
        MakeDir(f, L"sub\\inner");
        MakeFile(f, L"sub\\inner\\deep.txt", "x");
        MakeFile(f, L"sub\\other.log", "y");
    }
    // A batch program of lines run in the scratch folder; its output.
    std::wstring Batch(const std::string& lines)
    {
        f.WriteBytes(L"run.bat", "@echo off\r\n" + lines);
        return JoinLines(RunOmbcIn(f.Path(), L"/C run.bat").Output);
    }
    std::wstring Line(const std::wstring& line) { return JoinLines(RunOmbcIn(f.Path(), L"/C " + line).Output); }

    TempFolder f;
};

TEST_F(FileCommands, VariablesOfFilesAndLines)
{
    SYSTEMTIME local{2021, 7, 0, 9, 8, 7, 6, 0};
    FILETIME localTime, utc;
    SystemTimeToFileTime(&local, &localTime);
    LocalFileTimeToFileTime(&localTime, &utc);
    UniqueFile file(CreateFileW((f / L"two.txt").c_str(), FILE_WRITE_ATTRIBUTES, FILE_SHARE_READ, nullptr,
                                OPEN_EXISTING, 0, nullptr));
    SetFileTime(file.get(), nullptr, nullptr, &utc);
    file.reset();
    EXPECT_EQ(Batch("filesize two.txt\r\necho %FILESIZE%\r\nfiledate two.txt\r\necho %FILEDATE%\r\n"
                    "filetime two.txt\r\necho %FILETIME%\r\nfiletype two.txt\r\necho %FILETYPE%\r\n"
                    "filetype sub\r\necho %FILETYPE%\r\nfiletype empty.bin\r\necho %FILETYPE%\r\n"
                    "readln two.txt 2\r\necho [%READLN%] %ERRORLEVEL%\r\nreadln two.txt\r\necho [%READLN%]\r\n"
                    "readln two.txt 3\r\necho [%READLN%] %ERRORLEVEL%\r\n"),
              L"15\n09-07-2021\n08:07:06\nTEXT\nDIRECTORY\nTEXT\n[second] 0\n[first]\n[] 1\n");
    struct Case {
        const wchar_t* line;
        const wchar_t* output;
    } cases[] = {
        {L"filesize nothere.txt", L"No such file or directory\n\n"},
        {L"filedate", L"Invalid number of parameters\n\n"},
        {L"filetime two.txt /x", L"Invalid switch\n\n"},
        {L"readln two.txt 0", L"Invalid parameter\n\n"},
        {L"readln nothere.txt 1", L"No such file or directory\n\n"},
    };
    for (const Case& c : cases) EXPECT_EQ(Line(c.line), c.output) << c.line;
}

TEST_F(FileCommands, AttribShowsChangesAndRecurses)
{
    EXPECT_EQ(Line(L"attrib +r +h two.txt"), L"");
    EXPECT_EQ(GetFileAttributesW((f / L"two.txt").c_str()) & 0x27, DWORD(0x23));
    EXPECT_EQ(Line(L"attrib two.txt"), L"A   HR       " + f / L"two.txt" + L"\n");
    EXPECT_EQ(Line(L"attrib -r -h two.txt"), L"");
    EXPECT_EQ(GetFileAttributesW((f / L"two.txt").c_str()) & 0x07, DWORD(0));
    EXPECT_EQ(Line(L"attrib +s *.txt /s"), L"");
    EXPECT_TRUE(GetFileAttributesW((f / L"sub\\inner\\deep.txt").c_str()) & FILE_ATTRIBUTE_SYSTEM);
    EXPECT_FALSE(GetFileAttributesW((f / L"sub\\other.log").c_str()) & FILE_ATTRIBUTE_SYSTEM);
    EXPECT_EQ(Line(L"attrib /s /d sub"), L"             " + f / L"sub\\inner" + L"\n" + L"A            " +
                                             f / L"sub\\other.log" + L"\n" + L"A  S         " +
                                             f / L"sub\\inner\\deep.txt" + L"\n");
    struct Case {
        const wchar_t* line;
        const wchar_t* output;
    } cases[] = {
        {L"attrib nothere.*", L"No such file or directory\n\n"},
        {L"attrib /q", L"Invalid switch\n\n"},
        {L"attrib +r -r two.txt", L"Invalid switch combination\n\n"},
    };
    for (const Case& c : cases) EXPECT_EQ(Line(c.line), c.output) << c.line;
}

TEST_F(FileCommands, TreeDrawsEveryBranchAndNeverEntersALink)
{
    MakeDir(f, L"sub\\zlast");
    EXPECT_EQ(Line(L"tree sub"), f / L"sub" + L"\n\u251c\u2500\u2500\u2500inner\n\u2514\u2500\u2500\u2500zlast\n");
    EXPECT_EQ(Line(L"tree /f /a sub"),
              f / L"sub" + L"\n|   other.log\n+---inner\n|       deep.txt\n\\---zlast\n");
    EXPECT_EQ(Line(L"tree sub\\zlast"), f / L"sub\\zlast" + L"\nNo subdirectories\n");
    EXPECT_EQ(Line(L"tree nothere"), L"No such file or directory\n\n");
    EXPECT_EQ(Line(L"tree a b"), L"Invalid number of parameters\n\n");
    bool linked = MakeDirectoryLink(f / L"sub\\inner\\up", f / L"sub");
    ScopeExit unlink([&] { RemoveLink(f / L"sub\\inner\\up"); });
    if (!linked) GTEST_SKIP() << "Wine made no directory link";
    EXPECT_EQ(Line(L"tree /a sub"), f / L"sub" + L"\n+---inner\n|   \\---up <JUNCTION>\n\\---zlast\n");
}

TEST_F(FileCommands, WhereFindsAndGoChanges)
{
    std::wstring found = Line(L"where " + f.Path() + L"\\*.txt");
    EXPECT_NE(found.find(L" ----A--I             1 " + f / L"sub\\inner\\deep.txt" + L"\n"), std::wstring::npos)
        << found;
    EXPECT_NE(found.find(L"            15 " + f / L"two.txt" + L"\n"), std::wstring::npos) << found;
    EXPECT_NE(found.find(L"\n     2 file(s) found\n"), std::wstring::npos) << found;
    EXPECT_EQ(Line(L"where " + f.Path() + L"\\*.none"), L"No such file or directory\n\n");
    EXPECT_EQ(Line(L"where"), L"Invalid number of parameters\n\n");
    std::wstring afterGo = Batch("go inner\r\necho %CD%\r\ngo nowhere_at_all\r\n");
    EXPECT_EQ(afterGo.substr(0, afterGo.find(L'\n')), f / L"sub\\inner");
    EXPECT_NE(afterGo.find(L"No such file or directory"), std::wstring::npos);
}

TEST_F(FileCommands, DumpOfSmallEmptyAndHugeSparseFiles)
{
    EXPECT_EQ(Line(L"dump two.txt"),
              L"00000000  66 69 72 73 74 0D 0A 73  65 63 6F 6E 64 0D 0A     first..second..\n");
    EXPECT_EQ(Line(L"dump two.txt 0x8 3"), L"00000008  65 63 6F                                          eco\n");
    EXPECT_EQ(Line(L"dump empty.bin"), L"");
    EXPECT_EQ(Line(L"dump two.txt 15"), L"Invalid file offset\n\n");
    EXPECT_EQ(Line(L"dump nothere.bin"), L"No such file or directory\n\n");
    // A sparse file of 4 GB: its last line, read without reading the rest.
    UniqueFile big(CreateFileW((f / L"big.bin").c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0,
                               nullptr));
    DWORD returned;
    DeviceIoControl(big.get(), FSCTL_SET_SPARSE, nullptr, 0, nullptr, 0, &returned, nullptr);
    LARGE_INTEGER size;
    size.QuadPart = 4LL << 30;
    ASSERT_TRUE(SetFilePointerEx(big.get(), size, nullptr, FILE_BEGIN) && SetEndOfFile(big.get()));
    big.reset();
    EXPECT_EQ(Line(L"dump big.bin 4294967280"),
              L"FFFFFFF0  00 00 00 00 00 00 00 00  00 00 00 00 00 00 00 00  ................\n");
    EXPECT_EQ(Line(L"dump big.bin 4294967296"), L"Invalid file offset\n\n");
}

TEST_F(FileCommands, DrivesVersionClockAndMemory)
{
    std::wstring drive = f.Path().substr(0, 2);
    std::wstring vol = Line(L"vol " + drive);
    EXPECT_EQ(vol.substr(0, 22), L"     Volume in drive " + drive.substr(0, 1));
    EXPECT_NE(vol.find(L"     Volume serial number is "), std::wstring::npos);
    EXPECT_EQ(Line(L"label"), Line(L"vol"));
    std::wstring disk = Line(L"disk");
    EXPECT_EQ(disk.substr(0, 17), L"Drive         " + drive + L"\\");
    EXPECT_NE(disk.find(L"\nFree  "), std::wstring::npos);
    std::wstring space = Batch("diskfree\r\ndiskused\r\nif %DISKFREE% gtr 0 if %DISKUSED% gtr 0 echo sizes\r\n");
    EXPECT_EQ(space, L"sizes\n");
    EXPECT_EQ(Line(L"vol 7"), L"Invalid parameter\n\n");
    EXPECT_EQ(Line(L"ver").substr(0, 21), L"Ombrel version 8.2 on");
    EXPECT_EQ(Line(L"ver x"), L"Invalid parameter\n\n");
    EXPECT_EQ(Line(L"date").substr(0, 16), L"Current date is ");
    EXPECT_EQ(Line(L"time").substr(0, 16), L"Current time is ");
    // Only input that is refused: a test never sets the machine's clock.
    EXPECT_EQ(Line(L"date 31-02-2024"), L"Invalid date\n\n");
    EXPECT_EQ(Line(L"date 1-2"), L"Invalid date\n\n");
    EXPECT_EQ(Line(L"time 24:00"), L"Invalid time\n\n");
    EXPECT_EQ(Line(L"time 12:61"), L"Invalid time\n\n");
    std::wstring mem = Line(L"mem");
    EXPECT_EQ(mem.substr(0, 16), L"Physical memory ");
    EXPECT_NE(mem.find(L"\nMemory in use "), std::wstring::npos);
}

} // namespace
