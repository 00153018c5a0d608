// What the interpreter needs from whichever program hosts it: the window
// program or the console program. The logic never reaches for a window;
// waiting for keys, polling for Ctrl-C and ending the program go through here.
#pragma once

// Modifier keys held when a key or character arrived.
enum KeyModifier : unsigned {
    ModCtrl = 1,
    ModShift = 2,
};

// What a wait is for: a single key lets the host handle key presses itself
// (so scrollback keys work); a line read wants them for the line editor. The
// pager's wait is a key wait that also hears of the screen changing height.
enum class InputWait { Key, Line, Page };

enum class InputKind {
    Char,    // a typed character, in Unit
    KeyDown, // a key press, virtual key in Unit (line reads only)
    End,     // the program is ending: no key will come
    Resized, // the screen changed height (page waits only)
};

struct InputEvent {
    InputKind Kind = InputKind::End;
    unsigned Unit = 0;
    unsigned Modifiers = 0;
};

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
    // A key that a read would give at once, left for that read: 0 when none
    // is there yet, Ctrl-Z (0x1A) when the input has ended. Hosts whose keys
    // arrive as window messages have none here (the wait for a program
    // collects those).
    virtual wchar_t PeekKey() { return 0; }
    // Whether a person answers at this host (prompts are shown only then).
    virtual bool Interactive() const = 0;

    // The next key event of a wait; everything else that arrives meanwhile is
    // handled by the host. A host that only has characters gives ReadKey's.
    virtual InputEvent NextInput(InputWait wait) { return {InputKind::Char, ReadKey(), 0}; }
    // True when the terminal itself shows what is typed, so the line editor
    // must not draw the line or end it on the screen.
    virtual bool TerminalEchoes() const { return false; }
    // The caret stands at the screen's cursor; show and hide nest.
    virtual void ShowCaret() {}
    virtual void HideCaret() {}
    // Gives the caret the shape of the editor's insert or overwrite mode.
    virtual void RebuildCaret() {}
    // Makes what changed in the screen store visible.
    virtual void Refresh() {}
    // Whether lines typed while a console program runs go to its input; when
    // not, the program's input ends at once.
    virtual bool TypesToPrograms() const { return false; }
    // Whether console programs run in the shell's own console, as they would
    // under a console shell, instead of being captured: ombc.exe at a console.
    virtual bool LendsConsole() const { return false; }
    // Before a program writes to the lent console: the row being built is
    // shown there, so the program's text follows it.
    virtual void LendConsole() {}
    // After it: the console's modes are the shell's again.
    virtual void TakeConsoleBack() {}
    // Dropped files are taken only while the editor waits at the prompt.
    virtual void AcceptDrops(bool accept) {}
};

// The host in charge; a host with no input is installed until a real one is.
extern ShellHost* Host;
