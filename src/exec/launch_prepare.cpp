#include "exec/launch_prepare.h"

#include "app/errors.h"
#include "app/globals.h"
#include "app/host.h"
#include "exec/capture_list.h"
#include "exec/capture_settings.h"
#include "exec/program_search.h"
#include "exec/run_handover.h"
#include "exec/system_call_server.h"
#include "input/editor.h"
#include "lang/redirect.h"
#include "lang/shell_command.h"
#include "screen/screen_geometry.h"
#include "screen/screen_store.h"

namespace {

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
    if (!TheCaptureSettings.Capture) return true;
    if (!SetRunVariable(L"=hwnd", CallWindowNumber().c_str())) return false;
    return !TheCaptureSettings.Console || SetRunVariable(L"=open", L"1");
}

// The loader learns from these whether to show its banner and to log, and
// the screen's size, so that the program's console can start at once.
bool SetLoaderVariables()
{
    wchar_t columns[16], rows[16];
    ui64tow_ex(unsigned(ScreenWidth), columns, 10);
    ui64tow_ex(unsigned(ScreenHeight), rows, 10);
    std::wstring size = std::wstring(columns) + L"x" + rows;
    return SetRunVariable(L"=cpyr", TheCaptureSettings.Copyright ? L"1" : L"0") &&
           SetRunVariable(L"=logg", TheCaptureSettings.Logging ? L"1" : L"0") && SetRunVariable(L"=size", size.c_str());
}

constexpr int kConsoleKind = 2;

// Capture keeps a program's console in the shell's screen; a shell that
// lends its own console to the program has nothing to capture.
bool CaptureAvailable() { return !Host->LendsConsole(); }

bool UsesLoader(const wchar_t* program, int kind, bool noWait)
{
    const CaptureSettings& settings = TheCaptureSettings;
    return CaptureAvailable() && settings.Capture && settings.Emulator && kind == kConsoleKind && !noWait &&
           !InCaptureList(program);
}

// A console program's console starts in the shell's code page, as it would
// share a console whose page chcp had changed: its bytes then mean what the
// shell reads them as.
bool SetCodePageVariable()
{
    wchar_t number[16];
    ui64tow_ex(CodePageOf(ActiveCodePage), number, 10);
    return SetRunVariable(L"=cp", number);
}

} // namespace

bool SetRunVariable(const wchar_t* name, const wchar_t* value) { return SetEnvironmentVariableW(name, value) != 0; }

std::wstring BesideShell(const wchar_t* name)
{
    wchar_t module[kPathMax];
    DWORD n = GetModuleFileNameW(nullptr, module, kPathMax);
    if (n == 0 || n >= DWORD(kPathMax)) return name;
    std::wstring folder(module, n);
    return folder.substr(0, folder.find_last_of(L'\\') + 1) + name;
}

std::wstring ChooseHelper(const wchar_t* program, int kind, bool noWait)
{
    return BesideShell(UsesLoader(program, kind, noWait) ? kLoaderName : L"oms32.exe");
}

bool CaptureApplies(const wchar_t* program, int kind)
{
    const CaptureSettings& settings = TheCaptureSettings;
    if (!CaptureAvailable() || !settings.Capture || kind <= 0 || InCaptureList(program)) return false;
    return kind == kConsoleKind || !settings.Emulator;
}

bool NamesLoader(const std::wstring& helper) { return helper.find(kLoaderName) != std::wstring::npos; }

int PrepareRun(RunState& state, const wchar_t* program, const wchar_t* commandLine, bool noWait)
{
    state.Kind = ExecutableKind(program);
    state.Mode = 0;
    state.Helper.clear();
    // A GUI program gets no helper; a redirection on its line has no effect.
    if (state.Kind == 0) return 0;
    bool redirected = false;
    bool ok = SetCaptureVariables() && HandOverOutput(state, redirected) && HandOverInput(redirected) &&
              SetRunVariable(L"=cmd", commandLine) && SetRunVariable(L"=run", program) && SetCodePageVariable();
    if (!ok) return -1;
    state.Mode = redirected ? 1 : 2;
    state.Helper = ChooseHelper(program, state.Kind, noWait);
    if (NamesLoader(state.Helper) && !SetLoaderVariables()) return -1;
    return state.Mode;
}

bool TakeHandOver(HandedFiles& files)
{
    bool opened = files.Open();
    // The program must not see the shell's messages to its helpers; the
    // window stays named, so a program that talks to the shell finds it.
    RemoveRunVariables(KeepCallWindow::Yes);
    if (opened) return true;
    ReportId(35);
    ErrorLevel = 1;
    return false;
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
