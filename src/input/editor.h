// CommandLineEditor: the line being typed at the prompt, and the buffer of the
// line submitted to run. Both hosts read their lines through it.
#pragma once

#include "app/toolkit/omdib.h"

class CommandLineEditor {
public:
    // The line handed to RunTopLevelLine.
    wchar_t Submitted[kLineMax] = {};

    // Puts text on the edit line as if typed; with submit, it becomes the
    // submitted line (cut silently at 4095 units).
    void TypeLine(const wchar_t* text, bool submit);
};

extern CommandLineEditor TheEditor;
