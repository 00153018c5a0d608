#include "screen/row_ring.h"

#include <algorithm>
#include <utility>

RowRing::RowRing(ScreenCell* cells, int rows, int stride) : cells_(cells), rows_(rows), stride_(stride)
{
    slots_.resize(size_t(rows));
    for (int r = 0; r < rows; ++r) slots_[size_t(r)] = RowSlot{cells + int64_t(r) * stride, stride, 0, false};
}

RowRing::RowRing(RowRing&& other) noexcept
    : cells_(std::exchange(other.cells_, nullptr)), slots_(std::move(other.slots_)),
      base_(std::exchange(other.base_, 0)), rows_(std::exchange(other.rows_, 0)),
      stride_(std::exchange(other.stride_, 0))
{
}

RowRing& RowRing::operator=(RowRing&& other) noexcept
{
    if (this != &other) {
        cells::free(cells_, int64_t(rows_) * stride_);
        cells_ = std::exchange(other.cells_, nullptr);
        slots_ = std::move(other.slots_);
        base_ = std::exchange(other.base_, 0);
        rows_ = std::exchange(other.rows_, 0);
        stride_ = std::exchange(other.stride_, 0);
    }
    return *this;
}

RowRing::~RowRing() { cells::free(cells_, int64_t(rows_) * stride_); }

void RowRing::BlankRow(int r, uint16_t attr)
{
    RowSlot& slot = Slot(r);
    // A fallen-off row blanked again only changes the blank it waits for.
    if (slot.Recycled) {
        MarkRecycled(slot, attr);
        return;
    }
    int upTo = slot.BlankAttr == attr ? slot.DirtyTo : stride_;
    cells::clear_screen(slot.Cells, attr, upTo);
    // A blank that kept a longer buffer is not a plain blank.
    int dirtyTo = 0;
    for (int x = 0; x < upTo; ++x)
        if (slot.Cells[x].Capacity != 1) dirtyTo = x + 1;
    slot.DirtyTo = dirtyTo;
    slot.BlankAttr = attr;
}

void RowRing::MarkRecycled(RowSlot& slot, uint16_t attr) const
{
    if (slot.BlankAttr != attr) slot.DirtyTo = stride_;
    slot.BlankAttr = attr;
    slot.Recycled = slot.DirtyTo > 0;
}

// A fallen-off row comes back as a fresh blank row: its text is freed and
// every cell it used is a one-unit blank again.
void RowRing::Recycle(RowSlot& slot)
{
    ReleaseTexts(slot.Cells, slot.DirtyTo);
    FillBlanks(slot.Cells, slot.DirtyTo, slot.BlankAttr);
    slot.DirtyTo = 0;
    slot.Recycled = false;
}

void RowRing::RecycleRows(int first, int last, uint16_t attr)
{
    for (int r = first; r < last; ++r) MarkRecycled(Slot(r), attr);
}

// Turns rows first to last - 1 so that row first + shift comes to first.
void RowRing::Rotate(int first, int last, int shift)
{
    if (first == 0 && last == rows_) {
        base_ += shift;
        if (base_ >= rows_) base_ -= rows_;
        return;
    }
    std::vector<RowSlot> band(size_t(last - first));
    for (int r = first; r < last; ++r) band[size_t(r - first)] = Slot(r);
    std::rotate(band.begin(), band.begin() + shift, band.end());
    for (int r = first; r < last; ++r) Slot(r) = band[size_t(r - first)];
}

void RowRing::scrollup(int source, int destination, int count, uint16_t attr)
{
    ++CellCounters.scrollup;
    int shift = source - destination;
    if (shift <= 0 || count < 0 || destination < 0 || source + count > rows_) return;
    RecycleRows(destination, source, attr);
    Rotate(destination, source + count, shift);
}

void RowRing::scrolldown(int source, int destination, int count, uint16_t attr)
{
    ++CellCounters.scrolldown;
    int shift = destination - source;
    if (shift <= 0 || count < 0 || source < 0 || destination + count > rows_) return;
    RecycleRows(source + count, destination + count, attr);
    int length = destination + count - source;
    Rotate(source, destination + count, length - shift);
}
