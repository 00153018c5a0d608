// Joins the physical lines of a group that is left open into one line, as
// the batch loader does with the lines of a program and the editor does with
// the lines typed at the continuation prompt. Lines are joined by CharSplit,
// except right behind an opening bracket and before a line that begins with
// a closing one; leading blanks are kept. With "&" as CharSplit the lines
//     if x (
//       echo a
//       echo b
//     )
// become "if x (  echo a&  echo b)".
#pragma once

#include "app/toolkit/omdib.h"

class GroupJoiner {
public:
    enum class Result {
        Complete, // the text holds no open group: take Text()
        Open,     // a group is still open: more lines are needed
        TooLong,  // the joined text would pass 4095 units; nothing was added
    };

    // Appends one line that is not blank.
    Result Add(const wchar_t* line);
    const wchar_t* Text() const { return text_; }
    bool Empty() const { return length_ == 0; }
    void Clear();

private:
    wchar_t text_[kLineMax] = {};
    int length_ = 0;
};

// True when the line holds nothing but blanks and tabs.
bool IsBlankLine(const wchar_t* line);
// A batch line or the body of if, for, while, until and do may begin with
// "@", which silences the echo of that line: removes it and says whether it
// was there. Only the very first unit counts.
bool TakeEchoMark(const wchar_t*& text);
