// A batch loop of 100,000 turns (a goto loop with arithmetic and if), run by
// ombc.exe and by the system's own command processor, timed side by side:
// in a small file, with its label at the end of a 100,000-line file, and with
// 2,000 more variables in the environment (the whole run and the turns
// alone); then 20 starts of each shell.
//
//   wine-run batch_bench.exe [turns]
#include "bench_support.h"

#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

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

void SetCrowd(bool present)
{
    for (int i = 0; i < 2000; ++i) {
        std::wstring name = L"BENCH_VARIABLE_" + std::to_wstring(i);
        SetEnvironmentVariableW(name.c_str(), present ? L"a value of some length for the environment" : nullptr);
    }
}

// The loop with and without 2,000 more variables, which the shells inherit
// from this process. The two are timed in alternate rounds, so that both meet
// the same load, and each at two lengths: the difference is the cost of the
// turns alone, without the start of the process.
void CrowdedEnvironment(const std::wstring& scratch, int turns)
{
    constexpr int kRounds = 3;
    // The longer loop is long enough that the difference is not lost in the
    // noise of two starts.
    constexpr int kLonger = 4;
    double whole[2] = {-1, -1}, longer[2] = {-1, -1};
    auto keepBest = [](double& best, double seconds) {
        if (seconds > 0 && (best < 0 || seconds < best)) best = seconds;
    };
    for (int round = 0; round < kRounds; ++round)
        for (int crowded = 0; crowded < 2; ++crowded) {
            SetCrowd(crowded != 0);
            keepBest(whole[crowded], TimeLoop(scratch, turns, 0, false).Ours);
            keepBest(longer[crowded], TimeLoop(scratch, kLonger * turns, 0, false).Ours);
        }
    Pair theirs = TimeLoop(scratch, turns, 0);
    SetCrowd(false);
    std::printf("with 2,000 more variables (best of %d alternate rounds):\n", kRounds);
    std::printf("  %-10s %9.3f s  %6.2f us a turn, against %.3f s without them: %.2f x\n", "ombc.exe", whole[1],
                whole[1] * 1e6 / turns, whole[0], whole[0] > 0 ? whole[1] / whole[0] : 0.0);
    const int extra = (kLonger - 1) * turns;
    double turnWithout = (longer[0] - whole[0]) * 1e6 / extra, turnWith = (longer[1] - whole[1]) * 1e6 / extra;
    std::printf("  %-10s %6.2f us against %.2f us without them: %.2f x (the turns alone, %d against %d turns)\n",
                "a turn", turnWith, turnWithout, turnWithout > 0 ? turnWith / turnWithout : 0.0, kLonger * turns, turns);
    if (theirs.Theirs > 0)
        std::printf("  %-10s %9.3f s  %6.2f us a turn\n", "cmd.exe", theirs.Theirs, theirs.Theirs * 1e6 / turns);
}

double Median(std::vector<double> values)
{
    if (values.empty()) return -1;
    std::sort(values.begin(), values.end());
    size_t n = values.size();
    return n % 2 ? values[n / 2] : (values[n / 2 - 1] + values[n / 2]) / 2;
}

// Each shell starts in turn, the first place changing hands, so that neither
// always meets what the other left behind; the median start of each.
void StartsOfRem()
{
    constexpr int kStarts = 20;
    const std::wstring ours = L"\"" + ProgramFolder() + L"ombc.exe\" /C rem", theirs = L"cmd.exe /c rem";
    std::vector<double> oursTimes, theirsTimes;
    for (int i = 0; i < kStarts; ++i) {
        double first = TimeRun(i % 2 ? theirs : ours);
        double second = TimeRun(i % 2 ? ours : theirs);
        oursTimes.push_back(i % 2 ? second : first);
        double t = i % 2 ? first : second;
        if (t >= 0) theirsTimes.push_back(t);
    }
    std::printf("%d starts of \"/C rem\", median start\n", kStarts);
    std::printf("  %-10s %6.1f ms\n", "ombc.exe", Median(oursTimes) * 1e3);
    if (!theirsTimes.empty()) std::printf("  %-10s %6.1f ms\n", "cmd.exe", Median(theirsTimes) * 1e3);
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

    CrowdedEnvironment(scratch, turns);

    StartsOfRem();
    return 0;
}
