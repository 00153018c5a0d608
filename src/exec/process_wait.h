// Starting a process and waiting for it with messages flowing. While the
// shell waits, the window repaints and requests from other programs are
// served; Ctrl-C marks the break, and Ctrl-Z hands an eligible program to
// the background task list.
#pragma once

#include "exec/run_state.h"

#include <string>

struct ProcessStart {
    std::wstring Program;     // the file started (a helper or the program)
    std::wstring CommandLine;
    std::wstring Shown;       // the program the user named, for the task list
    int Show = SW_SHOWNORMAL;
    bool NoWait = false;
    bool SeparateVdm = false;
    int Kind = -1;            // 0 a GUI program: not waited for while GUIStart is on
    bool MayBackground = true;
};

// How a wait ended.
enum class WaitEnd { Finished, Background, Quit };

// CreateProcessW with the start-up block of state; message 8 on failure.
// Waits when the kind asks for it, then sets ErrorLevel from the exit code.
void StartAndWait(RunState& state, const ProcessStart& start);

// Handles the window messages waiting now as the wait for a program does:
// Ctrl-C breaks, Ctrl-Z ends the wait when the program may go to the
// background, other characters go to TheProgramKeys.
WaitEnd PumpWaitMessages(bool mayBackground);

// Waits for process with messages flowing; name is shown if it goes to the
// background.
WaitEnd WaitForProgram(HANDLE process, bool mayBackground);

// ErrorLevel from the exit code of a process (its thread's when the process
// gives none), then closes both handles.
void FinishProcess(PROCESS_INFORMATION& info);

// The name behind the last backslash.
std::wstring ShortName(const std::wstring& path);

// Exit code of oms32.exe when it could not start the program at all.
constexpr DWORD kHelperCannotStart = 0x4F4D5338;
