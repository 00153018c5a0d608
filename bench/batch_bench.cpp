// A batch loop of 100,000 turns (a goto loop with arithmetic and if), run by
// ombc.exe and by the system's own command processor, timed side by side:
// in a small file, with its label at the end of a 100,000-line file, and with
// 2,000 more variables in the environment; then 20 starts of each shell.
//
//   wine-run batch_bench.exe [turns]
#include "bench_support.h"

#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

struct Pair {
    double Ours = -1;
    double Theirs = -1;
};

// The loop in our language and in theirs; filler lines go between the jump
// and its label, which then stands at the end of the file.
Pair TimeLoop(const std::wstring& scratch, int turns, int fillerLines, bool withTheirs = true)
{
    std::string limit = std::to_string(turns);
    std::string filler;
    for (int i = 0; i < fillerLines; ++i) filler += "rem filler line of the long program\r\n";
    std::string head = "@echo off\r\nset i=0\r\ngoto loop\r\n" + filler + ":loop\r\n";
    std::wstring ours = scratch + L"bench_loop.bat";
    std::wstring theirs = scratch + L"bench_loop_cmd.bat";
    WriteText(ours, head + "let i=i+1\r\nif %i% lss " + limit + " goto loop\r\necho %i%\r\n");
    WriteText(theirs, head + "set /a i=i+1\r\nif %i% lss " + limit + " goto loop\r\necho %i%\r\n");
    Pair pair;
    pair.Ours = BestOfThree(L"\"" + ProgramFolder() + L"ombc.exe\" /C \"" + ours + L"\"");
    if (withTheirs) pair.Theirs = TimeRun(L"cmd.exe /c \"" + theirs + L"\"");
    DeleteFileW(ours.c_str());
    DeleteFileW(theirs.c_str());
    return pair;
}

void PrintPair(const char* what, const Pair& pair, int turns)
{
    std::printf("%s\n", what);
    std::printf("  %-10s %9.3f s  %6.2f us a turn\n", "ombc.exe", pair.Ours, pair.Ours * 1e6 / turns);
    if (pair.Theirs < 0) {
        std::printf("  %-10s not run\n", "cmd.exe");
        return;
    }
    std::printf("  %-10s %9.3f s  %6.2f us a turn\n", "cmd.exe", pair.Theirs, pair.Theirs * 1e6 / turns);
    if (pair.Ours > 0) std::printf("  ombc.exe is %.1f times as fast\n", pair.Theirs / pair.Ours);
}

} // namespace

int main(int argc, char** argv)
{
    int turns = argc > 1 ? std::atoi(argv[1]) : 100000;
    wchar_t here[MAX_PATH];
    GetCurrentDirectoryW(MAX_PATH, here);
    std::wstring scratch = std::wstring(here) + L"\\";

    std::printf("batch loop of %d turns (goto, arithmetic, if)\n", turns);
    WarmUpShells();
    Pair small = TimeLoop(scratch, turns, 0);
    PrintPair("small file:", small, turns);
    // cmd.exe reads the file again on every jump: a hundred thousand jumps
    // over a hundred thousand lines would take it hours.
    Pair large = TimeLoop(scratch, turns, 100000, false);
    PrintPair("label at the end of a 100,000-line file:", large, turns);
    if (small.Ours > 0) std::printf("  %.2f x the small file\n", large.Ours / small.Ours);

    // The shells inherit the variables from this process.
    for (int i = 0; i < 2000; ++i) {
        std::wstring name = L"BENCH_VARIABLE_" + std::to_wstring(i);
        SetEnvironmentVariableW(name.c_str(), L"a value of some length for the environment");
    }
    Pair crowded = TimeLoop(scratch, turns, 0);
    PrintPair("with 2,000 more variables:", crowded, turns);
    if (small.Ours > 0) std::printf("  %.2f x without them\n", crowded.Ours / small.Ours);
    for (int i = 0; i < 2000; ++i) SetEnvironmentVariableW((L"BENCH_VARIABLE_" + std::to_wstring(i)).c_str(), nullptr);

    constexpr int kStarts = 20;
    Pair starts;
    starts.Ours = starts.Theirs = 0;
    for (int i = 0; i < kStarts; ++i) {
        starts.Ours += TimeRun(L"\"" + ProgramFolder() + L"ombc.exe\" /C rem");
        double theirs = TimeRun(L"cmd.exe /c rem");
        starts.Theirs = theirs < 0 || starts.Theirs < 0 ? -1 : starts.Theirs + theirs;
    }
    std::printf("%d starts of \"/C rem\"\n", kStarts);
    std::printf("  %-10s %9.3f s  %6.1f ms a start\n", "ombc.exe", starts.Ours, starts.Ours * 1e3 / kStarts);
    if (starts.Theirs >= 0)
        std::printf("  %-10s %9.3f s  %6.1f ms a start\n", "cmd.exe", starts.Theirs, starts.Theirs * 1e3 / kStarts);
    return 0;
}
