#include "screen/render_gdi.h"

#include "app/toolkit/omdib.h"
#include "screen/colours.h"

#include <algorithm>

namespace {

constexpr size_t kUnitCount = 0x10000;

bool IsRightToLeft(wchar_t unit)
{
    WORD type = 0;
    return GetStringTypeW(CT_CTYPE2, &unit, 1, &type) && type == C2_RIGHTTOLEFT;
}

// Draws units at x, y; an opaque run fills its cells' box first.
void TextAt(HDC dc, int x, int y, const RECT& box, const wchar_t* text, int units, const RunColours& colours)
{
    UINT options = 0;
    if (!colours.Transparent) {
        SetBkColor(dc, colours.Back);
        options = ETO_OPAQUE;
    }
    ExtTextOutW(dc, x, y, options, &box, text, UINT(units), nullptr);
}

} // namespace

GdiSurface::~GdiSurface() { Detach(); }

bool GdiSurface::Attach(HWND window, HFONT font, int cellWidth, int cellHeight, int slack)
{
    Detach();
    HDC windowDc = GetDC(window);
    memory_ = CreateCompatibleDC(windowDc);
    // The whole display, so that no size of the window needs a new bitmap.
    bitmap_ = memory_ ? CreateCompatibleBitmap(windowDc, GetSystemMetrics(SM_CXVIRTUALSCREEN),
                                               GetSystemMetrics(SM_CYVIRTUALSCREEN))
                      : nullptr;
    ReleaseDC(window, windowDc);
    if (!bitmap_) {
        Detach();
        return false;
    }
    window_ = window;
    oldBitmap_ = SelectObject(memory_, bitmap_);
    oldFont_ = SelectObject(memory_, font);
    SetBkMode(memory_, TRANSPARENT);
    SetTextAlign(memory_, TA_LEFT | TA_TOP | TA_NOUPDATECP);
    cellWidth_ = cellWidth;
    cellHeight_ = cellHeight;
    slack_ = slack;
    widths_.assign(kUnitCount, 0);
    return true;
}

void GdiSurface::Detach()
{
    if (memory_) {
        if (oldFont_) SelectObject(memory_, oldFont_);
        if (oldBitmap_) SelectObject(memory_, oldBitmap_);
        DeleteDC(memory_);
    }
    if (bitmap_) DeleteObject(bitmap_);
    memory_ = nullptr;
    bitmap_ = nullptr;
    oldBitmap_ = oldFont_ = nullptr;
    window_ = nullptr;
}

void GdiSurface::BeginFrame(const FrameRows& rows)
{
    frame_ = {0, rows.First * cellHeight_, rows.Columns * cellWidth_, (rows.Last + 1) * cellHeight_};
    if (rows.Whole) {
        // The strip past the last whole cell belongs to the text area too.
        RECT client;
        GetClientRect(window_, &client);
        frame_.right = std::max(frame_.right, LONG(client.right));
        frame_.bottom = std::max(frame_.bottom, LONG(client.bottom));
    }
    PaintBackground(frame_);
}

void GdiSurface::PaintBackground(const RECT& area)
{
    SetBkColor(memory_, Palette[ItemValue(Item::BackGrd)]);
    ExtTextOutW(memory_, 0, 0, ETO_OPAQUE, &area, nullptr, 0, nullptr);
}

int GdiSurface::CharWidth(const wchar_t* text, int units)
{
    bool single = units == 1;
    if (single && widths_[text[0]]) return widths_[text[0]] - 1;
    SIZE size{};
    GetTextExtentPoint32W(memory_, text, units, &size);
    if (single) widths_[text[0]] = static_cast<unsigned char>(std::min<LONG>(size.cx, 254) + 1);
    return size.cx;
}

bool GdiSurface::NeedsPerCellDrawing(const wchar_t* text, int units)
{
    const wchar_t* end = text + units;
    for (const wchar_t* at = text; at < end;) {
        int length = 0;
        const wchar_t* next = _CharNextW(at, int(end - at), &length);
        if (length <= 0) break;
        if (CharWidth(at, length) != cellWidth_ || IsRightToLeft(*at)) return true;
        at = next;
    }
    return false;
}

void GdiSurface::PaintRun(int column, int row, const wchar_t* text, int units, int cellCount,
                          const RunColours& colours)
{
    int x = column * cellWidth_;
    int y = row * cellHeight_;
    SetTextColor(memory_, colours.Fore);
    if (NeedsPerCellDrawing(text, units)) {
        DrawCellByCell(x, y, text, units, colours);
        return;
    }
    RECT box{x, y, x + cellCount * cellWidth_, y + cellHeight_};
    TextAt(memory_, x, y, box, text, units, colours);
}

void GdiSurface::DrawCellByCell(int x, int y, const wchar_t* text, int units, const RunColours& colours)
{
    const wchar_t* end = text + units;
    for (const wchar_t* at = text; at < end; x += cellWidth_) {
        int length = 0;
        const wchar_t* next = _CharNextW(at, int(end - at), &length);
        if (length <= 0) break;
        RECT box{x, y, x + cellWidth_, y + cellHeight_};
        if (CharWidth(at, length) > cellWidth_ + slack_) TextAt(memory_, x, y, box, L"?", 1, colours);
        else TextAt(memory_, x, y, box, at, length, colours);
        at = next;
    }
}

void GdiSurface::PaintCaret(int column, int row) { SetCaretPos(column * cellWidth_, row * cellHeight_); }

void GdiSurface::PaintHighlight(int column, int row, int cellCount, COLORREF colour, COLORREF frame)
{
    RECT box{column * cellWidth_, row * cellHeight_, (column + cellCount) * cellWidth_, (row + 1) * cellHeight_};
    HDC source = CreateCompatibleDC(memory_);
    HBITMAP dot = source ? CreateCompatibleBitmap(memory_, 1, 1) : nullptr;
    if (dot) {
        HGDIOBJ old = SelectObject(source, dot);
        SetPixel(source, 0, 0, colour);
        BLENDFUNCTION blend{AC_SRC_OVER, 0, 190, 0};
        GdiAlphaBlend(memory_, box.left, box.top, box.right - box.left, box.bottom - box.top, source, 0, 0, 1, 1,
                      blend);
        SelectObject(source, old);
        DeleteObject(dot);
    }
    if (source) DeleteDC(source);
    HRGN part = CreateRectRgnIndirect(&box);
    if (!part) return;
    if (!highlight_) {
        highlight_ = part;
    } else {
        CombineRgn(highlight_, highlight_, part, RGN_OR);
        DeleteObject(part);
    }
    highlightFrame_ = frame;
}

void GdiSurface::EndFrame()
{
    if (highlight_) {
        HBRUSH brush = CreateSolidBrush(highlightFrame_);
        if (brush) {
            FrameRgn(memory_, highlight_, brush, 1, 1);
            DeleteObject(brush);
        }
        DeleteObject(highlight_);
        highlight_ = nullptr;
    }
    HDC windowDc = GetDC(window_);
    // The caret is drawn by inverting; drawing over it would leave half of it.
    HideCaret(window_);
    BitBlt(windowDc, frame_.left, frame_.top, frame_.right - frame_.left, frame_.bottom - frame_.top, memory_,
           frame_.left, frame_.top, SRCCOPY);
    ShowCaret(window_);
    ReleaseDC(window_, windowDc);
}
