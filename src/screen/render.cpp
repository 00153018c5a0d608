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

void ScreenPainter::PaintFrame(const ScreenStore& store, RenderSurface& surface, const FrameRows& rows)
{
    surface.BeginFrame(rows);
    for (int y = rows.First; y <= rows.Last; ++y) PaintRow(store, surface, y, rows.Columns);
    if (rows.Whole && store.AtMore) PaintMoreMark(store, surface);
    surface.PaintCaret(store.CursorX, store.CursorY);
    surface.EndFrame();
}

void ScreenPainter::PaintRow(const ScreenStore& store, RenderSurface& surface, int row, int columns)
{
    int x = 0;
    while (x < columns) {
        const ScreenCell& first = store.CellAt(x, row);
        if (IsEmpty(first)) {
            ++x;
            continue;
        }
        int end = x + 1;
        while (end < columns) {
            const ScreenCell& next = store.CellAt(end, row);
            if (IsEmpty(next) || next.Attr != first.Attr) break;
            ++end;
        }
        int units = JoinCells(store, x, row, end - x);
        // A run whose text cannot be held is skipped; its cells keep their text.
        if (units >= 0) surface.PaintRun(x, row, runBuffer_.data(), units, end - x, ColoursOf(first.Attr));
        x = end;
    }
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
