// The prompt's way into the screen writer's escape sequences. The writer's
// interpreter applies colours and cursor moves to the screen; this tree has
// none yet, so a sequence is taken off the prompt and has no effect there.
#include "input/prompt.h"

void WritePromptEscape(const wchar_t* sequence) { static_cast<void>(sequence); }
