#include "app/toolkit/shell_folders.h"

#include <shlobj.h>

namespace {

// The item list SHELL32 hands out is freed with the task allocator of OLE32,
// found when first needed: importing OLE32 would load it, and the libraries
// it needs, on every start.
void FreeItemList(LPITEMIDLIST list)
{
    using FreeFn = void(WINAPI*)(void*);
    static FreeFn free = [] {
        HMODULE ole = LoadLibraryW(L"OLE32.DLL"); // kept for the life of the process
        return ole ? reinterpret_cast<FreeFn>(reinterpret_cast<void*>(GetProcAddress(ole, "CoTaskMemFree")))
                   : nullptr;
    }();
    if (free) free(list);
}

} // namespace

bool ShellFolderPath(int folder, wchar_t* path, bool loadShell)
{
    path[0] = 0;
    HMODULE shell = GetModuleHandleW(L"SHELL32.DLL");
    if (!shell && loadShell) shell = LoadLibraryW(L"SHELL32.DLL");
    if (!shell) return false;
    using LocationFn = HRESULT(WINAPI*)(HWND, int, LPITEMIDLIST*);
    using PathFn = BOOL(WINAPI*)(LPCITEMIDLIST, LPWSTR);
    auto location = reinterpret_cast<LocationFn>(
        reinterpret_cast<void*>(GetProcAddress(shell, "SHGetSpecialFolderLocation")));
    auto pathOf = reinterpret_cast<PathFn>(reinterpret_cast<void*>(GetProcAddress(shell, "SHGetPathFromIDListW")));
    if (!location || !pathOf) return false;
    LPITEMIDLIST list = nullptr;
    if (FAILED(location(nullptr, folder, &list)) || !list) return false;
    if (!pathOf(list, path)) path[0] = 0;
    FreeItemList(list);
    return path[0] != 0;
}
