// cd, chdir, cdd, pushd, popd, dirs and path: the directories and the search
// path of the shell process as scripts see them.
#include "app/errors.h"
#include "app/toolkit/omdib.h"
#include "input/unix_mode.h"
#include "lang/builtins.h"
#include "lang/command_args.h"
#include "lang/directories.h"
#include "lang/shell_command.h"
#include "lang/variables.h"
#include "screen/colours.h"
#include "screen/screen_store.h"

#include <windows.h>

namespace {

// The text from its first non-blank on, without blanks at its end.
void CopyTrimmed(wchar_t* buffer, const wchar_t* text)
{
    CopyCutW(buffer, SkipWhiteW(text), kLineMax);
    int n = lstrlenW(buffer);
    while (n > 0 && IsWhite(buffer[n - 1])) buffer[--n] = 0;
}

// [/d word] path-to-end-of-line | "quoted path": the directory named by a
// stage, blanks and all without quotes. Null, after message 1, when a quoted
// path has company; an empty text when there is no path at all.
const wchar_t* DirectoryArgument(bool skipFirstWord, wchar_t* buffer)
{
    const wchar_t* p = SkipWhiteW(CommandArgs.Tail);
    if (skipFirstWord) p = SkipWhiteW(SkipArgW(p));
    if (*p == L'"') {
        if (CommandArgs.ArgCount > 1) {
            ReportId(1);
            return nullptr;
        }
        return CommandArgs.Args[0];
    }
    CopyTrimmed(buffer, p);
    return buffer;
}

// 1 for A: to 26 for Z: when text is a drive letter, a colon and nothing more.
int BareDrive(const wchar_t* text)
{
    wchar_t letter = ToUpperUnit(text[0]);
    if (letter < L'A' || letter > L'Z' || text[1] != L':' || text[2]) return 0;
    return letter - L'A' + 1;
}

bool DriveExists(int drive)
{
    wchar_t root[4] = {wchar_t(L'A' + drive - 1), L':', L'\\', 0};
    return GetDriveTypeW(root) != DRIVE_NO_ROOT_DIR;
}

// "Current directory is \dir" for a drive (0 the current one).
void ShowDirectory(int drive)
{
    wchar_t full[kPathMax];
    if (!CurrentDirectoryOf(drive, full)) {
        TheErrors.ReportErrno();
        return;
    }
    const wchar_t* p = full[0] && full[1] == L':' ? full + 2 : full;
    if (*p == L'\\') ++p;
    UseItem(Item::Text);
    TheScreen.Write(L"Current directory is ");
    TheScreen.Write(L"\\");
    TheScreen.Write(p);
    TheScreen.NewLine();
    TheScreen.NewLine();
}

bool ChangeOrReport(const wchar_t* path)
{
    if (ChangeDirectory(path)) return true;
    TheErrors.ReportErrno();
    return false;
}

// A path with a drive in front changes that drive's directory; the current
// drive comes back unless the user asked to switch.
void ChangeKeepingDrive(const wchar_t* path, bool switchDrive)
{
    wchar_t before[kPathMax];
    if (switchDrive || !CurrentDirectoryOf(0, before)) {
        ChangeOrReport(path);
        return;
    }
    if (!ChangeOrReport(path)) return;
    wchar_t after[kPathMax];
    if (CurrentDirectoryOf(0, after) && ToUpperUnit(after[0]) != ToUpperUnit(before[0])) SetCurrentDirectoryW(before);
}

void PushDirectory(const wchar_t* full)
{
    ShellCommand& shell = TheShell;
    if (shell.DirectoryCount == ShellCommand::kDirectoryStackSize) {
        for (int i = 1; i < shell.DirectoryCount; ++i) shell.DirectoryStack[i - 1].swap(shell.DirectoryStack[i]);
        --shell.DirectoryCount;
    }
    shell.DirectoryStack[shell.DirectoryCount++] = full;
}

} // namespace

void CmdCd()
{
    for (const wchar_t* s = CommandArgs.Switches; *s; ++s)
        if (*s != L'd') {
            ReportId(2);
            return;
        }
    bool switchDrive = CommandArgs.Switches[0] != 0;
    if (CommandArgs.ArgCount == 0) {
        ShowDirectory(0);
        return;
    }
    wchar_t buffer[kLineMax];
    const wchar_t* path = DirectoryArgument(switchDrive, buffer);
    if (!path) return;
    if (int drive = BareDrive(path)) {
        if (DriveExists(drive)) ShowDirectory(drive);
        else ReportId(3);
        return;
    }
    ChangeKeepingDrive(path, switchDrive);
}

void CmdCdd()
{
    if (RejectSwitches()) return;
    if (CommandArgs.ArgCount == 0) {
        ReportId(1);
        return;
    }
    wchar_t buffer[kLineMax];
    if (const wchar_t* path = DirectoryArgument(false, buffer)) ChangeOrReport(path);
}

void CmdPushd()
{
    if (RejectSwitches()) return;
    if (CommandArgs.ArgCount > 1) {
        ReportId(1);
        return;
    }
    wchar_t current[kPathMax];
    if (!CurrentDirectoryOf(0, current)) {
        TheErrors.ReportErrno();
        return;
    }
    PushDirectory(current);
    if (CommandArgs.ArgCount == 1) ChangeOrReport(CommandArgs.Args[0]);
}

void CmdPopd()
{
    if (RejectSwitches()) return;
    if (CommandArgs.ArgCount > 1) {
        ReportId(1);
        return;
    }
    ShellCommand& shell = TheShell;
    if (shell.DirectoryCount == 0) return;
    if (CommandArgs.ArgCount == 1) {
        int64_t n = lstrtoi64W(CommandArgs.Args[0], nullptr, 0);
        if (n < 1 || n > shell.DirectoryCount) return;
        shell.DirectoryCount -= int32_t(n - 1);
    }
    std::wstring top;
    top.swap(shell.DirectoryStack[--shell.DirectoryCount]);
    for (int i = shell.DirectoryCount; i < ShellCommand::kDirectoryStackSize; ++i) shell.DirectoryStack[i].clear();
    ChangeOrReport(top.c_str());
}

void CmdDirs()
{
    if (RejectSwitches() || RejectArguments()) return;
    const ShellCommand& shell = TheShell;
    for (int i = 0; i < shell.DirectoryCount && !TheScreen.BreakFlag; ++i) {
        UseItem(Item::Number);
        TheScreen.FieldWidth = 3;
        TheScreen.WriteInt(shell.DirectoryCount - i);
        UseItem(Item::Text);
        TheScreen.Write(L": ");
        TheScreen.Write(shell.DirectoryStack[i].c_str());
        TheScreen.NewLine();
    }
}

void CmdPath()
{
    if (RejectSwitches()) return;
    if (CommandArgs.ArgCount == 0) {
        wchar_t value[kValueMax];
        ReadVariable(L"PATH", value, kValueMax);
        UseItem(Item::EnvName);
        TheScreen.Write(L"PATH=");
        UseItem(Item::EnvStr);
        TheScreen.Write(UnixDisplayW(value));
        TheScreen.NewLine();
        return;
    }
    if (CommandArgs.Args[0][0] == L';') {
        SetVariable(L"PATH", nullptr);
        return;
    }
    wchar_t value[kLineMax];
    CopyTrimmed(value, CommandArgs.Tail);
    SetVariable(L"PATH", value);
}
