// Character boundaries inside UTF-16 text. A character is one unit, a
// surrogate pair, or a base with all the combining marks that follow it; the
// text screen stores exactly one such character per cell.
#include "app/toolkit/omdib.h"

#include <cstdint>
#include <vector>

namespace {

// One bit per BMP code point, set where the platform classes the character as
// non-spacing. Built on first use with a single platform call.
const std::vector<uint32_t>& CombiningTable()
{
    static const std::vector<uint32_t> table = [] {
        std::vector<uint32_t> bits(2048, 0);
        std::vector<wchar_t> units(65536);
        std::vector<WORD> types(65536, 0);
        for (int i = 0; i < 65536; ++i) units[i] = wchar_t(i);
        units[0] = L' ';
        if (GetStringTypeW(CT_CTYPE3, units.data(), 65536, types.data())) {
            for (int i = 1; i < 65536; ++i) {
                bool surrogate = i >= 0xD800 && i <= 0xDFFF;
                if ((types[i] & C3_NONSPACING) && !surrogate) bits[i >> 5] |= 1u << (i & 31);
            }
        }
        return bits;
    }();
    return table;
}

bool IsHighSurrogate(wchar_t c) { return c >= 0xD800 && c <= 0xDBFF; }
bool IsLowSurrogate(wchar_t c) { return c >= 0xDC00 && c <= 0xDFFF; }

} // namespace

bool IsCombiningMark(wchar_t unit)
{
    if (unit < 0x300) return false;
    return (CombiningTable()[unit >> 5] >> (unit & 31)) & 1u;
}

// Units of the character at text, reading no more than maxUnits (-1: no limit).
static int CharacterUnits(const wchar_t* text, int maxUnits)
{
    if (!*text || maxUnits == 0) return 0;
    int n = 1;
    auto more = [&](int i) { return (maxUnits < 0 || i < maxUnits) && text[i]; };
    if (IsHighSurrogate(text[0]) && more(1) && IsLowSurrogate(text[1])) n = 2;
    while (more(n) && IsCombiningMark(text[n])) ++n;
    return n;
}

int IndexNextW(const wchar_t* text, int index, int* width)
{
    int n = CharacterUnits(text + index, -1);
    if (width) *width = n;
    return index + n;
}

int IndexPrevW(const wchar_t* text, int index, int* width)
{
    if (index <= 0) {
        if (width) *width = 0;
        return 0;
    }
    int j = index - 1;
    while (j > 0 && IsCombiningMark(text[j])) --j;
    if (j > 0 && IsLowSurrogate(text[j]) && IsHighSurrogate(text[j - 1])) --j;
    if (width) *width = index - j;
    return j;
}

int CharCountW(const wchar_t* text, int units)
{
    int count = 0;
    for (int i = 0; i < units && text[i];) {
        int n = CharacterUnits(text + i, units - i);
        i += n;
        ++count;
    }
    return count;
}

const wchar_t* _CharNextW(const wchar_t* text, int maxUnits, int* units)
{
    int n = CharacterUnits(text, maxUnits);
    if (units) *units = n;
    return text + n;
}

const wchar_t* _CharPrevW(const wchar_t* start, const wchar_t* end)
{
    int width;
    return start + IndexPrevW(start, int(end - start), &width);
}
