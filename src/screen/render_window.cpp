#include "screen/render_window.h"

#include "screen/screen_store.h"

void ScreenView::MakeFont()
{
    FontChoice choice = ReadFontChoice();
    // Until a font is measured, the settings' raster size stands for the cell.
    TheScreen.FontWidth = choice.Width > 0 ? choice.Width : 8;
    TheScreen.FontHeight = choice.Height > 0 ? choice.Height : 12;
    if (!font_.Make(choice)) return;
    TheScreen.FontWidth = font_.CellWidth();
    TheScreen.FontHeight = font_.CellHeight();
    if (window_) Attach(window_);
}

void ScreenView::Attach(HWND window)
{
    window_ = window;
    surface_.Attach(window, font_.Handle(), TheScreen.FontWidth, TheScreen.FontHeight, font_.Slack());
}

void ScreenView::Detach()
{
    surface_.Detach();
    window_ = nullptr;
}

bool ScreenView::CanDraw() const { return surface_.Attached() && !IsIconic(window_); }

bool ScreenView::PaintChanges() { return CanDraw() && painter_.PaintChanges(TheScreen, surface_); }

void ScreenView::PaintAll()
{
    if (CanDraw()) painter_.PaintAll(TheScreen, surface_);
}

void ScreenView::Resize(int clientWidth, int clientHeight)
{
    int columns = (clientWidth - GetSystemMetrics(SM_CXVSCROLL)) / TheScreen.FontWidth;
    int rows = clientHeight / TheScreen.FontHeight;
    if (columns != ScreenWidth || rows != ScreenHeight) TheScreen.ResizeCells(columns, rows);
}

SIZE ScreenView::WindowSize(int columns, int rows, DWORD style) const
{
    RECT frame{0, 0, GetSystemMetrics(SM_CXVSCROLL) + columns * TheScreen.FontWidth, rows * TheScreen.FontHeight};
    AdjustWindowRect(&frame, style, FALSE);
    return {frame.right - frame.left, frame.bottom - frame.top};
}

void ScreenView::TrackLimits(MINMAXINFO& limits, DWORD style) const
{
    SIZE smallest = WindowSize(kMinWidth, kMinHeight, style);
    SIZE largest = WindowSize(MaxWidth, MaxHeight, style);
    limits.ptMinTrackSize = {smallest.cx, smallest.cy};
    limits.ptMaxTrackSize = {largest.cx, largest.cy};
}

void ScreenView::SnapToCells(RECT& frame, WPARAM edge, DWORD style) const
{
    SIZE empty = WindowSize(0, 0, style);
    int columns = (frame.right - frame.left - empty.cx) / TheScreen.FontWidth;
    int rows = (frame.bottom - frame.top - empty.cy) / TheScreen.FontHeight;
    SIZE snapped = WindowSize(columns, rows, style);
    if (edge == WMSZ_LEFT || edge == WMSZ_TOPLEFT || edge == WMSZ_BOTTOMLEFT) frame.left = frame.right - snapped.cx;
    else frame.right = frame.left + snapped.cx;
    if (edge == WMSZ_TOP || edge == WMSZ_TOPLEFT || edge == WMSZ_TOPRIGHT) frame.top = frame.bottom - snapped.cy;
    else frame.bottom = frame.top + snapped.cy;
}
