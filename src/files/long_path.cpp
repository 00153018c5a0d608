#include "files/long_path.h"

#include <windows.h>

const wchar_t* PlatformPath(const wchar_t* path, std::wstring& holder)
{
    if (lstrlenW(path) < MAX_PATH - 1) return path;
    if (path[0] && path[1] == L':' && path[2] == L'\\') {
        holder = L"\\\\?\\";
        holder += path;
        return holder.c_str();
    }
    if (path[0] == L'\\' && path[1] == L'\\' && path[2] != L'?' && path[2] != L'.') {
        holder = L"\\\\?\\UNC";
        holder += path + 1;
        return holder.c_str();
    }
    return path;
}

std::wstring VolumeRoot(const wchar_t* path)
{
    if (path[0] && path[1] == L':') return std::wstring(path, 2) + L'\\';
    std::wstring text(path);
    if (text.size() > 2 && text[0] == L'\\' && text[1] == L'\\') {
        size_t share = text.find(L'\\', 2);
        if (share == std::wstring::npos) return {};
        size_t end = text.find(L'\\', share + 1);
        if (end == std::wstring::npos) return text + L'\\';
        return text.substr(0, end + 1);
    }
    return {};
}
