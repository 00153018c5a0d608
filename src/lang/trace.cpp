#include "lang/trace.h"

#include "input/unix_mode.h"
#include "lang/batch_program.h"
#include "lang/shell_command.h"
#include "screen/screen_store.h"

TraceView* TraceViewer = nullptr;

void TraceGrantStep()
{
    // Once the user chose to stop or to run freely, a late click changes nothing.
    if (TheShell.TracePermitted >= 0) ++TheShell.TracePermitted;
}

void TraceRunFreely() { TheShell.TracePermitted = -2; }

void TraceStopRun() { TheShell.TracePermitted = -1; }

std::wstring TraceTitle(const wchar_t* path)
{
    std::wstring title = L"Trace";
    if (path && *path) title += std::wstring(L" - ") + UnixDisplayW(path);
    return title;
}

bool TraceBegin(const wchar_t* path)
{
    ShellCommand& shell = TheShell;
    if (!TraceViewer || !TraceViewer->Open(TraceTitle(path))) return false;
    shell.TraceWindow = TraceViewer;
    shell.TraceActive = 1;
    shell.TracePermitted = 0;
    shell.TraceStep = 1;
    shell.TraceHighlight = -1;
    TraceViewer->EnableStepping(true);
    return true;
}

void TraceEnd()
{
    ShellCommand& shell = TheShell;
    TraceView* view = shell.TraceWindow;
    shell.TraceWindow = nullptr;
    shell.TraceActive = 0;
    shell.TraceHighlight = -1;
    if (view) view->Close();
}

bool TraceGate(const wchar_t* expanded, const wchar_t* source)
{
    ShellCommand& shell = TheShell;
    TraceView* view = shell.TraceWindow;
    if (!shell.TraceActive || !view) return true;
    view->ShowStage(expanded, source && *source ? source : nullptr);
    while (shell.TracePermitted >= 0 && shell.TracePermitted < shell.TraceStep) view->WaitForUser();
    if (shell.TracePermitted >= 0) {
        ++shell.TraceStep;
        return true;
    }
    bool stopped = shell.TracePermitted == -1;
    TraceEnd();
    if (!stopped) return true;
    shell.Terminate = 2;
    TheScreen.BreakFlag = 1;
    return false;
}

void TraceHighlightLine(int index)
{
    ShellCommand& shell = TheShell;
    if (!shell.TraceActive || !shell.TraceWindow) return;
    shell.TraceHighlight = index;
    shell.TraceWindow->Highlight(index);
}

void TraceShowProgram(const BatchProgram& program, int highlight)
{
    if (!TheShell.TraceActive || !TheShell.TraceWindow) return;
    TheShell.TraceWindow->FillList(program.RawLines());
    TraceHighlightLine(highlight);
}

TraceUserWait::TraceUserWait(bool waits) : dimmed_(waits && TheShell.TraceActive && TheShell.TraceWindow)
{
    if (dimmed_) TheShell.TraceWindow->EnableStepping(false);
}

TraceUserWait::~TraceUserWait()
{
    ShellCommand& shell = TheShell;
    if (!dimmed_ || !shell.TraceActive || !shell.TraceWindow) return;
    if (shell.Terminate == 0 && !TheScreen.BreakFlag) shell.TraceWindow->EnableStepping(true);
}
