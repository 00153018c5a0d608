// Loops of for, run by ombc.exe and by the system's own command processor,
// timed side by side: a count of a million turns with arithmetic, and /f over
// a large file, in lines per second.
//
//   wine-run for_bench.exe [turns] [megabytes]
#include "bench_support.h"

#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

// A file of lines of 100 bytes, megabytes long; the number of lines.
long long WriteDataFile(const std::wstring& path, int megabytes)
{
    std::string line(98, 'x');
    line.replace(0, 6, "word1 ");
    line += "\r\n";
    std::string block;
    for (int i = 0; i < 10000; ++i) block += line;
    HANDLE h = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    if (h == INVALID_HANDLE_VALUE) return 0;
    long long lines = 0;
    long long target = (long long)megabytes * 1000000;
    for (long long size = 0; size < target; size += (long long)block.size(), lines += 10000) {
        DWORD written;
        WriteFile(h, block.data(), DWORD(block.size()), &written, nullptr);
    }
    CloseHandle(h);
    return lines;
}

void Report(const char* what, double ombc, double cmd, double units, const char* unitName)
{
    std::printf("%s\n", what);
    std::printf("%-12s %10.3f s  %14.0f %s/s\n", "ombc.exe", ombc, ombc > 0 ? units / ombc : 0.0, unitName);
    if (cmd >= 0) std::printf("%-12s %10.3f s  %14.0f %s/s\n", "cmd.exe", cmd, cmd > 0 ? units / cmd : 0.0, unitName);
    else std::printf("%-12s not available\n", "cmd.exe");
    if (ombc > 0 && cmd > 0) std::printf("ombc.exe is %.1f times as fast\n\n", cmd / ombc);
}

} // namespace

int main(int argc, char** argv)
{
    int turns = argc > 1 ? std::atoi(argv[1]) : 1000000;
    int megabytes = argc > 2 ? std::atoi(argv[2]) : 100;
    std::string limit = std::to_string(turns);
    std::wstring ombc = L"\"" + ProgramFolder() + L"ombc.exe\" /C ";
    wchar_t here[MAX_PATH];
    GetCurrentDirectoryW(MAX_PATH, here);
    std::wstring scratch = std::wstring(here) + L"\\";

    WarmUpShells();
    std::wstring ours = scratch + L"bench_count.bat", theirs = scratch + L"bench_count_cmd.bat";
    WriteText(ours, "@echo off\r\nset n=0\r\nfor %%i is 1 to " + limit + " do let n=n+1\r\necho %n%\r\n");
    WriteText(theirs, "@echo off\r\nset n=0\r\nfor /L %%i in (1,1," + limit + ") do set /a n+=1\r\necho %n%\r\n");
    Report(("for count of " + limit + " turns with arithmetic").c_str(), BestOfThree(ombc + L"\"" + ours + L"\""),
           TimeRun(L"cmd.exe /c \"" + theirs + L"\""), turns, "turns");

    std::wstring data = scratch + L"bench_data.txt";
    long long lines = WriteDataFile(data, megabytes);
    WriteText(ours, "@echo off\r\nfor /f %%a in (bench_data.txt) do set w=%%a\r\n");
    WriteText(theirs, "@echo off\r\nfor /f %%a in (bench_data.txt) do set w=%%a\r\n");
    Report(("for /f over " + std::to_string(megabytes) + " MB, " + std::to_string(lines) + " lines").c_str(),
           BestOfThree(ombc + L"\"" + ours + L"\""), TimeRun(L"cmd.exe /c \"" + theirs + L"\""), double(lines), "lines");

    DeleteFileW(ours.c_str());
    DeleteFileW(theirs.c_str());
    DeleteFileW(data.c_str());
    return 0;
}
