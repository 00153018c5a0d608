// Turning the store into pictures. The store only records which rows changed
// (TakeDamage); a painter pulls that when the window paints and hands the
// rows to a surface as runs: the longest stretches of cells in a row with
// the same attribute, each given as one string with its colours.
//
// The surface is the one drawing interface: begin a frame over a band of
// rows (which restores their background), paint a run of cells, place the
// caret, end the frame (which shows the band at once). The window's surface
// draws with GDI through an off-screen bitmap (render_gdi.h); tests give the
// painter a surface that records what it was asked for.
#pragma once

#include "screen/screen_store.h"

#include <windows.h>

#include <vector>

// Units of the text joined for one run; the cell diagnostic shows it.
extern int RunBufferSize;

// How a run looks: its text colour, and its box colour unless the cells'
// background is the BackGrd item, where what lies behind shows through.
struct RunColours {
    COLORREF Fore = 0;
    COLORREF Back = 0;
    bool Transparent = true;
};

// A band of screen rows to draw. Whole is set when the frame covers the
// entire text area, including the part past the last full cell.
struct FrameRows {
    int First = 0;
    int Last = -1;
    int Columns = 0;
    bool Whole = false;
};

class RenderSurface {
public:
    virtual ~RenderSurface() = default;
    virtual void BeginFrame(const FrameRows& rows) = 0;
    // cellCount cells from column, row, whose characters are the units of text
    // (one character per cell; combining marks stay with their base).
    virtual void PaintRun(int column, int row, const wchar_t* text, int units, int cellCount,
                          const RunColours& colours) = 0;
    virtual void PaintCaret(int column, int row) = 0;
    // Blends colour over cellCount cells from column, row, at alpha 190 of
    // 255, over what was painted; the blended cells of a frame together get
    // a one-pixel outline in the frame colour when the frame ends.
    virtual void PaintHighlight(int column, int row, int cellCount, COLORREF colour, COLORREF frame) {}
    virtual void EndFrame() = 0;
};

// The colours of a cell attribute with the palette and items as they are now.
RunColours ColoursOf(uint16_t attr);
// The colours of selected cells: dark text on the light selection colour
// over a dark background, and the reverse over a light one.
RunColours SelectionColours();

// Store cells (row x MaxWidth + column) drawn as selected, First to Last.
struct HighlightRange {
    bool Shown = false;
    uint32_t First = 0;
    uint32_t Last = 0;
};

class ScreenPainter {
public:
    // Draws the rows the store reports as changed since the last call, in one
    // frame; false when nothing had changed.
    bool PaintChanges(ScreenStore& store, RenderSurface& surface);
    // Draws every visible row: the window was uncovered, resized or recoloured.
    // What the store had recorded is covered by this and dropped.
    void PaintAll(ScreenStore& store, RenderSurface& surface);
    // Draws every visible row as seen from a store row at the top: a view of
    // history, or the live screen when topRow is History.
    void PaintHistory(ScreenStore& store, RenderSurface& surface, int topRow);

    // The selection to show in the frames drawn from now on.
    HighlightRange Highlight;

private:
    void PaintFrame(const ScreenStore& store, RenderSurface& surface, const FrameRows& rows, int offset = 0);
    void PaintRow(const ScreenStore& store, RenderSurface& surface, int row, int columns, int offset);
    // The blended highlight over the selected cells of one row.
    void BlendRow(const ScreenStore& store, RenderSurface& surface, int row, int columns, int offset);
    bool IsSelected(const ScreenStore& store, int x, int row) const;
    void PaintMoreMark(const ScreenStore& store, RenderSurface& surface);
    // Joins the text of count cells from x, y into the run buffer; returns
    // the units, or -1 when the buffer cannot grow.
    int JoinCells(const ScreenStore& store, int x, int y, int count);

    std::vector<wchar_t> runBuffer_ = std::vector<wchar_t>(size_t(RunBufferSize));
};
