#include "exec/launch_prepare.h"

#include "app/globals.h"
#include "app/profile/profile.h"
#include "exec/program_search.h"
#include "exec/run_handover.h"
#include "exec/system_call_server.h"
#include "input/editor.h"
#include "lang/redirect.h"
#include "screen/screen_store.h"

namespace {

bool SetRunVariable(const wchar_t* name, const wchar_t* value) { return SetEnvironmentVariableW(name, value) != 0; }

// The shell stops writing to its redirected output while the program writes
// there. Text the statement already wrote stays: a "replace" redirection
// that has content by now is handed over as an append.
bool HandOverOutput(RunState& state, bool& any)
{
    const RedirectionNames& names = ActiveRedirection;
    if (names.Output.empty() || !TheScreen.Redirected) return true;
    bool written = TheScreen.OutputFile.IsOpen() && TheScreen.OutputFile.CurrentSize() > 0;
    TheScreen.CloseRedirect();
    state.OutputHandedOver = true;
    any = true;
    return SetRunVariable((names.Append || written) ? L"=>>" : L"=>", names.Output.c_str());
}

bool HandOverInput(bool& any)
{
    const RedirectionNames& names = ActiveRedirection;
    if (names.Input.empty() || !TheEditor.Input.IsOpen()) return true;
    any = true;
    return SetRunVariable(L"=<", names.Input.c_str());
}

bool SetCaptureVariables()
{
    if (!ProfileReadInt(L"Ombrel", L"Capture", 1)) return true;
    // The window that answers requests: the console program has one too.
    wchar_t window[24];
    ui64tow_ex(uint64_t(reinterpret_cast<uintptr_t>(CallWindow())), window, 10);
    if (!SetRunVariable(L"=hwnd", window)) return false;
    return !ProfileReadInt(L"Ombrel", L"Console", 1) || SetRunVariable(L"=open", L"1");
}

} // namespace

std::wstring BesideShell(const wchar_t* name)
{
    wchar_t module[kPathMax];
    DWORD n = GetModuleFileNameW(nullptr, module, kPathMax);
    if (n == 0 || n >= DWORD(kPathMax)) return name;
    std::wstring folder(module, n);
    return folder.substr(0, folder.find_last_of(L'\\') + 1) + name;
}

// Console emulation through the loader is not part of this build: every
// console program gets oms32.exe, and capture means the pipe route.
std::wstring ChooseHelper(const wchar_t*, int, bool) { return BesideShell(L"oms32.exe"); }

bool CaptureApplies(const wchar_t*, int kind)
{
    if (!ProfileReadInt(L"Ombrel", L"Capture", 1) || kind <= 0) return false;
    return kind == 2 || !ProfileReadInt(L"Ombrel", L"Emulator", 1);
}

int PrepareRun(RunState& state, const wchar_t* program, const wchar_t* commandLine, bool noWait)
{
    state.Kind = ExecutableKind(program);
    state.Mode = 0;
    state.Helper.clear();
    // A GUI program gets no helper; a redirection on its line has no effect.
    if (state.Kind == 0) return 0;
    bool redirected = false;
    bool ok = SetCaptureVariables() && HandOverOutput(state, redirected) && HandOverInput(redirected) &&
              SetRunVariable(L"=cmd", commandLine) && SetRunVariable(L"=run", program);
    if (!ok) return -1;
    state.Mode = redirected ? 1 : 2;
    state.Helper = ChooseHelper(program, state.Kind, noWait);
    return state.Mode;
}

void UndoRun(RunState& state)
{
    RemoveRunVariables();
    const RedirectionNames& names = ActiveRedirection;
    if (state.OutputHandedOver && !names.Output.empty()) {
        HANDLE file = CreateFileW(names.Output.c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                  nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
        if (file != INVALID_HANDLE_VALUE) TheScreen.OpenRedirect(file);
    }
    state.OutputHandedOver = false;
    state.Mode = 0;
}
