// The screen as a console program sees it: attributes as 4-bit codes and
// characters by units, read and written along the screen from a position,
// wrapping at ScreenWidth. A walk ends early at the end of the screen.
#include "screen/colours.h"
#include "screen/screen_store.h"

#include <algorithm>

// reach: how far along a row the walk may write; 0 for a walk that only reads.
template <class Step> int ScreenStore::WalkScreen(int x, int y, int count, int reach, Step step)
{
    int done = 0;
    while (done < count && x >= 0 && y >= 0 && y < ScreenRows()) {
        ScreenCell* cell = ScreenCellAt(x, y, reach);
        if (!cell || !step(*cell, done)) break;
        if (++x >= Columns()) {
            x = 0;
            ++y;
        }
    }
    return done;
}

int ScreenStore::ReadAttrs(int x, int y, int count, uint16_t* destination) const
{
    return const_cast<ScreenStore*>(this)->WalkScreen(x, y, count, 0, [&](ScreenCell& cell, int& done) {
        destination[done++] = uint16_t(ConsoleOfPalette(cell.Attr & 0xFF) | ConsoleOfPalette(cell.Attr >> 8) << 4);
        return true;
    });
}

int ScreenStore::WriteAttrs(int x, int y, int count, const uint16_t* source)
{
    int written = WalkScreen(x, y, count, Columns(), [&](ScreenCell& cell, int& done) {
        uint16_t code = source[done++];
        cell.Attr = uint16_t(PaletteOfConsole(code & 15) | PaletteOfConsole((code >> 4) & 15) << 8);
        return true;
    });
    MarkWhole();
    return written;
}

// Each cell takes the units of its old character from the count, not those of
// the new one, and a cell whose old character needs more than is left stops
// the walk.
int ScreenStore::WriteChars(int x, int y, int count, const wchar_t* text)
{
    int written = WalkScreen(x, y, count, Columns(), [&](ScreenCell& cell, int& done) {
        int old = std::max(cells::count(cell), 1);
        if (!*text || old > count - done) return false;
        text = cells::set(cell, text, cell.Attr);
        done += old;
        return true;
    });
    MarkWhole();
    return written;
}

// An empty cell gives no units, and the walk goes on past it.
int ScreenStore::ReadChars(int x, int y, int count, wchar_t* destination) const
{
    return const_cast<ScreenStore*>(this)->WalkScreen(x, y, count, 0, [&](ScreenCell& cell, int& done) {
        int units = cells::count(cell);
        if (units > count - done) return false;
        cells::get(cell, destination + done);
        done += units;
        return true;
    });
}
