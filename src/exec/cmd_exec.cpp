// The commands of program launch: which, start, debug, dos and tasks.
#include "app/errors.h"
#include "app/profile/profile.h"
#include "app/toolkit/omdib.h"
#include "exec/capture_settings.h"
#include "exec/launch_prepare.h"
#include "exec/program_search.h"
#include "exec/run_program.h"
#include "exec/task_list.h"
#include "lang/builtins.h"
#include "lang/command_args.h"
#include "lang/environment_index.h"
#include "lang/shell_command.h"
#include "screen/colours.h"
#include "screen/screen_store.h"

#include <memory>
#include <string>

namespace {

// Runs the stage with options; a batch program it names runs here.
void LaunchStage(const LaunchOptions& options)
{
    std::wstring path = RunProgram(options);
    if (!path.empty()) TheShell.RunBatchFile(path.c_str());
}

// Makes text the stage; the buffer must live while the stage runs.
std::unique_ptr<wchar_t[]> ParseStage(const wchar_t* text)
{
    auto stage = std::make_unique<wchar_t[]>(kLineMax);
    CopyCutW(stage.get(), text, kLineMax);
    CommandArgs.Parse(stage.get());
    return stage;
}

// "/" words of start, letter by letter: v a separate machine, w wait, a
// digit the show command; other letters are ignored.
void ReadStartSwitch(const wchar_t* word, const wchar_t* end, LaunchOptions& options)
{
    for (const wchar_t* p = word + 1; p < end; ++p) {
        wchar_t letter = ToLowerUnit(*p);
        if (letter == L'v') options.SeparateVdm = true;
        else if (letter == L'w') options.NoWait = false;
        else if (letter >= L'0' && letter <= L'9') options.Show = letter - L'0';
    }
}

void WriteItem(Item item, const wchar_t* text)
{
    UseItem(item);
    TheScreen.Write(text);
}

bool InstallDefaultPif(const wchar_t* name)
{
    wchar_t windows[kPathMax];
    UINT n = GetWindowsDirectoryW(windows, kPathMax);
    if (n == 0 || n >= UINT(kPathMax) - 16) return false;
    std::wstring folder = windows;
    if (folder.back() != L'\\') folder += L'\\';
    std::wstring target = folder + L"_DEFAULT.PIF", backup = folder + L"_DEFAULT.BAK";
    if (GetFileAttributesW(backup.c_str()) == INVALID_FILE_ATTRIBUTES) CopyFileW(target.c_str(), backup.c_str(), TRUE);
    if (CopyFileW(BesideShell(name).c_str(), target.c_str(), FALSE)) return true;
    // The copy failed: the backup goes back in place.
    MoveFileExW(backup.c_str(), target.c_str(), MOVEFILE_REPLACE_EXISTING);
    return false;
}

void ListTasks()
{
    TheTasks.Reap();
    WriteItem(Item::HighText, L"     Background Tasks");
    TheScreen.NewLine();
    TheScreen.NewLine();
    for (const BackgroundTask& task : TheTasks.Tasks()) {
        if (TheScreen.BreakFlag) return;
        UseItem(Item::Number);
        TheScreen.FieldWidth = 5;
        TheScreen.WriteInt(task.Number);
        TheScreen.Write(L" ");
        WriteItem(Item::FileName, task.Name.c_str());
        WriteItem(Item::HighText, L"  process ");
        UseItem(Item::Number);
        TheScreen.WriteULong(task.ProcessId);
        TheScreen.NewLine();
    }
    if (!TheTasks.Tasks().empty()) TheScreen.NewLine();
    UseItem(Item::Number);
    TheScreen.FieldWidth = 6;
    TheScreen.CommaNext = 1;
    TheScreen.WriteInt(int32_t(TheTasks.Tasks().size()));
    WriteItem(Item::HighText, L" task(s) running");
    TheScreen.NewLine();
}

} // namespace

void CmdWhich()
{
    if (RejectSwitches()) return;
    if (CommandArgs.ArgCount != 1) {
        ReportId(1);
        return;
    }
    std::wstring found = FindProgram(1);
    if (found.empty()) {
        ReportId(48);
        return;
    }
    // The file system's own spelling, not the suffix as the search wrote it.
    wchar_t shown[kPathMax];
    CopyCutW(shown, found.c_str(), kPathMax);
    GetFileNameCaseW(shown);
    WriteItem(Item::HighText, L"Found ");
    WriteItem(Item::FileName, shown);
    WriteItem(Item::HighText, (L" " + ExecutableDescription(found.c_str())).c_str());
    TheScreen.NewLine();
}

void CmdStart()
{
    LaunchOptions options;
    options.NoWait = true;
    const wchar_t* p = SkipWhiteW(CommandArgs.Tail);
    // A quoted first argument is the window's title when more follows.
    std::wstring title;
    if (*p == L'"' && CommandArgs.ArgCount > 1) {
        const wchar_t* end = SkipArgW(p);
        title.assign(p + 1, size_t(end - p - 1));
        if (!title.empty() && title.back() == L'"') title.pop_back();
        p = SkipWhiteW(end);
    }
    while (*p == L'/') {
        const wchar_t* end = SkipArgW(p);
        ReadStartSwitch(p, end, options);
        p = SkipWhiteW(end);
    }
    if (!*p) return;
    options.Title = title;
    auto stage = ParseStage(p);
    LaunchStage(options);
}

void CmdDebug()
{
    auto stage = ParseStage(CommandArgs.Tail);
    if (!CommandArgs.Command[0]) {
        ReportId(1);
        return;
    }
    if (IsBatchProgram(CommandArgs.Command)) {
        ReportId(52);
        return;
    }
    LaunchOptions options;
    options.Debug = true;
    LaunchStage(options);
}

void CmdDos()
{
    if (CommandArgs.ArgCount == 0) {
        const std::wstring* comspec = FindEnvironment(L"COMSPEC");
        StringHolder holder;
        const char* narrow =
            (comspec && comspec->size() < size_t(kPathMax)) ? ToNarrow(holder, comspec->c_str()) : nullptr;
        SyncEnvironment();
        if (!narrow || WinExec(narrow, SW_SHOWNORMAL) < 32) ReportId(8);
        return;
    }
    const wchar_t* word = CommandArgs.Args[0];
    bool close = lstrcmpiW(word, L"close") == 0;
    if (CommandArgs.ArgCount != 1 || (!close && lstrcmpiW(word, L"inactive") != 0)) {
        ReportId(9);
        return;
    }
    ProfileWriteInt(L"Ombrel", L"Console", close ? 0 : 1);
    TheCaptureSettings.Console = close ? 0 : 1;
    InstallDefaultPif(close ? L"CLOSE.PIF" : L"INACTIVE.PIF");
}

void CmdTasks()
{
    const wchar_t* switches = CommandArgs.Switches;
    for (const wchar_t* s = switches; *s; ++s)
        if (*s != L'k') {
            ReportId(2);
            return;
        }
    if (!switches[0]) {
        if (!RejectArguments()) ListTasks();
        return;
    }
    if (CommandArgs.ArgCount != 1) {
        ReportId(1);
        return;
    }
    int number = _wtoi(CommandArgs.Args[0]);
    if (!TheTasks.End(number)) ReportId(12);
}
