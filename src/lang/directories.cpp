#include "lang/directories.h"

#include "app/globals.h"
#include "app/toolkit/omdib.h"
#include "lang/environment_index.h"

#include <windows.h>

static bool IsSlashUnit(wchar_t c) { return c == L'\\' || c == L'/'; }

bool ChangeDirectory(const wchar_t* path)
{
    wchar_t trimmed[kLineMax];
    CopyCutW(trimmed, path, kLineMax);
    // "x\" is "x", but "\" and "c:\" name roots and keep their slash.
    int length = lstrlenW(trimmed);
    if (length > 1 && IsSlashUnit(trimmed[length - 1]) && trimmed[length - 2] != L':') trimmed[length - 1] = 0;

    wchar_t full[kPathMax];
    DWORD n = GetFullPathNameW(trimmed, kPathMax, full, nullptr);
    if (n == 0) return false;
    if (n >= kPathMax) {
        SetLastError(ERROR_FILENAME_EXCED_RANGE);
        return false;
    }
    if (full[0] && full[1] == L':') full[0] = ToUpperUnit(full[0]);
    if (!OsFlags.IsWin32s) GetFileNameCaseW(full);
    if (!SetCurrentDirectoryW(full)) return false;

    if (full[0] && full[1] == L':') {
        wchar_t name[4] = {L'=', full[0], L':', 0};
        WriteEnvironment(name, full);
    }
    return true;
}

bool CurrentDirectoryOf(int drive, wchar_t* buffer)
{
    wchar_t spec[3] = {wchar_t(L'A' + drive - 1), L':', 0};
    DWORD n = drive == 0 ? GetCurrentDirectoryW(kPathMax, buffer) : GetFullPathNameW(spec, kPathMax, buffer, nullptr);
    if (n == 0 || n >= kPathMax) {
        buffer[0] = 0;
        return false;
    }
    // Some platforms answer "C:" with a slash behind the directory; only a root keeps one.
    if (n > 3 && IsSlashUnit(buffer[n - 1])) buffer[n - 1] = 0;
    if (!OsFlags.IsWin32s) GetFileNameCaseW(buffer);
    return true;
}
