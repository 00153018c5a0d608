// dir /s /b over generated trees of 1,000, 10,000 and 100,000 files (100 to
// a directory), run by ombc.exe and by the system's own command processor,
// output to NUL, timed side by side. The cost per entry is printed for each
// size, with the start-up of each program taken off, to show it stays flat.
// Last, the walker's memory for the largest tree, walked in this process as
// dir walks it, and this process's peak working set around that walk.
//
//   wine-run dir_bench.exe [largest]
#include "files/dir_tree.h"
#include "files/file_walker.h"
#include "bench_support.h"

#include <psapi.h>
#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

constexpr int kFilesPerDirectory = 100;

// A tree of files / 100 directories of 100 empty files each under root.
void MakeTree(const std::wstring& root, int files)
{
    CreateDirectoryW(root.c_str(), nullptr);
    for (int d = 0; d < files / kFilesPerDirectory; ++d) {
        std::wstring directory = root + L"\\dir" + std::to_wstring(d);
        CreateDirectoryW(directory.c_str(), nullptr);
        for (int f = 0; f < kFilesPerDirectory; ++f) {
            std::wstring name = directory + L"\\file" + std::to_wstring(f) + L".txt";
            HANDLE h = CreateFileW(name.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
            if (h != INVALID_HANDLE_VALUE) CloseHandle(h);
        }
    }
}

// The best of three runs, against noise from other programs on the machine.
double Best(const std::wstring& commandLine)
{
    double best = -1;
    for (int i = 0; i < 3; ++i) {
        double run = TimeRun(commandLine);
        if (run >= 0 && (best < 0 || run < best)) best = run;
    }
    return best;
}

double PerEntryMicroseconds(double run, double empty, int entries)
{
    return run < 0 ? -1 : (run - empty) * 1e6 / entries;
}

// The walker's memory for a dir /s over root, walked in-process as dir walks.
void ReportWalkerMemory(const std::wstring& root)
{
    DirTreeList list;
    BuildDirTree(list, (root + L"\\*").c_str());
    size_t listBytes = list.items.capacity() * sizeof(std::wstring);
    for (const std::wstring& item : list.items) listBytes += (item.capacity() + 1) * sizeof(wchar_t);
    long long entries = 0;
    for (int i = 0; i < list.count; ++i) {
        TheWalker.WalkFiles(ReplaceTreeTail(list, i, L"*"), FILE_ATTRIBUTE_DIRECTORY);
        entries += TheWalker.count;
    }
    std::printf("walker over %lld entries in %d directories: pool of %d records = %.2f MB, tree list %.2f MB\n",
                entries, list.count, TheWalker.capacity,
                double(TheWalker.capacity) * sizeof(FileEntry) / 1048576.0, double(listBytes) / 1048576.0);
    PROCESS_MEMORY_COUNTERS memory{};
    memory.cb = sizeof(memory);
    if (GetProcessMemoryInfo(GetCurrentProcess(), &memory, sizeof(memory)))
        std::printf("peak working set of this process after the walk: %.1f MB\n",
                    double(memory.PeakWorkingSetSize) / 1048576.0);
}

} // namespace

int main(int argc, char** argv)
{
    int largest = argc > 1 ? std::atoi(argv[1]) : 100000;
    std::wstring program = L"\"" + BenchFolder() + L"ombc.exe\"";
    wchar_t here[MAX_PATH];
    GetCurrentDirectoryW(MAX_PATH, here);
    std::wstring scratch = std::wstring(here);
    if (scratch.back() != L'\\') scratch += L'\\';

    double ombcEmpty = Best(program + L" /C rem");
    double cmdEmpty = Best(L"cmd.exe /c rem");
    std::printf("dir /s /b to NUL, %d files to a directory; per entry with start-up taken off\n", kFilesPerDirectory);
    std::printf("%9s %12s %12s %14s %14s %8s\n", "files", "ombc s", "cmd s", "ombc us/entry", "cmd us/entry",
                "ratio");
    std::wstring root;
    for (int files = 1000; files <= largest; files *= 10) {
        root = scratch + L"dirbench" + std::to_wstring(files);
        MakeTree(root, files);
        double ombc = Best(program + L" /C dir /s /b " + root + L" > NUL");
        double cmd = Best(L"cmd.exe /c dir /s /b " + root + L" > NUL");
        // Files and directories are both entries of the listing.
        int entries = files + files / kFilesPerDirectory;
        std::printf("%9d %12.3f %12.3f %14.2f %14.2f %8.2f\n", files, ombc, cmd,
                    PerEntryMicroseconds(ombc, ombcEmpty, entries), PerEntryMicroseconds(cmd, cmdEmpty, entries),
                    ombc > 0 && cmd > 0 ? cmd / ombc : 0.0);
    }
    std::printf("start-up alone: ombc.exe %.3f s, cmd.exe %.3f s\n", ombcEmpty, cmdEmpty);
    ReportWalkerMemory(root);
    return 0;
}
