// Scratch trees for the file tests: files with attributes, sizes and
// timestamps, directories, and links that point back up the tree.
#pragma once

#include "support/temp_folder.h"

#include <windows.h>
#include <winioctl.h>

#include <cstring>
#include <string>
#include <vector>

// Listings in these tests show dates in one known pattern.
inline void UseKnownDatePattern()
{
    WriteProfileStringW(L"intl", L"sShortDate", L"dd-mm-yyyy");
    WriteProfileStringW(L"intl", L"sDate", L"-");
}

// Writes bytes to folder\name and gives the file the attributes.
inline void MakeFile(const TempFolder& folder, const std::wstring& name, const std::string& bytes = "x",
                     DWORD attributes = 0)
{
    folder.WriteBytes(name, bytes);
    if (attributes) SetFileAttributesW((folder / name).c_str(), attributes);
}

inline void MakeDir(const TempFolder& folder, const std::wstring& name, DWORD attributes = 0)
{
    CreateDirectoryW((folder / name).c_str(), nullptr);
    if (attributes) SetFileAttributesW((folder / name).c_str(), attributes);
}

inline bool IsLink(const std::wstring& path)
{
    DWORD attributes = GetFileAttributesW(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_REPARSE_POINT);
}

// A directory junction at link that points at target (a full path), made
// with a mount-point reparse buffer; false where the platform refuses.
inline bool MakeJunction(const std::wstring& link, const std::wstring& target)
{
    if (!CreateDirectoryW(link.c_str(), nullptr)) return false;
    std::wstring substitute = L"\\??\\" + target;
    WORD substituteBytes = WORD(substitute.size() * 2), printBytes = WORD(target.size() * 2);
    std::vector<BYTE> buffer(20 + substituteBytes + printBytes + 4);
    auto word = [&](size_t at, WORD value) { std::memcpy(&buffer[at], &value, 2); };
    DWORD tag = IO_REPARSE_TAG_MOUNT_POINT;
    std::memcpy(&buffer[0], &tag, 4);
    word(4, WORD(buffer.size() - 8)); // the data behind the 8-byte header
    word(8, 0);
    word(10, substituteBytes);
    word(12, WORD(substituteBytes + 2));
    word(14, printBytes);
    std::memcpy(&buffer[16], substitute.c_str(), substituteBytes);
    std::memcpy(&buffer[16 + substituteBytes + 2], target.c_str(), printBytes);
    HANDLE h = CreateFileW(link.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING,
                           FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OPEN_REPARSE_POINT, nullptr);
    if (h == INVALID_HANDLE_VALUE) return false;
    DWORD returned = 0;
    BOOL ok = DeviceIoControl(h, FSCTL_SET_REPARSE_POINT, buffer.data(), DWORD(buffer.size()), nullptr, 0,
                              &returned, nullptr);
    CloseHandle(h);
    if (!ok || !IsLink(link)) {
        RemoveDirectoryW(link.c_str());
        return false;
    }
    return true;
}

// A full path as the host names it under Wine; empty elsewhere.
inline std::wstring HostName(const std::wstring& path)
{
    using UnixName = char*(CDECL*)(const wchar_t*);
    auto unixName = reinterpret_cast<UnixName>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"kernel32"), "wine_get_unix_file_name")));
    char* name = unixName ? unixName(path.c_str()) : nullptr;
    if (!name) return {};
    std::wstring wide(name, name + strlen(name));
    HeapFree(GetProcessHeap(), 0, name);
    return L"\"" + wide + L"\"";
}

// Starts one of the host's own programs under Wine, and waits until linked
// says what it did was done: the started program has no handle to wait on.
inline bool RunHostProgram(const wchar_t* program, std::wstring command, const std::wstring& link, bool linked)
{
    STARTUPINFOW startup{};
    startup.cb = sizeof(startup);
    PROCESS_INFORMATION process{};
    std::wstring path = std::wstring(L"\\\\?\\unix\\bin\\") + program;
    if (!CreateProcessW(path.c_str(), command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                        &process))
        return false;
    if (process.hProcess) CloseHandle(process.hProcess);
    if (process.hThread) CloseHandle(process.hThread);
    for (int i = 0; i < 250 && IsLink(link) != linked; ++i) Sleep(20);
    return IsLink(link) == linked;
}

// Under Wine, whose CreateSymbolicLinkW makes nothing, a link of the host's
// file system shows as a reparse point: the host's ln makes it.
inline bool MakeHostLink(const std::wstring& link, const std::wstring& target)
{
    std::wstring from = HostName(target), to = HostName(link);
    if (from.empty() || to.empty()) return false;
    return RunHostProgram(L"ln", L"ln -s " + from + L" " + to, link, true);
}

// A directory symbolic link; false where the platform refuses.
inline bool MakeDirectoryLink(const std::wstring& link, const std::wstring& target)
{
    if (CreateSymbolicLinkW(link.c_str(), target.c_str(), SYMBOLIC_LINK_FLAG_DIRECTORY | 0x2) && IsLink(link))
        return true;
    return MakeHostLink(link, target);
}

// Removes a link made above without touching what it points at.
inline void RemoveLink(const std::wstring& link)
{
    if (RemoveDirectoryW(link.c_str()) || !IsLink(link)) return;
    std::wstring name = HostName(link);
    if (!name.empty()) RunHostProgram(L"rm", L"rm " + name, link, false);
}
