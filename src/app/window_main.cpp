// omb_rel.exe: the window program. Start-up in its fixed order, then the one
// top-level message loop; everything else runs nested inside a message.
#include "app/banner.h"
#include "app/globals.h"
#include "app/profile/profile.h"
#include "app/main_window.h"
#include "app/run_line.h"
#include "app/shell_mode.h"
#include "app/startup_args.h"
#include "app/startup_environment.h"
#include "app/toolkit/omdib.h"
#include "app/window_host.h"
#include "bars/status_bar.h"
#include "dialogs/trace_dialog.h"
#include "input/editor.h"
#include "input/history_window.h"
#include "lang/directories.h"
#include "screen/colours.h"

#include <commctrl.h>

#include <string>

namespace {

void RegisterCmdExtension()
{
    wchar_t value[64];
    GetProfileStringW(L"Extensions", L"cmd", L"", value, 64);
    if (!value[0]) WriteProfileStringW(L"Extensions", L"cmd", L"omb_rel.exe ^.cmd");
    HDC screen = GetDC(nullptr);
    EightBitDisplay = GetDeviceCaps(screen, BITSPIXEL) * GetDeviceCaps(screen, PLANES) >= 8;
    ReleaseDC(nullptr, screen);
}

void BuildSelfCommandLine(const wchar_t* arguments)
{
    GetModuleFileNameW(nullptr, SelfCommandLine, 4096);
    if (*arguments) {
        lstrcatW(SelfCommandLine, L" ");
        CopyCutW(SelfCommandLine + lstrlenW(SelfCommandLine), arguments, 4096 - lstrlenW(SelfCommandLine));
    }
}

void FindTahoma()
{
    wchar_t path[kPathMax];
    UINT n = GetWindowsDirectoryW(path, kPathMax);
    if (n == 0 || n + 20 >= kPathMax) return;
    lstrcatW(path, L"\\fonts\\tahoma.ttf");
    TahomaPresent = GetFileAttributesW(path) != INVALID_FILE_ATTRIBUTES;
}

void AllowMessagesFromLowerRights()
{
    if (!OsFlags.IsVista) return;
    using FilterFn = BOOL(WINAPI*)(UINT, DWORD);
    auto filter = reinterpret_cast<FilterFn>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"user32.dll"), "ChangeWindowMessageFilter")));
    if (!filter) return;
    filter(WM_DROPFILES, MSGFLT_ADD);
    filter(WM_COPYDATA, MSGFLT_ADD);
    filter(0x49, MSGFLT_ADD);
}

// The program-folder STARTUP.BAT, run as a line when it exists.
void RunStartupBatch()
{
    wchar_t path[kPathMax];
    DWORD n = GetModuleFileNameW(nullptr, path, kPathMax);
    wchar_t drive[kPathMax], directory[kPathMax], name[kPathMax], extension[kPathMax];
    if (n > 0 && n < kPathMax) {
        FNSplitW(path, drive, directory, name, extension);
        FNMergeW(path, drive, directory, L"STARTUP", L".BAT");
        if (GetFileAttributesW(path) != INVALID_FILE_ATTRIBUTES) {
            std::wstring quoted = L"\"" + std::wstring(path) + L"\"";
            CopyCutW(TheEditor.Submitted, quoted.c_str(), kLineMax);
            RunTopLevelLine();
            return;
        }
    }
    ShowPrompt();
}

// Integrity and registration gate: this product has no licence to check.
bool MayGoOn() { return true; }

} // namespace

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, PWSTR, int showCommand)
{
    RegisterCmdExtension();
    InitOsFlags();
    const wchar_t* arguments = SkipArgW(GetCommandLineW());
    FirstInstance = FindWindowW(L"Ombrel", nullptr) ? 0 : 1;
    InitCommonControls();
    AppInstance = instance;
    BuildSelfCommandLine(arguments);
    FindTahoma();
    CheckShellMode();

    if (!RegisterWindowClasses(instance)) return 0;
    if (!MayGoOn()) return 0;
    AllowMessagesFromLowerRights();

    MainWindow = CreateMainWindow(instance);
    if (!MainWindow) return 0;
    LimitPaletteToDisplay();
    WindowHost host;
    host.Install();
    TraceDialog traceDialog;
    TraceViewer = &traceDialog;
    CommandRunning = 1;
    LoadCharSplit();
    if (ProfileReadInt(L"StatusBar", L"Display", 0)) TheStatusBar.Show();
    ShowWindow(MainWindow, showCommand);
    UpdateWindow(MainWindow);
    RestoreHistoryWindow();
    SetTimer(MainWindow, 300, 250, nullptr);

    StartupArgs args = ParseStartupArgs(arguments);
    // A directory that cannot be reached leaves the inherited one, silently.
    if (!args.Directory.empty()) ChangeDirectory(args.Directory.c_str());

    PrintBanner();
    RunStartupBatch();
    if (ShellMode) RunStartupPrograms();
    SettleStartupEnvironment();
    CommandRunning = 0;
    SetFocus(MainWindow);

    if (!args.Command.empty()) {
        ApplyRedirectionChoice(args);
        TheEditor.TypeLine(args.Command.c_str(), true);
        RunTopLevelLine(args.RunAndClose ? PromptAfter::No : PromptAfter::Yes);
        if (args.RunAndClose) return 1;
    } else {
        ApplyRedirectionChoice(args);
    }

    MSG msg;
    while (GetMessageW(&msg, nullptr, 0, 0) > 0) {
        TranslateMessage(&msg);
        DispatchMessageW(&msg);
    }
    return int(msg.wParam);
}
