#include "app/shell_mode.h"

#include "app/globals.h"
#include "app/toolkit/handles.h"
#include "app/toolkit/omdib.h"
#include "lang/environment_index.h"

#include <string>

int ShellMode = 0;

void CheckShellMode()
{
    ShellMode = 0;
    HKEY key;
    if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Winlogon", 0, KEY_READ,
                      &key) != ERROR_SUCCESS)
        return;
    UniqueHKey owner(key);
    wchar_t shell[kPathMax] = {};
    DWORD size = sizeof(shell) - sizeof(wchar_t);
    DWORD type;
    if (RegQueryValueExW(key, L"Shell", nullptr, &type, reinterpret_cast<BYTE*>(shell), &size) != ERROR_SUCCESS)
        return;
    const wchar_t* value = shell;
    if (lstrstriW(value, L"taskman,") == value) value += 8;
    if (!lstrstriW(value, L"OMB_REL") || !FirstInstance) return;
    ShellMode = 1;
    SetProcessShutdownParameters(0x100, 1);
    SyncEnvironment();
    WinExec("TASKMAN.EXE", 1);
}

static void StartEach(const wchar_t* key, int showCommand)
{
    wchar_t list[kLineMax];
    GetProfileStringW(L"Windows", key, L"", list, kLineMax);
    std::wstring entry;
    auto start = [&] {
        if (entry.empty()) return;
        StringHolder holder;
        SyncEnvironment();
        if (const char* narrow = ToNarrow(holder, entry.c_str())) WinExec(narrow, UINT(showCommand));
        entry.clear();
    };
    for (const wchar_t* p = list; *p; ++p) {
        if (*p == L' ' || *p == L'\t' || *p == L',') start();
        else entry += *p;
    }
    start();
}

void RunStartupPrograms()
{
    HCURSOR previous = SetCursor(LoadCursorW(nullptr, MAKEINTRESOURCEW(32514)));
    StartEach(L"run", 1);
    StartEach(L"load", 2);
    SetCursor(previous);
}
