// What a folder holds, name by name and byte for byte, and the names in the
// temporary folder: enough to tell that a statement changed or left nothing.
#pragma once

#include <windows.h>

#include <map>
#include <set>
#include <string>

namespace lang_test {

using FolderFiles = std::map<std::wstring, std::string>;

inline std::string FileBytes(const std::wstring& path)
{
    std::string bytes;
    HANDLE h = CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0,
                           nullptr);
    if (h == INVALID_HANDLE_VALUE) return "<unreadable>";
    char chunk[4096];
    DWORD got;
    while (ReadFile(h, chunk, sizeof(chunk), &got, nullptr) && got > 0) bytes.append(chunk, got);
    CloseHandle(h);
    return bytes;
}

// The files of a folder (not its subfolders) with their content.
inline FolderFiles SnapshotFolder(const std::wstring& folder)
{
    FolderFiles files;
    WIN32_FIND_DATAW found;
    HANDLE h = FindFirstFileW((folder + L"\\*").c_str(), &found);
    if (h == INVALID_HANDLE_VALUE) return files;
    do
        if (!(found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY))
            files[found.cFileName] = FileBytes(folder + L"\\" + found.cFileName);
    while (FindNextFileW(h, &found));
    FindClose(h);
    return files;
}

inline std::set<std::wstring> TemporaryFiles()
{
    wchar_t folder[MAX_PATH];
    GetTempPathW(MAX_PATH, folder);
    std::set<std::wstring> names;
    WIN32_FIND_DATAW found;
    HANDLE h = FindFirstFileW((std::wstring(folder) + L"*").c_str(), &found);
    if (h == INVALID_HANDLE_VALUE) return names;
    do names.insert(found.cFileName);
    while (FindNextFileW(h, &found));
    FindClose(h);
    return names;
}

} // namespace lang_test
