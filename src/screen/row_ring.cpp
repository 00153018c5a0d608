#include "screen/row_ring.h"

#include <algorithm>
#include <utility>

RowRing::RowRing(ScreenCell* cells, int rows, int stride) : cells_(cells), rows_(rows), stride_(stride)
{
    slots_.resize(size_t(rows));
    for (int r = 0; r < rows; ++r) slots_[size_t(r)] = RowSlot{cells + int64_t(r) * stride, stride, 0};
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
    int upTo = slot.BlankAttr == attr ? slot.DirtyTo : stride_;
    cells::clear_screen(slot.Cells, attr, upTo);
    // A blank that kept a longer buffer is not a plain blank.
    int dirtyTo = 0;
    for (int x = 0; x < upTo; ++x)
        if (slot.Cells[x].Capacity != 1) dirtyTo = x + 1;
    slot.DirtyTo = dirtyTo;
    slot.BlankAttr = attr;
}

// The rows fall off and come back as fresh blank rows: their text is freed
// and every cell is a one-unit blank again.
void RowRing::RecycleRows(int first, int last, uint16_t attr)
{
    for (int r = first; r < last; ++r) {
        RowSlot& slot = Slot(r);
        int upTo = slot.BlankAttr == attr ? slot.DirtyTo : stride_;
        for (int x = 0; x < upTo; ++x) {
            ScreenCell& cell = slot.Cells[x];
            ReleaseText(cell);
            cell.Capacity = 0;
        }
        cells::clear_screen(slot.Cells, attr, upTo);
        slot.DirtyTo = 0;
        slot.BlankAttr = attr;
    }
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
