#include "app/run_line.h"

#include "app/globals.h"
#include "app/host.h"
#include "input/editor.h"
#include "lang/shell_command.h"
#include "screen/screen_store.h"

#include <shellapi.h>

static void EnableClose(bool enable)
{
    if (!MainWindow) return;
    HMENU menu = GetSystemMenu(MainWindow, FALSE);
    if (menu) EnableMenuItem(menu, 6, MF_BYPOSITION | (enable ? MF_ENABLED : MF_GRAYED));
}

void RunTopLevelLine()
{
    EnableClose(false);
    CommandRunning = 1;
    TheShell.Terminate = 0;
    TheShell.EchoOn = 1;
    TheScreen.ResetAttr = TheScreen.Attr;
    TheShell.RunLine(TheEditor.Submitted);
    EnableClose(true);
    TheScreen.BreakFlag = 0;
    TheShell.EchoOn = 1;
    ShowPrompt();
    CommandRunning = 0;
}

void ShowPrompt()
{
    TheScreen.PollEnabled = 0;
    TheScreen.BreakFlag = 0;
    if (Host->Interactive() || MainWindow) {
        wchar_t directory[kPathMax];
        DWORD n = GetCurrentDirectoryW(kPathMax, directory);
        if (n == 0 || n >= kPathMax) directory[0] = 0;
        TheScreen.WriteCells(directory);
        TheScreen.WriteCells(L">");
    }
    TheScreen.EditX = TheScreen.CursorX;
    TheScreen.EditY = TheScreen.CursorY;
    TheScreen.PollEnabled = 1;
    if (MainWindow) DragAcceptFiles(MainWindow, TRUE);
}
