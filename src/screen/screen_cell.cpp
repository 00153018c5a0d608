#include "screen/screen_cell.h"

#include "app/toolkit/omdib.h"
#include "screen/screen_store.h"

#include <cstdlib>
#include <cstring>
#include <vector>

CellCounterSet CellCounters;
int RunBufferSize = 128;

namespace {

// Long texts by number. The table is never destroyed: cells of the global
// store still hand their texts back while the process ends.
struct LongTextTable {
    std::vector<wchar_t*> Texts;
    std::vector<uint32_t> Unused;
};

LongTextTable& LongTexts()
{
    static LongTextTable* table = new LongTextTable;
    return *table;
}

uint32_t NewLongText(int units)
{
    LongTextTable& table = LongTexts();
    auto* text = static_cast<wchar_t*>(std::malloc(sizeof(wchar_t) * size_t(units)));
    if (table.Unused.empty()) {
        table.Texts.push_back(text);
        return uint32_t(table.Texts.size() - 1);
    }
    uint32_t number = table.Unused.back();
    table.Unused.pop_back();
    table.Texts[number] = text;
    return number;
}

// Makes room for units units; the buffer keeps its size when it is big enough.
wchar_t* Reserve(ScreenCell& cell, int units)
{
    if (cell.HasBuffer() && cell.Capacity >= units) return cell.Units();
    ReleaseText(cell);
    cell.Capacity = uint16_t(units);
    cell.LongText = 0;
    if (units <= kInlineUnits) return cell.Inline;
    cell.LongText = NewLongText(units);
    return LongTextUnits(cell.LongText);
}

// toblank without the counter.
void Blank(ScreenCell& cell, uint16_t attr)
{
    cell.Attr = attr;
    bool hasBuffer = cell.HasBuffer();
    if (hasBuffer && cell.Capacity > kInlineUnits) {
        wchar_t* units = LongTextUnits(cell.LongText);
        units[0] = L' ';
        for (int i = 1; i < cell.Capacity; ++i) units[i] = 0;
        return;
    }
    if (!hasBuffer) cell.Capacity = 1;
    cell.LongText = 0;
    cell.Inline[0] = L' ';
}

} // namespace

wchar_t* LongTextUnits(uint32_t number) { return LongTexts().Texts[number]; }

void ReleaseText(ScreenCell& cell)
{
    if (!cell.HasBuffer() || cell.Capacity <= kInlineUnits) return;
    LongTextTable& table = LongTexts();
    std::free(table.Texts[cell.LongText]);
    table.Texts[cell.LongText] = nullptr;
    table.Unused.push_back(cell.LongText);
    cell.LongText = kNoBuffer;
}

void ReleaseTexts(ScreenCell* first, int cellCount)
{
    const LongTextTable& table = LongTexts();
    if (table.Texts.size() == table.Unused.size()) return;
    for (int i = 0; i < cellCount; ++i)
        if (first[i].Capacity > kInlineUnits) ReleaseText(first[i]);
}

void FillBlanks(ScreenCell* first, int cellCount, uint16_t attr)
{
    ++CellCounters.clear_screen;
    CellCounters.toblank += uint32_t(cellCount);
    ScreenCell blank{};
    blank.Attr = attr;
    blank.Capacity = 1;
    blank.Inline[0] = L' ';
    // Eight bytes at a time, which the compiler turns into wide stores.
    uint64_t bits;
    std::memcpy(&bits, &blank, sizeof(bits));
    for (int i = 0; i < cellCount; ++i) std::memcpy(first + i, &bits, sizeof(bits));
}

bool IsSingleUnit(const wchar_t* text)
{
    wchar_t unit = text[0];
    if (unit == 0 || (unit >= 0xD800 && unit <= 0xDFFF)) return false;
    return text[1] < 0x300 || !IsCombiningMark(text[1]);
}

const wchar_t* SetCharacter(ScreenCell& cell, const wchar_t* text, uint16_t attr)
{
    ++CellCounters.set;
    int units = 0;
    const wchar_t* next = _CharNextW(text, -1, &units);
    // A cell holds at most what its 16-bit capacity can count.
    if (units > 0xFFFF) units = 0xFFFF;
    if (units == 0) units = 1;
    wchar_t* buffer = Reserve(cell, units);
    std::memcpy(buffer, text, sizeof(wchar_t) * size_t(units));
    for (int i = units; i < cell.Capacity; ++i) buffer[i] = 0;
    cell.Attr = attr;
    return next;
}

namespace cells {

void empty(ScreenCell& cell)
{
    ++CellCounters.empty;
    ReleaseText(cell);
    cell.LongText = kNoBuffer;
}

wchar_t* get(const ScreenCell& cell, wchar_t* destination)
{
    ++CellCounters.get;
    const wchar_t* units = cell.Units();
    for (int i = 0; units && i < cell.Capacity && units[i]; ++i) *destination++ = units[i];
    *destination = 0;
    return destination;
}

int count(const ScreenCell& cell)
{
    ++CellCounters.count;
    const wchar_t* units = cell.Units();
    int n = 0;
    while (units && n < cell.Capacity && units[n]) ++n;
    return n;
}

bool isblank(const ScreenCell& cell)
{
    ++CellCounters.isblank;
    const wchar_t* units = cell.Units();
    if (!units || units[0] != L' ') return false;
    return cell.Capacity == 1 || units[1] == 0;
}

void toblank(ScreenCell& cell, uint16_t attr)
{
    ++CellCounters.toblank;
    Blank(cell, attr);
}

void clear_screen(ScreenCell* first, uint16_t attr, int cellCount)
{
    ++CellCounters.clear_screen;
    CellCounters.toblank += uint32_t(cellCount);
    for (int i = 0; i < cellCount; ++i) Blank(first[i], attr);
}

ScreenCell* alloc(int64_t cellCount)
{
    ++CellCounters.alloc;
    if (cellCount <= 0) return nullptr;
    return static_cast<ScreenCell*>(std::calloc(size_t(cellCount), sizeof(ScreenCell)));
}

void free(ScreenCell* array, int64_t cellCount)
{
    ++CellCounters.free;
    if (!array) return;
    for (int64_t i = 0; i < cellCount; ++i) empty(array[i]);
    std::free(array);
}

int copy_screen(const ScreenCell* first, wchar_t* destination, int cellCount)
{
    ++CellCounters.copy_screen;
    wchar_t* end = destination;
    *end = 0;
    for (int i = 0; i < cellCount; ++i) end = get(first[i], end);
    return int(end - destination);
}

int text_size(const ScreenCell* first, int cellCount)
{
    ++CellCounters.copy_screen;
    int units = 1;
    for (int i = 0; i < cellCount; ++i) units += count(first[i]);
    return units;
}

void move(ScreenCell* source, ScreenCell* destination, int64_t cellCount)
{
    if (cellCount <= 0 || source == destination) return;
    std::memmove(destination, source, sizeof(ScreenCell) * size_t(cellCount));
    // Only the part of the source that the destination did not cover is vacated.
    ScreenCell* sourceEnd = source + cellCount;
    ScreenCell* destinationEnd = destination + cellCount;
    if (destination >= sourceEnd || destinationEnd <= source)
        std::memset(source, 0, sizeof(ScreenCell) * size_t(cellCount));
    else if (destination > source)
        std::memset(source, 0, sizeof(ScreenCell) * size_t(destination - source));
    else
        std::memset(destinationEnd, 0, sizeof(ScreenCell) * size_t(sourceEnd - destinationEnd));
}

} // namespace cells

void PrintCellCounters()
{
    struct Line {
        const wchar_t* Label;
        uint32_t Value;
    };
    const Line lines[] = {
        {L"clear_screen: ", CellCounters.clear_screen}, {L"         get: ", CellCounters.get},
        {L"         set: ", CellCounters.set},          {L" copy_screen: ", CellCounters.copy_screen},
        {L"       count: ", CellCounters.count},        {L"       alloc: ", CellCounters.alloc},
        {L"        free: ", CellCounters.free},         {L"       empty: ", CellCounters.empty},
        {L"  scrolldown: ", CellCounters.scrolldown},   {L"    scrollup: ", CellCounters.scrollup},
        {L"     isblank: ", CellCounters.isblank},      {L"     toblank: ", CellCounters.toblank},
        {L"   text_size: ", uint32_t(RunBufferSize)},
    };
    for (const Line& line : lines) {
        TheScreen.Write(line.Label);
        TheScreen.WriteULong(line.Value);
        TheScreen.NewLine();
    }
}
