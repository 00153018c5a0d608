// The window host: waits are nested message loops on the one thread, and
// Ctrl-C arrives as a character message to the main window.
#pragma once

#include "app/host.h"

class WindowHost : public ShellHost {
public:
    void Install() { Host = this; }
    void PollBreak() override;
    wchar_t ReadKey() override;
    bool ReadLine(wchar_t* buffer, int size) override;
    void RequestExit() override;
    bool Interactive() const override { return true; }
};
