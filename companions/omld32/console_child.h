// ConsoleChild: the program the loader runs, behind oms32.exe (which hands it
// the run's redirections and ends with its exit code). Two ways to give it a
// console:
//   - a pseudo console, when the system has one: the program sees a real
//     console of the given size; what it shows arrives as terminal text,
//     keys go in as terminal input;
//   - two pipes otherwise: the program's output arrives as it wrote it, and
//     its input is fed line by line.
// A thread of its own reads the output, so reading never holds up the
// requests to the shell; the loader picks the bytes up with TakeOutput.
#pragma once

#include <windows.h>

#include <string>

class ConsoleChild {
public:
    ConsoleChild();
    ~ConsoleChild();
    ConsoleChild(const ConsoleChild&) = delete;
    ConsoleChild& operator=(const ConsoleChild&) = delete;

    // Starts helper (oms32.exe) in a pseudo console of width by height, or on
    // pipes when there is none or it cannot be made (or pipesOnly is set).
    bool Start(const std::wstring& helper, int width, int height, bool pipesOnly);
    bool PseudoConsole() const { return console_ != nullptr; }

    // Signalled when output waits or the output has ended.
    HANDLE OutputEvent() const { return outputEvent_; }
    HANDLE Process() const { return process_; }
    // Bytes read so far; empty when none wait. OutputEnded once every writer
    // has gone and everything was taken.
    std::string TakeOutput();
    bool OutputEnded();

    // Bytes for the program's input; false once the input is closed.
    bool Feed(const std::string& bytes);
    // The program's input ends (end of file for a program that reads).
    void EndInput();
    // Ctrl-C for the program.
    void Break();
    // Ends the program and whatever it started, as Ctrl-C would.
    void Stop();
    // After the program ended: the last output is flushed, then the pseudo
    // console is closed. Waits at most a moment for the reading thread.
    void Finish();
    DWORD ExitCode() const;

private:
    static DWORD WINAPI ReadOutput(void* self);
    bool StartInPseudoConsole(const std::wstring& helper, int width, int height);
    bool StartOnPipes(const std::wstring& helper);
    bool StartHelper(const std::wstring& helper, STARTUPINFOW& startup, bool inherit, DWORD flags);
    bool StartReader();

    void* console_ = nullptr; // HPCON
    HANDLE process_ = nullptr;
    HANDLE job_ = nullptr;
    DWORD processId_ = 0;
    HANDLE inputWrite_ = nullptr;
    HANDLE outputRead_ = nullptr;
    HANDLE reader_ = nullptr;
    HANDLE outputEvent_ = nullptr;
    CRITICAL_SECTION lock_;
    std::string output_;
    bool readerDone_ = false;
};
