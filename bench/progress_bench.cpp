// What the percent indicator costs a command: a million ProgressAdd calls,
// as copy makes one per block, beside a loop that only sums the same amounts.
#include "bars/status_bar.h"
#include "bench_support.h"

#include <cstdio>

namespace {

constexpr int kCalls = 1000000;
volatile uint64_t Sink;

double NanosecondsPerCall(void (*call)(uint64_t))
{
    LARGE_INTEGER start, end;
    QueryPerformanceCounter(&start);
    ProgressStart(uint64_t(kCalls) * 4096);
    for (int i = 0; i < kCalls; ++i) call(4096);
    QueryPerformanceCounter(&end);
    return Seconds(start, end) * 1e9 / kCalls;
}

} // namespace

int main()
{
    double add = NanosecondsPerCall([](uint64_t amount) { ProgressAdd(amount); });
    int percent = TheStatusBar.Percent;
    ProgressEnd();
    double sum = NanosecondsPerCall([](uint64_t amount) { Sink = Sink + amount; });
    std::printf("%d ProgressAdd calls:  %6.2f ns per call (reached %d%%)\n", kCalls, add, percent);
    std::printf("%d plain additions:    %6.2f ns per call\n", kCalls, sum);
    return 0;
}
