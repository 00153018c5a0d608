// What copy costs: one 1 GB file, and 10,000 files of 1 KB, copied by
// ombc.exe's copy and by the platform's cmd.exe copy, side by side in one
// run. Both are whole programs started the same way, output to NUL; every
// copy is checked for its size afterwards. The big source is real data (not
// sparse), written once before the timing starts.
#include "bench_support.h"

#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

namespace {

constexpr long long kBigSize = 1LL << 30;
constexpr int kSmallCount = 10000;
constexpr int kSmallSize = 1024;

bool WriteFileOf(const std::wstring& path, const std::vector<char>& block, long long size)
{
    HANDLE h = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    if (h == INVALID_HANDLE_VALUE) return false;
    bool ok = true;
    for (long long done = 0; ok && done < size; done += static_cast<long long>(block.size())) {
        DWORD put = 0;
        DWORD n = DWORD(size - done < static_cast<long long>(block.size()) ? size - done : static_cast<long long>(block.size()));
        ok = WriteFile(h, block.data(), n, &put, nullptr) && put == n;
    }
    CloseHandle(h);
    return ok;
}

long long SizeOf(const std::wstring& path)
{
    WIN32_FILE_ATTRIBUTE_DATA data{};
    if (!GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &data)) return -1;
    return (static_cast<long long>(data.nFileSizeHigh) << 32) | data.nFileSizeLow;
}

int CountCopies(const std::wstring& folder)
{
    int n = 0;
    for (int i = 0; i < kSmallCount; ++i)
        if (SizeOf(folder + L"\\f" + std::to_wstring(i) + L".dat") == kSmallSize) ++n;
    return n;
}

void RemoveFolder(const std::wstring& folder)
{
    WIN32_FIND_DATAW found;
    HANDLE h = FindFirstFileW((folder + L"\\*").c_str(), &found);
    if (h != INVALID_HANDLE_VALUE) {
        do {
            if (!(found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY)) DeleteFileW((folder + L"\\" + found.cFileName).c_str());
        } while (FindNextFileW(h, &found));
        FindClose(h);
    }
    RemoveDirectoryW(folder.c_str());
}

void Report(const char* what, double ombc, double cmd, bool complete)
{
    std::printf("%-30s ombc copy %8.2f s   cmd.exe copy %8.2f s   %s\n", what, ombc, cmd,
                complete ? "copies complete" : "COPIES INCOMPLETE");
}

void BigFile(const std::wstring& ombc)
{
    std::vector<char> block(1 << 20);
    for (size_t i = 0; i < block.size(); ++i) block[i] = char(i * 31 + i / 4096);
    if (!WriteFileOf(L"big.bin", block, kBigSize)) {
        std::printf("cannot write the 1 GB source\n");
        return;
    }
    // The best of three turns, taken in alternation, against a busy machine.
    double ombcBig = 1e9, cmdBig = 1e9;
    bool complete = true;
    for (int turn = 0; turn < 3; ++turn) {
        ombcBig = std::min(ombcBig, TimeRun(ombc + L"\"copy /q big.bin big_ombc.bin\""));
        cmdBig = std::min(cmdBig, TimeRun(L"cmd.exe /c copy big.bin big_cmd.bin"));
        complete = complete && SizeOf(L"big_ombc.bin") == kBigSize && SizeOf(L"big_cmd.bin") == kBigSize;
        DeleteFileW(L"big_ombc.bin");
        DeleteFileW(L"big_cmd.bin");
    }
    Report("one file of 1 GB (best of 3):", ombcBig, cmdBig, complete);
    DeleteFileW(L"big.bin");
}

void SmallFiles(const std::wstring& ombc)
{
    CreateDirectoryW(L"small", nullptr);
    CreateDirectoryW(L"s_ombc", nullptr);
    CreateDirectoryW(L"s_cmd", nullptr);
    std::vector<char> block(kSmallSize, 's');
    for (int i = 0; i < kSmallCount; ++i) WriteFileOf(L"small\\f" + std::to_wstring(i) + L".dat", block, kSmallSize);
    double ombcSmall = TimeRun(ombc + L"\"copy /q small\\*.* s_ombc\"");
    double cmdSmall = TimeRun(L"cmd.exe /c copy small\\*.* s_cmd");
    Report("10,000 files of 1 KB:", ombcSmall, cmdSmall,
           CountCopies(L"s_ombc") == kSmallCount && CountCopies(L"s_cmd") == kSmallCount);
    RemoveFolder(L"small");
    RemoveFolder(L"s_ombc");
    RemoveFolder(L"s_cmd");
}

} // namespace

//   copy_bench [big | small]: both by default.
int main(int argc, char** argv)
{
    std::string only = argc > 1 ? argv[1] : "";
    std::wstring ombc = L"\"" + ProgramFolder() + L"ombc.exe\" /C ";
    std::wstring folder = L"copybench";
    CreateDirectoryW(folder.c_str(), nullptr);
    SetCurrentDirectoryW(folder.c_str());
    // What starting each program costs, inside every figure below.
    std::printf("%-30s ombc       %8.2f s   cmd.exe      %8.2f s\n", "start-up alone:", TimeRun(ombc + L"rem"),
                TimeRun(L"cmd.exe /c rem"));
    if (only != "small") BigFile(ombc);
    if (only != "big") SmallFiles(ombc);
    SetCurrentDirectoryW(L"..");
    RemoveDirectoryW(folder.c_str());
    return 0;
}
