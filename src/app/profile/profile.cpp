#include "app/profile/profile.h"

#include "app/profile/private_profile.h"
#include "app/profile/registry_mapping.h"
#include "app/profile/registry_profile.h"
#include "app/profile/settings_table.h"
#include "app/toolkit/omdib.h"
#include "app/toolkit/shell_folders.h"
#include "screen/screen_geometry.h"

#include <shlobj.h>

#include <memory>
#include <new>

int MaxWidth = 220;
int MaxHeight = 120;
int MaxScroll = 2500;

namespace {

const wchar_t kDefaultName[] = L"OMB_REL.INI";
const wchar_t kDefaultRoot[] = L"Software\\Ombrel";

bool UsesRegistry() { return TheProfile.RegistryRoot[0] != 0; }

} // namespace

ProfileStore::ProfileStore()
{
    ProgramsDir[0] = 0;
    CommonProgramsDir[0] = 0;
    SelectStore(SkipArgW(GetCommandLineW()));
}

void ProfileStore::FindProgramFolders()
{
    if (programFoldersFound_) return;
    programFoldersFound_ = true;
    DWORD version = GetVersion();
    bool ntFamily = (version & 0x80000000u) == 0;
    int major = int(LOBYTE(LOWORD(version)));
    // Win32s and NT before 4 have no shell folders.
    if (major < 4) return;
    // Shell folder lookups only when SHELL32 is already loaded: the store
    // must not load libraries itself.
    ShellFolderPath(CSIDL_PROGRAMS, ProgramsDir, false);
    if (ntFamily) ShellFolderPath(CSIDL_COMMON_PROGRAMS, CommonProgramsDir, false);
}

void ProfileStore::SelectStore(const wchar_t* arguments)
{
    CopyCutW(IniFileName, kDefaultName, kPathMax);
    RegistryRoot[0] = 0;
    // The target of the usual mapping #USR:Software\Ombrel always exists.
    CreateUserKey(kDefaultRoot);
    PrivateProfile::WriteString(kDefaultName, nullptr, nullptr, nullptr);

    // The settings argument is the first one, plain or quoted as a whole
    // ("USE=My Settings.ini").
    wchar_t copy[kLineMax];
    CopyCutW(copy, SkipWhiteW(arguments), kLineMax);
    wchar_t* word = copy;
    if (*word == L'"') word = ConvertStrW(word);
    else *SkipAlphaW(word) = 0;
    bool named = lstrlenW(word) > 4; // a prefix with no name behind it leaves the default
    if (named && HasPrefixI(word, L"USE=")) {
        CopyCutW(IniFileName, word + 4, kPathMax);
        MapStoreToRegistry(IniFileName, RegistryRoot);
    } else if (named && HasPrefixI(word, L"INI=")) {
        CopyCutW(IniFileName, word + 4, kPathMax);
    } else {
        FindMappedRoot(kDefaultName, kDefaultRoot, RegistryRoot);
    }

    ReadLimits();
}

// The limits are typed into the store by hand, and the text screen allocates
// by them before anything can be reported: a value that would give no screen
// or an absurd one is held to the nearest usable size.
void ProfileStore::ReadLimits() { LoadScreenLimits(); }

int ProfileReadString(const wchar_t* section, const wchar_t* key, const wchar_t* defaultText, wchar_t* buffer,
                      int size)
{
    if (UsesRegistry())
        return RegistryProfile::ReadString(TheProfile.RegistryRoot, section, key, defaultText, buffer, size);
    return PrivateProfile::ReadString(TheProfile.IniFileName, section, key, defaultText, buffer, size);
}

int ProfileReadInt(const wchar_t* section, const wchar_t* key, int defaultValue)
{
    if (UsesRegistry()) return RegistryProfile::ReadInt(TheProfile.RegistryRoot, section, key, defaultValue);
    return PrivateProfile::ReadInt(TheProfile.IniFileName, section, key, defaultValue);
}

bool ProfileWriteString(const wchar_t* section, const wchar_t* key, const wchar_t* text)
{
    if (UsesRegistry()) return RegistryProfile::WriteString(TheProfile.RegistryRoot, section, key, text);
    return PrivateProfile::WriteString(TheProfile.IniFileName, section, key, text);
}

bool ProfileWriteInt(const wchar_t* section, const wchar_t* key, int value)
{
    wchar_t text[24];
    i64tow_ex(value, text, 10);
    return ProfileWriteString(section, key, text);
}

int ProfileWriteQuoted(const wchar_t* section, const wchar_t* key, const wchar_t* text)
{
    int length = lstrlenW(text);
    std::unique_ptr<wchar_t[]> quoted(new (std::nothrow) wchar_t[size_t(length) + 10]);
    if (!quoted) return 0;
    quoted[0] = L'"';
    lstrcpyW(quoted.get() + 1, text);
    quoted[length + 1] = L'"';
    quoted[length + 2] = 0;
    return ProfileWriteString(section, key, quoted.get()) ? 1 : 0;
}
