// What a line end costs while the window host polls for Ctrl-C: output of
// short lines with an empty message queue, beside the same output with a
// bare PeekMessageW per line and with no polling at all.
#include "app/globals.h"
#include "app/main_window.h"
#include "app/window_host.h"
#include "screen/screen_store.h"
#include "bench_support.h"

#include <chrono>
#include <cstdio>

namespace {

constexpr int kLines = 200000;

template <typename EachLine> double NanosecondsPerLine(EachLine eachLine)
{
    auto start = std::chrono::steady_clock::now();
    for (int i = 0; i < kLines; ++i) {
        TheScreen.WriteCells(L"a short line of output");
        eachLine();
    }
    auto elapsed = std::chrono::steady_clock::now() - start;
    return std::chrono::duration<double, std::nano>(elapsed).count() / kLines;
}

} // namespace

int main()
{
    WindowHost host;
    if (!OpenBenchWindow(host)) return 1;
    MSG msg;
    while (PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&msg);

    double polled = NanosecondsPerLine([] { TheScreen.NewLine(); });
    double peeked = NanosecondsPerLine([] {
        MSG m;
        PeekMessageW(&m, nullptr, 0, 0, PM_REMOVE);
        TheScreen.LineFeed();
    });
    double bare = NanosecondsPerLine([] { TheScreen.LineFeed(); });
    std::printf("line end with PollBreak (queue state first): %8.1f ns\n", polled);
    std::printf("line end with one PeekMessageW:              %8.1f ns\n", peeked);
    std::printf("line end without polling:                    %8.1f ns\n", bare);
    DestroyWindow(MainWindow);
    return 0;
}
