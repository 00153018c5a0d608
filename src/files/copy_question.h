// The question of scopy and smove before they overwrite a file:
// " Overwrite (Y/N/S/A)?", and for N a new name for the destination.
#pragma once

#include <string>

enum class OverwriteAnswer {
    Overwrite, // Y, or A (which also sets overwriteAll)
    Skip,      // S: the file counts as done and is not copied
    Renamed,   // N: destination now holds the name typed
    Stop,      // Ctrl-C, or no new name
};

OverwriteAnswer AskOverwrite(int& overwriteAll, std::wstring& destination);
