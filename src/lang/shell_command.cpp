#include "lang/shell_command.h"

#include "app/errors.h"
#include "app/profile/profile.h"
#include "app/toolkit/omdib.h"
#include "exec/run_program.h"
#include "input/editor.h"
#include "lang/batch_program.h"
#include "lang/command_args.h"
#include "lang/dispatch.h"
#include "lang/redirect.h"
#include "lang/splitter.h"
#include "lang/trace.h"
#include "screen/screen_store.h"

#include <cstring>
#include <memory>

int32_t ErrorLevel = 0;

ShellCommand::ShellCommand() { StatementCounter = ProfileReadInt(L"Ombrel", L"Line", 0); }

void SetCommandResult()
{
    if (TheErrors.ErrorFlag) ErrorLevel = 1;
    else if (TheScreen.BreakFlag) ErrorLevel = 3;
    else ErrorLevel = 0;
}

void ShellCommand::RunLine(const wchar_t* line)
{
    // The splitter is held for the whole line: CommandArgs points into it
    // while the statement runs, and statements may run lines of their own.
    SplitterLease splitter;
    if (!splitter->Start(line)) return;
    // After an error the rest of the line still runs; only a stop (end, exit
    // in a batch program) abandons it.
    while (Terminate != 2 && splitter->Next(true)) ExecuteStatement(nullptr, L"");
}

void ShellCommand::RunCommandLine(const wchar_t* line)
{
    // The asking stage's text lives in its caller's buffer, which outlives
    // this call; it is put back there and parsed again, so that CommandArgs
    // never points into this frame once it returns.
    wchar_t* stage = const_cast<wchar_t*>(CommandArgs.WholeLine);
    auto saved = std::make_unique<wchar_t[]>(kLineMax);
    CopyCutW(saved.get(), stage, kLineMax);
    int32_t echo = EchoOn;
    EchoOn = 0;
    Terminate = 0;
    RunLine(line);
    EchoOn = echo;
    lstrcpyW(stage, saved.get());
    CommandArgs.Parse(stage);
}

// Groups, if, for, loops and batch programs all nest by running statements
// from inside a statement, and the language sets no limit of its own. The
// stack does: a line of 4095 "(" alone would nest 4095 deep. Past this depth
// a statement is refused with "Out of memory", as a failed command, instead
// of letting the stack overflow; ordinary nesting stays far below it.
constexpr int kMaxStatementDepth = 1024;
static int statementDepth = 0;

void ShellCommand::ExecuteStatement(BatchProgram* batch, const wchar_t* source)
{
    if (statementDepth >= kMaxStatementDepth) {
        ReportId(13);
        if (Terminate == 0) Terminate = 1;
        SetCommandResult();
        TheScreen.BreakFlag = 0;
        return;
    }
    ++statementDepth;
    const wchar_t* command = CommandArgs.Command;
    if ((command[0] == L'(' || command[0] == L'{') && command[1] == 0) ExecuteGroup(batch, source);
    else ExecuteSimple(batch, source);
    --statementDepth;
}

void ShellCommand::ExecuteGroup(BatchProgram* batch, const wchar_t* source)
{
    // The group ends at its last closing bracket of either kind; whatever
    // stands behind it, redirections included, is dropped.
    auto inside = std::make_unique_for_overwrite<wchar_t[]>(kLineMax);
    CopyCutW(inside.get(), CommandArgs.Tail, kLineMax);
    for (int i = lstrlenW(inside.get()) - 1; i >= 0; --i)
        if (inside[size_t(i)] == L')' || inside[size_t(i)] == L'}') {
            inside[size_t(i)] = 0;
            break;
        }
    SplitterLease splitter;
    if (!splitter->Start(inside.get())) return;
    // A goto leaves the group at once; so does any pending stop or break.
    auto stopped = [&] { return Terminate != 0 || (batch && batch->Jumped); };
    while (!stopped() && splitter->Next(true)) ExecuteStatement(batch, source);
}

void ShellCommand::ExecuteSimple(BatchProgram* batch, const wchar_t* source)
{
    // A Ctrl-Z or the end of a redirected input ends the reading of the
    // statement that met it, not of every statement after it.
    TheEditor.EndOfInput = 0;
    ExecutePipeline(batch, source);
}

void ShellCommand::ExecutePipeline(BatchProgram* batch, const wchar_t* source)
{
    TheErrors.ErrorFlag = 0;
    if (!MayRedirect(CommandArgs.WholeLine)) {
        RunOneCommand(batch, source);
        return;
    }
    StatementRedirects redirects;
    // The stage text lives in the splitter's buffer, which the scan rewrites.
    int more = redirects.Scan(const_cast<wchar_t*>(CommandArgs.WholeLine));
    for (;;) {
        if (more < 0) {
            ReportId(35);
            SetCommandResult();
            return;
        }
        RunOneCommand(batch, source);
        if (more == 0 || TheErrors.ErrorFlag) return;
        more = redirects.NextStage();
    }
}

void ShellCommand::ChangeDrive()
{
    wchar_t letter = ToUpperUnit(CommandArgs.Command[0]);
    if (letter < L'A' || letter > L'Z') {
        ReportId(5);
        return;
    }
    SetDisk(letter - L'A');
    if (GetDisk() != letter - L'A') ReportId(3);
}

void ShellCommand::RunBatchOrProgram(BatchProgram* batch)
{
    std::wstring path = RunProgram(LaunchOptions{});
    if (path.empty()) return;
    // Started without call, the new program replaces its caller for good.
    if (batch) batch->MarkFinished();
    RunBatchFile(path.c_str());
}

void ShellCommand::RunBatchFile(const wchar_t* path)
{
    uint16_t colour = TheScreen.Attr;
    BatchProgram* caller = Batch;
    int callerHighlight = TraceHighlight;
    auto program = std::make_unique<BatchProgram>(path);
    TheScreen.Attr = colour;
    // The trace list follows the program that runs, and comes back to the
    // caller's lines when it ends.
    TraceShowProgram(*program, -1);
    program->Run();
    if (caller) TraceShowProgram(*caller, callerHighlight);
}

void ShellCommand::RunOneCommand(BatchProgram* batch, const wchar_t* source)
{
    wchar_t word[260];
    CopyCutW(word, CommandArgs.Command, 260);
    for (wchar_t* unit = word; *unit; ++unit) *unit = ToLowerUnit(*unit);

    KeepErrorLevel = 0;
    TheScreen.BreakFlag = 0;
    if (++StatementCounter > 256) StatementCounter = 0;
    BatchProgram* outer = Batch;
    Batch = batch;

    // A stage that the trace user stopped does not run.
    bool runs = !TraceActive || TraceGate(CommandArgs.WholeLine, source);
    if (runs && !DispatchBuiltin(batch, word)) {
        bool driveChange = word[0] && word[1] == L':' && word[2] == 0 && CommandArgs.ArgCount == 0 &&
                           !CommandArgs.HasSwitches();
        if (driveChange) ChangeDrive();
        else if (word[0]) RunBatchOrProgram(batch);
        KeepErrorLevel = 1;
    }

    Batch = outer;
    // The colour of a statement ends with it; the colour command moves ResetAttr too.
    TheScreen.Attr = TheScreen.ResetAttr;
    if (Terminate == 0 && TheScreen.BreakFlag) Terminate = 1;
    if (!KeepErrorLevel) SetCommandResult();
    TheScreen.BreakFlag = 0;
}
