#include "exec/shortcut_launch.h"

#include "app/errors.h"
#include "app/globals.h"
#include "lang/environment_index.h"
#include "lang/shell_command.h"

#include <shellapi.h>

namespace {

using ShellExecuteExFunction = BOOL(WINAPI*)(SHELLEXECUTEINFOW*);

} // namespace

void OpenShortcut(const wchar_t* path, const wchar_t* parameters)
{
    HMODULE shell = GetModuleHandleW(L"SHELL32.DLL");
    if (!shell) shell = LoadLibraryW(L"SHELL32.DLL");
    auto execute = shell ? reinterpret_cast<ShellExecuteExFunction>(
                               reinterpret_cast<void*>(GetProcAddress(shell, "ShellExecuteExW")))
                         : nullptr;
    if (!execute) {
        ReportId(8);
        return;
    }
    SHELLEXECUTEINFOW info{};
    info.cbSize = sizeof(info);
    info.fMask = SEE_MASK_NOCLOSEPROCESS | SEE_MASK_FLAG_NO_UI;
    info.hwnd = MainWindow;
    info.lpFile = path;
    info.lpParameters = (parameters && *parameters) ? parameters : nullptr;
    info.nShow = SW_SHOWNORMAL;
    SyncEnvironment();
    if (!execute(&info)) {
        ReportId(8);
        ErrorLevel = 1;
        return;
    }
    if (!info.hProcess) {
        ErrorLevel = 0;
        return;
    }
    DWORD code = 0;
    ErrorLevel = GetExitCodeProcess(info.hProcess, &code) ? int32_t(code) : 0;
    CloseHandle(info.hProcess);
}
