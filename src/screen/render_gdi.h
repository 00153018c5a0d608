// The window's drawing surface. Every frame is drawn into an off-screen
// bitmap the size of the whole display (so a resize needs no new one) and
// reaches the window in one BitBlt, which keeps output from flickering.
//
// A run is one ExtTextOutW at its first cell while every character fits its
// cell. A glyph of another width, or a right-to-left character (which the
// system would reorder), makes the whole run go cell by cell instead: each
// character at its own cell, and one too wide for it shown as "?", so that
// nothing spills into the next cell.
#pragma once

#include "screen/render.h"

#include <vector>

class GdiSurface : public RenderSurface {
public:
    GdiSurface() = default;
    GdiSurface(const GdiSurface&) = delete;
    GdiSurface& operator=(const GdiSurface&) = delete;
    ~GdiSurface() override;

    // Draws for the window in the given font and cell size; false when the
    // off-screen bitmap cannot be made.
    bool Attach(HWND window, HFONT font, int cellWidth, int cellHeight, int slack);
    void Detach();
    bool Attached() const { return memory_ != nullptr; }

    void BeginFrame(const FrameRows& rows) override;
    void PaintRun(int column, int row, const wchar_t* text, int units, int cellCount,
                  const RunColours& colours) override;
    void PaintCaret(int column, int row) override;
    void PaintHighlight(int column, int row, int cellCount, COLORREF colour, COLORREF frame) override;
    void EndFrame() override;

    // Whether some character of the text would break the cell grid when drawn
    // as one string.
    bool NeedsPerCellDrawing(const wchar_t* text, int units);

private:
    // Restores the background of a rectangle: the BackGrd colour (a
    // background picture, once there is one, is composed here).
    void PaintBackground(const RECT& area);
    // Width of one character alone, from a table for the single units.
    int CharWidth(const wchar_t* text, int units);
    void DrawCellByCell(int x, int y, const wchar_t* text, int units, const RunColours& colours);

    HWND window_ = nullptr;
    HDC memory_ = nullptr;
    HBITMAP bitmap_ = nullptr;
    HGDIOBJ oldBitmap_ = nullptr;
    HGDIOBJ oldFont_ = nullptr;
    int cellWidth_ = 8;
    int cellHeight_ = 12;
    int slack_ = 0;
    RECT frame_{};
    // The blended cells of this frame, outlined as it ends.
    HRGN highlight_ = nullptr;
    COLORREF highlightFrame_ = 0;
    // Measured widths of the characters of one unit; 0 for not measured yet.
    std::vector<unsigned char> widths_;
};
