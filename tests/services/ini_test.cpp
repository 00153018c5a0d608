// getini and setini on files in a scratch folder and on the program's own
// settings store, including a read-only file and a binary one.
#include "support/ombc_runner.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <string>

namespace {

TEST(IniCommands, ReadWriteAndDeleteKeysAndSections)
{
    TempFolder folder;
    folder.WriteBytes(L"t.bat",
                      "@echo off\r\n"
                      "setini sec key=value t.ini\r\n"
                      "setini sec \"two=a b \" t.ini\r\n"
                      "setini sec three=\xC3\xA9t\xC3\xA9 t.ini\r\n"
                      "setini other x=1 t.ini\r\n"
                      "getini sec key t.ini\r\necho [%GETINI%]\r\n"
                      "getini sec two t.ini\r\necho [%GETINI%]\r\n"
                      "getini sec \"\" t.ini\r\necho [%GETINI%]\r\n"
                      "setini sec two= t.ini\r\nsetini sec three t.ini\r\n"
                      "getini sec \"\" t.ini\r\necho [%GETINI%]\r\n"
                      "setini sec \"\" t.ini\r\n"
                      "getini sec key t.ini\r\necho [%GETINI%]\r\n"
                      "getini other x t.ini\r\necho [%GETINI%]\r\n"
                      "getini sec key missing.ini\r\necho [%GETINI%]\r\n"
                      "setini Scripts last=run\r\ngetini Scripts last\r\necho [%GETINI%]\r\n");
    std::wstring out = JoinLines(RunOmbcIn(folder.Path(), L"/C t.bat").Output);
    EXPECT_EQ(out, L"[value]\n[a b]\n[key,two,three]\n[key]\n[]\n[1]\n[]\n[run]\n");
    EXPECT_NE(folder.ReadText(L"t.ini").find(L"[other]"), std::wstring::npos);
}

TEST(IniCommands, ReadOnlyAndBinaryFilesAndWrongCounts)
{
    TempFolder folder;
    const std::string original = "[sec]\r\nkey=old\r\n";
    folder.WriteBytes(L"ro.ini", original);
    SetFileAttributesW((folder / L"ro.ini").c_str(), FILE_ATTRIBUTE_READONLY);
    std::string binary;
    for (int i = 0; i < 3000; ++i) binary += char((i * 37 + 11) % 256);
    folder.WriteBytes(L"bin.ini", binary);
    std::wstring out = JoinLines(RunOmbcIn(folder.Path(), L"",
                                           "setini sec key=new ro.ini\nsetini sec \"\" ro.ini\n"
                                           "getini sec key ro.ini\necho [%GETINI%]\n"
                                           "getini sec \"\" bin.ini\ngetini x y bin.ini\necho ok\n"
                                           "getini a\ngetini a b c d\nsetini a\nsetini a b c d\n")
                                     .Output);
    EXPECT_EQ(out, L"[old]\nok\nInvalid number of parameters\n\nInvalid number of parameters\n\n"
                   L"No such key or variable\n\nNo such key or variable\n\n");
    SetFileAttributesW((folder / L"ro.ini").c_str(), FILE_ATTRIBUTE_NORMAL);
    EXPECT_EQ(folder.ReadBytes(L"ro.ini"), original);
}

} // namespace
