#include "screen/row_ring.h"

#include <algorithm>
#include <utility>

RowRing::RowRing(ScreenCell* cells, int rows, int stride) : cells_(cells), rows_(rows), stride_(stride)
{
    slots_.resize(size_t(rows));
    for (int r = 0; r < rows; ++r) slots_[size_t(r)] = cells + int64_t(r) * stride;
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

void RowRing::ReleaseRows(int first, int last)
{
    for (int r = first; r < last; ++r) {
        ScreenCell* row = Row(r);
        for (int x = 0; x < stride_; ++x) ReleaseCell(row[x]);
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
    std::vector<ScreenCell*> band(size_t(last - first));
    for (int r = first; r < last; ++r) band[size_t(r - first)] = Row(r);
    std::rotate(band.begin(), band.begin() + shift, band.end());
    for (int r = first; r < last; ++r) {
        int slot = base_ + r;
        if (slot >= rows_) slot -= rows_;
        slots_[size_t(slot)] = band[size_t(r - first)];
    }
}

void RowRing::scrollup(int source, int destination, int count)
{
    ++CellCounters.scrollup;
    int shift = source - destination;
    if (shift <= 0 || count < 0 || destination < 0 || source + count > rows_) return;
    ReleaseRows(destination, source);
    Rotate(destination, source + count, shift);
}

void RowRing::scrolldown(int source, int destination, int count)
{
    ++CellCounters.scrolldown;
    int shift = destination - source;
    if (shift <= 0 || count < 0 || source < 0 || destination + count > rows_) return;
    ReleaseRows(source + count, destination + count);
    int length = destination + count - source;
    Rotate(source, destination + count, length - shift);
}
