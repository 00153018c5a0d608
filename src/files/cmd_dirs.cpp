// md (mkdir) and rd (rmdir). md makes every missing directory on the way;
// rd keeps the parent's descript.ion in step, and its /s form removes a
// tree of empty directories without ever following a link out of it.
#include "app/errors.h"
#include "bars/status_bar.h"
#include "files/arg_paths.h"
#include "files/file_delete.h"
#include "lang/builtins.h"
#include "lang/command_args.h"
#include "screen/screen_store.h"

#include <windows.h>
#include <shlwapi.h>

#include <string>

namespace {

// Creates path and whatever of its parents is missing; 0 or the platform's
// code for the last directory. A parent that cannot be made leaves its code
// to the final creation, which then fails with the right text.
DWORD MakeDirectoryPath(std::wstring path)
{
    const wchar_t* rest = PathSkipRootW(path.c_str());
    size_t from = rest ? size_t(rest - path.c_str()) : 0;
    for (size_t slash = path.find(L'\\', from); slash != std::wstring::npos; slash = path.find(L'\\', slash + 1)) {
        path[slash] = 0;
        CreateDirectoryW(path.c_str(), nullptr);
        path[slash] = L'\\';
    }
    return CreateDirectoryW(path.c_str(), nullptr) ? 0 : GetLastError();
}

} // namespace

void CmdMd()
{
    if (RejectSwitches()) return;
    if (CommandArgs.ArgCount < 1) {
        ReportId(1);
        return;
    }
    for (int i = 1; i <= CommandArgs.ArgCount && !TheScreen.BreakFlag; ++i) {
        std::wstring path = ArgRawPath(i);
        DWORD code = path.empty() ? DWORD(ERROR_INVALID_NAME) : MakeDirectoryPath(path);
        if (code) TheErrors.ReportPlatformError(code);
    }
}

void CmdRd()
{
    bool tree = false;
    for (const wchar_t* s = CommandArgs.Switches; *s; ++s) {
        if (*s == L's') tree = true;
        else if (*s != L'-') {
            ReportId(2);
            return;
        }
    }
    if (CommandArgs.ArgCount != 1) {
        ReportId(1);
        return;
    }
    const wchar_t* found = ArgDirectory(1);
    if (!found) {
        ReportId(3);
        return;
    }
    std::wstring directory = found;
    if (!tree) {
        if (!RemoveDirectoryDescribed(directory.c_str())) TheErrors.ReportPlatformError(GetLastError());
        return;
    }
    directory += directory.back() == L'\\' ? L"*.*" : L"\\*.*";
    RemoveDirectoryTree(directory, true);
    ProgressEnd();
}
