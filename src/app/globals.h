// Process-wide flags of the application frame. Plain globals on purpose: the
// whole program runs on one thread and every part reads them.
#pragma once

#include <windows.h>

extern HWND MainWindow;
extern HINSTANCE AppInstance;
// 1 when no other main window existed when this process started.
extern int FirstInstance;
// 1 while a command line or start-up work runs: the one gate against re-entry.
extern int CommandRunning;
// The configurable statement separator; "&" always separates as well.
extern wchar_t CharSplit;
extern int UnicodeRedirection;
extern int TickCount;
extern int EightBitDisplay;
extern int TahomaPresent;
// The module's full name and, when there is one, a blank and the command line.
extern wchar_t SelfCommandLine[4096];

struct OsFlagSet {
    bool IsWin32s = false;
    bool IsWin9x = false;
    bool IsNT4 = false;
    bool IsWin2000 = false;
    bool IsXP = false;
    bool IsVista = false;
    bool IsWin7 = false;
    bool IsWin8 = false;
};
extern OsFlagSet OsFlags;

// The platform's true version (6.1 when it will not tell).
OSVERSIONINFOW PlatformVersion();
// Reads the platform version once; the flags never change afterwards.
void InitOsFlags();
// CharSplit from its setting: a printable character, else "&".
void LoadCharSplit();
