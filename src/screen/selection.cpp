#include "screen/selection.h"

#include "screen/scrollback.h"

#include <algorithm>

ScreenSelection TheSelection;

namespace {

// The cell at a store index; an empty one outside the store.
const ScreenCell& CellAtIndex(uint32_t index)
{
    int row = int(index / uint32_t(MaxWidth));
    return TheScreen.CellAt(int(index % uint32_t(MaxWidth)), row - TheScreen.History());
}

bool IsBlankAt(uint32_t index) { return cells::isblank(CellAtIndex(index)); }

// Window coordinates come as 16-bit values; those past 32,767 lie left of or
// above the window.
int Signed16(unsigned value)
{
    value &= 0xFFFF;
    return value > 32767 ? int(value) - 65536 : int(value);
}

uint32_t RowStart(uint32_t index) { return index - index % uint32_t(MaxWidth); }

} // namespace

bool ScreenSelection::InsideText(int x, int y) const
{
    if (x < 0 || y < TopOffset) return false;
    int column = x / TheScreen.FontWidth;
    int row = (y - TopOffset) / TheScreen.FontHeight;
    return column < ScreenWidth && row < ScreenHeight;
}

uint32_t ScreenSelection::HitTest(unsigned x, unsigned y)
{
    int column = Signed16(x) / TheScreen.FontWidth;
    int row = (Signed16(y) - TopOffset) / TheScreen.FontHeight;
    if (column < 0) {
        --row;
        column = ScreenWidth;
    }
    column = std::min(column, ScreenWidth);
    // A drag past an edge scrolls a row for each test.
    if (row < 0) {
        row = 0;
        TheScrollBar.ScrollCommand(LineUp);
    } else if (row > ScreenHeight) {
        row = ScreenHeight;
        TheScrollBar.ScrollCommand(LineDown);
    }
    int64_t index = int64_t(TheScrollBar.TopRow() + row) * MaxWidth + column;
    return uint32_t(std::max<int64_t>(index, 0));
}

void ScreenSelection::Repaint() { TheScrollBar.Repaint(); }

void ScreenSelection::SelectionDown(unsigned x, unsigned y)
{
    ClearSelection();
    Dragged = 0;
    DragState = 1;
    Anchor = End = HitTest(x, y);
}

void ScreenSelection::SelectionMove(unsigned x, unsigned y)
{
    // The first move only proves the button is held: a click without a real
    // movement never selects.
    if (DragState == 1) {
        DragState = 2;
        return;
    }
    if (DragState != 2) return;
    Dragged = 1;
    uint32_t hit = HitTest(x, y);
    if (hit == End) return;
    End = hit;
    Repaint();
}

void ScreenSelection::SelectionUp()
{
    DragState = 0;
    Marking = 0;
    if (Dragged) Exists = 1;
}

void ScreenSelection::SelectWord(uint32_t index)
{
    uint32_t start = RowStart(index);
    Anchor = End = index;
    if (!IsBlankAt(index)) {
        while (Anchor > start && !IsBlankAt(Anchor - 1)) --Anchor;
        while (End + 1 < start + uint32_t(ScreenWidth) && !IsBlankAt(End + 1)) ++End;
    }
    Dragged = Marking = 1;
    Repaint();
}

void ScreenSelection::SelectLine(uint32_t index)
{
    Anchor = RowStart(index);
    End = Anchor + uint32_t(ScreenWidth) - 1;
    Dragged = Marking = 1;
    Repaint();
}

int ScreenSelection::ClearSelection()
{
    if (!DragState && !Marking && !Exists) return 0;
    DragState = Marking = Exists = 0;
    Repaint();
    return 1;
}

std::wstring ScreenSelection::SelectedText() const
{
    uint32_t a = std::min(Anchor, End);
    uint32_t b = std::max(Anchor, End);
    std::wstring text;
    while (a <= b) {
        uint32_t start = RowStart(a);
        // Blanks at the row's end are never copied; the walk stops at the
        // selection's first cell, so a lone blank cell copies as a blank.
        uint32_t last = start + uint32_t(ScreenWidth) - 1;
        while (last > a && IsBlankAt(last)) --last;
        for (uint32_t i = a; i <= std::min(last, b); ++i) {
            const ScreenCell& cell = CellAtIndex(i);
            size_t at = text.size();
            size_t units = size_t(cells::count(cell));
            text.resize(at + units + 1);
            cells::get(cell, text.data() + at);
            text.resize(at + units);
        }
        if (last <= b) text += L"\r\n";
        a = start + uint32_t(MaxWidth);
    }
    if (text.size() >= 2 && text.compare(text.size() - 2, 2, L"\r\n") == 0) text.resize(text.size() - 2);
    return text;
}
