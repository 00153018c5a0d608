#include "exec/loader_route.h"

#include "app/errors.h"
#include "app/globals.h"
#include "app/toolkit/omdib.h"
#include "exec/launch_prepare.h"
#include "exec/process_wait.h"
#include "lang/shell_command.h"

#include <windows.h>

namespace {

constexpr wchar_t kMissingTitle[] = L"Ombrel Console Emulation";
constexpr wchar_t kMissingText[] =
    L"The console loader OMLD32.EXE is missing!\n\nOMLD32.EXE can trigger a FALSE POSITIVE in\n"
    L"some Anti-virus software such as Norton Sonar.\nIf this is the case, please restore the file\n"
    L"from quarantine, otherwise, Console Emulation\nwill not work!";

// The loader's scratch file: made (empty) in the temporary folder and named
// in "=imgbase"; removed when the run is over.
class ScratchFile {
public:
    ScratchFile()
    {
        wchar_t folder[kPathMax];
        DWORD n = GetTempPathW(kPathMax, folder);
        if (n == 0 || n >= DWORD(kPathMax)) return;
        if (GetTempFileNameW(folder, L"$om", 0, name_)) made_ = true;
    }
    ~ScratchFile()
    {
        if (made_) DeleteFileW(name_);
    }
    ScratchFile(const ScratchFile&) = delete;
    ScratchFile& operator=(const ScratchFile&) = delete;

    bool Named() const { return !made_ || SetRunVariable(L"=imgbase", name_); }

private:
    wchar_t name_[kPathMax] = {};
    bool made_ = false;
};

} // namespace

void RunUnderLoader(RunState& state, const wchar_t* program, const LaunchOptions& options)
{
    if (GetFileAttributesW(state.Helper.c_str()) == INVALID_FILE_ATTRIBUTES) {
        MessageBoxW(MainWindow, kMissingText, kMissingTitle, MB_OK | MB_ICONERROR);
        return;
    }
    ScratchFile scratch;
    if (!scratch.Named()) {
        ReportId(4);
        ErrorLevel = 1;
        return;
    }
    // The loader takes the program and its line from the run variables.
    ProcessStart start{state.Helper, L"\"" + state.Helper + L"\"", program, SW_HIDE, false, options.SeparateVdm};
    start.Kind = state.Kind;
    start.MayBackground = state.Mode != 1;
    StartAndWait(state, start);
}
