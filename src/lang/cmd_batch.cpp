// Control flow inside batch programs: goto, gosub and return, shift, stop,
// call, and procedures (proc, endproc, callproc).
#include "app/errors.h"
#include "app/toolkit/omdib.h"
#include "exec/run_program.h"
#include "lang/batch_program.h"
#include "lang/builtins.h"
#include "lang/command_args.h"
#include "lang/shell_command.h"

#include <memory>
#include <string>
#include <vector>

namespace {

constexpr int kMaxProcedureDepth = 16;
int procedureDepth = 0;

// Argument 1 as a label: slashes become backslashes, a trailing backslash
// goes, and a leading colon (as in "goto :end") is not part of the name.
std::wstring LabelArgument()
{
    std::wstring label = CommandArgs.Args[0];
    for (wchar_t& c : label)
        if (c == L'/') c = L'\\';
    if (label.size() > 1 && label.back() == L'\\' && label[label.size() - 2] != L':') label.pop_back();
    if (!label.empty() && label[0] == L':') label.erase(0, 1);
    return label;
}

// Makes Tail the stage: its first word becomes Command. The copy must live as
// long as the stage it describes.
std::unique_ptr<wchar_t[]> ReparseTail()
{
    auto text = std::make_unique<wchar_t[]>(kLineMax);
    CopyCutW(text.get(), CommandArgs.Tail, kLineMax);
    CommandArgs.Parse(text.get());
    return text;
}

} // namespace

void CmdGoto()
{
    BatchProgram* batch = TheShell.Batch;
    if (CommandArgs.ArgCount == 0) {
        ReportId(31);
        TheShell.Terminate = 2;
        return;
    }
    if (!batch->Goto(LabelArgument().c_str())) TheShell.Terminate = 2;
}

void CmdGosub()
{
    BatchProgram* batch = TheShell.Batch;
    int returnTo = batch->NextLine;
    if (CommandArgs.ArgCount == 0) {
        ReportId(31);
        TheShell.Terminate = 2;
        return;
    }
    if (!batch->Goto(LabelArgument().c_str())) {
        TheShell.Terminate = 2;
        return;
    }
    if (batch->GosubDepth >= BatchProgram::kMaxGosub) {
        ReportId(44);
        TheShell.Terminate = 2;
        return;
    }
    batch->GosubStack[batch->GosubDepth++] = returnTo;
}

void CmdReturn()
{
    BatchProgram* batch = TheShell.Batch;
    if (batch->GosubDepth == 0) {
        ReportId(43);
        TheShell.Terminate = 2;
        return;
    }
    // No jump flag: the running group or loop ends first, then the line loop
    // goes on at the popped line.
    batch->NextLine = batch->GosubStack[--batch->GosubDepth];
}

void CmdShift()
{
    int slot = 0;
    for (const wchar_t* s = CommandArgs.Switches; *s; ++s)
        if (*s >= L'0' && *s <= L'9') {
            slot = *s - L'0';
            break;
        }
    TheShell.Batch->Shift(slot);
}

void CmdStop() { TheShell.Batch->MarkFinished(); }

void CmdCall()
{
    auto stage = ReparseTail();
    if (!CommandArgs.Command[0]) return;
    BatchProgram* batch = TheShell.Batch;
    LaunchOptions options;
    options.AllowBatch = batch != nullptr;
    std::wstring path = RunProgram(options);
    if (!path.empty()) TheShell.RunBatchFile(path.c_str());
}

// Reached in sequence only through a jump into a procedure's body.
void CmdProc() { ReportId(87); }

void CmdEndproc() { ReportId(88); }

// Runs the lines of a procedure from NextLine to its endproc.
static void RunProcedureBody(BatchProgram& batch)
{
    for (;;) {
        const wchar_t* text = batch.FetchLine();
        if (!text) return;
        int line = batch.NextLine;
        if (batch.EndsProcedure(line - 1)) return;
        batch.RunLine(text);
        if (CheckBreak(line)) return;
        if (batch.NextLine >= batch.LineCount()) return;
    }
}

void CmdCallproc()
{
    auto stage = ReparseTail();
    BatchProgram& batch = *TheShell.Batch;
    int resumeAt = batch.NextLine;
    if (procedureDepth >= kMaxProcedureDepth + 1) {
        ReportId(86);
        return;
    }
    if (!CommandArgs.Command[0]) {
        ReportId(1);
        return;
    }
    int definition = batch.FindProcedure(CommandArgs.Command);
    if (definition < 0) {
        ReportId(84);
        return;
    }
    // The procedure's own parameters, without their quotes.
    std::vector<std::wstring> slots(BatchProgram::kMaxParameters);
    slots[0] = CommandArgs.Command;
    for (int i = 0; i < CommandArgs.ArgCount && i + 1 < BatchProgram::kMaxParameters; ++i)
        slots[size_t(i + 1)] = CommandArgs.Args[i];
    BatchProgram::Frame outer =
        batch.SwapParameters({&slots, CommandArgs.ArgCount, std::wstring(CommandArgs.Tail)});
    batch.NextLine = definition + 1;
    ++procedureDepth;
    RunProcedureBody(batch);
    --procedureDepth;
    batch.NextLine = resumeAt;
    batch.SwapParameters(outer);
}
