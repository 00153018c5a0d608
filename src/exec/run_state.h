// The record of one program start: how the start was prepared, the command
// line being built, the start-up block handed to the system and, on the pipe
// route, the pipes. It lives on the stack of the run it describes, so a run
// started from inside another run's wait has its own.
#pragma once

#include "app/toolkit/omdib.h"

#include <windows.h>

#include <cstdint>
#include <string>

// How a start was given to a program, as RunProgram's callers choose it.
struct LaunchOptions {
    bool AllowBatch = true;  // a batch program comes back to the caller as a path
    bool NoWait = false;     // start and return at once (start without /w)
    bool SeparateVdm = false;
    bool Debug = false;
    int Show = SW_SHOWNORMAL;
    std::wstring Title; // a console window's title; the whole line when empty
};

// The shell's ends and the child's ends of the two pipes of the pipe route.
struct PipeSet {
    HANDLE ReadFromChild = nullptr;
    HANDLE ChildWrites = nullptr;
    HANDLE WriteToChild = nullptr;
    HANDLE ChildReads = nullptr;
};

struct RunState {
    // 0 no helper; 1 redirections handed to a helper; 2 a helper without them.
    int32_t Mode = 0;
    // The helper's path, else empty: then the program found is started.
    std::wstring Helper;
    // -1 not eligible for the background and not waited by kind; 0 GUI; 1, 2 console.
    int Kind = -1;
    // The shell's redirected output was closed for the program to write.
    bool OutputHandedOver = false;
    STARTUPINFOW Startup{};
    PipeSet Pipes;
};
