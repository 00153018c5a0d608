// Colours of the text screen. Everything is indirect: a cell keeps two
// palette indices; the 17 display items say which index each kind of output
// uses; the 40-entry palette says what an index looks like. Changing an item
// does not touch text already written; changing a palette entry recolours
// every cell that uses it.
#pragma once

#include <windows.h>

#include <cstdint>

enum class Item : int {
    FileName,
    HighFile,
    Number,
    Text,
    HighText,
    BoldText,
    EnvName,
    EnvStr,
    Error,
    LHS,
    HighLHS,
    RHS,
    FileDate,
    FileTime,
    FileAttrib,
    FileDesc,
    BackGrd,
    Count
};

constexpr int kItemCount = static_cast<int>(Item::Count);
constexpr int kPaletteSize = 40;
constexpr int kSchemeCount = 10;

// Palette index of each item, as loaded from the settings.
extern uint8_t ItemColour[kItemCount];
// RGB of each palette entry (red in the low byte), and the built-in values.
extern COLORREF Palette[kPaletteSize];
extern const COLORREF PaletteDefault[kPaletteSize];
// The items' values in each scheme, in item order.
extern const uint32_t SchemeItems[kSchemeCount][kItemCount];
// String table numbers of the item labels and scheme names.
constexpr int kItemLabelBase = 220;
constexpr int kSchemeNameBase = 240;
// Settings names of the items, in item order.
extern const wchar_t* const ItemNames[kItemCount];

inline uint8_t ItemValue(Item item) { return ItemColour[static_cast<int>(item)]; }
// Foreground of the current attribute to the item; the background stays.
void UseItem(Item item);
// Background of the current attribute to the BackGrd item, after a change of
// items or palette.
void ForceBackground();

// Palette index of a colour or item name (case ignored), or -1.
int ColourByName(const wchar_t* name);

// Console programs see 4-bit codes (bit 0 blue, 1 green, 2 red, 3 bright).
uint8_t PaletteOfConsole(int code);
uint8_t ConsoleOfPalette(int index);

// The items and the page's remembered choices from section Colour40, then
// the background byte of the screen's attribute to BackGrd, then the palette
// entries. Nothing here touches the display.
void LoadColours();
// Back to the default palette when the display cannot show the stored one;
// the window program calls it once it has a window.
void LimitPaletteToDisplay();
// Writes DefaultText, DefaultScheme and the 17 items to Colour40.
void SaveItems();
// Whether the display shows at least 255 colours; a port without a display
// query counts as showing all.
bool PaletteEditable();

// The Colour page's choices: the item selected in its list and the scheme.
extern int DefaultText;
extern int DefaultScheme;

// The Colour page's working copy of the items, from opening to OK or Cancel.
struct ColourPageState {
    uint8_t Working[kItemCount];
    int SavedText;
    int SavedScheme;

    void Open();
    // Copies a scheme over the working items at once.
    void SelectScheme(int scheme);
    // A click on a swatch: the palette entry to the selected item.
    void AssignToSelected(int paletteIndex);
    // OK: the working items take effect, the screen is cleared in the new
    // background, and the choices are written.
    void Accept();
    // Cancel: the page's remembered choices go back to their opening values.
    void Cancel();
};

// The colour editor's conversions: hue, luminance and saturation 0..240 (hue
// 160 for grey), red, green and blue 0..255.
struct HlsColour {
    int Hue;
    int Luminance;
    int Saturation;
};
HlsColour RgbToHls(COLORREF rgb);
COLORREF HlsToRgb(HlsColour hls);
// The colour editor's OK: stores and writes one palette entry.
void SetPaletteEntry(int index, COLORREF rgb);
