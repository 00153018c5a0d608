#include "exec/lent_console.h"

#include "app/host.h"
#include "app/toolkit/omdib.h"
#include "exec/launch_prepare.h"

namespace {

// A page that chcp chose becomes the console's, as under the helper. The
// shell's default (the OEM page) leaves the console's own page alone, so a
// console the user had set to another page keeps it.
void UseChosenCodePage()
{
    constexpr int kLastSymbolicPage = 2;
    if (ActiveCodePage <= kLastSymbolicPage) return;
    UINT page = UINT(ActiveCodePage);
    if (GetConsoleOutputCP() != page) SetConsoleOutputCP(page);
    if (GetConsoleCP() != page) SetConsoleCP(page);
}

} // namespace

void RunInLentConsole(RunState& state, const ProcessStart& start)
{
    HandedFiles files;
    if (!TakeHandOver(files)) return;
    UseChosenCodePage();
    Host->LendConsole();
    STARTUPINFOW& startup = state.Startup;
    startup.dwFlags |= STARTF_USESTDHANDLES;
    startup.hStdInput = files.Input ? files.Input : InheritableStandard(STD_INPUT_HANDLE);
    startup.hStdOutput = files.Output ? files.Output : InheritableStandard(STD_OUTPUT_HANDLE);
    startup.hStdError = InheritableStandard(STD_ERROR_HANDLE);
    StartAndWait(state, start);
    Host->TakeConsoleBack();
}
