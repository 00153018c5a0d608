// The screen's font. The settings choose a family, a point size and bold (or
// a pixel size for the raster family "Terminal"); the font actually made is
// measured, and its text height and average width become the cell size of
// the store. A face the system lacks is replaced by its fixed-pitch default,
// since a proportional font cannot keep the cell grid. Additional font files
// have to be registered for the process before Make, so that it can find them.
#pragma once

#include <windows.h>

constexpr int kFamilyMax = 64;

struct FontChoice {
    wchar_t Family[kFamilyMax] = L"Courier New";
    int Width = 8;
    int Height = 12;
    int Point = 10;
    int Bold = 1;
};

// FontFamily, FontWidth, FontHeight, FontPoint and FontBold of section Ombrel.
FontChoice ReadFontChoice();
// The record the font is made from, for a display of the given pixels per
// inch: a pixel size and the OEM set for "Terminal" (case counts), else a
// height from the point size.
LOGFONTW FontRecord(const FontChoice& choice, int pixelsPerInch);

class ScreenFont {
public:
    ScreenFont() = default;
    ScreenFont(const ScreenFont&) = delete;
    ScreenFont& operator=(const ScreenFont&) = delete;
    ~ScreenFont();

    // Makes the font of the choice (or the fixed-pitch default) and measures
    // it; false when not even the default could be made.
    bool Make(const FontChoice& choice);
    HFONT Handle() const { return font_; }
    int CellWidth() const { return cellWidth_; }
    int CellHeight() const { return cellHeight_; }
    // Pixels a glyph may pass its cell by: a bold glyph may be one wider.
    int Slack() const { return slack_; }

private:
    void Release();

    HFONT font_ = nullptr;
    int cellWidth_ = 8;
    int cellHeight_ = 12;
    int slack_ = 0;
};
