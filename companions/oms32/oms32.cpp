// oms32.exe stands in front of a console program that the shell starts. The
// shell tells it everything in environment variables whose names begin
// with "=": "=run" the program, "=cmd" its whole command line, "=>" or "=>>"
// a file for its standard output (replaced or appended to), "=<" a file for
// its standard input. Whatever is not redirected stays on the handles this
// helper got (the shell's pipes, or a console). The helper waits for the
// program and ends with its exit code.
//
// The console loader omld32.exe starts this helper inside a pseudo console.
// Some systems give a process started that way no standard handles at all;
// the helper then hands the program its console's own input and output.
#include "exec/process_wait.h"
#include "exec/run_handover.h"
#include "exec/start_process.h"

#include <windows.h>

#include <string>

namespace {

// The console's own input or output, opened for the program to inherit;
// null when this helper has no console.
HANDLE OpenConsoleDevice(DWORD which)
{
    SECURITY_ATTRIBUTES inherit{sizeof(inherit), nullptr, TRUE};
    HANDLE h = CreateFileW(which == STD_INPUT_HANDLE ? L"CONIN$" : L"CONOUT$", GENERIC_READ | GENERIC_WRITE,
                           FILE_SHARE_READ | FILE_SHARE_WRITE, &inherit, OPEN_EXISTING, 0, nullptr);
    return h == INVALID_HANDLE_VALUE ? nullptr : h;
}

// The standard handle as the program gets it: our own, made inheritable, or
// the console's when we were given none.
HANDLE HandedStandard(DWORD which)
{
    HANDLE h = InheritableStandard(which);
    return h ? h : OpenConsoleDevice(which);
}

// Ctrl-C is the program's to take: the helper stays to report its exit code.
// (A handler, not the ignore flag, which the program would inherit.)
BOOL WINAPI KeepRunning(DWORD) { return TRUE; }

void Complain(const std::wstring& text)
{
    std::wstring line = L"oms32: " + text + L"\r\n";
    HANDLE error = GetStdHandle(STD_ERROR_HANDLE);
    DWORD written = 0, mode = 0;
    if (GetConsoleMode(error, &mode)) {
        WriteConsoleW(error, line.c_str(), DWORD(line.size()), &written, nullptr);
        return;
    }
    int bytes = WideCharToMultiByte(CP_ACP, 0, line.c_str(), int(line.size()), nullptr, 0, nullptr, nullptr);
    std::string narrow(size_t(bytes > 0 ? bytes : 0), '\0');
    if (bytes > 0) WideCharToMultiByte(CP_ACP, 0, line.c_str(), int(line.size()), narrow.data(), bytes, nullptr, nullptr);
    WriteFile(error, narrow.data(), DWORD(narrow.size()), &written, nullptr);
}

// The console, when there is one, speaks the shell's code page (chcp).
void UseShellCodePage(const std::wstring& number)
{
    UINT page = UINT(wcstoul(number.c_str(), nullptr, 10));
    if (page == 0) return;
    SetConsoleOutputCP(page);
    SetConsoleCP(page);
}

} // namespace

int wmain()
{
    std::wstring program = RunVariable(L"=run");
    std::wstring commandLine = RunVariable(L"=cmd");
    UseShellCodePage(RunVariable(L"=cp"));
    HandedFiles files;
    bool opened = files.Open();
    // The program keeps only the shell's window, so that a console program
    // speaking the shell's protocol finds it on every route; the rest were
    // messages to this helper.
    RemoveRunVariables(KeepCallWindow::Yes);
    if (program.empty() || !opened) {
        Complain(program.empty() ? L"no program to run" : L"cannot open " + files.FailedName);
        return int(kHelperCannotStart);
    }

    SetConsoleCtrlHandler(KeepRunning, TRUE);
    STARTUPINFOW startup{};
    startup.cb = sizeof(startup);
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = files.Input ? files.Input : HandedStandard(STD_INPUT_HANDLE);
    startup.hStdOutput = files.Output ? files.Output : HandedStandard(STD_OUTPUT_HANDLE);
    startup.hStdError = HandedStandard(STD_ERROR_HANDLE);
    if (commandLine.empty()) commandLine = L"\"" + program + L"\"";
    PROCESS_INFORMATION info{};
    if (!StartProcess(program.c_str(), commandLine.data(), TRUE, 0, nullptr, &startup, &info))
        return int(kHelperCannotStart);
    CloseHandle(info.hThread);
    // Our copies of the files close now, so the program's handles are the last.
    files.Close();
    WaitForSingleObject(info.hProcess, INFINITE);
    DWORD code = 0;
    if (!GetExitCodeProcess(info.hProcess, &code)) code = 1;
    CloseHandle(info.hProcess);
    return int(code);
}
