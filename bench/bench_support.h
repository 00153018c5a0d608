// Small pieces the benchmarks share: a clock, and the real main window with
// its host, for measurements that need the window.
#pragma once

#include "app/globals.h"
#include "app/main_window.h"
#include "app/window_host.h"

#include <windows.h>

inline double Seconds(LARGE_INTEGER start, LARGE_INTEGER end)
{
    LARGE_INTEGER frequency;
    QueryPerformanceFrequency(&frequency);
    return double(end.QuadPart - start.QuadPart) / double(frequency.QuadPart);
}

// Creates the main window and installs the window host; false when the
// window cannot be made (no display).
inline bool OpenBenchWindow(WindowHost& host)
{
    HINSTANCE instance = GetModuleHandleW(nullptr);
    if (!RegisterWindowClasses(instance)) return false;
    MainWindow = CreateMainWindow(instance);
    if (!MainWindow) return false;
    host.Install();
    return true;
}
