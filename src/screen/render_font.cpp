#include "screen/render_font.h"

#include "app/profile/profile.h"

#include <cwchar>

namespace {

constexpr BYTE kOemSet = 255;

// Metrics of a font as the screen would draw it.
bool Measure(HFONT font, TEXTMETRICW& metrics)
{
    HDC screen = GetDC(nullptr);
    HGDIOBJ old = SelectObject(screen, font);
    bool measured = GetTextMetricsW(screen, &metrics) != 0;
    SelectObject(screen, old);
    ReleaseDC(nullptr, screen);
    return measured;
}

// The flag's name says the opposite of what it means: set, the pitch varies.
bool IsFixedPitch(const TEXTMETRICW& metrics) { return (metrics.tmPitchAndFamily & TMPF_FIXED_PITCH) == 0; }

int PixelsPerInch()
{
    HDC screen = GetDC(nullptr);
    int pixels = GetDeviceCaps(screen, LOGPIXELSY);
    ReleaseDC(nullptr, screen);
    return pixels > 0 ? pixels : 96;
}

} // namespace

FontChoice ReadFontChoice()
{
    FontChoice choice;
    ProfileReadString(L"Ombrel", L"FontFamily", L"Courier New", choice.Family, kFamilyMax);
    choice.Width = ProfileReadInt(L"Ombrel", L"FontWidth", 8);
    choice.Height = ProfileReadInt(L"Ombrel", L"FontHeight", 12);
    choice.Point = ProfileReadInt(L"Ombrel", L"FontPoint", 10);
    choice.Bold = ProfileReadInt(L"Ombrel", L"FontBold", 1) ? 1 : 0;
    return choice;
}

LOGFONTW FontRecord(const FontChoice& choice, int pixelsPerInch)
{
    LOGFONTW record{};
    if (std::wcscmp(choice.Family, L"Terminal") == 0) {
        record.lfHeight = choice.Height;
        record.lfWidth = choice.Width;
        record.lfCharSet = kOemSet;
    } else {
        record.lfHeight = -MulDiv(choice.Point, pixelsPerInch, 72);
    }
    record.lfWeight = choice.Bold ? FW_BOLD : FW_NORMAL;
    record.lfOutPrecision = OUT_STRING_PRECIS;
    record.lfClipPrecision = CLIP_CHARACTER_PRECIS;
    record.lfQuality = PROOF_QUALITY;
    record.lfPitchAndFamily = FIXED_PITCH;
    lstrcpynW(record.lfFaceName, choice.Family, LF_FACESIZE);
    return record;
}

ScreenFont::~ScreenFont() { Release(); }

void ScreenFont::Release()
{
    if (font_) DeleteObject(font_);
    font_ = nullptr;
}

bool ScreenFont::Make(const FontChoice& choice)
{
    LOGFONTW record = FontRecord(choice, PixelsPerInch());
    HFONT font = CreateFontIndirectW(&record);
    TEXTMETRICW metrics{};
    if (!font || !Measure(font, metrics) || !IsFixedPitch(metrics)) {
        // The system's fixed-pitch default at the same size.
        if (font) DeleteObject(font);
        record.lfFaceName[0] = 0;
        record.lfCharSet = DEFAULT_CHARSET;
        record.lfPitchAndFamily = FIXED_PITCH | FF_MODERN;
        font = CreateFontIndirectW(&record);
        if (!font || !Measure(font, metrics)) {
            if (font) DeleteObject(font);
            return false;
        }
    }
    Release();
    font_ = font;
    cellWidth_ = metrics.tmAveCharWidth > 0 ? metrics.tmAveCharWidth : 1;
    cellHeight_ = metrics.tmHeight > 0 ? metrics.tmHeight : 1;
    slack_ = choice.Bold;
    return true;
}
