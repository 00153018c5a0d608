// VtTranslator: turns what a pseudo console writes (UTF-8 text with the
// escape sequences of a modern terminal) into the text the shell's writer
// takes: plain text, CR, LF, BS, TAB and the ANSI.SYS sequences (cursor moves
// by A B C D, erase by K and 2J, save and restore by s and u, colours by m).
//
// What has no counterpart is dropped: window titles, private modes (cursor
// shape and visibility), character sets. Bright colours become bold ones,
// "default colour" becomes the shell's text and background colours, a
// column move becomes CR and a move right, an erase of n characters becomes
// blanks and a move back. The pseudo console's first move (it clears and
// homes its own screen when it starts) is dropped, so the program's output
// starts where the shell's cursor stands; later moves to a place are turned
// into moves relative to where the pseudo console's cursor stands, which the
// translator follows, so they land at the same place of the shell's screen
// (both screens have the same size and scroll alike).
//
// Text arrives in pieces; a character or a sequence cut by the end of a
// piece waits for the next one.
#pragma once

#include <windows.h>

#include <string>

class VtTranslator {
public:
    VtTranslator(unsigned codePage, int width, int height);

    // The shell's text for the next piece of bytes.
    std::wstring Translate(const char* bytes, size_t count);

private:
    std::wstring Decode(const char* bytes, size_t count);
    // Handles the sequence at text[i] (an ESC); false when it is incomplete.
    bool Sequence(const std::wstring& text, size_t& i, std::wstring& out);
    void ControlSequence(const std::wstring& body, wchar_t final, std::wstring& out);
    void Colours(const std::wstring& body, std::wstring& out);
    void MoveTo(int column, int row, std::wstring& out);
    void Follow(wchar_t unit);

    unsigned codePage_;
    CPINFO pageInfo_{};
    std::string carryBytes_;
    std::wstring carryText_;
    bool started_ = false; // printable text has been shown
    int width_;
    int height_;
    int x_ = 0; // the pseudo console's cursor
    int y_ = 0;
};
