// The program's own command line: [USE=x|INI=x] [/C] [/U|/A] [command], or
// /x DIRECTORY. The window program and the console program share it.
#pragma once

#include <string>

struct StartupArgs {
    // Directory of the /x form; when set, nothing else was read.
    std::wstring Directory;
    bool RunAndClose = false;
    // 'U' or 'A' when one was given (the first of the two wins), else 0.
    wchar_t Redirection = 0;
    // The command to run, empty when there is none.
    std::wstring Command;
};

// arguments is the command line without the program name.
StartupArgs ParseStartupArgs(const wchar_t* arguments);

// The /U or /A choice, applied and saved so that it lasts.
void ApplyRedirectionChoice(const StartupArgs& args);
