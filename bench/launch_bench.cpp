// Program starts and the pipe route, each over several rounds; every figure
// is the median of the rounds with the fastest and slowest beside it, since a
// single run on a busy machine says little.
//   1. A batch file that starts a trivial console program N times, run by
//      ombc.exe and by the system's command processor, alternately, so both
//      see the same load; the ratio is the median of the rounds' ratios.
//      Both shells run in a console of their own (the programs share it),
//      then with their output to NUL, where ombc.exe captures the programs,
//      on the loader route and on the pipe route.
//   2. A program writing M megabytes of text lines through the pipe route into
//      the screen store, in MB/s, beside the same lines written to the screen
//      store directly (the ceiling the route can reach), and in the window
//      program when there is a display.
//
//   wine-run launch_bench.exe [starts] [megabytes] [rounds]
#include "bench_support.h"

#include "app/profile/profile.h"
#include "exec/capture_settings.h"
#include "lang/shell_command.h"
#include "screen/screen_store.h"

#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

std::string Narrow(const std::wstring& text)
{
    std::string bytes;
    for (wchar_t c : text) bytes += char(c);
    return bytes;
}

// Seconds of each round.
struct Rounds {
    std::vector<double> seconds;

    double Median() const
    {
        std::vector<double> sorted = seconds;
        std::sort(sorted.begin(), sorted.end());
        size_t n = sorted.size();
        return n == 0 ? 0.0 : n % 2 ? sorted[n / 2] : (sorted[n / 2 - 1] + sorted[n / 2]) / 2;
    }
    double Fastest() const { return seconds.empty() ? 0.0 : *std::min_element(seconds.begin(), seconds.end()); }
    double Slowest() const { return seconds.empty() ? 0.0 : *std::max_element(seconds.begin(), seconds.end()); }
};

// "name  median s (fastest .. slowest)  rate unit", the rate from the median.
void PrintRounds(const char* name, const Rounds& r, double work, const char* unit)
{
    double median = r.Median();
    std::printf("%-10s %8.3f s (%.3f .. %.3f)  %8.1f %s\n", name, median, r.Fastest(), r.Slowest(),
                median > 0 ? work / median : 0.0, unit);
}

void StartsFromBatch(int starts, int rounds, const char* route, Where where = Where::Nul)
{
    wchar_t here[MAX_PATH];
    GetCurrentDirectoryW(MAX_PATH, here);
    std::wstring batch = std::wstring(here) + L"\\bench_starts.bat";
    std::string program = Narrow(L"\"" + ProgramFolder() + L"exit_with.exe\" 1\r\n");
    std::string text = "@echo off\r\n";
    for (int i = 0; i < starts; ++i) text += program;
    WriteText(batch, text);
    std::wstring ombcLine = L"\"" + ProgramFolder() + L"ombc.exe\" /C \"" + batch + L"\"";
    std::wstring cmdLine = L"cmd.exe /c \"" + batch + L"\"";
    Rounds ombc, cmd, ratio;
    bool cmdMissing = false;
    for (int round = 0; round < rounds; ++round) {
        // Alternate who goes first, so neither always meets a colder cache.
        double first = TimeRun(round % 2 ? cmdLine : ombcLine, where);
        double second = TimeRun(round % 2 ? ombcLine : cmdLine, where);
        double o = round % 2 ? second : first, c = round % 2 ? first : second;
        ombc.seconds.push_back(o);
        if (c < 0) cmdMissing = true;
        else {
            cmd.seconds.push_back(c);
            ratio.seconds.push_back(c > 0 ? o / c : 0.0);
        }
    }
    std::printf("%d starts of a console program from a batch file, %s, %d rounds: median (fastest .. slowest)\n",
                starts, route, rounds);
    PrintRounds("ombc.exe", ombc, starts, "starts/s");
    if (cmdMissing) std::printf("%-10s not available\n", "cmd.exe");
    else {
        PrintRounds("cmd.exe", cmd, starts, "starts/s");
        std::printf("%-10s %8.2f (%.2f .. %.2f) ombc.exe time / cmd.exe time, per round\n", "ratio", ratio.Median(),
                    ratio.Fastest(), ratio.Slowest());
    }
    DeleteFileW(batch.c_str());
}

double PipeRound(int megabytes)
{
    double seconds = TimeFlood(megabytes);
    if (ErrorLevel != 0) std::printf("flood.exe ended with %d\n", int(ErrorLevel));
    return seconds;
}

// The screen's own ceiling: the same lines written straight to the store,
// without asking for Ctrl-C at each line end, as the pipe route writes them.
double ScreenRound(int megabytes)
{
    TheScreen.PollEnabled = 0;
    std::wstring chunk;
    while (chunk.size() < 8000) chunk += L"00000001 abcdefghijklmnopqrstuvwxyz ABCDEFGHIJKLMNOPQRSTUVWXYZ 0123\r\n";
    long turns = long(megabytes) * (1 << 20) / long(chunk.size());
    LARGE_INTEGER start, end;
    QueryPerformanceCounter(&start);
    for (long i = 0; i < turns; ++i) TheScreen.ConsoleWrite(chunk.c_str(), 0, 0);
    QueryPerformanceCounter(&end);
    TheScreen.PollEnabled = 1;
    return Seconds(start, end);
}

void PipeThroughput(int megabytes, int rounds)
{
    Rounds pipe, screen;
    for (int round = 0; round < rounds; ++round) {
        pipe.seconds.push_back(PipeRound(megabytes));
        screen.seconds.push_back(ScreenRound(megabytes));
    }
    std::printf("%d MB of text lines into the screen, %d rounds: median (fastest .. slowest)\n", megabytes, rounds);
    PrintRounds("pipe route", pipe, megabytes, "MB/s");
    PrintRounds("screen", screen, megabytes, "MB/s (the same lines written to the screen directly)");
}

// The same through the window program's host, which paints while output
// comes; only where there is a display (OMB_DISPLAY=xvfb).
void WindowThroughput(int megabytes, int rounds)
{
    WindowHost host;
    if (!OpenBenchWindow(host)) return;
    ShowWindow(MainWindow, SW_SHOWNORMAL);
    SetTimer(MainWindow, 300, 250, nullptr);
    Rounds pipe, screen;
    for (int round = 0; round < rounds; ++round) {
        pipe.seconds.push_back(PipeRound(megabytes));
        screen.seconds.push_back(ScreenRound(megabytes));
    }
    PrintRounds("in window", pipe, megabytes, "MB/s (the pipe route in the window program)");
    PrintRounds("screen", screen, megabytes, "MB/s (the lines written to the window's screen directly)");
}

} // namespace

int main(int argc, char** argv)
{
    int starts = argc > 1 ? std::atoi(argv[1]) : 200;
    int megabytes = argc > 2 ? std::atoi(argv[2]) : 100;
    int rounds = argc > 3 ? std::atoi(argv[3]) : 5;
    if (rounds < 1) rounds = 1;
    // At a console ombc.exe lends it to the programs, as cmd.exe does. With
    // its output going elsewhere, console programs go to the loader by
    // default (one pseudo console and two more processes for each start); the
    // pipe route starts only the program. The ombc.exe started here reads the
    // same settings store.
    if (starts > 0) StartsFromBatch(starts, rounds, "both in a console of their own", Where::Console);
    if (starts > 0) StartsFromBatch(starts, rounds, "output to NUL, loader route (the default)");
    ProfileWriteInt(L"Ombrel", L"Emulator", 0);
    TheCaptureSettings.Emulator = 0;
    if (starts > 0) StartsFromBatch(starts, rounds, "output to NUL, pipe route (Emulator=0)");
    if (megabytes > 0) PipeThroughput(megabytes, rounds);
    if (megabytes > 0) WindowThroughput(megabytes, rounds);
    ProfileWriteString(L"Ombrel", L"Emulator", nullptr);
    return 0;
}
