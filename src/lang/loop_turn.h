// One turn of a loop body (for, while, do, until): the body runs as a
// statement of the loop's caller, and after it the loop listens for Ctrl-C
// and asks the "Terminate Batch" question, at the prompt as well.
#pragma once

// Runs statement (a writable line buffer of 4096 units, parsed in place).
// False when the loop must end: a goto or gosub left it, everything is to
// stop, or the user answered the question with yes.
bool RunLoopTurn(wchar_t* statement);
