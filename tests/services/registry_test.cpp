// getreg, setreg, enumreg and findreg on a key of the test's own under
// HKEY_CURRENT_USER, removed afterwards.
#include "support/ombc_runner.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <string>

namespace {

const wchar_t kKey[] = L"Software\\OmbrelRegistryTest";

class RegistryTest : public testing::Test {
protected:
    void SetUp() override { RegDeleteTreeW(HKEY_CURRENT_USER, kKey); }
    void TearDown() override { RegDeleteTreeW(HKEY_CURRENT_USER, kKey); }

    static std::wstring Run(const std::string& lines)
    {
        TempFolder folder;
        folder.WriteBytes(L"r.bat", "\xEF\xBB\xBF@echo off\r\n" + lines);
        return JoinLines(RunOmbcIn(folder.Path(), L"/C r.bat").Output);
    }
};

TEST_F(RegistryTest, EveryTypeWrittenAndReadBack)
{
    HKEY key;
    ASSERT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, kKey, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, nullptr),
              ERROR_SUCCESS);
    const wchar_t multi[] = L"one\0two\0three\0";
    RegSetValueExW(key, L"multi", 0, REG_MULTI_SZ, reinterpret_cast<const BYTE*>(multi), sizeof multi);
    const BYTE binary[] = {1, 2, 3};
    RegSetValueExW(key, L"binary", 0, REG_BINARY, binary, sizeof binary);
    std::wstring big(5000, L'b');
    RegSetValueExW(key, L"big", 0, REG_SZ, reinterpret_cast<const BYTE*>(big.c_str()),
                   DWORD((big.size() + 1) * sizeof(wchar_t)));
    RegCloseKey(key);

    std::string k = "HKEY_CURRENT_USER\\Software\\OmbrelRegistryTest";
    // Written in the order of their names, which is the order of listing both
    // on Windows (as written) and under Wine (sorted).
    std::wstring out = Run("setreg " + k + "\\sub big=258 REG_DWORD_BIG_ENDIAN\r\n"
                           "setreg " + k + "\\sub hex=0x10 REG_DWORD\r\n"
                           "setreg \"" + k + "/sub\" path=%%windir%%\\x REG_EXPAND_SZ\r\n"
                           "setreg " + k + "\\sub \"text=a b\"\r\n"
                           "setreg " + k + "\\sub v=1 reg_dword\r\n"
                           "setreg " + k + "\\sub \"\xC3\xA9=\xC3\xA9t\xC3\xA9\" /64 /32\r\n"
                           "getreg " + k + "\\sub text\r\necho [%GETREG%]\r\n"
                           "getreg " + k + "\\sub path\r\necho [%GETREG%]\r\n"
                           "getreg " + k + "\\sub v\r\necho [%GETREG%]\r\n"
                           "getreg " + k + "\\sub hex\r\necho [%GETREG%]\r\n"
                           "getreg " + k + "\\sub big\r\necho [%GETREG%]\r\n"
                           "getreg " + k + "\\sub \xC3\xA9\r\necho [%GETREG%]\r\n"
                           "getreg " + k + "\\sub\r\necho [%GETREG%]\r\n"
                           "getreg " + k + " multi\r\necho [%GETREG%]\r\n"
                           "enumreg " + k + "\r\necho [%ENUMREG%]\r\n"
                           "setreg " + k + "\\sub v=\r\nsetreg " + k + "\\sub text\r\n"
                           "getreg " + k + "\\sub\r\necho [%GETREG%]\r\n"
                           "setreg " + k + "\\sub\r\nenumreg " + k + "\r\necho [%ENUMREG%]\r\n");
    EXPECT_EQ(out, L"[a b]\n[%windir%\\x]\n[1]\n[16]\n[258]\n[\u00E9t\u00E9]\n"
                   L"[big,hex,path,text,v,\u00E9]\n[one,two,three]\n[sub]\n[big,hex,path,\u00E9]\n[]\n");
}

TEST_F(RegistryTest, BadPathsTypesAndCountsGiveMessages)
{
    HKEY key;
    ASSERT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, kKey, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, nullptr),
              ERROR_SUCCESS);
    const BYTE binary[] = {1, 2, 3};
    RegSetValueExW(key, L"binary", 0, REG_BINARY, binary, sizeof binary);
    std::wstring big(5000, L'b');
    RegSetValueExW(key, L"big", 0, REG_SZ, reinterpret_cast<const BYTE*>(big.c_str()),
                   DWORD((big.size() + 1) * sizeof(wchar_t)));
    RegSetValueExW(key, L"findme", 0, REG_SZ, reinterpret_cast<const BYTE*>(L"xNeedlex"), 18);
    RegCloseKey(key);

    std::string k = "HKEY_CURRENT_USER\\Software\\OmbrelRegistryTest";
    // Typed, so that each error does not end a batch program.
    std::wstring out = JoinLines(RunOmbc(L"", "setreg hkcu\\x v=1\n"
                           "getreg NOSUCHROOT\\x\n"
                           "getreg HKEY_CURRENT_USER\n"
                           "getreg " + k + "\\missing\n"
                           "getreg " + k + " nothere\n"
                           "getreg " + k + " binary\n"
                           "getreg " + k + " big\n"
                           "enumreg " + k + "\\missing\n"
                           "getreg " + k + " /q\n"
                           "setreg\nenumreg\nfindreg\nfindreg \"\"\nfindreg NOROOT x\n"
                           "findreg HKEY_CURRENT_USER needle\n").Output);
    std::wstring expected = L"No such key or variable\n\nNo such key or variable\n\nNo such key or variable\n\n"
                            L"No such key or variable\n\nNo such key or variable\n\n"
                            L"Key variable type not supported\n\nKey value to long\n\n"
                            L"No such key or variable\n\nInvalid switch\n\n"
                            L"Invalid number of parameters\n\nInvalid number of parameters\n\n"
                            L"Invalid number of parameters\n\nInvalid parameter\n\nNo such key or variable\n\n"
                            L"Searching Registry for \"needle\"\n\n"
                            L"HKEY_CURRENT_USER\\Software\\OmbrelRegistryTest\n"
                            L"    1 findme=xNeedlex\n\n    1 match(es) found\n";
    EXPECT_EQ(out, expected);
}

} // namespace
