#include "lang/loop_turn.h"

#include "lang/batch_program.h"
#include "lang/command_args.h"
#include "lang/shell_command.h"
#include "screen/screen_store.h"

bool RunLoopTurn(wchar_t* statement)
{
    TheScreen.Attr = TheScreen.ResetAttr;
    if (*statement == L'@') ++statement;
    CommandArgs.Parse(statement);
    BatchProgram* batch = TheShell.Batch;
    TheShell.ExecuteStatement(batch, L"");
    if ((batch && batch->Jumped) || TheShell.Terminate == 2) return false;
    // A break or error in the body is asked about here, after its turn, so
    // that answering no lets the loop go on.
    TheScreen.PollBreak();
    return !CheckBreak(-1);
}
