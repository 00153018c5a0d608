// A console program in the shell's own console. ombc.exe at a console lends
// it to the programs it runs, as a console shell does: they write and read
// there themselves, with colours, cursor moves and line input, and a start
// costs one process. The shell does the helper's hand-over itself, so no
// oms32.exe stands in front.
#pragma once

#include "exec/process_wait.h"

// Opens the run's redirections, starts the program on them or on the
// shell's own standard handles, and waits for it as any start does.
void RunInLentConsole(RunState& state, const ProcessStart& start);
