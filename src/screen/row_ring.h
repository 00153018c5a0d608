// The rows of the store behind an index. The cells of all rows lie in one
// array (made by cells::alloc); a ring of row slots gives the order, row 0
// being the oldest. Scrolling the whole store turns the ring by one slot, so
// it costs one row whatever the scrollback; moving a band of rows (insert and
// delete line, a shrinking screen) turns just that band's slots. Seen from
// outside, the rows behave exactly like one flat array that moves.
//
// Each slot also remembers how far its row was written since it was last
// blanked: the cells from DirtyTo on are plain one-unit blanks in BlankAttr.
// Blanking the row again only has to touch the written part, which keeps a
// scroll to the columns that were used. Writers therefore reach a row only
// through Touch, naming how far they may write.
//
// A row that falls off is not blanked at once: its slot is marked, and the
// row is made blank when it is next reached (Row or Touch), which is when a
// writer comes to it anyway. So a scroll costs the same whatever the rows
// held, and a row that scrolls through unwritten never costs anything.
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
    bool Valid() const { return cells_ != nullptr; }

    const ScreenCell* Row(int r) const { return Ready(Slot(r)).Cells; }
    // The row for writing in columns 0 to upTo - 1.
    ScreenCell* Touch(int r, int upTo)
    {
        RowSlot& slot = Ready(Slot(r));
        if (slot.DirtyTo < upTo) slot.DirtyTo = upTo;
        return slot.Cells;
    }
    // clear_screen over the whole row.
    void BlankRow(int r, uint16_t attr);

    // Rows destination to source - 1 fall off (their text is freed); the
    // count rows from source move up to destination; the rows vacated behind
    // them come back blank in attr.
    void scrollup(int source, int destination, int count, uint16_t attr);
    // The reverse: destination lies below source; rows overwritten past the
    // moved band fall off, and the rows vacated at source come back blank.
    void scrolldown(int source, int destination, int count, uint16_t attr);

private:
    struct RowSlot {
        ScreenCell* Cells;
        int DirtyTo;
        uint16_t BlankAttr;
        // The row fell off: cells 0 to DirtyTo - 1 wait to come back as
        // fresh blanks in BlankAttr.
        bool Recycled;
    };

    // The slot with a fallen-off row made blank.
    static RowSlot& Ready(RowSlot& slot)
    {
        if (slot.Recycled) Recycle(slot);
        return slot;
    }
    static void Recycle(RowSlot& slot);

    RowSlot& Slot(int r) const
    {
        int slot = base_ + r;
        if (slot >= rows_) slot -= rows_;
        return slots_[size_t(slot)];
    }
    void Rotate(int first, int last, int shift);
    void RecycleRows(int first, int last, uint16_t attr);
    void MarkRecycled(RowSlot& slot, uint16_t attr) const;

    ScreenCell* cells_ = nullptr;
    // Reading a row may make a fallen-off row blank, which changes no text.
    mutable std::vector<RowSlot> slots_;
    int base_ = 0;
    int rows_ = 0;
    int stride_ = 0;
};
