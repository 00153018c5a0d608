// StatementSplitter: cuts a line into statements at "&" and CharSplit,
// stepping over "^"-escaped characters, quoted strings and bracket groups.
// It must outlive the statement it hands out, because CommandArgs points
// into its current-statement buffer.
#pragma once

#include "app/toolkit/omdib.h"

class StatementSplitter {
public:
    // Takes a copy of the line; false when there is nothing to split.
    bool Start(const wchar_t* line);
    // Moves the next statement into Current (expanded when asked) and parses
    // it into CommandArgs. False when no statement is left.
    bool Next(bool expand);

    wchar_t Rest[kLineMax] = {};
    wchar_t Current[kLineMax] = {};

private:
    bool pending_ = false;
};

// A splitter for the length of one line, taken from a pool that grows with
// the nesting of lines: a statement may run lines of its own, and a splitter
// must outlive the statements it hands out. Reusing them spares each line
// its two buffers.
class SplitterLease {
public:
    SplitterLease();
    ~SplitterLease();
    SplitterLease(const SplitterLease&) = delete;
    SplitterLease& operator=(const SplitterLease&) = delete;
    StatementSplitter* operator->() const { return splitter_; }
    StatementSplitter& operator*() const { return *splitter_; }

private:
    StatementSplitter* splitter_;
};

// Position of the first statement separator in text, or its terminator.
const wchar_t* FindStatementEnd(const wchar_t* text);
