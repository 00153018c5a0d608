#include "support/temp_folder.h"

#include <windows.h>

#include <atomic>
#include <string>

static void RemoveTree(const std::wstring& path)
{
    WIN32_FIND_DATAW found;
    HANDLE h = FindFirstFileW((path + L"\\*").c_str(), &found);
    if (h != INVALID_HANDLE_VALUE) {
        do {
            std::wstring name = found.cFileName;
            if (name == L"." || name == L"..") continue;
            std::wstring full = path + L"\\" + name;
            SetFileAttributesW(full.c_str(), FILE_ATTRIBUTE_NORMAL);
            if (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) RemoveTree(full);
            else DeleteFileW(full.c_str());
        } while (FindNextFileW(h, &found));
        FindClose(h);
    }
    RemoveDirectoryW(path.c_str());
}

TempFolder::TempFolder()
{
    static std::atomic<int> counter{0};
    wchar_t base[MAX_PATH];
    GetCurrentDirectoryW(MAX_PATH, base);
    std::wstring root = base;
    if (!root.empty() && root.back() == L'\\') root.pop_back();
    for (;;) {
        path_ = root + L"\\t" + std::to_wstring(GetCurrentProcessId()) + L"_" + std::to_wstring(++counter);
        if (CreateDirectoryW(path_.c_str(), nullptr)) break;
    }
}

TempFolder::~TempFolder() { RemoveTree(path_); }

void TempFolder::WriteBytes(const std::wstring& name, const std::string& bytes) const
{
    HANDLE h = CreateFileW((*this / name).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    if (h == INVALID_HANDLE_VALUE) return;
    DWORD written;
    WriteFile(h, bytes.data(), DWORD(bytes.size()), &written, nullptr);
    CloseHandle(h);
}

std::string TempFolder::ReadBytes(const std::wstring& name) const
{
    std::string bytes;
    HANDLE h = CreateFileW((*this / name).c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
    if (h == INVALID_HANDLE_VALUE) return bytes;
    char chunk[4096];
    DWORD got;
    while (ReadFile(h, chunk, sizeof(chunk), &got, nullptr) && got > 0) bytes.append(chunk, got);
    CloseHandle(h);
    return bytes;
}

bool TempFolder::Exists(const std::wstring& name) const
{
    return GetFileAttributesW((*this / name).c_str()) != INVALID_FILE_ATTRIBUTES;
}

std::wstring TempFolder::ReadText(const std::wstring& name) const
{
    std::string bytes = ReadBytes(name);
    std::wstring text;
    if (bytes.size() >= 2 && static_cast<unsigned char>(bytes[0]) == 0xFF && static_cast<unsigned char>(bytes[1]) == 0xFE) {
        for (size_t i = 2; i + 1 < bytes.size(); i += 2)
            text += wchar_t(static_cast<unsigned char>(bytes[i]) | (static_cast<unsigned char>(bytes[i + 1]) << 8));
        return text;
    }
    int n = MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, bytes.data(), int(bytes.size()), nullptr, 0);
    UINT codePage = n > 0 ? CP_UTF8 : CP_ACP;
    n = MultiByteToWideChar(codePage, 0, bytes.data(), int(bytes.size()), nullptr, 0);
    text.resize(size_t(n));
    MultiByteToWideChar(codePage, 0, bytes.data(), int(bytes.size()), text.data(), n);
    return text;
}
