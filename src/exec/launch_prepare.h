// Preparing a program start and undoing it. Everything the shell tells a
// helper program travels in environment variables whose names begin with
// "=": set just before the start, removed after it (also after a failure),
// so no child started later ever sees a stale one.
//
// The helper choice is the seam for console capture: ChooseHelper names the
// program that stands in front of a console program, and CaptureApplies says
// whether the run goes through the capture routes (the loader route when the
// helper is the console loader, else the pipe route) instead of a plain
// process start.
#pragma once

#include "exec/run_handover.h"
#include "exec/run_state.h"

// Prepares the start of program with its whole command line: hands the
// shell's redirections over, sets the variables and chooses the helper.
// Returns the mode (0, 1, 2), or -1 when the environment refused a variable.
int PrepareRun(RunState& state, const wchar_t* program, const wchar_t* commandLine, bool noWait);
// Removes every variable a preparation may have set and gives the shell its
// redirected output back, positioned behind what the program wrote.
void UndoRun(RunState& state);

// The shell's own part of a helper's hand-over, where the shell starts the
// program itself: opens the run's redirections into files and takes the run
// variables away, all but the call window. On failure message 35 and
// ErrorLevel 1, and false.
bool TakeHandOver(HandedFiles& files);

// The console loader's file name; a helper path that holds it takes the
// loader route.
inline constexpr wchar_t kLoaderName[] = L"omld32.exe";

// The full name of the helper program for a console program of this kind:
// the console loader beside the shell when console emulation applies, else
// oms32.exe beside the shell.
std::wstring ChooseHelper(const wchar_t* program, int kind, bool noWait);
bool NamesLoader(const std::wstring& helper);
// Whether a console program of this kind runs under capture.
bool CaptureApplies(const wchar_t* program, int kind);

// Sets one of the "=" variables of a run; false when the environment refused.
bool SetRunVariable(const wchar_t* name, const wchar_t* value);

// The shell's own folder with a file name added.
std::wstring BesideShell(const wchar_t* name);
