// excsample.exc: an external command that shows what the shell offers one.
//
//   excsample PATTERN NAME
//
// Shows its arguments, lists the files that match PATTERN, sets the shell's
// variable NAME to their count, and has the shell run a command line that
// shows the variable. Its exit code is the count.
#include "exc_client.h"

#include <windows.h>

#include <cwchar>
#include <string>

namespace {

constexpr size_t kTextSize = 1024;

std::wstring Arg(int i)
{
    wchar_t text[kTextSize];
    return ExcArg(i, text, kTextSize) == 0 ? text : L"";
}

} // namespace

int wmain()
{
    if (ExcOpen() != 0) return 255;
    int count = ExcArgCount();
    for (int i = 0; i <= count; ++i) ExcWriteLine((L"argument " + std::to_wstring(i) + L": " + Arg(i)).c_str());
    if (count < 2) {
        ExcWriteLine(L"usage: excsample PATTERN NAME");
        ExcClose();
        return 255;
    }
    int found = ExcWalk(Arg(1).c_str(), 0);
    for (int i = 0; i < found; ++i) {
        wchar_t path[kTextSize];
        if (ExcEntryPath(i, path, kTextSize) != 0) continue;
        const wchar_t* name = std::wcsrchr(path, L'\\');
        ExcWriteLine((std::wstring(L"file: ") + (name ? name + 1 : path)).c_str());
    }
    if (found < 0) found = 0;
    std::wstring variable = Arg(2);
    ExcSetVariable(variable.c_str(), std::to_wstring(found).c_str());
    int level = ExcRun((L"echo nested sees %" + variable + L"%").c_str());
    ExcWriteLine((L"nested errorlevel " + std::to_wstring(level)).c_str());
    ExcClose();
    return found;
}
