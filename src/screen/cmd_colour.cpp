// colour and color: the foreground, and optionally the background, of all
// output from now on, by colour or item name. The colour outlasts the
// statement because ResetAttr takes it too.
#include "app/errors.h"
#include "lang/builtins.h"
#include "lang/command_args.h"
#include "screen/colours.h"
#include "screen/screen_store.h"

void CmdColour()
{
    if (RejectSwitches()) return;
    int count = CommandArgs.ArgCount;
    if (count != 1 && count != 2) {
        ReportId(1);
        return;
    }
    // A name that resolves to nothing leaves everything as it was, silently.
    int foreground = ColourByName(CommandArgs.Args[0]);
    int background = count == 2 ? ColourByName(CommandArgs.Args[1]) : ItemValue(Item::BackGrd);
    if (foreground < 0 || background < 0) return;
    TheScreen.Attr = TheScreen.ResetAttr = uint16_t(foreground | background << 8);
}
