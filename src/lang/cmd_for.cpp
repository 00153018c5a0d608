// for: the loop object parses the statement and hands out one statement per
// turn; a /r loop runs the whole iteration once in each directory.
#include "lang/builtins.h"
#include "lang/command_args.h"
#include "lang/for_loop.h"
#include "lang/loop_turn.h"

#include <memory>

namespace {

// False when the loop is to end altogether.
bool RunTurns(ForLoop& loop)
{
    while (wchar_t* statement = loop.NextItem())
        if (!RunLoopTurn(statement)) return false;
    return !loop.Failed();
}

} // namespace

void CmdFor()
{
    // On the heap: a loop holds two line buffers, and loops nest.
    auto loop = std::make_unique<ForLoop>();
    int kind = loop->Parse(CommandArgs.Tail);
    if (kind == 1) {
        RunTurns(*loop);
        return;
    }
    if (kind == 2)
        while (loop->NextDirectory())
            if (!RunTurns(*loop)) return;
}
