// type of a 100 MB text file into the screen store (no window, nothing
// drawn, no pager), beside the system's command processor typing the same
// file to NUL; and the cost of scrolling one row with an empty and with a
// full scrollback, which must be the same.
//
//   wine-run type_bench.exe [megabytes]
#include "bench_support.h"
#include "lang/builtins.h"
#include "lang/command_args.h"
#include "screen/screen_store.h"
#include "screen/scrollback.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

namespace {

// Lines of 20 to 99 characters, as a listing or a log has them.
std::string TextOfSize(size_t bytes)
{
    std::string text;
    text.reserve(bytes + 128);
    for (unsigned n = 0; text.size() < bytes; ++n) {
        text += "line " + std::to_string(n) + ": ";
        text.append(20 + n * 7919 % 80, char('a' + n % 26));
        text += "\r\n";
    }
    return text;
}

double TypeInProcess(const std::wstring& path)
{
    std::wstring line = L"type \"" + path + L"\"";
    wchar_t buffer[4096];
    lstrcpynW(buffer, line.c_str(), 4096);
    CommandArgs.Parse(buffer);
    LARGE_INTEGER start, end;
    QueryPerformanceCounter(&start);
    CmdType();
    QueryPerformanceCounter(&end);
    return Seconds(start, end);
}

// One listing line written at the bottom row, as a command writes it.
void WriteLine(ScreenStore& store, const std::wstring& line)
{
    store.Locate(0, ScreenHeight - 1);
    store.WriteCells(line.c_str());
}

// Puts the store's memory out of the processor's caches.
void FlushCaches()
{
    static std::vector<char> sweep(size_t(64) << 20);
    for (size_t i = 0; i < sweep.size(); i += 64) ++sweep[i];
}

struct ScrollFigures {
    double Scroll = 0;     // ns of one ScrollScreen
    double LineScroll = 0; // ns of one line written and scrolled
};

// Rounds of 200 scrolls, each round on a store made ready untimed: fresh
// (history never written) or filled with the same line in every row. Cold
// rounds start with the caches flushed. The fastest round counts, since the
// machine's other work only ever adds time.
ScrollFigures ScrollCost(int rows, bool full, bool cold, const std::wstring& line)
{
    constexpr int kRounds = 20;
    constexpr int kScrolls = 200;
    ScrollBarState bar;
    ScrollFigures figures{1e9, 1e9};
    for (int round = 0; round < kRounds; ++round) {
        for (bool withLine : {false, true}) {
            auto store = std::make_unique<ScreenStore>(rows);
            store->Observer = &bar;
            bar.Filled = 0;
            for (int i = 0; full && i < store->Rows(); ++i) {
                WriteLine(*store, line);
                store->ScrollScreen();
            }
            if (cold) FlushCaches();
            LARGE_INTEGER start, end;
            QueryPerformanceCounter(&start);
            for (int i = 0; i < kScrolls; ++i) {
                if (withLine) WriteLine(*store, line);
                store->ScrollScreen();
            }
            QueryPerformanceCounter(&end);
            double& best = withLine ? figures.LineScroll : figures.Scroll;
            best = std::min(best, Seconds(start, end) * 1e9 / kScrolls);
        }
    }
    return figures;
}

} // namespace

int main(int argc, char** argv)
{
    size_t megabytes = argc > 1 ? size_t(std::atoi(argv[1])) : 100;
    wchar_t here[MAX_PATH];
    GetCurrentDirectoryW(MAX_PATH, here);
    std::wstring path = std::wstring(here) + L"\\bench_type.txt";
    std::string text = TextOfSize(megabytes * 1000000);
    if (!WriteText(path, text)) return 1;
    double size = double(text.size()) / 1e6;
    text = std::string();

    double ours = TypeInProcess(path);
    double theirs = TimeRun(L"cmd.exe /c type \"" + path + L"\"");
    std::printf("type of %.0f MB of text\n", size);
    std::printf("%-28s %8.3f s  %8.1f MB/s\n", "ombrel into the screen store", ours, size / ours);
    if (theirs > 0) {
        std::printf("%-28s %8.3f s  %8.1f MB/s\n", "cmd.exe /c type to NUL", theirs, size / theirs);
        std::printf("ombrel is %.1f times as fast\n", theirs / ours);
    } else {
        std::printf("%-28s not available\n", "cmd.exe");
    }
    DeleteFileW(path.c_str());

    // A scroll turns the ring of rows and marks the row that fell off; the
    // row is blanked, as far as it was written, when a writer next reaches
    // it. So a scroll costs one row whatever the history holds, and a line
    // written and scrolled costs the same into an empty or a full history.
    // Every line is the same 80 characters; "empty" histories were never
    // written, "full" ones hold that line in every row.
    std::wstring line(size_t(ScreenWidth), L'x');
    std::printf("one row of scrolling (ns), lines of %d cells\n", ScreenWidth);
    std::printf("%-30s %10s %10s %12s %12s\n", "scrollback", "scroll", "cold", "line+scroll", "cold");
    for (int rows : {270, 1 << 20}) {
        for (bool full : {false, true}) {
            ScrollFigures warm = ScrollCost(rows, full, false, line);
            ScrollFigures cold = ScrollCost(rows, full, true, line);
            std::string label = std::string(full ? "full" : "empty") + ", " +
                                std::to_string(ClampScrollBack(rows)) + " rows";
            std::printf("%-30s %10.1f %10.1f %12.1f %12.1f\n", label.c_str(), warm.Scroll, cold.Scroll,
                        warm.LineScroll, cold.LineScroll);
        }
    }
    return 0;
}
