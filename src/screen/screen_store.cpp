#include "screen/screen_store.h"

#include "app/profile/profile.h"
#include "screen/colours.h"

#include <algorithm>
#include <utility>

namespace {

// The message shown when not even a small store can be had.
[[noreturn]] void FailOutOfMemory()
{
    wchar_t text[128];
    if (LoadStringW(GetModuleHandleW(nullptr), 316, text, 128) <= 0) lstrcpyW(text, L"Out of Memory!");
    MessageBoxW(nullptr, text, L"Fatal Error", MB_OK | MB_ICONWARNING);
    ExitProcess(UINT(-1));
}

const ScreenCell kNoCell{};

} // namespace

ScreenStore::ScreenStore()
{
    LoadScreenLimits();
    LoadColours();
    AlphaOff = ProfileReadInt(L"Ombrel", L"AlphaHighlight", 1) == 0 ? 1 : 0;
    Build(ProfileReadInt(L"Ombrel", L"ScrollBack", 250));
}

ScreenStore::ScreenStore(int scrollBack) { Build(scrollBack); }

void ScreenStore::Build(int scrollBack)
{
    stride_ = MaxWidth;
    areaRows_ = MaxHeight;
    int rows = ClampScrollBack(scrollBack);
    ScreenCell* cells = nullptr;
    // A smaller store is accepted silently; one smaller than the screen is not.
    for (; rows > 31 && rows > areaRows_; rows -= 32)
        if ((cells = cells::alloc(int64_t(rows) * stride_)) != nullptr) break;
    if (!cells) FailOutOfMemory();
    rows_ = RowRing(cells, rows, stride_);
    ScrollBack = rows;
    Attr = ResetAttr = uint16_t(ItemValue(Item::Text) | ItemValue(Item::BackGrd) << 8);
    BlankRows(0, rows, Attr);
}

int ScreenStore::Columns() const { return std::clamp(ScreenWidth, 1, stride_); }

int ScreenStore::ScreenRows() const { return std::clamp(ScreenHeight, 1, areaRows_); }

ScreenCell* ScreenStore::ScreenCellAt(int x, int y, int upTo)
{
    int row = History() + y;
    if (unsigned(x) < unsigned(stride_) && unsigned(row) < unsigned(Rows())) return rows_.Touch(row, upTo) + x;
    // Off the row: the cell where a flat array of rows would put it.
    int64_t index = int64_t(row) * stride_ + x;
    if (index < 0 || index >= int64_t(Rows()) * stride_) return nullptr;
    return rows_.Touch(int(index / stride_), upTo > 0 ? stride_ : 0) + index % stride_;
}

const ScreenCell& ScreenStore::CellAt(int x, int y) const
{
    int64_t index = int64_t(History() + y) * stride_ + x;
    if (index < 0 || index >= int64_t(Rows()) * stride_) return kNoCell;
    return rows_.Row(int(index / stride_))[index % stride_];
}

uint16_t ScreenStore::BlankAttr() const { return uint16_t((Attr & 0xFF) | ItemValue(Item::BackGrd) << 8); }

void ScreenStore::BlankRows(int first, int last, uint16_t attr)
{
    for (int r = std::max(first, 0); r < last && r < Rows(); ++r) rows_.BlankRow(r, attr);
}

void ScreenStore::MarkRow(int y)
{
    ++ChangeCount;
    if (y < 0 || y >= ScreenRows()) return;
    if (damage_.Top > damage_.Bottom) damage_.Top = damage_.Bottom = y;
    damage_.Top = std::min(damage_.Top, y);
    damage_.Bottom = std::max(damage_.Bottom, y);
}

void ScreenStore::MarkWhole()
{
    ++ChangeCount;
    damage_.Whole = true;
}

ScreenDamage ScreenStore::TakeDamage() { return std::exchange(damage_, ScreenDamage{}); }

void ScreenStore::Locate(int x, int y)
{
    CursorX = x;
    CursorY = y;
}

void ScreenStore::ScrollScreen()
{
    if (Observer) Observer->RowEntered();
    rows_.scrollup(1, 0, Rows() - 1, BlankAttr());
    Scrolled = 1;
    CursorX = 0;
    CursorY = ScreenRows() - 1;
    --EditY;
    MarkWhole();
}

void ScreenStore::ScrollRegion(int top, int bottom, int n)
{
    top = std::max(top, 0);
    bottom = std::min(bottom, areaRows_ - 1);
    int span = bottom - top + 1;
    if (n != 0 && span > 0) {
        int shift = int(std::min<int64_t>(n < 0 ? -int64_t(n) : n, span));
        int first = History() + top;
        if (n < 0) rows_.scrollup(first + shift, first, span - shift, BlankAttr());
        else rows_.scrolldown(first, first + shift, span - shift, BlankAttr());
    }
    MarkWhole();
}

void ScreenStore::InsertLine(int row) { ScrollRegion(row, ScreenHeight, 1); }

void ScreenStore::DeleteLine(int row) { ScrollRegion(row, ScreenHeight, -1); }

void ScreenStore::ClearScreen()
{
    BlankRows(History(), Rows(), BlankAttr());
    MarkWhole();
    Locate(0, 0);
}

void ScreenStore::ClearToEnd()
{
    int row = History() + CursorY;
    if (unsigned(row) >= unsigned(Rows())) return;
    ScreenCell* cells = rows_.Touch(row, Columns());
    for (int x = std::max(CursorX, 0); x < Columns(); ++x) cells::toblank(cells[x], Attr);
    MarkRow(CursorY);
}

wchar_t ScreenStore::CharAtCursor() const
{
    const ScreenCell& cell = CellAt(CursorX, CursorY);
    const wchar_t* units = cell.Units();
    return units ? units[cell.Capacity - 1] : 0;
}

int ScreenStore::SaveScreen()
{
    ScreenCell* cells = cells::alloc(int64_t(Rows()) * stride_);
    if (!cells) return -1;
    saved_ = std::move(rows_);
    rows_ = RowRing(cells, saved_.Rows(), stride_);
    savedCursorX_ = CursorX;
    savedCursorY_ = CursorY;
    MarkWhole();
    return 0;
}

int ScreenStore::RestoreScreen()
{
    if (!saved_.Valid()) return -1;
    rows_ = std::move(saved_);
    ScrollBack = Rows();
    Locate(savedCursorX_, savedCursorY_);
    MarkWhole();
    return 0;
}

void ScreenStore::SetScrollBack(int rows)
{
    if (rows == Rows()) return;
    rows = ClampScrollBack(rows);
    ScreenCell* cells = cells::alloc(int64_t(rows) * stride_);
    if (!cells) return;
    int old = Rows();
    // The newest rows survive a shrink; growing leaves empty rows on top.
    int kept = std::min(rows, old);
    for (int r = 0; r < kept; ++r)
        cells::move(rows_.Touch(old - kept + r, stride_), cells + int64_t(rows - kept + r) * stride_, stride_);
    rows_ = RowRing(cells, rows, stride_);
    ScrollBack = rows;
    if (Observer) Observer->RangeChanged();
    ProfileWriteInt(L"Ombrel", L"ScrollBack", rows);
    MarkWhole();
}

void ScreenStore::ResizeCells(int columns, int rows)
{
    columns = std::min(ClampColumns(columns), stride_);
    rows = std::min(ClampRows(rows), areaRows_);
    if (rows < ScreenHeight) {
        if (rows <= CursorY) {
            // The cursor row stays on the new bottom row; the rows above the
            // cut fall off the screen and never reach history.
            int shift = CursorY - rows + 1;
            rows_.scrollup(History() + shift, History(), areaRows_ - shift, BlankAttr());
            CursorY = std::max(CursorY - shift, 0);
            EditY = std::max(EditY - shift, 0);
        }
        BlankRows(History() + rows, Rows(), BlankAttr());
    }
    ScreenWidth = columns;
    ScreenHeight = rows;
    MarkWhole();
}

std::wstring ScreenStore::RowText(int y) const
{
    std::wstring text;
    int row = History() + y;
    if (unsigned(row) >= unsigned(Rows())) return text;
    const ScreenCell* cells = rows_.Row(row);
    for (int x = 0; x < Columns(); ++x) {
        const wchar_t* units = cells[x].Units();
        for (int i = 0; units && i < cells[x].Capacity && units[i]; ++i) text += units[i];
    }
    size_t end = text.find_last_not_of(L' ');
    text.resize(end == std::wstring::npos ? 0 : end + 1);
    return text;
}
