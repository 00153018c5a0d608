// BatchProgram: a running batch file. The whole file is read and analysed
// before the first line runs: groups are joined, and labels, procedure names
// and procedure ends are found once, so goto never rescans text and a change
// to the file does not affect the running program.
#pragma once

#include "lang/batch_parameters.h"
#include "lang/data_list.h"

#include <string>
#include <vector>

struct BatchLine {
    std::wstring Raw;        // as read; shown by the trace window
    std::wstring Joined;     // what runs; empty on blank and swallowed lines
    bool Runs = false;       // Joined holds a line to run
    std::wstring Procedure;  // the name behind "proc" at the line's start
    std::wstring Label;      // the name behind ":" at the line's start
    bool EndOfProcedure = false;
};

class BatchProgram : public BatchParameters {
public:
    static constexpr int kMaxParameters = 256;
    static constexpr int kMaxGosub = 16;

    // Loads the file and takes the parameters from CommandArgs (the name as
    // written, then each argument with its quotes).
    explicit BatchProgram(const wchar_t* path);

    bool Loaded = false;
    int GosubStack[kMaxGosub] = {};
    int GosubDepth = 0;
    int NextLine = 0;
    int Jumped = 0;
    int Finished = 0;
    std::vector<BatchLine> Lines;
    DataList Data;
    std::wstring Path;

    // The line loop; a program that did not load does nothing.
    void Run();
    void MarkFinished() { Finished = 1; }
    // The next line to run, skipping blank lines and procedure bodies; null
    // at the end. Message 85 when a procedure has no end.
    const std::wstring* FetchLine();
    // Expands, echoes and runs one joined line.
    void RunLine(const std::wstring& text);
    // Jumps to a label; message 31 and false when there is none.
    bool Goto(const wchar_t* label);
    // Drops slot n and moves the slots above it down by one.
    void Shift(int n);

    const wchar_t* Parameter(int n) const override;
    int ParameterCount() const override { return parameterCount_; }
    const wchar_t* ParameterTail() const override { return parameterTail_.c_str(); }

    // A procedure's parameters take the place of the program's while it runs.
    struct Frame {
        std::vector<std::wstring>* Slots;
        int Count;
        std::wstring Tail;
    };
    Frame SwapParameters(Frame frame);

private:
    bool Load(const wchar_t* path);
    bool Analyse(std::vector<std::wstring>& raw);

    std::vector<std::wstring> ownParameters_;
    std::vector<std::wstring>* parameters_ = &ownParameters_;
    int parameterCount_ = 0;
    std::wstring parameterTail_;
};

// Asked after every batch line and every loop turn: turns a pending break
// into the "Terminate Batch" question. True when everything is to stop.
bool CheckBreak(int line);
