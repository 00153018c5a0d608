#include "screen/render_window.h"

#include "app/host.h"
#include "screen/screen_store.h"
#include "screen/selection.h"

#include <algorithm>

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
    if (window_ != window) {
        window_ = window;
        bar_ = CreateWindowExW(0, L"SCROLLBAR", nullptr, WS_CHILD | WS_VISIBLE | SBS_VERT, 0, 0, 0, 0, window,
                               nullptr, GetModuleHandleW(nullptr), nullptr);
        RECT client;
        GetClientRect(window, &client);
        PlaceBar(client.right, client.bottom);
        TheScrollBar.ResetRange();
    }
    surface_.Attach(window, font_.Handle(), TheScreen.FontWidth, TheScreen.FontHeight, font_.Slack());
}

void ScreenView::Detach()
{
    surface_.Detach();
    window_ = nullptr;
    bar_ = nullptr; // a child goes with its window
}

void ScreenView::PlaceBar(int clientWidth, int clientHeight)
{
    if (!bar_) return;
    int width = GetSystemMetrics(SM_CXVSCROLL);
    MoveWindow(bar_, clientWidth - width, 0, width, clientHeight, TRUE);
}

void ScreenView::SetBar(int position, int maximum, int page)
{
    if (!bar_) return;
    SCROLLINFO info{};
    info.cbSize = sizeof(info);
    info.fMask = SIF_RANGE | SIF_POS | (page > 0 ? SIF_PAGE : 0) | SIF_DISABLENOSCROLL;
    info.nMin = 1;
    // With a page the thumb stops at maximum - page + 1, which is Filled + 1.
    info.nMax = maximum;
    info.nPage = UINT(page);
    info.nPos = position;
    SetScrollInfo(bar_, SB_CTL, &info, TRUE);
}

void ScreenView::TakeHighlight()
{
    painter_.Highlight.Shown = TheSelection.Highlighted();
    painter_.Highlight.First = std::min(TheSelection.Anchor, TheSelection.End);
    painter_.Highlight.Last = std::max(TheSelection.Anchor, TheSelection.End);
}

void ScreenView::PaintHistory(int topRow)
{
    if (!CanDraw()) return;
    TakeHighlight();
    painter_.PaintHistory(TheScreen, surface_, topRow);
}

void ScreenView::ShowCaret(bool show)
{
    if (show) Host->ShowCaret();
    else Host->HideCaret();
}

bool ScreenView::CanDraw() const { return surface_.Attached() && !IsIconic(window_); }

bool ScreenView::PaintChanges()
{
    if (!CanDraw()) return false;
    TheScrollBar.SyncBar();
    if (TheScrollBar.Viewing) {
        if (!TheScreen.HasDamage() || (TheScreen.Paging && !TheScreen.AtMore)) return false;
        TheScrollBar.SnapBack();
        return true;
    }
    TakeHighlight();
    return painter_.PaintChanges(TheScreen, surface_);
}

void ScreenView::PaintAll()
{
    if (!CanDraw()) return;
    TheScrollBar.SyncBar();
    if (TheScrollBar.Viewing) {
        PaintHistory(TheScrollBar.TopRow());
        return;
    }
    TakeHighlight();
    painter_.PaintAll(TheScreen, surface_);
}

void ScreenView::Resize(int clientWidth, int clientHeight)
{
    int columns = (clientWidth - GetSystemMetrics(SM_CXVSCROLL)) / TheScreen.FontWidth;
    int rows = clientHeight / TheScreen.FontHeight;
    PlaceBar(clientWidth, clientHeight);
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
