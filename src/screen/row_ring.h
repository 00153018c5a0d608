// The rows of the store behind an index. The cells of all rows lie in one
// array (made by cells::alloc); a ring of row pointers gives the order, row 0
// being the oldest. Scrolling the whole store turns the ring by one slot, so
// it costs one row whatever the scrollback; moving a band of rows (insert and
// delete line, a shrinking screen) turns just that band's pointers. Seen from
// outside, the rows behave exactly like one flat array that moves.
#pragma once

#include "screen/screen_cell.h"

#include <vector>

class RowRing {
public:
    RowRing() = default;
    // Takes over an array of rows x stride cells, in row order.
    RowRing(ScreenCell* cells, int rows, int stride);
    RowRing(RowRing&& other) noexcept;
    RowRing& operator=(RowRing&& other) noexcept;
    RowRing(const RowRing&) = delete;
    RowRing& operator=(const RowRing&) = delete;
    ~RowRing();

    int Rows() const { return rows_; }
    int Stride() const { return stride_; }
    bool Valid() const { return cells_ != nullptr; }

    ScreenCell* Row(int r)
    {
        int slot = base_ + r;
        if (slot >= rows_) slot -= rows_;
        return slots_[size_t(slot)];
    }
    const ScreenCell* Row(int r) const { return const_cast<RowRing*>(this)->Row(r); }

    // Rows destination to source - 1 fall off (their text is freed); the
    // count rows from source move up to destination; the rows vacated behind
    // them are empty.
    void scrollup(int source, int destination, int count);
    // The reverse: destination lies below source; rows overwritten past the
    // moved band fall off, and the rows vacated at source are empty.
    void scrolldown(int source, int destination, int count);

private:
    void Rotate(int first, int last, int shift);
    void ReleaseRows(int first, int last);

    ScreenCell* cells_ = nullptr;
    std::vector<ScreenCell*> slots_;
    int base_ = 0;
    int rows_ = 0;
    int stride_ = 0;
};
