// A batch loop of 100,000 turns (a goto loop with arithmetic and if), run by
// ombc.exe and by the system's own command processor, timed side by side.
//
//   wine-run batch_bench.exe [turns]
#include "bench_support.h"

#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <string>


int main(int argc, char** argv)
{
    int turns = argc > 1 ? std::atoi(argv[1]) : 100000;
    std::string limit = std::to_string(turns);
    std::wstring folder = BenchFolder();
    wchar_t here[MAX_PATH];
    GetCurrentDirectoryW(MAX_PATH, here);
    std::wstring scratch = std::wstring(here) + L"\\";
    std::wstring ours = scratch + L"bench_loop.bat";
    std::wstring theirs = scratch + L"bench_loop_cmd.bat";
    WriteBenchFile(ours, "@echo off\r\nset i=0\r\n:loop\r\nlet i=i+1\r\nif %i% lss " + limit +
                        " goto loop\r\necho %i%\r\n");
    WriteBenchFile(theirs, "@echo off\r\nset i=0\r\n:loop\r\nset /a i=i+1\r\nif %i% lss " + limit +
                          " goto loop\r\necho %i%\r\n");

    double ombc = TimeRun(L"\"" + folder + L"ombc.exe\" /C \"" + ours + L"\"");
    double cmd = TimeRun(L"cmd.exe /c \"" + theirs + L"\"");
    std::printf("batch loop of %d turns (goto, arithmetic, if)\n", turns);
    std::printf("%-12s %10.3f s  %12.0f lines/s\n", "ombc.exe", ombc, ombc > 0 ? 3.0 * turns / ombc : 0.0);
    if (cmd >= 0)
        std::printf("%-12s %10.3f s  %12.0f lines/s\n", "cmd.exe", cmd, cmd > 0 ? 3.0 * turns / cmd : 0.0);
    else
        std::printf("%-12s not available\n", "cmd.exe");
    if (ombc > 0 && cmd > 0) std::printf("ombc.exe is %.1f times as fast\n", cmd / ombc);
    DeleteFileW(ours.c_str());
    DeleteFileW(theirs.c_str());
    return 0;
}
