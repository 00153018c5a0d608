// What the interpreter needs from whichever program hosts it: the window
// program or the console program. The logic never reaches for a window;
// waiting for keys, polling for Ctrl-C and ending the program go through here.
#pragma once

class ShellHost {
public:
    virtual ~ShellHost() = default;
    // Handles pending events without waiting; sets BreakFlag on Ctrl-C.
    virtual void PollBreak() = 0;
    // Waits for one character; 3 is Ctrl-C. At the end of input it is Ctrl-C.
    virtual wchar_t ReadKey() = 0;
    // Waits for one line of at most size - 1 units; false when the input ended
    // or the user pressed Ctrl-C.
    virtual bool ReadLine(wchar_t* buffer, int size) = 0;
    // The exit command outside a batch program: end the shell.
    virtual void RequestExit() = 0;
    // Whether a person answers at this host (prompts are shown only then).
    virtual bool Interactive() const = 0;
};

// The host in charge; a host with no input is installed until a real one is.
extern ShellHost* Host;
