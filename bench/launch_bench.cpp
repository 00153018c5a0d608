// Program starts and the pipe route.
//   1. A batch file that starts a trivial console program 200 times, run by
//      ombc.exe and by the system's command processor, side by side.
//   2. A program writing 100 MB of text lines through the pipe route into the
//      screen store, in MB/s.
//
//   wine-run launch_bench.exe [starts] [megabytes]
#include "bench_support.h"

#include "lang/shell_command.h"
#include "screen/screen_store.h"

#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

std::string Narrow(const std::wstring& text)
{
    std::string bytes;
    for (wchar_t c : text) bytes += char(c);
    return bytes;
}

void StartsFromBatch(int starts)
{
    wchar_t here[MAX_PATH];
    GetCurrentDirectoryW(MAX_PATH, here);
    std::wstring batch = std::wstring(here) + L"\\bench_starts.bat";
    std::string program = "\"" + Narrow(ProgramFolder()) + "exit_with.exe\" 1\r\n";
    std::string text = "@echo off\r\n";
    for (int i = 0; i < starts; ++i) text += program;
    WriteText(batch, text);
    double ombc = TimeRun(L"\"" + ProgramFolder() + L"ombc.exe\" /C \"" + batch + L"\"");
    double cmd = TimeRun(L"cmd.exe /c \"" + batch + L"\"");
    std::printf("%d starts of a console program from a batch file\n", starts);
    std::printf("%-12s %10.3f s  %8.1f starts/s\n", "ombc.exe", ombc, ombc > 0 ? starts / ombc : 0.0);
    if (cmd >= 0) std::printf("%-12s %10.3f s  %8.1f starts/s\n", "cmd.exe", cmd, cmd > 0 ? starts / cmd : 0.0);
    else std::printf("%-12s not available\n", "cmd.exe");
    DeleteFileW(batch.c_str());
}

// The screen's own ceiling: the same lines written straight to the store.
void ScreenOnly(int megabytes)
{
    std::wstring chunk;
    while (chunk.size() < 8000) chunk += L"00000001 abcdefghijklmnopqrstuvwxyz ABCDEFGHIJKLMNOPQRSTUVWXYZ 0123\r\n";
    long turns = long(megabytes) * (1 << 20) / long(chunk.size());
    LARGE_INTEGER start, end;
    QueryPerformanceCounter(&start);
    for (long i = 0; i < turns; ++i) TheScreen.ConsoleWrite(chunk.c_str(), 0, 0);
    QueryPerformanceCounter(&end);
    double seconds = Seconds(start, end);
    std::printf("%-12s %10.3f s  %8.1f MB/s (the same lines written to the screen directly)\n", "screen", seconds,
                seconds > 0 ? megabytes / seconds : 0.0);
}

void PipeThroughput(int megabytes)
{
    std::wstring line = L"\"" + ProgramFolder() + L"flood.exe\" mb " + std::to_wstring(megabytes);
    LARGE_INTEGER start, end;
    QueryPerformanceCounter(&start);
    CommandRunning = 1;
    TheShell.RunLine(line.c_str());
    CommandRunning = 0;
    QueryPerformanceCounter(&end);
    double seconds = Seconds(start, end);
    std::printf("%d MB of text lines through the pipe route into the screen\n", megabytes);
    std::printf("%-12s %10.3f s  %8.1f MB/s (exit code %d)\n", "ombrel", seconds,
                seconds > 0 ? megabytes / seconds : 0.0, int(ErrorLevel));
}

} // namespace

int main(int argc, char** argv)
{
    int starts = argc > 1 ? std::atoi(argv[1]) : 200;
    int megabytes = argc > 2 ? std::atoi(argv[2]) : 100;
    StartsFromBatch(starts);
    PipeThroughput(megabytes);
    ScreenOnly(megabytes);
    return 0;
}
