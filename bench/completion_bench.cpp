// TAB completion in a folder of many entries (100,000 by default): a unique
// name, a prefix shared by ten names, and one shared by all of them, each
// completed in the editor in both styles; beside it the system's search of
// the same pattern alone (what no completion can go below), and the same
// search by the system's command processor (dir /b with the pattern). Each
// figure is the first of three runs (the first TAB of the program comes
// first, on the widest search) and the best, since other work only adds time.
//
//   wine-run completion_bench.exe [entries]
//
// The entries live in bench_entries beside the program (X:\bench_entries).
// Wine makes each new file in a crowded folder slowly, so fill it from the
// host once:  mkdir -p build/bin/bench_entries && cd build/bin/bench_entries
//             && seq -f 'file%06g.txt' 0 99999 | xargs touch
#include "app/console_host.h"
#include "input/completion.h"
#include "input/editor.h"
#include "input/editor_links.h"

#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

double Now()
{
    LARGE_INTEGER frequency, count;
    QueryPerformanceFrequency(&frequency);
    QueryPerformanceCounter(&count);
    return double(count.QuadPart) / double(frequency.QuadPart);
}

// Seconds for one TAB after the typed text.
double TimeTab(const wchar_t* typed)
{
    TheEditor.EditorChar(0x1B);
    TheEditor.TypeLine(typed, false);
    double start = Now();
    Links->CompleteTab();
    return Now() - start;
}

// Seconds for the system to enumerate the pattern, keeping nothing.
double TimeSearch(const wchar_t* pattern)
{
    double start = Now();
    WIN32_FIND_DATAW found;
    HANDLE find = FindFirstFileExW(pattern, FindExInfoBasic, &found, FindExSearchNameMatch, nullptr,
                                   FIND_FIRST_EX_LARGE_FETCH);
    if (find == INVALID_HANDLE_VALUE) return -1;
    while (FindNextFileW(find, &found)) {
    }
    FindClose(find);
    return Now() - start;
}

struct Figure {
    double First;
    double Best;
};

template <class Run> Figure FirstAndBest(Run run)
{
    Figure figure{run(), 0};
    figure.Best = figure.First;
    for (int i = 0; i < 2; ++i) figure.Best = std::min(figure.Best, run());
    return figure;
}

void PrintFigure(Figure figure) { std::printf(" %6.3f/%6.3f s", figure.First, figure.Best); }

double TimeCommand(std::wstring commandLine)
{
    STARTUPINFOW startup{};
    startup.cb = sizeof(startup);
    PROCESS_INFORMATION process{};
    double start = Now();
    if (!CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, FALSE, CREATE_NO_WINDOW, nullptr, nullptr,
                        &startup, &process))
        return -1;
    WaitForSingleObject(process.hProcess, INFINITE);
    double taken = Now() - start;
    CloseHandle(process.hProcess);
    CloseHandle(process.hThread);
    return taken;
}

} // namespace

int main(int argc, char** argv)
{
    int entries = argc > 1 ? std::atoi(argv[1]) : 100000;
    ConsoleHost host;
    host.Install();
    TheTabSettings.ShortTabs = 1;
    TheTabSettings.AutoDir = 0; // the figures are the search, not the printing of a list
    CreateDirectoryW(L"X:\\bench_entries", nullptr);
    SetCurrentDirectoryW(L"X:\\bench_entries");
    double made = Now();
    for (int i = 0; i < entries; ++i) {
        wchar_t name[32];
        std::swprintf(name, 32, L"file%06d.txt", i);
        if (GetFileAttributesW(name) != INVALID_FILE_ATTRIBUTES) continue;
        HANDLE file = CreateFileW(name, GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, nullptr);
        if (file != INVALID_HANDLE_VALUE) CloseHandle(file);
    }
    std::printf("%d entries ready in %.1f s\n", entries, Now() - made);

    struct Row {
        const char* What;
        const wchar_t* Typed;
        const wchar_t* Pattern;
    };
    const Row rows[] = {
        {"every name", L"type fi", L"fi*"},
        {"one name", L"type file000042", L"file000042*"},
        {"ten names", L"type file00004", L"file00004*"},
        {"first word", L"file000042", L"file000042*"},
    };
    std::printf("%-12s %17s %17s %17s %17s\n", "first/best", "TAB short", "TAB cycling", "search alone",
                "cmd dir /b");
    for (const Row& row : rows) {
        std::printf("%-12s", row.What);
        TheTabSettings.ShortTabs = 1;
        PrintFigure(FirstAndBest([&] { return TimeTab(row.Typed); }));
        TheTabSettings.ShortTabs = 0;
        PrintFigure(FirstAndBest([&] { return TimeTab(row.Typed); }));
        PrintFigure(FirstAndBest([&] { return TimeSearch(row.Pattern); }));
        // Wine's dir prints 100,000 names for minutes; only the narrow searches are compared.
        if (row.Pattern[2] == L'*') {
            std::printf(" %17s\n", "(not run)");
            continue;
        }
        std::wstring dir = std::wstring(L"cmd.exe /c dir /b ") + row.Pattern + L" >nul";
        PrintFigure(FirstAndBest([&] { return TimeCommand(dir); }));
        std::printf("\n");
    }
    return 0;
}
