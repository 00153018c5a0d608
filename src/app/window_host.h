// The window host: waits are nested message loops on the one thread, and
// Ctrl-C arrives as a character message to the main window. The caret is
// the main window's, at the screen's cursor.
#pragma once

#include "app/host.h"

class WindowHost : public ShellHost {
public:
    // Becomes the host, and attaches the clipboard to the editor.
    void Install();
    void PollBreak() override;
    wchar_t ReadKey() override;
    bool ReadLine(wchar_t* buffer, int size) override;
    void RequestExit() override;
    bool Interactive() const override { return true; }
    InputEvent NextInput(InputWait wait) override;
    void ShowCaret() override;
    void HideCaret() override;
    void RebuildCaret() override;
    void Refresh() override;
    void AcceptDrops(bool accept) override;
    bool TypesToPrograms() const override { return true; }

private:
    // Net count of shows over hides, so a rebuilt caret keeps its nesting.
    int caretCount_ = 0;
};

// Ctrl and Shift as held now.
unsigned CurrentModifiers();
