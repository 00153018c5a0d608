// Small pieces the benchmarks share: a clock, a timed run of another program,
// and the real main window with its host, for measurements that need the window.
#pragma once

#include "app/globals.h"
#include "app/main_window.h"
#include "app/window_host.h"
#include "lang/shell_command.h"

#include <windows.h>

#include <string>

// The folder of this program, with its backslash: ombc.exe stands beside it.
inline std::wstring ProgramFolder()
{
    wchar_t self[MAX_PATH];
    GetModuleFileNameW(nullptr, self, MAX_PATH);
    std::wstring path = self;
    return path.substr(0, path.find_last_of(L"\\/") + 1);
}

inline double Seconds(LARGE_INTEGER start, LARGE_INTEGER end)
{
    LARGE_INTEGER frequency;
    QueryPerformanceFrequency(&frequency);
    return double(end.QuadPart - start.QuadPart) / double(frequency.QuadPart);
}

// flood.exe writing megabytes of text lines, run by this process's shell as
// a typed command would be (capture as the settings say); seconds taken.
inline double TimeFlood(int megabytes)
{
    std::wstring line = L"\"" + ProgramFolder() + L"flood.exe\" mb " + std::to_wstring(megabytes);
    LARGE_INTEGER start, end;
    QueryPerformanceCounter(&start);
    CommandRunning = 1;
    TheShell.RunLine(line.c_str());
    CommandRunning = 0;
    QueryPerformanceCounter(&end);
    return Seconds(start, end);
}

// Where a timed run's standard handles go: to NUL (output discarded, input
// empty), or to a console of its own with no window, as at a command prompt.
enum class Where { Nul, Console };

// Runs a command line with its standard handles as where says; seconds taken,
// or -1.
inline double TimeRun(std::wstring commandLine, Where where = Where::Nul)
{
    SECURITY_ATTRIBUTES inherit{sizeof(inherit), nullptr, TRUE};
    HANDLE nul = CreateFileW(L"NUL", GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, &inherit,
                             OPEN_EXISTING, 0, nullptr);
    STARTUPINFOW startup{};
    startup.cb = sizeof(startup);
    startup.dwFlags = where == Where::Nul ? STARTF_USESTDHANDLES : 0;
    startup.hStdOutput = nul;
    startup.hStdError = nul;
    startup.hStdInput = nul;
    PROCESS_INFORMATION process{};
    LARGE_INTEGER start, end;
    QueryPerformanceCounter(&start);
    BOOL ok = CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, TRUE, CREATE_NO_WINDOW, nullptr, nullptr,
                             &startup, &process);
    if (nul != INVALID_HANDLE_VALUE) CloseHandle(nul);
    if (!ok) return -1;
    WaitForSingleObject(process.hProcess, INFINITE);
    QueryPerformanceCounter(&end);
    CloseHandle(process.hProcess);
    CloseHandle(process.hThread);
    return Seconds(start, end);
}

// A run short enough that a moment of load elsewhere on the machine would
// swing it: the best of three, or -1.
inline double BestOfThree(const std::wstring& commandLine)
{
    double best = -1;
    for (int run = 0; run < 3; ++run) {
        double seconds = TimeRun(commandLine);
        if (seconds >= 0 && (best < 0 || seconds < best)) best = seconds;
    }
    return best;
}

// The first start of a program in a fresh prefix pays for the platform's own
// caches; each shell is started once untimed so that no figure carries it.
inline void WarmUpShells()
{
    TimeRun(L"\"" + ProgramFolder() + L"ombc.exe\" /C rem");
    TimeRun(L"cmd.exe /c rem");
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

inline bool WriteText(const std::wstring& path, const std::string& text)
{
    HANDLE h = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    if (h == INVALID_HANDLE_VALUE) return false;
    DWORD written;
    bool ok = WriteFile(h, text.data(), DWORD(text.size()), &written, nullptr) && written == text.size();
    CloseHandle(h);
    return ok;
}
