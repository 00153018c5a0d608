// omld32.exe, the console loader. The shell starts it hidden, in front of a
// console program, and tells it everything in environment variables whose
// names begin with "=":
//   "=hwnd"   the shell's window, which takes the requests of its protocol
//   "=run"    the program, "=cmd" its whole command line
//   "=>", "=>>", "=<"  the program's redirected output (replaced, appended)
//             and input
//   "=cpyr"   "1": show the loader's banner first
//   "=logg"   "1": log the run to OMLD32.LOG in the temporary folder
//   "=size"   the shell's screen as columns "x" rows, the program's console size
//   "=imgbase" a scratch file that the loader may use (it needs none)
// The program runs in a pseudo console where the system has one, else on
// pipes, in both cases behind oms32.exe, which opens the redirections and
// ends with the program's exit code. What the program shows goes to the
// shell's screen, and keys typed in the shell go to the program. The loader
// ends with the program's exit code.
#include "console_child.h"
#include "exc_client.h"
#include "exec/process_wait.h"
#include "relay.h"
#include "vt_translator.h"

#include <windows.h>

#include <string>

namespace {

constexpr wchar_t kBanner[] = L"OMLD32 console loader for Ombrel";
constexpr unsigned kScreenColumns = 0x09;
constexpr unsigned kScreenRows = 0x0A;
constexpr int kDefaultColumns = 80;
constexpr int kDefaultRows = 25;

std::wstring Variable(const wchar_t* name)
{
    wchar_t value[64] = {};
    DWORD n = GetEnvironmentVariableW(name, value, 64);
    return n > 0 && n < 64 ? value : L"";
}

// On bare pipes the program's bytes are in the shell's code page (chcp).
UINT ShellCodePage()
{
    UINT page = UINT(wcstoul(Variable(L"=cp").c_str(), nullptr, 10));
    return page ? page : CP_OEMCP;
}

std::wstring BesideLoader(const wchar_t* name)
{
    wchar_t module[MAX_PATH];
    DWORD n = GetModuleFileNameW(nullptr, module, MAX_PATH);
    std::wstring path(module, n < MAX_PATH ? n : 0);
    return path.substr(0, path.find_last_of(L'\\') + 1) + name;
}

// Appends lines to OMLD32.LOG in the temporary folder when asked to.
class LoaderLog {
public:
    explicit LoaderLog(bool wanted)
    {
        wchar_t folder[MAX_PATH];
        DWORD n = GetTempPathW(MAX_PATH, folder);
        if (!wanted || n == 0 || n >= MAX_PATH - 12) return;
        std::wstring path = std::wstring(folder) + L"OMLD32.LOG";
        file_ = CreateFileW(path.c_str(), FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_ALWAYS,
                            FILE_ATTRIBUTE_NORMAL, nullptr);
    }
    ~LoaderLog()
    {
        if (file_ != INVALID_HANDLE_VALUE) CloseHandle(file_);
    }
    LoaderLog(const LoaderLog&) = delete;
    LoaderLog& operator=(const LoaderLog&) = delete;

    void Line(const std::wstring& text)
    {
        if (file_ == INVALID_HANDLE_VALUE) return;
        SYSTEMTIME now;
        GetLocalTime(&now);
        wchar_t stamp[32];
        wsprintfW(stamp, L"%04u-%02u-%02u %02u:%02u:%02u ", now.wYear, now.wMonth, now.wDay, now.wHour,
                  now.wMinute, now.wSecond);
        std::wstring line = stamp + text + L"\r\n";
        int n = WideCharToMultiByte(CP_UTF8, 0, line.c_str(), int(line.size()), nullptr, 0, nullptr, nullptr);
        std::string bytes(size_t(n > 0 ? n : 0), '\0');
        if (n > 0) WideCharToMultiByte(CP_UTF8, 0, line.c_str(), int(line.size()), bytes.data(), n, nullptr, nullptr);
        DWORD written = 0;
        WriteFile(file_, bytes.data(), DWORD(bytes.size()), &written, nullptr);
    }

private:
    HANDLE file_ = INVALID_HANDLE_VALUE;
};

bool GoodSize(long value) { return value > 0 && value < 0x7FFF; }

// The shell's screen size, which the pseudo console takes.
int ScreenSize(unsigned code, int fallback)
{
    int32_t value = 0;
    return ExcCall(code, nullptr, 0, &value, sizeof(value)) >= 4 && GoodSize(value) ? value : fallback;
}

// The size as the shell put it in "=size"; false when it did not.
bool SizeFromShell(int& columns, int& rows)
{
    std::wstring size = Variable(L"=size");
    wchar_t* rest = nullptr;
    long width = wcstol(size.c_str(), &rest, 10);
    if (!GoodSize(width) || *rest != L'x') return false;
    wchar_t* end = nullptr;
    long height = wcstol(rest + 1, &end, 10);
    if (!GoodSize(height) || *end) return false;
    columns = int(width);
    rows = int(height);
    return true;
}

} // namespace

int WINAPI wWinMain(HINSTANCE, HINSTANCE, PWSTR, int)
{
    LoaderLog log(Variable(L"=logg") == L"1");
    bool banner = Variable(L"=cpyr") == L"1";
    // Handles of the shell's own that came along must not reach the program:
    // it gets the pseudo console's, or the loader's pipes.
    SetStdHandle(STD_INPUT_HANDLE, nullptr);
    SetStdHandle(STD_OUTPUT_HANDLE, nullptr);
    SetStdHandle(STD_ERROR_HANDLE, nullptr);
    // With the shell named and the size known, the program's console starts
    // before the loader's own window is made: both take a while, and they
    // need not take turns (the window system is loaded only for the window).
    // What the program writes meanwhile waits for the banner.
    ConsoleChild child;
    bool pipesOnly = GetEnvironmentVariableW(L"OMLD32_PIPES", nullptr, 0) != 0;
    int columns = kDefaultColumns, rows = kDefaultRows;
    bool sized = !Variable(L"=hwnd").empty() && SizeFromShell(columns, rows);
    bool started = sized && child.Start(BesideLoader(L"oms32.exe"), columns, rows, pipesOnly);
    if (ExcOpen() != 0) {
        // Only a shell that went away in this moment: the program has no screen.
        log.Line(L"no shell window in =hwnd");
        child.Stop();
        return int(kHelperCannotStart);
    }
    log.Line(L"run " + Variable(L"=run"));
    if (banner) ExcWriteLine(kBanner);
    if (!sized) {
        columns = ScreenSize(kScreenColumns, kDefaultColumns);
        rows = ScreenSize(kScreenRows, kDefaultRows);
        started = child.Start(BesideLoader(L"oms32.exe"), columns, rows, pipesOnly);
    }
    if (!started) {
        log.Line(L"cannot start oms32.exe");
        ExcClose();
        return int(kHelperCannotStart);
    }
    log.Line(child.PseudoConsole() ? L"pseudo console" : L"pipes");
    VtTranslator translator(child.PseudoConsole() ? CP_UTF8 : ShellCodePage(), columns, rows);
    Relay relay(child, translator);
    relay.Run();
    DWORD code = child.ExitCode();
    log.Line(L"exit code " + std::to_wstring(long(code)));
    ExcClose();
    return int(code);
}
