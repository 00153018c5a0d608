// The text screen: every character the user can see or scroll back to, the
// cursor, the current attribute and the output switches.
//
// The store holds ScrollBack rows of MaxWidth cells (screen_cell.h). Store
// row 0 is the oldest; rows 0 to History - 1 are history and the last
// MaxHeight rows are the screen area, of which the first ScreenHeight rows
// show. Rows sit behind a ring of row pointers (row_ring.h), so scrolling a
// full scrollback costs one row. Columns past ScreenWidth keep their text:
// narrowing the screen hides it and widening shows it again, without reflow.
//
// The store never draws. It records which screen rows changed (or that the
// whole screen did, after any scroll) and counts changes; the window pulls
// that when it paints, and holds back while a listing is paged (Paging).
#pragma once

#include "screen/row_ring.h"
#include "screen/screen_geometry.h"
#include "lang/text_stream.h"

#include <cstdint>
#include <string>

// Told about output as it happens: the console program streams every finished
// screen line to its standard output through this; the scroll bar counts rows.
class ScreenObserver {
public:
    virtual ~ScreenObserver() = default;
    // The cursor is leaving screen row y downwards (line end or wrap).
    virtual void LineCompleted(int y) = 0;
    // One row has entered history.
    virtual void RowEntered() {}
    // The store's number of rows changed.
    virtual void RangeChanged() {}
};

// What changed on the screen since the window last painted.
struct ScreenDamage {
    bool Whole = false;
    int Top = 0;     // first changed screen row
    int Bottom = -1; // last changed screen row; none when below Top
};

// The parser's record for one run of escape sequences.
struct EscapeState {
    int SavedX = 0;
    int SavedY = 0;
    int Failed = 0;
};

class ScreenStore {
public:
    // Builds the store from the settings (ScrollBack), blank in the Text
    // colour on BackGrd.
    ScreenStore();
    // A store of the given number of rows, settings untouched: for programs
    // and tests that run without a window.
    explicit ScreenStore(int scrollBack);
    ScreenStore(const ScreenStore&) = delete;
    ScreenStore& operator=(const ScreenStore&) = delete;

    int CursorX = 0;
    int CursorY = 0;
    int EditX = 0;
    int EditY = 0;
    uint16_t Attr = 0;
    uint16_t ResetAttr = 0;
    int FieldWidth = 0;
    int CommaNext = 0;
    int PollEnabled = 1;
    int BreakFlag = 0;
    int Redirected = 0;
    int Scrolled = 0;
    int Paging = 0;
    int AtMore = 0;
    int PageEnabled = 1;
    int PageLines = 0;
    ScreenObserver* Observer = nullptr;
    // The pager's wait at a full page; installed by the pager.
    void (*PagePause)() = nullptr;
    // Counts every change to the cells; a painter compares it with the last
    // value it drew.
    uint32_t ChangeCount = 0;
    // The cell's size in pixels: the settings' raster size until the window
    // has made its font and measured it.
    int FontWidth = 8;
    int FontHeight = 12;

    // --- Writing (the calling contract of every command) -------------------
    // Colour, Write..., NewLine, and a test of BreakFlag in loops. Nothing is
    // written while BreakFlag is set.
    void Write(const wchar_t* text);
    // Writes one character with its combining marks; returns the text behind it.
    const wchar_t* WriteChar(const wchar_t* text);
    void WriteUnit(wchar_t unit);
    void WriteInt(int32_t value);
    void WriteLong(int32_t value);
    void WriteULong(uint32_t value);
    void WriteInt64(int64_t value);
    void WriteUInt64(uint64_t value);
    void WriteFloat(double value);
    void NewLine();
    // Store-side line end and writer: no polling, no redirection, no break test.
    void LineFeed();
    void WriteCells(const wchar_t* text);
    // Control characters and escape sequences (output_filter.cpp).
    void WriteEscaped(const wchar_t* text);
    // {BS} {ESC "[" parameters final} at text: backspaces step left, then the
    // sequences act; returns the text behind them, or the first ESC when a
    // sequence is unknown.
    const wchar_t* ParseSequences(EscapeState& state, const wchar_t* text);
    // Output of a captured console program: with filter set only printable
    // units are kept; clearBreak first clears BreakFlag (output_filter.cpp).
    wchar_t ConsoleWriteUnit(wchar_t unit);
    int ConsoleWrite(const wchar_t* text, int filter, int clearBreak);
    int ConsoleWriteCount(const wchar_t* text, int units, int filter, int clearBreak);
    void ShowBreak();
    void PollBreak();
    // Redirection: text of Write goes to the file until CloseRedirect.
    void OpenRedirect(HANDLE file);
    void CloseRedirect();
    // The redirection target, in the encoding of the file it writes to.
    TextStream OutputFile;

    // --- Cursor and screen -------------------------------------------------
    void Locate(int x, int y);
    void ScrollScreen();
    // Scrolls screen rows top to bottom: n < 0 moves them up by -n, n > 0
    // down by n; vacated rows are blanked in the Attr foreground on BackGrd.
    void ScrollRegion(int top, int bottom, int n);
    void InsertLine(int row);
    void DeleteLine(int row);
    void ClearScreen();
    void ClearToEnd();
    // Asks for the whole screen to be drawn again at the next paint.
    void RepaintScreen() { MarkWhole(); }
    // The last unit of the cell's buffer at the cursor.
    wchar_t CharAtCursor() const;
    // Console emulation: attributes as 4-bit codes, characters by units; the
    // walk wraps at ScreenWidth and stops at the end of the screen.
    int ReadAttrs(int x, int y, int count, uint16_t* destination) const;
    int WriteAttrs(int x, int y, int count, const uint16_t* source);
    int WriteChars(int x, int y, int count, const wchar_t* text);
    int ReadChars(int x, int y, int count, wchar_t* destination) const;
    // Moves the whole store aside (0, or -1 when there is no memory) and back
    // (-1 when nothing was saved).
    int SaveScreen();
    int RestoreScreen();
    // Changes the number of rows, keeping the newest; writes the setting.
    void SetScrollBack(int rows);
    // A new screen size in cells, as the window computed it from its client
    // area. Shrinking below the cursor drops the top rows of the screen.
    void ResizeCells(int columns, int rows);

    // --- Reading -----------------------------------------------------------
    int Rows() const { return rows_.Rows(); }
    int History() const { return rows_.Rows() - areaRows_; }
    // Screen row y (0 is the top visible row, negative rows are history) as
    // text up to ScreenWidth, trailing blanks removed; empty outside the store.
    std::wstring RowText(int y) const;
    // The cell at screen position x, y; an empty cell outside the store.
    const ScreenCell& CellAt(int x, int y) const;
    // Screen rows changed since the last call.
    ScreenDamage TakeDamage();

private:
    void Build(int scrollBack);
    // The width and height in use, within what the store was built for.
    int Columns() const;
    int ScreenRows() const;
    // The cell at screen position x, y for a writer that may go on up to
    // column upTo - 1 of that row (0: for reading); null outside the store.
    ScreenCell* ScreenCellAt(int x, int y, int upTo);
    uint16_t BlankAttr() const;
    void BlankRows(int first, int last, uint16_t attr);
    void MarkRow(int y);
    void MarkWhole();
    // Console emulation's walk over the screen from x, y.
    template <class Step> int WalkScreen(int x, int y, int count, int reach, Step step);
    void WriteNumber(wchar_t* digits);

    RowRing rows_;
    RowRing saved_;
    int savedCursorX_ = 0;
    int savedCursorY_ = 0;
    int stride_ = 0;
    int areaRows_ = 0;
    ScreenDamage damage_;
};

extern ScreenStore TheScreen;
// Chooses the bright row of the ANSI colour table; only sequences change it.
extern int BrightFlag;
