// ShellCommand: the interpreter. One global instance runs everything typed,
// clicked or read from batch files; requests from other programs run on a
// temporary one. A line goes: split, expand, group or simple statement,
// pipeline, one command, dispatch or program launch.
#pragma once

#include "lang/data_list.h"

#include <cstdint>
#include <string>

class BatchProgram;
class TraceView;

class ShellCommand {
public:
    ShellCommand();

    // Counts executed stages, 0 to 256; shown by the prompt, saved at exit.
    int32_t StatementCounter = 0;
    // Non-zero: batch lines are echoed with the prompt before they run.
    int32_t EchoOn = 1;
    // 0 nothing pending; 1 a break is pending and the user is to be asked;
    // 2 stop the running batch program and everything that called it.
    int32_t Terminate = 0;
    // Set by a handler that manages ErrorLevel itself; cleared every stage.
    int32_t KeepErrorLevel = 0;
    // Non-zero while the trace view is up.
    int32_t TraceActive = 0;
    // The data/read list used when no batch program runs.
    DataList TopData;
    // Steps granted by the trace view; -1 stop, -2 run freely.
    int32_t TracePermitted = 0;
    // Steps taken so far, from 1.
    int32_t TraceStep = 1;
    // The open trace view, or null.
    TraceView* TraceWindow = nullptr;
    // Index highlighted in the trace list; -1 none.
    int32_t TraceHighlight = -1;
    // The batch program whose statement is running, or null at the prompt.
    BatchProgram* Batch = nullptr;
    // pushd's full paths, oldest first; a push onto a full stack drops the oldest.
    static constexpr int kDirectoryStackSize = 16;
    std::wstring DirectoryStack[kDirectoryStackSize];
    int32_t DirectoryCount = 0;

    // Splits a line and runs each statement (with expansion) on no batch.
    void RunLine(const wchar_t* line);
    // Runs a line supplied by other code, keeping the current stage intact.
    void RunCommandLine(const wchar_t* line);
    // Runs the statement that CommandArgs describes.
    void ExecuteStatement(BatchProgram* batch, const wchar_t* source);
    // Loads and runs a batch program with the parameters in CommandArgs.
    void RunBatchFile(const wchar_t* path);

private:
    void ExecuteGroup(BatchProgram* batch, const wchar_t* source);
    void ExecuteSimple(BatchProgram* batch, const wchar_t* source);
    void ExecutePipeline(BatchProgram* batch, const wchar_t* source);
    void RunOneCommand(BatchProgram* batch, const wchar_t* source);
    void ChangeDrive();
    void RunBatchOrProgram(BatchProgram* batch);
};

extern ShellCommand TheShell;
extern int32_t ErrorLevel;

// ErrorLevel from the flags: 1 after a report, 3 after a break, else 0.
void SetCommandResult();
