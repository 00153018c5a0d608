#include "app/banner.h"

#include "app/profile/settings_table.h"
#include "app/run_line.h"
#include "app/toolkit/omdib.h"
#include "input/unix_mode.h"
#include "lang/random.h"
#include "screen/colours.h"
#include "screen/screen_store.h"

#include <windows.h>

#include <ctime>

namespace {

void WriteIn(Item item, const wchar_t* text)
{
    UseItem(item);
    TheScreen.Write(text);
}

void WriteTitle()
{
    WriteIn(Item::Number, L"        OOP - ");
    WriteIn(Item::FileName, L"General Command Shell for Windows");
    WriteIn(Item::Error, L" v");
    WriteIn(Item::Error, kShellVersion);
    TheScreen.NewLine();
    WriteIn(Item::BoldText, L"Ombrel");
    WriteIn(Item::FileAttrib, L" - free software, ");
    WriteIn(Item::FileDate, L"by the Ombrel developers");
    TheScreen.NewLine();
    TheScreen.NewLine();
    TheScreen.NewLine();
}

// One information line: the label of the string table, then the value.
void WriteInfo(int labelId, const wchar_t* value)
{
    wchar_t label[64];
    if (LoadStringW(GetModuleHandleW(nullptr), UINT(labelId), label, 64) <= 0) label[0] = 0;
    WriteIn(Item::Text, label);
    WriteIn(Item::HighText, value);
    TheScreen.NewLine();
}

void WriteCountInfo(int labelId, uint64_t count, const wchar_t* unit)
{
    wchar_t text[48];
    ui64tow_ex(count, text, 10);
    StrCommaW(text);
    lstrcatW(text, unit);
    WriteInfo(labelId, text);
}

// Member of the built-in Administrators group; a system without the
// membership test counts as one, since it has no limited users.
bool RunsAsAdministrator()
{
    using MembershipFn = BOOL(WINAPI*)(HANDLE, PSID, PBOOL);
    HMODULE advapi = GetModuleHandleW(L"advapi32.dll");
    auto isMember = advapi ? reinterpret_cast<MembershipFn>(
                                 reinterpret_cast<void*>(GetProcAddress(advapi, "CheckTokenMembership")))
                           : nullptr;
    if (!isMember) return true;
    SID_IDENTIFIER_AUTHORITY ntAuthority = SECURITY_NT_AUTHORITY;
    PSID administrators = nullptr;
    if (!AllocateAndInitializeSid(&ntAuthority, 2, SECURITY_BUILTIN_DOMAIN_RID, DOMAIN_ALIAS_RID_ADMINS, 0, 0, 0, 0,
                                  0, 0, &administrators))
        return true;
    BOOL member = FALSE;
    if (!isMember(nullptr, administrators, &member)) member = TRUE;
    FreeSid(administrators);
    return member != FALSE;
}

void WriteSystemInfo()
{
    WriteInfo(402, L"Unicode");
    WriteInfo(404, RunsAsAdministrator() ? L"Adminstrator" : L"Limited");
    wchar_t windows[kPathMax];
    UINT n = GetWindowsDirectoryW(windows, kPathMax);
    if (n == 0 || n >= UINT(kPathMax)) windows[0] = 0;
    WriteInfo(403, UnixDisplayW(windows));
    WriteCountInfo(408, NumDisplayColors(), L" colours");
    MEMORYSTATUSEX memory{};
    memory.dwLength = sizeof memory;
    if (!GlobalMemoryStatusEx(&memory)) memory.ullAvailPageFile = 0;
    WriteCountInfo(405, memory.ullAvailPageFile, L" bytes");
}

// The tips are drawn from 600 to 620 only.
int PickTip() { return 600 + NextRandom() * 21 / 32768; }

} // namespace

uint64_t NumDisplayColors()
{
    HDC screen = GetDC(nullptr);
    if (!screen) return 0;
    int bits = GetDeviceCaps(screen, BITSPIXEL) * GetDeviceCaps(screen, PLANES);
    ReleaseDC(nullptr, screen);
    if (bits > 24) bits = 24;
    return bits > 0 ? uint64_t(1) << bits : 0;
}

void PrintTip(int id)
{
    wchar_t tip[1024];
    if (LoadStringW(GetModuleHandleW(nullptr), UINT(id), tip, 1024) <= 0) return;
    WriteIn(Item::HighText, L"Tip: ");
    UseItem(Item::Text);
    // A line feed ends the line and a carriage return goes back to column 0,
    // as for the text an external command writes.
    wchar_t* start = tip;
    for (wchar_t* p = tip;; ++p) {
        wchar_t unit = *p;
        if (unit != 0 && unit != L'\n' && unit != L'\r') continue;
        *p = 0;
        TheScreen.Write(start);
        start = p + 1;
        if (unit == 0) break;
        if (unit == L'\n') TheScreen.NewLine();
        else TheScreen.CursorX = 0;
    }
}

void PrintBanner()
{
    WriteTitle();
    WriteSystemInfo();
    EnableClose(true);
    SeedRandom(uint32_t(std::time(nullptr)));
    if (SettingInt(L"Ombrel", L"Tips") != 0) {
        TheScreen.NewLine();
        TheScreen.NewLine();
        PrintTip(PickTip());
    }
    TheScreen.NewLine();
}
