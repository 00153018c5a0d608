#include "app/run_line.h"

#include "app/globals.h"
#include "app/host.h"
#include "input/editor.h"
#include "input/editor_links.h"
#include "input/prompt.h"
#include "input/unix_mode.h"
#include "lang/environment_index.h"
#include "lang/shell_command.h"
#include "lang/trace.h"
#include "screen/colours.h"
#include "screen/screen_store.h"

namespace {

void EchoConvertedLine(const wchar_t* line)
{
    if (!TheUnixMode.Unix || !TheUnixMode.Display) return;
    UseItem(Item::Text);
    TheScreen.Write(line);
    TheScreen.NewLine();
}

// Both prompts print with polling off, so that their own output cannot start
// dispatching messages, and leave an empty line anchored behind them.
template <typename PrintFn> void PromptWith(PrintFn print)
{
    TheScreen.PollEnabled = 0;
    TheScreen.BreakFlag = 0;
    if (Host->Interactive()) print();
    TheEditor.ResetLine();
    TheScreen.PollEnabled = 1;
    Host->ShowCaret();
    Host->Refresh();
    Host->AcceptDrops(true);
}

} // namespace

void EnableClose(bool enable)
{
    if (!MainWindow) return;
    HMENU menu = GetSystemMenu(MainWindow, FALSE);
    if (menu) EnableMenuItem(menu, 6, MF_BYPOSITION | (enable ? MF_ENABLED : MF_GRAYED));
}

void RunTopLevelLine(PromptAfter prompt)
{
    EnableClose(false);
    Links->EnableHistoryList(false);
    CommandRunning = 1;
    TheShell.Terminate = 0;
    TheShell.EchoOn = 1;
    TheScreen.ResetAttr = TheScreen.Attr;
    ConvertUnixInput(TheEditor.Submitted);
    EchoConvertedLine(TheEditor.Submitted);
    TheShell.RunLine(TheEditor.Submitted);
    // The idle shell's process environment is always exact.
    SyncEnvironment();
    EnableClose(true);
    Links->EnableHistoryList(true);
    TheScreen.BreakFlag = 0;
    TheShell.EchoOn = 1;
    if (prompt == PromptAfter::Yes) ShowPrompt();
    CommandRunning = 0;
    // A trace begun inside a batch program outlives it until the line ends.
    TraceEnd();
}

void ShowPrompt()
{
    PromptWith([] {
        Links->CheckMail();
        ThePrompt.Print();
    });
}

void ShowMorePrompt()
{
    PromptWith([] {
        if (TheScreen.CursorX != 0) TheScreen.NewLine();
        TheScreen.Write(L"More? ");
    });
}

void EchoBatchLine(const wchar_t* text)
{
    ThePrompt.Print();
    TheScreen.Write(UnixDisplayW(text));
    TheScreen.NewLine();
}
