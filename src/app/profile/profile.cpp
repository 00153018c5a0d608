#include "app/profile/profile.h"

#include "app/toolkit/omdib.h"

#include <string>

int MaxWidth = 220;
int MaxHeight = 120;
int MaxScroll = 2500;

ProfileStore::ProfileStore()
{
    ProgramsDir[0] = 0;
    CommonProgramsDir[0] = 0;
    SelectStore(SkipArgW(GetCommandLineW()));
}

static bool StartsWithI(const wchar_t* text, const wchar_t* prefix)
{
    for (; *prefix; ++prefix, ++text)
        if (ToUpperUnit(*text) != *prefix) return false;
    return true;
}

void ProfileStore::SelectStore(const wchar_t* arguments)
{
    lstrcpyW(IniFileName, L"OMB_REL.INI");
    wchar_t copy[kLineMax];
    CopyCutW(copy, SkipWhiteW(arguments), kLineMax);
    wchar_t* word = copy;
    if (*word == L'"') word = ConvertStrW(word);
    else *SkipAlphaW(word) = 0;
    if (StartsWithI(word, L"USE=") || StartsWithI(word, L"INI=")) CopyCutW(IniFileName, word + 4, 260);

    MaxWidth = ProfileReadInt(L"Ombrel", L"MaxWidth", 220);
    MaxHeight = ProfileReadInt(L"Ombrel", L"MaxHeight", 120);
    MaxScroll = ProfileReadInt(L"Ombrel", L"MaxScroll", 2500);
}

int ProfileReadString(const wchar_t* section, const wchar_t* key, const wchar_t* defaultText, wchar_t* buffer,
                      int size)
{
    return int(GetPrivateProfileStringW(section, key, defaultText, buffer, DWORD(size), TheProfile.IniFileName));
}

int ProfileReadInt(const wchar_t* section, const wchar_t* key, int defaultValue)
{
    return int(GetPrivateProfileIntW(section, key, defaultValue, TheProfile.IniFileName));
}

void ProfileWriteString(const wchar_t* section, const wchar_t* key, const wchar_t* text)
{
    WritePrivateProfileStringW(section, key, text, TheProfile.IniFileName);
}

void ProfileWriteInt(const wchar_t* section, const wchar_t* key, int value)
{
    wchar_t text[24];
    i64tow_ex(value, text, 10);
    ProfileWriteString(section, key, text);
}

int ProfileWriteQuoted(const wchar_t* section, const wchar_t* key, const wchar_t* text)
{
    std::wstring quoted = L"\"";
    quoted += text;
    quoted += L"\"";
    return WritePrivateProfileStringW(section, key, quoted.c_str(), TheProfile.IniFileName);
}
