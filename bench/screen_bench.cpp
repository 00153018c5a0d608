// Output throughput of the writer into a store built without a window:
// 1,000,000 lines of 80 ASCII characters, each ended by NewLine, with a short
// and a full scrollback side by side. Scrolling turns a ring of rows, so the
// two figures should be close.
#include "screen/screen_store.h"
#include "bench_support.h"

#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <string>

namespace {

constexpr int kLines = 1000000;
constexpr int kLineLength = 80;
// The machine is shared: each figure is the best of a few alternating rounds.
constexpr int kRounds = 5;

// Characters written per second, in millions.
double WriteLines(int scrollBack)
{
    auto store = std::make_unique<ScreenStore>(scrollBack);
    std::wstring line;
    for (int i = 0; i < kLineLength; ++i) line += wchar_t(L'!' + i % 90);
    LARGE_INTEGER start, end;
    QueryPerformanceCounter(&start);
    for (int i = 0; i < kLines; ++i) {
        store->Write(line.c_str());
        store->NewLine();
    }
    QueryPerformanceCounter(&end);
    return double(kLines) * kLineLength / Seconds(start, end) / 1e6;
}

} // namespace

int main()
{
    ScreenWidth = 80;
    ScreenHeight = 24;
    double shortStore = 0, fullStore = 0;
    for (int round = 0; round < kRounds; ++round) {
        shortStore = std::max(shortStore, WriteLines(270));
        fullStore = std::max(fullStore, WriteLines(MaxScroll + MaxHeight));
    }
    std::printf("screen writer, %d lines of %d characters, best of %d (1 MB = 10^6 characters)\n", kLines,
                kLineLength, kRounds);
    std::printf("  scrollback %4d rows: %8.1f MB/s\n", 270, shortStore);
    std::printf("  scrollback %4d rows: %8.1f MB/s\n", MaxScroll + MaxHeight, fullStore);
    std::printf("  ratio full/short:     %8.2f\n", fullStore / shortStore);
    return 0;
}
