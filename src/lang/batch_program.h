// BatchProgram: a running batch file. The whole file is read and analysed
// before the first line runs: groups are joined, and labels and procedure
// names go into maps once, so goto never rescans text and a change to the
// file does not affect the running program.
//
// The lines are kept as one text: every physical line as read, each ended by
// a zero unit, with the start of each line in a table. A line costs its text
// and a few bytes; only a group joined from several lines keeps a second,
// joined text.
#pragma once

#include "lang/batch_parameters.h"
#include "lang/data_list.h"

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

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
    DataList Data;
    std::wstring Path;

    // The line loop; a program that did not load does nothing.
    void Run();
    void MarkFinished() { Finished = 1; }
    int LineCount() const { return int(starts_.size()); }
    // A physical line as read; the trace window shows these.
    const wchar_t* RawLine(int index) const { return text_.c_str() + starts_[size_t(index)]; }
    int RawLength(int index) const;
    std::vector<std::wstring> RawLines() const;
    // True when the line at index runs and begins with "endproc".
    bool EndsProcedure(int index) const;
    // The next line to run, skipping blank lines and procedure bodies; null
    // at the end. Message 85 when a procedure has no end.
    const wchar_t* FetchLine();
    // Expands, echoes and runs one joined line.
    void RunLine(const wchar_t* text);
    // Jumps to a label; message 31 and false when there is none.
    bool Goto(const wchar_t* label);
    // The line that defines a procedure, or -1.
    int FindProcedure(const wchar_t* name) const;
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
    bool Analyse();
    // What runs at a line: its joined group or the line itself; null for a
    // blank line and for one that a group above swallowed.
    const wchar_t* RunText(int index) const;

    std::wstring text_;
    std::vector<uint32_t> starts_;
    std::vector<bool> swallowed_;                  // joined into a group begun above
    std::unordered_map<int, std::wstring> joined_; // a group's text, by its first line
    std::unordered_map<std::wstring, int> labels_; // lower-case name, first line that has it
    std::unordered_map<std::wstring, int> procedures_;
    std::unique_ptr<wchar_t[]> expanded_; // the expanded line, kLineMax units

    std::vector<std::wstring> ownParameters_;
    std::vector<std::wstring>* parameters_ = &ownParameters_;
    int parameterCount_ = 0;
    std::wstring parameterTail_;
};

// Asked after every batch line and every loop turn: turns a pending break
// into the "Terminate Batch" question. True when everything is to stop.
bool CheckBreak(int line);
