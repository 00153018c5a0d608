// Settings written by a command, end to end through ombc.exe: the choice of
// store on the command line, the write at the moment of the change, and a
// store that refuses the write.
#include "app/toolkit/platform_text.h"
#include "support/ombc_runner.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <string>

namespace {

// Read straight from the file, past the shell's own store.
int TipsInFile(const std::wstring& file) { return int(GetPrivateProfileIntW(L"Ombrel", L"Tips", -1, file.c_str())); }

TEST(SettingsCommand, TipsIsWrittenAtOnceToTheNamedFile)
{
    TempFolder folder;
    std::wstring file = folder / L"tips.ini";
    OmbcResult result = RunOmbc(L"INI=" + file + L" /C \"tips off\"");
    EXPECT_EQ(result.Output, L""); // and so no banner either
    EXPECT_EQ(result.ExitCode, 0);
    EXPECT_EQ(TipsInFile(file), 0);
    result = RunOmbc(L"ini=" + file + L" /C \"tips ON\"");
    EXPECT_EQ(result.ExitCode, 0);
    EXPECT_EQ(TipsInFile(file), 1);

    std::wstring spaced = folder / L"My Settings.ini";
    result = RunOmbc(L"\"INI=" + spaced + L"\" /C \"tips off\"");
    EXPECT_EQ(result.ExitCode, 0);
    EXPECT_EQ(TipsInFile(spaced), 0);
    EXPECT_EQ(TipsInFile(file), 1);
}

TEST(SettingsCommand, UseWritesTheUsersRegistry)
{
    std::wstring name = L"OmbTestTips" + std::to_wstring(GetCurrentProcessId());
    OmbcResult result = RunOmbc(L"USE=" + name + L".ini /C \"tips off\"");
    EXPECT_EQ(result.ExitCode, 0);
    wchar_t value[16];
    DWORD bytes = sizeof value;
    ASSERT_EQ(RegGetValueW(HKEY_CURRENT_USER, (L"Software\\" + name + L"\\Ombrel").c_str(), L"Tips", RRF_RT_REG_SZ,
                           nullptr, value, &bytes),
              ERROR_SUCCESS);
    EXPECT_STREQ(value, L"0");
}

TEST(SettingsCommand, ARefusedWriteShowsThePlatformsReasonAndChangesNothing)
{
    TempFolder folder;
    const std::string before = "[Ombrel]\r\nTips=1\r\n";
    folder.WriteBytes(L"ro.ini", before);
    ASSERT_TRUE(SetFileAttributesW((folder / L"ro.ini").c_str(), FILE_ATTRIBUTE_READONLY));
    OmbcResult result = RunOmbc(L"INI=" + (folder / L"ro.ini") + L" /C \"tips off\"");
    EXPECT_EQ(result.Output, PlatformErrorText(ERROR_ACCESS_DENIED) + L"\r\n\r\n");
    EXPECT_EQ(result.ExitCode, 1);
    EXPECT_EQ(folder.ReadBytes(L"ro.ini"), before);
}

} // namespace
