// Timing whole programs side by side: the folder that holds the benchmark
// (and ombc.exe beside it), and a command line run with its output discarded.
#pragma once

#include <windows.h>

#include <string>

// The benchmark's own folder, with a backslash behind it.
inline std::wstring ProgramFolder()
{
    wchar_t self[MAX_PATH];
    GetModuleFileNameW(nullptr, self, MAX_PATH);
    std::wstring path = self;
    return path.substr(0, path.find_last_of(L"\\/") + 1);
}

// Runs a command line with its output discarded; seconds taken, or -1.
inline double TimeRun(std::wstring commandLine)
{
    SECURITY_ATTRIBUTES inherit{sizeof(inherit), nullptr, TRUE};
    // Empty input: a question asked by mistake is answered at once.
    HANDLE nul = CreateFileW(L"NUL", GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, &inherit,
                             OPEN_EXISTING, 0, nullptr);
    STARTUPINFOW startup{};
    startup.cb = sizeof(startup);
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdOutput = nul;
    startup.hStdError = nul;
    startup.hStdInput = nul;
    PROCESS_INFORMATION process{};
    LARGE_INTEGER frequency, start, end;
    QueryPerformanceFrequency(&frequency);
    QueryPerformanceCounter(&start);
    BOOL ok = CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, TRUE, CREATE_NO_WINDOW, nullptr, nullptr,
                             &startup, &process);
    if (nul != INVALID_HANDLE_VALUE) CloseHandle(nul);
    if (!ok) return -1;
    WaitForSingleObject(process.hProcess, INFINITE);
    QueryPerformanceCounter(&end);
    CloseHandle(process.hProcess);
    CloseHandle(process.hThread);
    return double(end.QuadPart - start.QuadPart) / double(frequency.QuadPart);
}
