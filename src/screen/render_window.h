// The text screen as the main window shows it: the font, the drawing surface
// and the painter together. Output only records in the store what changed;
// this pulls it and draws it, after a write that waits for the user and on
// the window's timer, so the cost of drawing does not grow with the output.
#pragma once

#include "screen/render.h"
#include "screen/render_font.h"
#include "screen/render_gdi.h"
#include "screen/scrollback.h"

class ScreenView : public ScrollDisplay {
public:
    // Makes the font of the settings and gives the store its cell size; the
    // window's size is computed from the cell, so this comes first.
    void MakeFont();
    // Starts drawing into the window; Detach when the window goes.
    void Attach(HWND window);
    void Detach();
    // Draws the rows changed since the last frame; false when there were none
    // (or there is nothing to draw into). Output while history is viewed
    // brings the live screen back.
    bool PaintChanges();
    // Draws the whole screen, or the history view shown now.
    void PaintAll();
    // The scroll bar, at the right edge of the text.
    void SetBar(int position, int maximum, int page) override;
    void PaintHistory(int topRow) override;
    void ShowCaret(bool show) override;
    HWND Bar() const { return bar_; }
    // The client area took this size: the screen takes as many whole cells as
    // fit, within its limits, beside the scroll bar.
    void Resize(int clientWidth, int clientHeight);
    // The window's outer size for a screen of the given cells.
    SIZE WindowSize(int columns, int rows, DWORD style) const;
    // The smallest and largest window the screen's limits allow.
    void TrackLimits(MINMAXINFO& limits, DWORD style) const;
    // A window being dragged to the given frame: the edges that move stop at
    // whole cells, so no strip of a cell is left over.
    void SnapToCells(RECT& frame, WPARAM edge, DWORD style) const;

private:
    bool CanDraw() const;
    // The selection as the painter is to show it now.
    void TakeHighlight();
    void PlaceBar(int clientWidth, int clientHeight);

    ScreenFont font_;
    GdiSurface surface_;
    ScreenPainter painter_;
    HWND window_ = nullptr;
    HWND bar_ = nullptr;
};

extern ScreenView TheView;
