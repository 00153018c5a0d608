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

// The platform rewrites the whole file, and some of its implementations
// report success on a file they could not write while keeping the change in
// their cache. So the file is tried first: read-only, locked or refused means
// no write at all, with the reason in GetLastError.
bool MayWrite(const wchar_t* file)
{
    std::wstring path = ProfilePath(file);
    DWORD attributes = GetFileAttributesW(path.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES) return true; // a new file: the platform's own call decides
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
    if (!flush && !MayWrite(file)) return false;
    return WritePrivateProfileStringW(section, key, text, file) != FALSE;
}

} // namespace PrivateProfile
