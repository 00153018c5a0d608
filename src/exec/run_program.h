// Starting what a word names when it is no built-in command: a directory to
// change to, a batch program for the caller to run, an external command, a
// shortcut, a file with an associated program, or a program. Programs are
// waited for with messages flowing, and their exit code is the ErrorLevel.
#pragma once

#include "exec/run_state.h"

#include <string>

// Runs the stage that CommandArgs holds. A batch program found while
// options.AllowBatch is set comes back as its full path, for the caller to
// run; everything else runs here and the result is empty. The stage may be
// parsed again (an association rewrites it), so CommandArgs must not be used
// by the caller afterwards.
std::wstring RunProgram(const LaunchOptions& options);

// Whether word names a batch program (for callers that require one).
bool IsBatchProgram(const wchar_t* word);
