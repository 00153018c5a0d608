// cls and page: the screen's own commands beside type and more.
#include "app/errors.h"
#include "lang/builtins.h"
#include "lang/command_args.h"
#include "screen/screen_store.h"
#include "screen/scrollback.h"

#include <windows.h>

void CmdCls()
{
    const wchar_t* switches = CommandArgs.Switches;
    for (const wchar_t* s = switches; *s; ++s)
        if (*s != L'b') {
            ReportId(2);
            return;
        }
    if (RejectArguments()) return;
    // With /b the scroll bar forgets the history; its rows stay in the store.
    if (*switches) {
        TheScrollBar.Filled = 0;
        TheScrollBar.ResetRange();
    }
    TheScreen.ClearScreen();
}

void CmdPage()
{
    if (RejectSwitches()) return;
    if (CommandArgs.ArgCount != 1) {
        ReportId(1);
        return;
    }
    const wchar_t* word = CommandArgs.Args[0];
    if (lstrcmpiW(word, L"on") == 0) TheScreen.PageEnabled = 1;
    else if (lstrcmpiW(word, L"off") == 0) TheScreen.PageEnabled = 0;
    else ReportId(9);
}
