// What drawing costs, with the real main window (run it with a display):
// a frame of the whole 80 x 24 screen in several colours, a frame of one
// changed row, and the writer's throughput with the window drawing on its
// timer beside the same output with nothing drawn. Output only records what
// changed, so the two throughputs should be close.
#include "app/globals.h"
#include "app/main_window.h"
#include "app/window_host.h"
#include "screen/colours.h"
#include "screen/render_window.h"
#include "screen/screen_store.h"
#include "bench_support.h"

#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <string>

namespace {

constexpr int kFrames = 500;
constexpr int kLines = 100000;
constexpr int kRounds = 3;

// Every row in runs of eight colours.
void FillScreen()
{
    TheScreen.ClearScreen();
    for (int y = 0; y < ScreenHeight; ++y) {
        TheScreen.Locate(0, y);
        for (int run = 0; run < 8; ++run) {
            TheScreen.Attr = uint16_t((run * 5) | ItemValue(Item::BackGrd) << 8);
            TheScreen.WriteCells(L"text run");
        }
    }
}

// Milliseconds per frame.
double WholeFrames()
{
    FillScreen();
    LARGE_INTEGER start, end;
    QueryPerformanceCounter(&start);
    for (int i = 0; i < kFrames; ++i) TheView.PaintAll();
    QueryPerformanceCounter(&end);
    return Seconds(start, end) * 1000 / kFrames;
}

double RowFrames()
{
    LARGE_INTEGER start, end;
    QueryPerformanceCounter(&start);
    for (int i = 0; i < kFrames; ++i) {
        TheScreen.Locate(0, 5);
        TheScreen.WriteCells(L"one row changes");
        TheView.PaintChanges();
    }
    QueryPerformanceCounter(&end);
    return Seconds(start, end) * 1000 / kFrames;
}

// Lines per second in thousands; the line ends poll the queue as always.
double WriteLines()
{
    std::wstring line;
    for (int i = 0; i < 80; ++i) line += wchar_t(L'!' + i % 90);
    LARGE_INTEGER start, end;
    QueryPerformanceCounter(&start);
    for (int i = 0; i < kLines; ++i) {
        TheScreen.Write(line.c_str());
        TheScreen.NewLine();
    }
    QueryPerformanceCounter(&end);
    return kLines / Seconds(start, end) / 1000;
}

} // namespace

int main()
{
    WindowHost host;
    if (!OpenBenchWindow(host)) return 1;
    ShowWindow(MainWindow, SW_SHOWNORMAL);
    SetTimer(MainWindow, 300, 250, nullptr);
    CommandRunning = 1;

    double whole = 1e9, row = 1e9, drawn = 0, undrawn = 0;
    for (int round = 0; round < kRounds; ++round) {
        whole = std::min(whole, WholeFrames());
        row = std::min(row, RowFrames());
        drawn = std::max(drawn, WriteLines());
        TheView.Detach();
        undrawn = std::max(undrawn, WriteLines());
        TheView.Attach(MainWindow);
    }
    std::printf("drawing, %d x %d cells of %d x %d pixels, best of %d\n", ScreenWidth, ScreenHeight,
                TheScreen.FontWidth, TheScreen.FontHeight, kRounds);
    std::printf("  whole screen, 8 runs a row: %8.3f ms a frame\n", whole);
    std::printf("  one changed row:            %8.3f ms a frame\n", row);
    std::printf("  %d lines of 80, drawn on the timer:  %8.1f thousand lines/s\n", kLines, drawn);
    std::printf("  %d lines of 80, nothing drawn:       %8.1f thousand lines/s\n", kLines, undrawn);
    DestroyWindow(MainWindow);
    return 0;
}
