// The pipe route: a console program runs with its
// standard handles on two pipes. The shell shows what arrives on the output
// pipe as it arrives, and sends each line typed meanwhile to the input pipe.
//
// One thread does all of it: the wait wakes on the process, on a finished
// read of the output pipe and on window messages, so output never waits for
// a timer. The output pipe is a named pipe read with overlapped reads for
// that reason: an anonymous pipe cannot be waited on.
#pragma once

#include "exec/run_state.h"

// Starts program with commandLine on the pipes, or on the files that the
// run's variables name, and waits for it; sets ErrorLevel from its exit code.
// The shell does the helper's hand-over itself here. When the pipes cannot be
// made, the helper starts the program in a console of its own instead.
void RunOnPipes(RunState& state, const wchar_t* program, const wchar_t* commandLine, const LaunchOptions& options);
