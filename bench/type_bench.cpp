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

#include <cstdio>
#include <cstdlib>
#include <string>

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

// Writes every row of the store across its whole width.
void FillEveryRow(ScreenStore& store)
{
    std::wstring row(size_t(MaxWidth), L'x');
    for (int i = 0; i < store.Rows(); ++i) {
        store.Locate(0, ScreenHeight - 1);
        store.WriteCells(row.c_str());
        store.ScrollScreen();
        store.Locate(0, ScreenHeight - 1);
        store.WriteCells(row.c_str());
    }
}

// Nanoseconds of one ScrollScreen, averaged over rounds of 200 scrolls;
// with refill, the store is written full again between rounds (untimed), so
// every timed scroll recycles a written row.
double ScrollCost(ScreenStore& store, bool refill)
{
    constexpr int kRounds = 50;
    constexpr int kScrolls = 200;
    double seconds = 0;
    for (int round = 0; round < kRounds; ++round) {
        if (refill) FillEveryRow(store);
        LARGE_INTEGER start, end;
        QueryPerformanceCounter(&start);
        for (int i = 0; i < kScrolls; ++i) store.ScrollScreen();
        QueryPerformanceCounter(&end);
        seconds += Seconds(start, end);
    }
    return seconds * 1e9 / (kRounds * kScrolls);
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

    // A scroll turns the ring of rows and blanks the row that fell off, as far
    // as that row was written: it costs one row whatever the history holds.
    // A fresh store recycles blank rows; full stores of two sizes recycle
    // rows written across their whole width.
    ScrollBarState bar;
    std::printf("one row of scrolling, rows of %d cells\n", MaxWidth);
    ScreenStore empty(1 << 20);
    empty.Observer = &bar;
    std::printf("%-34s %8.1f ns\n", "empty scrollback", ScrollCost(empty, false));
    for (int rows : {270, 1 << 20}) {
        ScreenStore full(rows);
        full.Observer = &bar;
        bar.Filled = full.History() - 1;
        std::string label = "full scrollback of " + std::to_string(full.Rows()) + " rows";
        std::printf("%-34s %8.1f ns\n", label.c_str(), ScrollCost(full, true));
    }
    return 0;
}
