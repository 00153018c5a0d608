// history (also his): lists the history, clears it, or opens its list window.
#include "app/errors.h"
#include "app/host.h"
#include "input/history.h"
#include "input/history_window.h"
#include "lang/builtins.h"
#include "lang/command_args.h"
#include "screen/colours.h"
#include "screen/screen_store.h"

#include <cwchar>

namespace {

void ListHistory()
{
    TheScreen.Paging = TheScreen.PageEnabled;
    TheScreen.PageLines = 0;
    TheScreen.BreakFlag = 0;
    for (int i = 0; i < HistoryList::kCapacity && !TheScreen.BreakFlag; ++i) {
        const wchar_t* entry = TheHistory.Entry(i);
        if (!entry) continue;
        UseItem(Item::Number);
        TheScreen.FieldWidth = 3;
        TheScreen.WriteInt(i + 1);
        UseItem(Item::HighText);
        TheScreen.Write(L": ");
        UseItem(Item::HighLHS);
        TheScreen.Write(entry);
        TheScreen.NewLine();
    }
    TheScreen.Paging = 0;
    Host->Refresh();
}

} // namespace

void CmdHistory()
{
    for (const wchar_t* s = CommandArgs.Switches; *s; ++s) {
        if (*s != L'b' && *s != L'-') {
            ReportId(2);
            return;
        }
    }
    if (CommandArgs.ArgCount == 1 && _wcsicmp(CommandArgs.Args[0], L"list") == 0) {
        OpenHistoryWindow();
        return;
    }
    if (CommandArgs.ArgCount > 0) {
        ReportId(9);
        return;
    }
    if (std::wcschr(CommandArgs.Switches, L'b')) TheHistory.HistoryClear();
    ListHistory();
}
