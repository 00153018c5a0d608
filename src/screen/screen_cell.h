// One cell of the text screen and the store's cell vocabulary.
//
// A cell is one displayed character: a base with its combining marks, or a
// surrogate pair, with a 16-bit attribute (low byte foreground palette index,
// high byte background). Its text buffer holds Capacity units: the character
// at the front, zeros behind it, and no terminator when the character fills
// the buffer exactly. Capacity only grows while the buffer lives, so the
// normal write path reuses the buffer and allocates nothing. Buffers of up to
// two units (every plain character and every surrogate pair) live inside the
// cell itself; longer ones are long texts, kept in a table on the heap and
// named by their number. Either way the cell behaves as one owned buffer, and
// a cell takes eight bytes, which keeps a full scrollback small.
//
// An empty cell (no buffer) comes from zero-filled memory, or from empty,
// which keeps the capacity and marks the buffer as gone. It shows as nothing,
// is not blank, and adds no text to a copy. Cells are plain bytes: arrays of
// them are moved bytewise, so a buffer changes owner, never copies.
#pragma once

#include <cstdint>
#include <cstring>

constexpr int kInlineUnits = 2;
// The text bits of a cell whose buffer was emptied. No character is stored
// so: two U+FFFF units are two characters, never one.
constexpr uint32_t kNoBuffer = 0xFFFFFFFF;

// The units of a long text.
wchar_t* LongTextUnits(uint32_t number);

struct ScreenCell {
    uint16_t Attr;
    uint16_t Capacity;
    union {
        wchar_t Inline[kInlineUnits];
        uint32_t LongText;
    };

    uint32_t TextBits() const
    {
        uint32_t bits;
        std::memcpy(&bits, Inline, sizeof(bits));
        return bits;
    }
    bool HasBuffer() const { return Capacity != 0 && TextBits() != kNoBuffer; }
    // The buffer of Capacity units, or null for an empty cell.
    const wchar_t* Units() const
    {
        return !HasBuffer() ? nullptr : Capacity <= kInlineUnits ? Inline : LongTextUnits(LongText);
    }
    wchar_t* Units() { return const_cast<wchar_t*>(static_cast<const ScreenCell*>(this)->Units()); }
};
static_assert(sizeof(ScreenCell) == 8, "a cell is two 16-bit fields and 32 bits of text");

// Calls of each cell operation since the start of the process; a diagnostic
// prints them.
struct CellCounterSet {
    uint32_t clear_screen, get, set, copy_screen, count, alloc, free, empty, scrolldown, scrollup, isblank,
        toblank;
};
extern CellCounterSet CellCounters;

// The operations are plain functions on cells; their lower-case names are
// the store's vocabulary and each call counts in CellCounters.
// A character of one unit: no surrogate, and no combining mark behind it.
bool IsSingleUnit(const wchar_t* text);
// set for the characters that IsSingleUnit does not take.
const wchar_t* SetCharacter(ScreenCell& cell, const wchar_t* text, uint16_t attr);

namespace cells {

void empty(ScreenCell& cell);
// Takes one whole character from text; returns the text behind it. Inline:
// this is the per-character path of all output.
inline const wchar_t* set(ScreenCell& cell, const wchar_t* text, uint16_t attr)
{
    if (!cell.HasBuffer() || cell.Capacity > kInlineUnits || !IsSingleUnit(text))
        return SetCharacter(cell, text, attr);
    ++CellCounters.set;
    std::memset(cell.Inline, 0, sizeof(cell.Inline));
    cell.Inline[0] = text[0];
    cell.Attr = attr;
    return text + 1;
}
// Copies the character and a terminator; returns the terminator written.
wchar_t* get(const ScreenCell& cell, wchar_t* destination);
int count(const ScreenCell& cell);
bool isblank(const ScreenCell& cell);
void toblank(ScreenCell& cell, uint16_t attr);
void clear_screen(ScreenCell* first, uint16_t attr, int cellCount);
// A zero-filled array of empty cells, or null.
ScreenCell* alloc(int64_t cellCount);
// Empties cellCount cells, then releases the array.
void free(ScreenCell* array, int64_t cellCount);
// Concatenates the cells' text with a terminator; returns the units written.
int copy_screen(const ScreenCell* first, wchar_t* destination, int cellCount);
// Units copy_screen needs, terminator included.
int text_size(const ScreenCell* first, int cellCount);
// Moves cells bytewise and zero-fills the source, so buffers change owner.
void move(ScreenCell* source, ScreenCell* destination, int64_t cellCount);

} // namespace cells

// Frees a long text without counting; the cell keeps its other bytes.
void ReleaseText(ScreenCell& cell);
// ReleaseText over cells; nothing to do while no long text lives.
void ReleaseTexts(ScreenCell* first, int cellCount);
// Makes cells fresh one-unit blanks, whatever they held before: the buffers
// must have been released. Counts as clear_screen.
void FillBlanks(ScreenCell* first, int cellCount, uint16_t attr);
// The diagnostic: one line per counter, through the writer.
void PrintCellCounters();
