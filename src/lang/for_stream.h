// ForFileStream: a text file read the way for /f reads it. The options
// (eol=, skip=, delims=, tokens=, usebackq) say which lines count and how a
// line is cut into fields; each ForToken names one field (or the rest of the
// line from a field on) and the loop letter that stands for it.
//
// Narrow files are read with tabs expanded to stops of 4 and lines of up to
// 4096 units; UTF-16 files keep the plain reader of TextStream, where a tab
// is one blank and a line holds at most 1024 units. Scripts rely on both.
#pragma once

#include "lang/text_stream.h"

#include <cstdint>

struct ForToken {
    int32_t Kind = 1;    // 1 this field; 2 the rest of the line from this field on
    int32_t Number = 1;  // the field, from 1
    int32_t Offset = -1; // where it starts in the line; -1 not set
    int32_t Length = 0;
    wchar_t Letter = 0;  // 0: more tokens than letters
};

enum ForTokenKind : int32_t {
    FieldToken = 1,
    RestToken = 2,
};

class ForFileStream : public TextStream {
public:
    static constexpr int kMaxTokens = 253;
    static constexpr int kMaxDelimiters = 255;

    wchar_t EndOfLine = L';'; // 0 turns the test off
    int32_t Skip = 0;
    int32_t UseBackQuotes = 0;
    wchar_t Delimiters[kMaxDelimiters + 1] = {L' ', L'\t'};
    int32_t DelimiterCount = 2;
    ForToken Tokens[kMaxTokens];
    int32_t TokenCount = 1;

    // options := { eol=c | skip=n | delims=chars | tokens=list | usebackq }
    // separated by blanks. False when the text is malformed.
    bool ParseOptions(const wchar_t* options);
    // Token 1 gets first, the next ones the letters after it (Z is followed
    // by a, z by A), until first would come round again.
    void AssignLetters(wchar_t first);
    // Opens a data file and sniffs it. On failure the message is shown (the
    // system's, or "Not a text file") and the result is false.
    bool OpenData(const wchar_t* path);
    // The next line that has a token to give, with every token located;
    // null at the end of the file.
    const wchar_t* NextFields();
    // The token that a letter stands for, or null.
    const ForToken* TokenOf(wchar_t letter) const;

protected:
    bool ReadNarrowLine(std::wstring& line) override;

private:
    bool TakeTokens(const wchar_t*& p);
    bool TakeDelimiters(const wchar_t*& p);
    bool IsDelimiter(wchar_t c) const;
    bool LocateTokens(const wchar_t* text);

    std::wstring raw_;
};
