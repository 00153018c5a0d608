// TAB completion in a folder of many entries (100,000 by default): a unique
// name, a prefix shared by ten names, and one shared by all of them, each
// completed in the editor; beside it the same directory search by the
// system's command processor (dir /b with the pattern).
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
        {"one name", L"type file000042", L"file000042*"},
        {"ten names", L"type file00004", L"file00004*"},
        {"every name", L"type fi", L"fi*"},
    };
    std::printf("%-12s %14s %16s\n", "completion", "ombrel TAB", "cmd dir /b");
    for (const Row& row : rows) {
        double tab = TimeTab(row.Typed);
        // Wine's dir prints 100,000 names for minutes; only the narrow searches are compared.
        if (row.Pattern[2] == L'*') {
            std::printf("%-12s %12.3f s %16s\n", row.What, tab, "(not run)");
            continue;
        }
        double cmd = TimeCommand(std::wstring(L"cmd.exe /c dir /b ") + row.Pattern + L" >nul");
        std::printf("%-12s %12.3f s %14.3f s\n", row.What, tab, cmd);
    }
    return 0;
}
