#include "app/profile/private_profile.h"

#include "app/toolkit/handles.h"
#include "app/toolkit/omdib.h"

#include <string>

namespace {

// Where the platform keeps a profile: a bare name lies in the Windows
// directory, anything with a separator is a path.
std::wstring ProfilePath(const wchar_t* file)
{
    for (const wchar_t* p = file; *p; ++p)
        if (*p == L'\\' || *p == L'/' || *p == L':') return file;
    wchar_t directory[kPathMax];
    UINT n = GetWindowsDirectoryW(directory, kPathMax);
    if (n == 0 || n >= UINT(kPathMax)) return file;
    return std::wstring(directory) + L"\\" + file;
}

// The platform writes a new profile in the ANSI code page, which loses every
// character outside it; a file that starts with the UTF-16 byte-order mark
// it keeps in UTF-16. So a new store is begun as an empty UTF-16 file.
bool CreateUnicodeFile(const std::wstring& path)
{
    UniqueFile file(CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file) return GetLastError() == ERROR_FILE_EXISTS;
    static const BYTE mark[2] = {0xFF, 0xFE};
    DWORD written = 0;
    return WriteFile(file.get(), mark, sizeof mark, &written, nullptr) && written == sizeof mark;
}

// The platform rewrites the whole file, and some of its implementations
// report success on a file they could not write while keeping the change in
// their cache. So the file is tried first: read-only, locked or refused means
// no write at all, with the reason in GetLastError.
bool MayWrite(const wchar_t* file, bool adding)
{
    std::wstring path = ProfilePath(file);
    DWORD attributes = GetFileAttributesW(path.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES) return !adding || CreateUnicodeFile(path);
    if (attributes & (FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_DIRECTORY)) {
        SetLastError(ERROR_ACCESS_DENIED);
        return false;
    }
    UniqueFile probe(CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                 nullptr, OPEN_EXISTING, 0, nullptr));
    return probe.valid();
}

} // namespace

namespace PrivateProfile {

int ReadString(const wchar_t* file, const wchar_t* section, const wchar_t* key, const wchar_t* defaultText,
               wchar_t* buffer, int size)
{
    if (size <= 0) return 0;
    return int(GetPrivateProfileStringW(section, key, defaultText, buffer, DWORD(size), file));
}

int ReadInt(const wchar_t* file, const wchar_t* section, const wchar_t* key, int defaultValue)
{
    return int(GetPrivateProfileIntW(section, key, defaultValue, file));
}

bool WriteString(const wchar_t* file, const wchar_t* section, const wchar_t* key, const wchar_t* text)
{
    bool flush = !section && !key && !text;
    if (!flush && !MayWrite(file, text != nullptr)) return false;
    return WritePrivateProfileStringW(section, key, text, file) != FALSE;
}

} // namespace PrivateProfile
