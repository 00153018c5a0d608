// The loader route: a console program runs under the console loader
// omld32.exe, hidden, and its console comes to the shell's screen through the
// loader's requests, which the wait for the loader serves. The loader reads
// everything it needs from the run variables; "=imgbase" names a scratch file
// made for it here and removed after the run.
#pragma once

#include "exec/run_state.h"

// Starts the loader in state.Helper for program and waits for it; ErrorLevel
// is the loader's exit code, which is the program's. A missing loader shows
// a message box and leaves ErrorLevel as it was.
void RunUnderLoader(RunState& state, const wchar_t* program, const LaunchOptions& options);
