// Path splitting and merging, and the current drive and directory.
#include "app/toolkit/omdib.h"

static bool IsSlash(wchar_t c) { return c == L'\\' || c == L'/'; }

static void CopyRange(wchar_t* out, const wchar_t* from, const wchar_t* to)
{
    if (!out) return;
    int n = 0;
    for (; from < to && n < kPathMax - 1; ++from) out[n++] = *from;
    out[n] = 0;
}

void FNSplitW(const wchar_t* path, wchar_t* drive, wchar_t* directory, wchar_t* name, wchar_t* extension)
{
    const wchar_t* p = path;
    const wchar_t* driveEnd = p;
    if (p[0] && p[1] == L':') driveEnd = p + 2;
    CopyRange(drive, p, driveEnd);

    const wchar_t* lastSlash = nullptr;
    const wchar_t* end = driveEnd;
    for (; *end; ++end)
        if (IsSlash(*end)) lastSlash = end;
    const wchar_t* nameStart = lastSlash ? lastSlash + 1 : driveEnd;
    CopyRange(directory, driveEnd, nameStart);

    // "." and ".." are names, not extensions.
    const wchar_t* dot = nullptr;
    bool dotsOnly = true;
    for (const wchar_t* q = nameStart; q < end; ++q) {
        if (*q == L'.') dot = q;
        else dotsOnly = false;
    }
    if (dotsOnly) dot = nullptr;
    CopyRange(name, nameStart, dot ? dot : end);
    CopyRange(extension, dot ? dot : end, end);
}

void FNMergeW(wchar_t* path, const wchar_t* drive, const wchar_t* directory, const wchar_t* name,
              const wchar_t* extension)
{
    wchar_t buffer[kPathMax * 4];
    wchar_t* out = buffer;
    if (drive && *drive) {
        *out++ = drive[0];
        *out++ = L':';
    }
    if (directory && *directory) {
        out = lstpcpyW(out, directory);
        if (!IsSlash(out[-1])) *out++ = L'\\';
    }
    if (name) out = lstpcpyW(out, name);
    if (extension && *extension) {
        if (*extension != L'.') *out++ = L'.';
        out = lstpcpyW(out, extension);
    }
    *out = 0;
    CopyCutW(path, buffer, kPathMax);
}

int GetDisk()
{
    wchar_t dir[kPathMax];
    DWORD n = GetCurrentDirectoryW(kPathMax, dir);
    if (n == 0 || n >= kPathMax || dir[1] != L':') return -1;
    return ToUpperUnit(dir[0]) - L'A';
}

void SetDisk(int drive)
{
    if (drive < 0 || drive > 25) return;
    wchar_t spec[3] = {wchar_t(L'A' + drive), L':', 0};
    SetCurrentDirectoryW(spec);
}

int GetCurDirW(int drive, wchar_t* buffer)
{
    wchar_t full[kPathMax];
    DWORD n;
    if (drive == 0) {
        n = GetCurrentDirectoryW(kPathMax, full);
    } else {
        if (drive < 1 || drive > 26) return -1;
        wchar_t spec[3] = {wchar_t(L'A' + drive - 1), L':', 0};
        n = GetFullPathNameW(spec, kPathMax, full, nullptr);
    }
    if (n == 0 || n >= kPathMax) return -1;
    const wchar_t* p = full;
    if (p[0] && p[1] == L':') p += 2;
    if (IsSlash(*p)) ++p;
    lstpcpyW(buffer, p);
    return 0;
}

void GetFileNameCaseW(wchar_t* path)
{
    // Walk component by component, asking the file system for each name.
    wchar_t* p = path;
    if (p[0] && p[1] == L':') {
        p[0] = ToUpperUnit(p[0]);
        p += 2;
    }
    while (*p) {
        while (IsSlash(*p)) ++p;
        wchar_t* start = p;
        while (*p && !IsSlash(*p)) ++p;
        if (p == start) break;
        bool dots = (p - start == 1 && start[0] == L'.') || (p - start == 2 && start[0] == L'.' && start[1] == L'.');
        if (dots) continue;
        wchar_t saved = *p;
        *p = 0;
        bool wild = false;
        for (wchar_t* q = start; *q; ++q) wild |= (*q == L'*' || *q == L'?');
        WIN32_FIND_DATAW found;
        HANDLE h = wild ? INVALID_HANDLE_VALUE : FindFirstFileW(path, &found);
        if (h != INVALID_HANDLE_VALUE) {
            FindClose(h);
            if (lstrlenW(found.cFileName) == p - start) lstrcpyW(start, found.cFileName);
        }
        *p = saved;
    }
}
