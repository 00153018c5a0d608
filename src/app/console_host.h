// The console host: standard output receives every screen line, standard input
// gives lines and keys. At the end of input every wait is answered with
// Ctrl-C, so a script can never leave the program hanging; a Ctrl-C unit
// next in a piped input breaks a running command as the key would.
//
// Typed lines go through the same line editor as in the window, one unit at
// a time and Enter at each line end, so groups of lines and "More? " behave
// alike in both programs. The terminal shows what is typed, so the editor
// draws nothing here.
#pragma once

#include "app/host.h"
#include "lang/trace.h"
#include "screen/screen_store.h"

#include <string>
#include <vector>

// Tracing without a window: each line and stage is printed in the Text
// colour, and a key read from the input decides: "s" or Enter steps, "r" runs
// freely, "p", Ctrl-C or the end of input stops.
class ConsoleTraceView : public TraceView {
public:
    bool Open(const std::wstring& title) override;
    void Close() override {}
    void FillList(const std::vector<std::wstring>& lines) override;
    void Highlight(int index) override;
    void ShowStage(const wchar_t* expanded, const wchar_t* source) override;
    void EnableStepping(bool) override {}
    void WaitForUser() override;

private:
    std::vector<std::wstring> lines_;
};

class ConsoleHost : public ShellHost, public ScreenObserver {
public:
    // Becomes the host and the screen's observer.
    void Install();
    // Reads and runs lines until the input ends or exit is typed; returns the
    // exit code (ErrorLevel).
    int RunInputLoop();
    bool ExitRequested() const { return exitRequested_; }
    // Whether standard input brings the shell's command lines (it does unless
    // a /C command is all the program runs). Then a program the shell runs
    // gets none of it: its input ends at once.
    void SetInputIsCommands(bool commands) { inputIsCommands_ = commands; }
    // Writes out a line still being built and returns code.
    int Finish(int code);

    void PollBreak() override;
    wchar_t ReadKey() override;
    bool ReadLine(wchar_t* buffer, int size) override;
    void RequestExit() override { exitRequested_ = true; }
    bool Interactive() const override { return IsConsole(input_, interactive_); }
    InputEvent NextInput(InputWait wait) override;
    wchar_t PeekKey() override;
    bool TerminalEchoes() const override { return true; }
    bool LendsConsole() const override;
    void LendConsole() override;
    void TakeConsoleBack() override;
    void LineCompleted(int y) override;

private:
    // The next typed unit, a line end of any form being one CR; false at the
    // end of input.
    bool NextUnit(InputWait wait, wchar_t& unit);
    bool FillTyped();
    bool TakeTypedBreak();
    bool MoreInputWaiting() const;
    bool FillPending();
    bool ReadRawLine(std::string& line);
    bool ReadConsoleLine(std::wstring& line);
    bool ReadConsoleKey(wchar_t& unit);
    void EndTypedLine();
    void Emit(const std::wstring& line);
    static bool IsConsole(void* handle, signed char& known);

    void* input_ = nullptr;
    void* output_ = nullptr;
    // 1 when the handle is a console, 0 when not, -1 until asked.
    mutable signed char interactive_ = -1;
    mutable signed char consoleOutput_ = -1;
    unsigned long inputType_ = 0; // FILE_TYPE_* of standard input
    // The console's modes while a program has it; kept only when known.
    unsigned long lentInputMode_ = 0, lentOutputMode_ = 0;
    bool inputModeKept_ = false, outputModeKept_ = false;
    bool exitRequested_ = false;
    bool inputIsCommands_ = true;
    bool inputEnded_ = false;
    bool skipNextLine_ = false;
    std::string pending_;
    size_t pendingPos_ = 0;
    std::wstring typed_;
    size_t typedPos_ = 0;
    ConsoleTraceView traceView_;
};
