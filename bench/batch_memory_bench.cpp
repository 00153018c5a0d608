// Loading big batch programs: the peak working set and the time of ombc.exe.
// The shell is kept running with a pipe for its input, so the figure is read
// while the process still lives; the empty program's figure is the baseline.
// The system's command processor reads a batch file a line at a time and
// keeps nothing, so there is no figure of its to set beside these.
//
//   wine-run batch_memory_bench.exe [megabytes [shell.exe]]
#include "bench_support.h"

#include <windows.h>

#include <psapi.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

struct Measure {
    double Seconds = -1;
    double PeakMegabytes = 0;
};

// Writes count copies of line.
bool WriteRepeated(const std::wstring& path, const std::string& head, const std::string& line, size_t count)
{
    HANDLE h = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    if (h == INVALID_HANDLE_VALUE) return false;
    DWORD written;
    WriteFile(h, head.data(), DWORD(head.size()), &written, nullptr);
    std::string block;
    for (size_t i = 0; i < 4096; ++i) block += line;
    for (size_t left = count; left > 0;) {
        size_t n = left < 4096 ? left : 4096;
        WriteFile(h, block.data(), DWORD(n * line.size()), &written, nullptr);
        left -= n;
    }
    CloseHandle(h);
    return true;
}

double MegabytesOf(const std::wstring& path)
{
    WIN32_FILE_ATTRIBUTE_DATA data;
    if (!GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &data)) return 0;
    return (double(data.nFileSizeHigh) * 4294967296.0 + data.nFileSizeLow) / 1048576.0;
}

// Starts a shell that reads typed lines, types the program's name and an
// echo of a marker, and waits for the marker: then the program has ended and
// the shell still lives.
Measure RunTyped(std::wstring commandLine, const std::string& program)
{
    Measure measure;
    SECURITY_ATTRIBUTES inherit{sizeof(inherit), nullptr, TRUE};
    HANDLE outRead, outWrite, inRead, inWrite;
    if (!CreatePipe(&outRead, &outWrite, &inherit, 0) || !CreatePipe(&inRead, &inWrite, &inherit, 0)) return measure;
    SetHandleInformation(outRead, HANDLE_FLAG_INHERIT, 0);
    SetHandleInformation(inWrite, HANDLE_FLAG_INHERIT, 0);
    STARTUPINFOW startup{};
    startup.cb = sizeof(startup);
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = inRead;
    startup.hStdOutput = outWrite;
    startup.hStdError = outWrite;
    PROCESS_INFORMATION process{};
    BOOL started = CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, TRUE, CREATE_NO_WINDOW, nullptr,
                                  nullptr, &startup, &process);
    CloseHandle(outWrite);
    CloseHandle(inRead);
    if (started) {
        std::string typed = program + "\r\necho @@done@@\r\n";
        DWORD written = 0, got = 0;
        LARGE_INTEGER start, end;
        QueryPerformanceCounter(&start);
        WriteFile(inWrite, typed.data(), DWORD(typed.size()), &written, nullptr);
        std::string seen;
        char chunk[4096];
        while (seen.find("@@done@@\r") == std::string::npos && ReadFile(outRead, chunk, sizeof(chunk), &got, nullptr) &&
               got > 0)
            seen.append(chunk, got);
        QueryPerformanceCounter(&end);
        LARGE_INTEGER frequency;
        QueryPerformanceFrequency(&frequency);
        measure.Seconds = double(end.QuadPart - start.QuadPart) / double(frequency.QuadPart);
        PROCESS_MEMORY_COUNTERS counters{};
        counters.cb = sizeof(counters);
        if (GetProcessMemoryInfo(process.hProcess, &counters, sizeof(counters)))
            measure.PeakMegabytes = double(counters.PeakWorkingSetSize) / 1048576.0;
        CloseHandle(inWrite);
        inWrite = nullptr;
        WaitForSingleObject(process.hProcess, 10000);
        TerminateProcess(process.hProcess, 0);
        CloseHandle(process.hProcess);
        CloseHandle(process.hThread);
    }
    if (inWrite) CloseHandle(inWrite);
    CloseHandle(outRead);
    return measure;
}

std::wstring shell = L"ombc.exe";

void Report(const char* what, const std::wstring& path, const std::string& name, const Measure& empty)
{
    double utf16 = 2 * MegabytesOf(path);
    Measure ours = RunTyped(L"\"" + ProgramFolder() + shell + L"\"", name);
    std::printf("%s (%.1f MB in UTF-16)\n", what, utf16);
    std::printf("  %8.2f s  peak %8.1f MB, %8.1f MB above the empty program (%.2f x UTF-16)\n", ours.Seconds,
                ours.PeakMegabytes, ours.PeakMegabytes - empty.PeakMegabytes,
                (ours.PeakMegabytes - empty.PeakMegabytes) / utf16);
}

} // namespace

int main(int argc, char** argv)
{
    size_t megabytes = argc > 1 ? size_t(std::atoi(argv[1])) : 50;
    if (argc > 2) shell = std::wstring(argv[2], argv[2] + std::strlen(argv[2]));
    wchar_t here[MAX_PATH];
    GetCurrentDirectoryW(MAX_PATH, here);
    std::wstring scratch = std::wstring(here) + L"\\";
    std::wstring emptyFile = scratch + L"empty_prog.bat";
    std::wstring blank = scratch + L"blank_lines.bat";
    std::wstring shortLines = scratch + L"short_lines.bat";
    std::wstring hundred = scratch + L"hundred_k.bat";
    WriteRepeated(emptyFile, "@echo off\r\n", "", 0);
    WriteRepeated(blank, "@echo off\r\n", "\r\n", megabytes * 1048576 / 2);
    WriteRepeated(shortLines, "@echo off\r\n", "rem\r\n", megabytes * 1048576 / 5);
    WriteRepeated(hundred, "@echo off\r\n", "rem a line of about forty-five characters.\r\n", 100000);

    Measure empty = RunTyped(L"\"" + ProgramFolder() + shell + L"\"", "empty_prog.bat");
    std::printf("%ls: peak working set after loading and running a batch program\n", shell.c_str());
    std::printf("empty program: peak %.1f MB\n", empty.PeakMegabytes);
    Report("100,000 lines of 45 characters", hundred, "hundred_k.bat", empty);
    Report("blank lines", blank, "blank_lines.bat", empty);
    Report("short lines (rem)", shortLines, "short_lines.bat", empty);
    for (const std::wstring* path : {&emptyFile, &blank, &shortLines, &hundred}) DeleteFileW(path->c_str());
    return 0;
}
