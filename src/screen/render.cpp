#include "screen/render.h"

#include "screen/colours.h"

#include <algorithm>
#include <iterator>
#include <new>

namespace {

// The size in use, within what the store was built for.
int VisibleColumns() { return std::clamp(ScreenWidth, 1, MaxWidth); }
int VisibleRows() { return std::clamp(ScreenHeight, 1, MaxHeight); }

// An empty cell (from zero-filled memory) shows as nothing: it is never part
// of a run, so the characters behind it keep their columns.
bool IsEmpty(const ScreenCell& cell) { return cell.Units() == nullptr; }

} // namespace

RunColours ColoursOf(uint16_t attr)
{
    RunColours colours;
    int fore = attr & 0xFF;
    int back = attr >> 8;
    // An index past the palette can only come from a damaged attribute; it
    // shows in the first entry rather than reading past the table.
    colours.Fore = Palette[fore < kPaletteSize ? fore : 0];
    colours.Back = Palette[back < kPaletteSize ? back : 0];
    colours.Transparent = back == ItemValue(Item::BackGrd);
    return colours;
}

RunColours SelectionColours()
{
    COLORREF back = Palette[ItemValue(Item::BackGrd)];
    int light = (2 * GetRValue(back) + 3 * GetGValue(back) + GetBValue(back)) / 6;
    COLORREF dark = Palette[0];
    COLORREF bright = Palette[39];
    RunColours colours;
    colours.Transparent = false;
    colours.Fore = light < 129 ? dark : bright;
    colours.Back = light < 129 ? bright : dark;
    return colours;
}

bool ScreenPainter::PaintChanges(ScreenStore& store, RenderSurface& surface)
{
    // A paged listing is drawn a page at a time, by the pager's wait.
    if (store.Paging && !store.AtMore) return false;
    ScreenDamage damage = store.TakeDamage();
    int rows = VisibleRows();
    FrameRows frame;
    frame.Columns = VisibleColumns();
    if (damage.Whole) {
        frame.Last = rows - 1;
        frame.Whole = true;
    } else {
        frame.First = damage.Top;
        frame.Last = std::min(damage.Bottom, rows - 1);
    }
    if (frame.First > frame.Last) return false;
    PaintFrame(store, surface, frame);
    return true;
}

void ScreenPainter::PaintAll(ScreenStore& store, RenderSurface& surface)
{
    store.TakeDamage();
    PaintFrame(store, surface, {0, VisibleRows() - 1, VisibleColumns(), true});
}

void ScreenPainter::PaintHistory(ScreenStore& store, RenderSurface& surface, int topRow)
{
    store.TakeDamage();
    PaintFrame(store, surface, {0, VisibleRows() - 1, VisibleColumns(), true}, topRow - store.History());
}

void ScreenPainter::PaintFrame(const ScreenStore& store, RenderSurface& surface, const FrameRows& rows, int offset)
{
    surface.BeginFrame(rows);
    for (int y = rows.First; y <= rows.Last; ++y) PaintRow(store, surface, y, rows.Columns, offset);
    // The mark and the caret belong to the live screen.
    if (offset == 0 && rows.Whole && store.AtMore) PaintMoreMark(store, surface);
    if (offset == 0) surface.PaintCaret(store.CursorX, store.CursorY);
    surface.EndFrame();
}

bool ScreenPainter::IsSelected(const ScreenStore& store, int x, int row) const
{
    if (!Highlight.Shown) return false;
    int64_t index = int64_t(store.History() + row) * MaxWidth + x;
    return index >= int64_t(Highlight.First) && index <= int64_t(Highlight.Last);
}

void ScreenPainter::PaintRow(const ScreenStore& store, RenderSurface& surface, int y, int columns, int offset)
{
    int row = y + offset;
    int x = 0;
    while (x < columns) {
        const ScreenCell& first = store.CellAt(x, row);
        if (IsEmpty(first)) {
            ++x;
            continue;
        }
        bool selected = IsSelected(store, x, row);
        int end = x + 1;
        while (end < columns) {
            const ScreenCell& next = store.CellAt(end, row);
            if (IsEmpty(next) || next.Attr != first.Attr || IsSelected(store, end, row) != selected) break;
            ++end;
        }
        int units = JoinCells(store, x, row, end - x);
        // A run whose text cannot be held is skipped; its cells keep their text.
        // Opaque selection colours replace the cells' own without blending.
        if (units >= 0)
            surface.PaintRun(x, y, runBuffer_.data(), units, end - x,
                             selected && store.AlphaOff ? SelectionColours() : ColoursOf(first.Attr));
        x = end;
    }
    if (!store.AlphaOff) BlendRow(store, surface, y, columns, offset);
}

void ScreenPainter::BlendRow(const ScreenStore& store, RenderSurface& surface, int y, int columns, int offset)
{
    int row = y + offset;
    int x = 0;
    while (x < columns && !IsSelected(store, x, row)) ++x;
    int end = x;
    while (end < columns && IsSelected(store, end, row)) ++end;
    if (end == x) return;
    COLORREF colour = SelectionColours().Back;
    surface.PaintHighlight(x, y, end - x, colour, colour == Palette[39] ? RGB(255, 255, 255) : RGB(0, 0, 0));
}

void ScreenPainter::PaintMoreMark(const ScreenStore& store, RenderSurface& surface)
{
    // The pager's mark is not in the cells: it lies over the finished page
    // only in the picture, and goes when the row is drawn again.
    static const wchar_t kMark[] = L"-- more --";
    constexpr int kMarkLength = int(std::size(kMark)) - 1;
    RunColours colours;
    colours.Fore = Palette[ItemValue(Item::HighText)];
    surface.PaintRun(store.CursorX, store.CursorY, kMark, kMarkLength, kMarkLength, colours);
}

int ScreenPainter::JoinCells(const ScreenStore& store, int x, int y, int count)
{
    int needed = 1;
    for (int i = 0; i < count; ++i) needed += cells::count(store.CellAt(x + i, y));
    if (size_t(needed) > runBuffer_.size()) {
        try {
            runBuffer_.resize(std::max(size_t(needed), runBuffer_.size() * 2));
        } catch (const std::bad_alloc&) {
            RunBufferSize = 0;
            return -1;
        }
        RunBufferSize = int(runBuffer_.size());
    }
    wchar_t* end = runBuffer_.data();
    for (int i = 0; i < count; ++i) end = cells::get(store.CellAt(x + i, y), end);
    return int(end - runBuffer_.data());
}
