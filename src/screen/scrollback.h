// The scroll bar's view of history. The bar's position P runs from 1 to
// Filled + 1, Filled + 1 being the live screen; with p = P - 1 the store row
// at the top of the window is History - Filled + p. Filled counts the rows of
// history that hold real output (it stops one short of History while output
// runs; cls /b sets it back to 0). Rows above History - Filled were never
// written, and the bar cannot reach them.
//
// The state lives here, without a window: the window attaches a display that
// sets the bar and paints a view from a store row. The bar itself is brought
// up to date when the window paints, so that a row entering history costs
// no call into the window system.
#pragma once

#include "screen/screen_store.h"

// What the window does for the scroll bar.
class ScrollDisplay {
public:
    virtual ~ScrollDisplay() = default;
    // The bar: range 1 to maximum, the thumb at position, page rows per page
    // (0 when the system gives no proportional thumb).
    virtual void SetBar(int position, int maximum, int page) = 0;
    // Paints the screen from this store row down, with any selection.
    virtual void PaintHistory(int topRow) = 0;
    virtual void ShowCaret(bool show) = 0;
};

// Codes of ScrollCommand.
enum ScrollCode { LineUp = 0, LineDown = 1, PageUp = 2, PageDown = 3, Thumb = 5 };

class ScrollBarState : public ScreenObserver {
public:
    int Filled = 0;
    int UseScrollInfo = 1;
    int Viewing = 0;
    // The bar's position, 1 to Filled + 1.
    int Position = 1;
    ScrollDisplay* Display = nullptr;

    // The store scrolled one row into history.
    void RowEntered() override;
    // The store changed size: Filled is clamped and the range laid again.
    void RangeChanged() override { ResetRange(); }
    void LineCompleted(int) override {}
    void ResetRange();
    // Moves the view by code (ScrollCode); position is the thumb's.
    void ScrollCommand(int code, int position = 0);
    // Back to the live screen, when a history view is shown.
    void SnapBack();
    // The store row at the top of the view shown now.
    int TopRow() const;
    // Paints the view as it stands (live or history).
    void Repaint();
    // Brings the bar up to date when something changed; the window calls
    // this as it paints.
    void SyncBar();

private:
    void Move(int p);
    int Maximum() const;

    bool barChanged_ = true;
};

extern ScrollBarState TheScrollBar;
