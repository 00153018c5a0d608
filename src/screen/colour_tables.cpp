// The built-in colour tables: palette, item names, schemes and the 4-bit
// console translation.
#include "screen/colours.h"

namespace {

constexpr COLORREF Rgb(uint32_t hex) { return RGB((hex >> 16) & 0xFF, (hex >> 8) & 0xFF, hex & 0xFF); }

} // namespace

const COLORREF PaletteDefault[kPaletteSize] = {
    Rgb(0x000000), Rgb(0x8B0000), Rgb(0xFF0000), Rgb(0xFFC0CB), Rgb(0xFFE4E1), Rgb(0xA52A00), Rgb(0xFF6820),
    Rgb(0xFFAD5B), Rgb(0xFFD700), Rgb(0xD2B48C), Rgb(0x004040), Rgb(0x8B8B00), Rgb(0x32CD32), Rgb(0xFFFF00),
    Rgb(0xFFFFE0), Rgb(0x005500), Rgb(0x009300), Rgb(0x3CB371), Rgb(0x00FF00), Rgb(0x98FB98), Rgb(0x00005E),
    Rgb(0x388E8E), Rgb(0x7FFFD4), Rgb(0x40E0D0), Rgb(0xAFEEEE), Rgb(0x00008B), Rgb(0x0000FF), Rgb(0x7D9EC0),
    Rgb(0xC0FFFF), Rgb(0x68838B), Rgb(0x4B0082), Rgb(0x7B7BC0), Rgb(0x800080), Rgb(0x480048), Rgb(0xE6E6E6),
    Rgb(0x282828), Rgb(0x666666), Rgb(0x7F7F7F), Rgb(0xC0C0C0), Rgb(0xFFFFFF),
};

const wchar_t* const ItemNames[kItemCount] = {
    L"FileName", L"HighFile", L"Number", L"Text",     L"HighText",   L"BoldText", L"EnvName", L"EnvStr", L"Error",
    L"LHS",      L"HighLHS",  L"RHS",    L"FileDate", L"FileTime", L"FileAttrib", L"FileDesc", L"BackGrd",
};

const uint32_t SchemeItems[kSchemeCount][kItemCount] = {
    {18, 39, 13, 38, 39, 24, 32, 18, 2, 18, 13, 24, 32, 24, 26, 38, 0},
    {27, 9, 12, 38, 39, 2, 6, 8, 28, 12, 8, 27, 6, 2, 8, 34, 1},
    {18, 39, 16, 38, 39, 17, 18, 16, 39, 18, 27, 16, 27, 37, 39, 17, 0},
    {24, 39, 21, 38, 39, 39, 24, 31, 38, 24, 34, 31, 31, 39, 38, 36, 20},
    {18, 39, 24, 38, 39, 24, 18, 21, 15, 18, 15, 24, 21, 25, 26, 38, 0},
    {8, 39, 2, 38, 39, 6, 7, 2, 39, 7, 8, 2, 1, 6, 7, 38, 0},
    {36, 36, 36, 38, 39, 39, 36, 38, 39, 38, 36, 39, 38, 39, 38, 38, 35},
    {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 39},
    {39, 39, 39, 39, 39, 39, 39, 39, 39, 39, 39, 39, 39, 39, 39, 39, 0},
    {38, 38, 38, 38, 38, 38, 38, 38, 38, 38, 38, 38, 38, 38, 38, 38, 0},
};

uint8_t PaletteOfConsole(int code)
{
    static const uint8_t table[16] = {0, 24, 16, 23, 5, 30, 11, 34, 38, 26, 18, 28, 2, 32, 13, 39};
    return table[code & 15];
}

uint8_t ConsoleOfPalette(int index)
{
    static const uint8_t table[kPaletteSize] = {0, 4, 4, 4,  4,  4, 4, 4,  6,  6,  0,  6, 10, 14, 14, 2, 2, 2,  10, 10,
                                                1, 3, 11, 11, 11, 1, 9, 8, 11, 8, 5, 13, 13, 5,  7,  0, 8, 8, 7, 15};
    return index >= 0 && index < kPaletteSize ? table[index] : 0;
}
