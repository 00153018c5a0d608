// The trace command: runs a batch program under the trace view, or, without
// arguments inside a batch program, traces the running one from this line on.
#include "app/errors.h"
#include "app/toolkit/omdib.h"
#include "exec/program_search.h"
#include "lang/batch_program.h"
#include "lang/builtins.h"
#include "lang/command_args.h"
#include "lang/shell_command.h"
#include "lang/trace.h"

#include <memory>

namespace {

// trace: the running program is traced from here on, unless it already is.
void TraceRunningProgram()
{
    BatchProgram* batch = TheShell.Batch;
    if (!batch) {
        ReportId(1);
        return;
    }
    if (TheShell.TraceActive) return;
    if (TraceBegin(batch->Path.c_str())) TraceShowProgram(*batch, batch->NextLine - 1);
}

} // namespace

// trace name [arguments]
void CmdTrace()
{
    if (!*SkipWhiteW(CommandArgs.Tail)) {
        TraceRunningProgram();
        return;
    }
    // The tail is the stage: the program's name and its own arguments. The
    // copy lives as long as the program runs, since CommandArgs points into it.
    auto stage = std::make_unique<wchar_t[]>(kLineMax);
    CopyCutW(stage.get(), CommandArgs.Tail, kLineMax);
    CommandArgs.Parse(stage.get());
    std::wstring path = FindBatchProgram(CommandArgs.Command);
    if (path.empty()) {
        ReportId(65);
        return;
    }
    // Like a program started by name, it replaces its caller.
    if (BatchProgram* caller = TheShell.Batch) caller->MarkFinished();
    // Already tracing, the view just follows into the new program and back.
    bool opened = !TheShell.TraceActive && TraceBegin(path.c_str());
    TheShell.RunBatchFile(path.c_str());
    if (opened) TraceEnd();
}
