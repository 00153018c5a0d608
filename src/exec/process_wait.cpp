#include "exec/process_wait.h"

#include "app/errors.h"
#include "app/host.h"
#include "app/profile/profile.h"
#include "exec/program_keys.h"
#include "exec/start_process.h"
#include "exec/system_call_server.h"
#include "exec/task_list.h"
#include "lang/shell_command.h"
#include "screen/colours.h"
#include "screen/screen_store.h"

namespace {

constexpr WPARAM kCtrlC = 3;
constexpr WPARAM kCtrlZ = 0x1A;
// The console host has no messages: its Ctrl-C arrives by a flag that the
// wait looks at this often.
constexpr DWORD kPollMilliseconds = 250;

void ShowBackground(int number, const std::wstring& name)
{
    if (TheScreen.CursorX != 0) TheScreen.NewLine();
    UseItem(Item::HighText);
    TheScreen.Write(L"Task ");
    if (number != 0) {
        UseItem(Item::Number);
        TheScreen.WriteInt(number);
        TheScreen.Write(L" ");
    }
    UseItem(Item::FileName);
    TheScreen.Write(name.c_str());
    UseItem(Item::HighText);
    TheScreen.Write(L" executing in the background");
    TheScreen.NewLine();
}

} // namespace

ProgramKeyQueue TheProgramKeys;

// Handles the messages waiting now. Characters typed meanwhile wait for the
// program to ask for them.
WaitEnd PumpWaitMessages(bool mayBackground)
{
    MSG msg;
    while (PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE)) {
        if (msg.message == WM_QUIT) {
            PostQuitMessage(int(msg.wParam));
            return WaitEnd::Quit;
        }
        TranslateMessage(&msg);
        if (msg.message == WM_CHAR && msg.wParam == kCtrlZ && mayBackground) return WaitEnd::Background;
        if (msg.message == WM_CHAR && msg.wParam == kCtrlC) {
            TheScreen.ShowBreak();
            TheScreen.BreakFlag = 1;
            continue;
        }
        if (msg.message == WM_CHAR) {
            TheProgramKeys.Push(wchar_t(msg.wParam));
            continue;
        }
        if (msg.message == WM_KEYDOWN) {
            TheProgramKeys.PushKey(unsigned(msg.wParam));
            continue;
        }
        if (msg.message == WM_KEYUP || msg.message == WM_SYSCHAR) continue;
        DispatchMessageW(&msg);
    }
    return WaitEnd::Finished;
}

std::wstring ShortName(const std::wstring& path)
{
    size_t slash = path.find_last_of(L"\\/");
    return slash == std::wstring::npos ? path : path.substr(slash + 1);
}

WaitEnd WaitForProgram(HANDLE process, bool mayBackground)
{
    for (;;) {
        DWORD woke = MsgWaitForMultipleObjects(1, &process, FALSE, kPollMilliseconds, QS_ALLINPUT);
        if (woke == WAIT_OBJECT_0 || woke == WAIT_FAILED) return WaitEnd::Finished;
        WaitEnd end = PumpWaitMessages(mayBackground);
        if (end != WaitEnd::Finished) return end;
        if (!TheScreen.BreakFlag) Host->PollBreak();
        if (WaitForSingleObject(process, 0) != WAIT_TIMEOUT) return WaitEnd::Finished;
    }
}

void FinishProcess(PROCESS_INFORMATION& info)
{
    DWORD code = 0;
    if (GetExitCodeProcess(info.hProcess, &code) || GetExitCodeThread(info.hThread, &code)) ErrorLevel = int32_t(code);
    else ErrorLevel = 0;
    CloseHandle(info.hThread);
    CloseHandle(info.hProcess);
    info = PROCESS_INFORMATION{};
}

void StartAndWait(RunState& state, const ProcessStart& start)
{
    std::wstring commandLine = start.CommandLine;
    state.Startup.dwFlags |= STARTF_USESHOWWINDOW;
    state.Startup.wShowWindow = WORD(start.Show);
    bool separate = start.SeparateVdm || ProfileReadInt(L"Ombrel", L"VDM", 0);
    PROCESS_INFORMATION info{};
    if (!StartProcess(start.Program.c_str(), commandLine.data(), TRUE, separate ? CREATE_SEPARATE_WOW_VDM : 0, nullptr,
                      &state.Startup, &info)) {
        ReportId(8);
        ErrorLevel = 1;
        return;
    }
    // While GUIStart is on a GUI program gives the prompt back at once.
    int kind = ProfileReadInt(L"Ombrel", L"GUIStart", 1) ? start.Kind : 1;
    if (!start.NoWait && kind != 0) {
        // Requests from the program and its descendants are served only now.
        ServedProgram served(info.dwProcessId);
        WaitEnd end = WaitForProgram(info.hProcess, start.MayBackground);
        TheProgramKeys.Clear();
        if (end == WaitEnd::Background) {
            int number = TheTasks.Add(info.hProcess, info.dwProcessId, ShortName(start.Shown));
            if (number >= 0) {
                ShowBackground(number, ShortName(start.Shown));
                info.hProcess = nullptr; // the task list holds it now
            }
        }
        TheScreen.Paging = 0;
        Host->Refresh();
    }
    if (!info.hProcess) {
        ErrorLevel = int32_t(STILL_ACTIVE);
        CloseHandle(info.hThread);
        return;
    }
    FinishProcess(info);
    bool throughHelper = state.Mode != 0 && start.Program != start.Shown;
    if (throughHelper && DWORD(ErrorLevel) == kHelperCannotStart) {
        ReportId(8);
        ErrorLevel = 1;
    }
}
