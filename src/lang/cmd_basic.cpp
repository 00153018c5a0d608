// Small commands of the interpreter itself: rem, verify, timer, seed, exit,
// end, tips and help.
#include "app/errors.h"
#include "app/globals.h"
#include "app/help_link.h"
#include "app/host.h"
#include "app/profile/profile.h"
#include "app/toolkit/omdib.h"
#include "lang/builtins.h"
#include "lang/command_args.h"
#include "lang/random.h"
#include "lang/shell_command.h"
#include "screen/colours.h"
#include "screen/screen_store.h"

#include <cwchar>

void CmdRem() {}

void CmdVerify() {}

void CmdTimer()
{
    static DWORD started = 0;
    static bool running = false;
    if (!running) {
        started = GetTickCount();
        running = true;
        return;
    }
    DWORD elapsed = GetTickCount() - started;
    running = false;
    UseItem(Item::Text);
    TheScreen.Write(L"Ticks elapsed is ");
    UseItem(Item::Number);
    TheScreen.WriteUInt64(elapsed);
    UseItem(Item::Text);
    TheScreen.Write(L" milliseconds");
    TheScreen.NewLine();
}

void CmdSeed()
{
    if (CommandArgs.ArgCount > 1) {
        ReportId(1);
        return;
    }
    if (CommandArgs.ArgCount == 0) {
        SeedRandom(GetTickCount());
        return;
    }
    const wchar_t* end;
    int64_t value = lstrtoi64W(CommandArgs.Args[0], &end, 0);
    if (*end) {
        ReportId(9);
        return;
    }
    SeedRandom(uint32_t(value));
}

static bool EnableShutdownPrivilege()
{
    HANDLE token;
    if (!OpenProcessToken(GetCurrentProcess(), TOKEN_ADJUST_PRIVILEGES | TOKEN_QUERY, &token)) return false;
    TOKEN_PRIVILEGES privileges{};
    privileges.PrivilegeCount = 1;
    privileges.Privileges[0].Attributes = SE_PRIVILEGE_ENABLED;
    bool ok = LookupPrivilegeValueW(nullptr, L"SeShutdownPrivilege", &privileges.Privileges[0].Luid) &&
              AdjustTokenPrivileges(token, FALSE, &privileges, 0, nullptr, nullptr) &&
              GetLastError() == ERROR_SUCCESS;
    CloseHandle(token);
    return ok;
}

void CmdExit()
{
    if (TheShell.Batch) {
        TheShell.Terminate = 2;
        return;
    }
    const wchar_t* switches = CommandArgs.Switches;
    if (!switches[0]) {
        CommandRunning = 0;
        Host->RequestExit();
        return;
    }
    if (switches[1]) {
        ReportId(2);
        return;
    }
    switch (switches[0]) {
    case L'l': ExitWindowsEx(EWX_LOGOFF, 0); break;
    case L'b':
    case L's':
        if (!EnableShutdownPrivilege()) {
            ReportId(51);
            return;
        }
        ExitWindowsEx(switches[0] == L'b' ? EWX_REBOOT : EWX_SHUTDOWN, 0);
        break;
    default: ReportId(2); break;
    }
}

void CmdEnd() { TheShell.Terminate = 2; }

void CmdTips()
{
    if (RejectSwitches()) return;
    if (CommandArgs.ArgCount != 1) {
        ReportId(1);
        return;
    }
    const wchar_t* word = CommandArgs.Args[0];
    int on = lstrcmpiW(word, L"on") == 0;
    if (!on && lstrcmpiW(word, L"off") != 0) {
        ReportId(9);
        return;
    }
    if (!ProfileWriteInt(L"Ombrel", L"Tips", on)) TheErrors.ReportPlatformError(GetLastError());
}

void CmdHelp()
{
    if (CommandArgs.ArgCount > 1) {
        ReportId(1);
        return;
    }
    if (CommandArgs.ArgCount == 0) HelpLink(HelpShow, nullptr);
    else HelpLink(HelpKeyword, CommandArgs.Args[0]);
}
