// The relay between a running console program and the shell's window: what
// the program shows goes to the shell's screen by write requests, keys typed
// in the shell go to the program, and Ctrl-C in the shell becomes Ctrl-C for
// the program (which is stopped when it does not end on it). When the shell
// stops answering (the run was sent to the
// background), the program runs on without a screen and its input ends.
#pragma once

#include "console_child.h"
#include "vt_translator.h"

#include <string>

class Relay {
public:
    Relay(ConsoleChild& child, VtTranslator& translator) : child_(child), translator_(translator) {}

    // Relays until the program has ended and its last output is shown.
    void Run();

private:
    void ShowOutput();
    void Show(const std::wstring& text);
    void PassKeys();
    void PassKey(wchar_t key);
    void FeedTyped();
    void EditLine(wchar_t key);
    void WatchBreak();
    void SendBreak();

    ConsoleChild& child_;
    VtTranslator& translator_;
    bool detached_ = false;   // the shell no longer answers
    bool inputEnded_ = false;
    bool breakSent_ = false;
    ULONGLONG breakAt_ = 0;   // when Ctrl-C went to the program, else 0
    DWORD pollInterval_ = 25; // milliseconds between looks for keys
    std::wstring line_;       // the line typed so far, on pipes
    std::wstring typed_;      // keys taken in one look, for the pseudo console
    bool inSequence_ = false; // within a key's escape sequence, on pipes
};
