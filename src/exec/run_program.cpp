#include "exec/run_program.h"

#include "app/errors.h"
#include "app/globals.h"
#include "app/host.h"
#include "app/toolkit/omdib.h"
#include "exec/associations.h"
#include "exec/launch_prepare.h"
#include "exec/lent_console.h"
#include "exec/loader_route.h"
#include "exec/pipe_route.h"
#include "exec/process_wait.h"
#include "exec/program_search.h"
#include "exec/shortcut_launch.h"
#include "exec/system_call_server.h"
#include "lang/command_args.h"
#include "lang/directories.h"
#include "lang/environment_index.h"
#include "lang/shell_command.h"

#include <memory>

namespace {

// ".", "..", "x:", "x\", "x\." and "x\.." name folders and nothing else.
bool NamesDirectory(const wchar_t* word)
{
    int n = lstrlenW(word);
    if (n == 0) return false;
    if (lstrcmpW(word, L".") == 0 || lstrcmpW(word, L"..") == 0) return true;
    wchar_t last = word[n - 1];
    if (last == L':' || last == L'\\') return true;
    return (n >= 2 && lstrcmpW(word + n - 2, L"\\.") == 0) || (n >= 3 && lstrcmpW(word + n - 3, L"\\..") == 0);
}

// An unknown word is tried as a folder: changed to, or shown by the
// explorer when the run does not wait.
void RunDirectoryCase(const wchar_t* word, bool noWait)
{
    // A drive alone reaches here only when the dispatcher refused the drive
    // change (arguments or switches stood behind it).
    bool bareDrive = word[0] && word[1] == L':' && word[2] == 0;
    if (bareDrive) {
        ReportId(5);
        ErrorLevel = 1;
        return;
    }
    if (!noWait) {
        if (!ChangeDirectory(word)) {
            ReportId(5);
            ErrorLevel = 1;
        }
        return;
    }
    std::wstring command = std::wstring(L"EXPLORER.EXE ") + word;
    StringHolder holder;
    const char* narrow = ToNarrow(holder, command.c_str());
    if (!narrow || WinExec(narrow, SW_SHOWNORMAL) < 32) ReportId(52);
}

// What the start is given: the program file, the command line, and whether
// the wait may hand the program to the background.
struct StartPlan {
    std::wstring Program;
    std::wstring CommandLine;
    bool MayBackground = true;
    bool ThroughShell = false; // a shortcut, opened by the shell's service
};

// The debugged external command is told the debugger's word, its own, and
// the window; it then finds its arguments in the stage parsed once more.
void PlanDebug(StartPlan& plan, RunState& state, std::unique_ptr<wchar_t[]>& stage)
{
    plan.CommandLine = std::wstring(CommandArgs.RawCommand) + L" " +
                       (CommandArgs.ArgCount > 0 ? CommandArgs.RawArgs[0] : L"") + L" " + CallWindowNumber();
    state.Startup.dwFlags = STARTF_FORCEOFFFEEDBACK;
    plan.MayBackground = false;
    auto text = std::make_unique<wchar_t[]>(kLineMax);
    CopyCutW(text.get(), CommandArgs.Tail, kLineMax);
    CommandArgs.Parse(text.get());
    stage = std::move(text);
}

// Fills the plan by the suffix found; false when the run ends here.
bool PlanBySuffix(StartPlan& plan, RunState& state, const LaunchOptions& options)
{
    const wchar_t* suffix = ExtensionOf(plan.Program.c_str());
    if (lstrcmpiW(suffix, L".EXC") == 0) {
        if (options.NoWait) {
            ReportId(52);
            return false;
        }
        // The arguments are not on the line: the external command asks for them.
        plan.CommandLine = std::wstring(CommandArgs.RawCommand) + L" " + CallWindowNumber();
        state.Startup.dwFlags = STARTF_FORCEOFFFEEDBACK;
        plan.MayBackground = false;
        return true;
    }
    if (lstrcmpiW(suffix, L".PIF") == 0) {
        plan.MayBackground = false;
        return true;
    }
    if (lstrcmpiW(suffix, L".LNK") == 0) {
        plan.MayBackground = false;
        plan.ThroughShell = true;
        return true;
    }
    int mode = PrepareRun(state, plan.Program.c_str(), plan.CommandLine.c_str(), options.NoWait);
    if (mode < 0) {
        ReportId(4);
        UndoRun(state);
        return false;
    }
    return true;
}

void StartPlanned(StartPlan& plan, RunState& state, const LaunchOptions& options)
{
    std::wstring line = SkipWhiteW(plan.CommandLine.c_str());
    if (plan.ThroughShell) {
        OpenShortcut(plan.Program.c_str(), CommandArgs.Tail);
        return;
    }
    bool capture = state.Mode != 0 && !options.NoWait && CaptureApplies(plan.Program.c_str(), state.Kind);
    if (capture && NamesLoader(state.Helper)) {
        RunUnderLoader(state, plan.Program.c_str(), options);
        return;
    }
    if (capture) {
        RunOnPipes(state, plan.Program.c_str(), line.c_str(), options);
        return;
    }
    bool lent = state.Mode != 0 && !options.NoWait && Host->LendsConsole();
    std::wstring program = state.Mode != 0 && !lent ? state.Helper : plan.Program;
    ProcessStart start{program, line, plan.Program, options.Show, options.NoWait, options.SeparateVdm};
    start.Kind = plan.MayBackground ? state.Kind : -1;
    start.MayBackground = plan.MayBackground && state.Mode != 1;
    if (lent) RunInLentConsole(state, start);
    else StartAndWait(state, start);
}

} // namespace

std::wstring RunProgram(const LaunchOptions& options)
{
    SyncEnvironment();
    const wchar_t* word = CommandArgs.Command;
    if (CommandArgs.ArgCount == 0 && !CommandArgs.Switches[0] && NamesDirectory(word)) {
        RunDirectoryCase(word, options.NoWait);
        return {};
    }
    // Each rewrite of the stage lives here until the run is over.
    std::unique_ptr<wchar_t[]> stage;
    const wchar_t* extension = ExtensionOf(word);
    if (*extension && !IsProgramSuffix(extension)) stage = ApplyAssociation();
    std::wstring found = FindProgram(0);
    if (found.empty()) {
        RunDirectoryCase(CommandArgs.Command, options.NoWait);
        return {};
    }
    if (options.AllowBatch && IsBatchSuffix(ExtensionOf(found.c_str()))) return found;

    RunState state;
    state.Startup.cb = sizeof(STARTUPINFOW);
    std::wstring wholeLine = CommandArgs.WholeLine;
    std::wstring title = options.Title.empty() ? wholeLine : options.Title;
    state.Startup.lpTitle = title.data();
    StartPlan plan{found, wholeLine};
    if (options.Debug) PlanDebug(plan, state, stage);
    else if (!PlanBySuffix(plan, state, options)) return {};
    StartPlanned(plan, state, options);
    if (state.Mode != 0) UndoRun(state);
    return {};
}

bool IsBatchProgram(const wchar_t* word) { return !FindBatchProgram(word).empty(); }
