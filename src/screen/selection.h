// The mouse selection. Its ends are cell indices in the store (row x MaxWidth
// + column, rows counted from the oldest), so they are not moved when the
// screen scrolls: a selection stays on its index, and thus on other text, if
// output runs while it stands. The cells from Anchor to End inclusive, in
// store order, are the selection: it wraps from the end of one row to the
// start of the next, hidden columns past ScreenWidth included.
//
// The window feeds it pixel positions; the highlight is drawn while a drag or
// a word or line mark is in progress, and a finished selection keeps the
// picture last painted until something paints the screen again.
#pragma once

#include <cstdint>
#include <string>

class ScreenSelection {
public:
    int Dragged = 0;
    int Exists = 0;
    int DragState = 0; // 0 none, 1 button down, 2 dragging
    int Marking = 0;   // a word or line mark by a multiple click
    uint32_t Anchor = 0;
    uint32_t End = 0;
    // Height of the bar above the text, in pixels.
    int TopOffset = 0;

    // Whether the pixel lies on a visible cell of the text.
    bool InsideText(int x, int y) const;
    // The store index under a pixel given as unsigned 16-bit values. Past the
    // top or bottom edge it scrolls the view a row and gives the edge row.
    uint32_t HitTest(unsigned x, unsigned y);
    void SelectionDown(unsigned x, unsigned y);
    void SelectionMove(unsigned x, unsigned y);
    void SelectionUp();
    // A run of non-blank cells around the index, within its row.
    void SelectWord(uint32_t index);
    // The visible part of the index's row.
    void SelectLine(uint32_t index);
    // 1 when there was something to clear (and the view was painted again).
    int ClearSelection();
    bool Highlighted() const { return DragState || Marking; }
    // The selection as text: one CR LF between rows, no blanks at a row's
    // end and no CR LF after the last row.
    std::wstring SelectedText() const;

private:
    void Repaint();
};

extern ScreenSelection TheSelection;
