// The settings store: round trips through the INI-file and the registry back
// ends, the USE= and INI= arguments with their registry mapping, and the
// defaults that a missing key gives.
#include "app/profile/profile.h"
#include "app/profile/settings_table.h"
#include "store_scope.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <shlobj.h>

#include <climits>
#include <set>
#include <string>
#include <vector>

namespace {

const std::wstring kMappingKey = L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\IniFileMapping\\";

// A name no other test uses, so registry keys never meet.
std::wstring UniqueName(const wchar_t* what)
{
    return L"OmbTest" + std::wstring(what) + std::to_wstring(GetCurrentProcessId());
}

bool KeyExists(HKEY root, const std::wstring& path)
{
    HKEY key;
    if (RegOpenKeyExW(root, path.c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS) return false;
    RegCloseKey(key);
    return true;
}

// A string value as stored, or "<none>".
std::wstring StoredText(HKEY root, const std::wstring& path, const wchar_t* name)
{
    wchar_t value[512];
    DWORD bytes = sizeof value;
    if (RegGetValueW(root, path.c_str(), name, RRF_RT_REG_SZ, nullptr, value, &bytes) != ERROR_SUCCESS)
        return L"<none>";
    return value;
}

void SetStoredText(HKEY root, const std::wstring& path, const wchar_t* name, const std::wstring& text)
{
    HKEY key;
    ASSERT_EQ(RegCreateKeyExW(root, path.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, nullptr),
              ERROR_SUCCESS);
    RegSetValueExW(key, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(text.c_str()),
                   DWORD((text.size() + 1) * sizeof(wchar_t)));
    RegCloseKey(key);
}

std::wstring Read(const wchar_t* section, const wchar_t* key, const wchar_t* defaultText = L"<default>")
{
    wchar_t buffer[512];
    int n = ProfileReadString(section, key, defaultText, buffer, 512);
    EXPECT_EQ(n, lstrlenW(buffer));
    return buffer;
}

// The names of a zero-terminated list with an extra terminator.
std::set<std::wstring> ReadNames(const wchar_t* section)
{
    wchar_t buffer[1024];
    int n = ProfileReadString(section, nullptr, L"", buffer, 1024);
    std::set<std::wstring> names;
    for (const wchar_t* p = buffer; p < buffer + n && *p; p += lstrlenW(p) + 1) names.insert(p);
    return names;
}

// Everything the shell stores goes through these five calls; each store must
// give back exactly what went in.
void CheckRoundTrips()
{
    EXPECT_TRUE(ProfileWriteString(L"Round", L"Plain", L"value with = and ; inside"));
    EXPECT_EQ(Read(L"Round", L"Plain"), L"value with = and ; inside");
    EXPECT_TRUE(ProfileWriteString(L"Round", L"Wide", L"\u00fcber \u4e2d\u6587 \u00ae"));
    EXPECT_EQ(Read(L"Round", L"Wide"), L"\u00fcber \u4e2d\u6587 \u00ae");
    EXPECT_TRUE(ProfileWriteString(L"Round", L"Plain", L"changed"));
    EXPECT_EQ(Read(L"Round", L"Plain"), L"changed");

    for (int value : {0, -5, 1234, INT_MAX, INT_MIN}) {
        EXPECT_TRUE(ProfileWriteInt(L"Round", L"Number", value));
        EXPECT_EQ(ProfileReadInt(L"Round", L"Number", 77), value);
    }
    for (const wchar_t* text : {L"  lead and trail  ", L"say \"hi\" twice", L"\"fully quoted\"", L"'single'", L" \" ",
                                L""}) {
        EXPECT_EQ(ProfileWriteQuoted(L"History", L"7", text), 1) << text;
        EXPECT_EQ(Read(L"History", L"7"), text);
    }

    EXPECT_EQ(Read(L"Round", L"Missing"), L"<default>");
    EXPECT_EQ(Read(L"NoSection", L"Plain"), L"<default>");
    EXPECT_EQ(Read(L"Round", L"Missing", L"trailing  "), L"trailing");
    EXPECT_EQ(ProfileReadInt(L"Round", L"Missing", -7), -7);
    EXPECT_EQ(ReadNames(L"Round"), (std::set<std::wstring>{L"Plain", L"Wide", L"Number"}));

    // A null text deletes a key, a null key the section, all null flush.
    EXPECT_TRUE(ProfileWriteString(L"Round", L"Plain", nullptr));
    EXPECT_EQ(Read(L"Round", L"Plain"), L"<default>");
    EXPECT_EQ(Read(L"Round", L"Wide"), L"\u00fcber \u4e2d\u6587 \u00ae");
    EXPECT_TRUE(ProfileWriteString(L"Round", nullptr, nullptr));
    EXPECT_EQ(ReadNames(L"Round"), std::set<std::wstring>{});
    EXPECT_EQ(ProfileReadInt(L"Round", L"Number", 77), 77);
    ProfileWriteString(nullptr, nullptr, nullptr);
    EXPECT_EQ(Read(L"History", L"7"), L"");
    EXPECT_EQ(ReadNames(nullptr).count(L"History"), 1u);
}

TEST(Profile, IniFileStoreRoundTrips)
{
    TempFolder folder;
    StoreScope store(L"INI=" + (folder / L"round.ini"));
    CheckRoundTrips();
    EXPECT_EQ(TheProfile.RegistryRoot[0], 0);
    // A store begun by the shell is UTF-16, so wide text survives the file.
    EXPECT_EQ(folder.ReadBytes(L"round.ini").substr(0, 2), "\xFF\xFE");
}

TEST(Profile, RegistryStoreRoundTrips)
{
    std::wstring name = UniqueName(L"Round");
    StoreScope store(L"USE=" + name + L".ini");
    EXPECT_STREQ(TheProfile.RegistryRoot, (L"Software\\" + name).c_str());
    CheckRoundTrips();
    // The values sit where the platform's own mapping would put them.
    EXPECT_EQ(StoredText(HKEY_CURRENT_USER, L"Software\\" + name + L"\\History", L"7"), L"\"\"");
}

TEST(Profile, UseMapsTheLastComponentAndTheUserRootDropsTheExtension)
{
    std::wstring name = UniqueName(L"Map");
    StoreScope store(L"USE=T:/some/dir/" + name + L".ini /C echo x");
    EXPECT_STREQ(TheProfile.IniFileName, (L"T:\\some\\dir\\" + name + L".ini").c_str());
    EXPECT_EQ(StoredText(HKEY_LOCAL_MACHINE, kMappingKey + name + L".ini", nullptr), L"#USR:Software\\" + name);
    EXPECT_TRUE(KeyExists(HKEY_CURRENT_USER, L"Software\\" + name));
    EXPECT_STREQ(TheProfile.RegistryRoot, (L"Software\\" + name).c_str());

    std::wstring bare = UniqueName(L"NoExt");
    TheProfile.SelectStore((L"use=" + bare).c_str());
    EXPECT_EQ(StoredText(HKEY_LOCAL_MACHINE, kMappingKey + bare, nullptr), L"#USR:Software\\" + bare);
    EXPECT_STREQ(TheProfile.RegistryRoot, (L"Software\\" + bare).c_str());

    std::wstring quoted = UniqueName(L"My Settings");
    TheProfile.SelectStore((L"\"USE=" + quoted + L".ini\" /C \"tips on\"").c_str());
    EXPECT_STREQ(TheProfile.IniFileName, (quoted + L".ini").c_str());
    EXPECT_STREQ(TheProfile.RegistryRoot, (L"Software\\" + quoted).c_str());
}

TEST(Profile, AnExistingMappingIsFollowedAndNotRewritten)
{
    std::wstring name = UniqueName(L"Twice");
    std::wstring mapping = kMappingKey + name + L".ini";
    StoreScope store(L"USE=" + name + L".ini");
    SetStoredText(HKEY_LOCAL_MACHINE, mapping, nullptr, L"#USR:Software\\" + name + L"Elsewhere");
    TheProfile.SelectStore((L"USE=" + name + L".ini").c_str());
    EXPECT_EQ(StoredText(HKEY_LOCAL_MACHINE, mapping, nullptr), L"#USR:Software\\" + name + L"Elsewhere");
    EXPECT_STREQ(TheProfile.RegistryRoot, (L"Software\\" + name + L"Elsewhere").c_str());
    // The second run leaves the key that earlier releases left too.
    EXPECT_TRUE(KeyExists(HKEY_CURRENT_USER, L"ARE\\Microsoft\\Windows NT\\CurrentVersion\\IniFileMapping\\" + name +
                                                 L".ini"));

    // A mapping somewhere other than the user's registry is left to the platform.
    std::wstring system = UniqueName(L"System");
    SetStoredText(HKEY_LOCAL_MACHINE, kMappingKey + system + L".ini", nullptr, L"SYS:Software\\" + system);
    TheProfile.SelectStore((L"USE=" + system + L".ini").c_str());
    EXPECT_EQ(TheProfile.RegistryRoot[0], 0);
}

TEST(Profile, WithoutRightsForTheMappingUseWritesTheUserRootDirectly)
{
    // The registry refuses a key name of more than 255 units, which stands in
    // for a refusal under HKEY_LOCAL_MACHINE: the mapping cannot be made.
    std::wstring stem(236, L'a');
    stem += std::to_wstring(GetCurrentProcessId() % 10000);
    std::wstring name = stem + L".extension_too_long";
    StoreScope store(L"USE=" + name);
    EXPECT_FALSE(KeyExists(HKEY_LOCAL_MACHINE, kMappingKey + name));
    EXPECT_STREQ(TheProfile.RegistryRoot, (L"Software\\" + stem).c_str());
    EXPECT_TRUE(ProfileWriteInt(L"Ombrel", L"Tips", 0));
    EXPECT_EQ(StoredText(HKEY_CURRENT_USER, L"Software\\" + stem + L"\\Ombrel", L"Tips"), L"0");
}

TEST(Profile, OnlyALeadingSettingsArgumentSelectsTheStore)
{
    std::wstring name = UniqueName(L"Plain");
    StoreScope store(L"INI=" + name + L".ini");
    EXPECT_STREQ(TheProfile.IniFileName, (name + L".ini").c_str());
    EXPECT_EQ(TheProfile.RegistryRoot[0], 0);
    EXPECT_FALSE(KeyExists(HKEY_LOCAL_MACHINE, kMappingKey + name + L".ini"));

    for (const wchar_t* arguments : {L"/C USE=late.ini", L"", L"USE=", L"INI= x", L"echo INI=x.ini"}) {
        TheProfile.SelectStore(arguments);
        EXPECT_STREQ(TheProfile.IniFileName, L"OMB_REL.INI") << arguments;
        // With no mapping installed the default store is the user's own key.
        EXPECT_STREQ(TheProfile.RegistryRoot, L"Software\\Ombrel") << arguments;
    }
    EXPECT_TRUE(KeyExists(HKEY_CURRENT_USER, L"Software\\Ombrel"));
}

TEST(Profile, MissingKeysGiveTheDefaults)
{
    TempFolder folder;
    StoreScope store(L"INI=" + (folder / L"empty.ini"));
    EXPECT_EQ(SettingInt(L"Ombrel", L"Tips"), 1);
    EXPECT_EQ(SettingInt(L"Ombrel", L"ScrollBack"), 250);
    EXPECT_EQ(SettingInt(L"Colour40", L"Error"), 2);
    EXPECT_EQ(SettingInt(L"StatusBar", L"Colour"), 234);
    EXPECT_EQ(SettingInt(L"HistoryList", L"Height"), 200);
    EXPECT_EQ(SettingInt(L"Background", L"Transparency"), 100);
    wchar_t text[64];
    SettingString(L"Ombrel", L"Prompt", text, 64);
    EXPECT_STREQ(text, L"$e[1;56;60m$p$e[53m$g$e[0;57m");
    SettingString(L"Ombrel", L"Editor", text, 64);
    EXPECT_STREQ(text, L"notepad");
    SettingString(L"Path", L"Font", text, 64);
    EXPECT_STREQ(text, L".");
    EXPECT_EQ(MaxWidth, 220);
    EXPECT_EQ(MaxHeight, 120);
    EXPECT_EQ(MaxScroll, 2500);

    // A value in the store wins over the default, for the limits too.
    ProfileWriteInt(L"Ombrel", L"MaxScroll", 999);
    ProfileWriteInt(L"Ombrel", L"Tips", 0);
    TheProfile.SelectStore((L"INI=" + (folder / L"empty.ini")).c_str());
    EXPECT_EQ(MaxScroll, 999);
    EXPECT_EQ(SettingInt(L"Ombrel", L"Tips"), 0);

    // Limits typed in by hand that would give no screen, or an absurd one.
    ProfileWriteInt(L"Ombrel", L"MaxWidth", 0);
    ProfileWriteString(L"Ombrel", L"MaxHeight", L"-5");
    ProfileWriteString(L"Ombrel", L"MaxScroll", L"99999999999");
    TheProfile.SelectStore((L"INI=" + (folder / L"empty.ini")).c_str());
    EXPECT_EQ(MaxWidth, 60);
    EXPECT_EQ(MaxHeight, 5);
    EXPECT_EQ(MaxScroll, 10000);
    ProfileWriteInt(L"Ombrel", L"MaxWidth", 5000);
    ProfileWriteInt(L"Ombrel", L"MaxHeight", 500);
    TheProfile.SelectStore((L"INI=" + (folder / L"empty.ini")).c_str());
    EXPECT_EQ(MaxWidth, 1000);
    EXPECT_EQ(MaxHeight, 250);
}

TEST(Profile, ProgramFoldersAreTheShellsOwn)
{
    wchar_t programs[MAX_PATH], common[MAX_PATH];
    ASSERT_EQ(SHGetFolderPathW(nullptr, CSIDL_PROGRAMS, nullptr, 0, programs), S_OK);
    ASSERT_EQ(SHGetFolderPathW(nullptr, CSIDL_COMMON_PROGRAMS, nullptr, 0, common), S_OK);
    // Looked up when first asked for, not while the store starts.
    EXPECT_STREQ(TheProfile.ProgramsDir, L"");
    TheProfile.FindProgramFolders();
    EXPECT_STREQ(TheProfile.ProgramsDir, programs);
    EXPECT_STREQ(TheProfile.CommonProgramsDir, common);
}

} // namespace
