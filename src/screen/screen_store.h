// The text screen: every character the user can see or scroll back to, the
// cursor, the current attribute and the output switches.
//
// Rows live behind a table of row indices: the visible screen is the last
// ScreenHeight rows of the history, and scrolling rotates the table, so a
// full scrollback costs the same to scroll as an empty one. The store never
// draws; it records which rows changed and observers pull from it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

// One displayed character: its UTF-16 units (a base with its combining marks,
// or a surrogate pair) and its attribute (low byte foreground palette index,
// high byte background).
struct ScreenCell {
    uint16_t Attr = 0;
    std::wstring Text;
};

// Told about output as it happens: the console program streams every finished
// screen line to its standard output through this.
class ScreenObserver {
public:
    virtual ~ScreenObserver() = default;
    // The cursor is leaving screen row y downwards (line end or wrap).
    virtual void LineCompleted(int y) = 0;
};

extern int ScreenWidth;
extern int ScreenHeight;
extern int ScrollBack;

class ScreenStore {
public:
    ScreenStore();

    int CursorX = 0;
    int CursorY = 0;
    int EditX = 0;
    int EditY = 0;
    uint16_t Attr = 0x0026;
    uint16_t ResetAttr = 0x0026;
    int FieldWidth = 0;
    int CommaNext = 0;
    int PollEnabled = 1;
    int BreakFlag = 0;
    int Redirected = 0;
    int Paging = 0;
    ScreenObserver* Observer = nullptr;

    // The calling contract of every command: colour, Write..., NewLine, and a
    // test of BreakFlag in loops. Nothing is written while BreakFlag is set.
    void Write(const wchar_t* text);
    void WriteUnit(wchar_t unit);
    void WriteInt(int32_t value);
    void WriteInt64(int64_t value);
    void WriteUInt64(uint64_t value);
    void NewLine();
    // Store-side line end and writer: no polling, no redirection, no break test.
    void LineFeed();
    void WriteCells(const wchar_t* text);
    void Locate(int x, int y);
    void ClearScreen();
    void ShowBreak();
    void PollBreak();

    // Screen row y (0 is the top visible row) as text, trailing blanks removed.
    std::wstring RowText(int y) const;
    const ScreenCell& CellAt(int x, int y) const;

private:
    void ScrollScreen();
    ScreenCell& Cell(int x, int y);
    std::vector<std::vector<ScreenCell>> rows_;
    std::vector<int> rowIndex_;
};

extern ScreenStore TheScreen;
