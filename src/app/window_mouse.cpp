#include "app/window_mouse.h"

#include "app/event_pump.h"
#include "app/globals.h"
#include "input/editor.h"
#include "input/editor_links.h"
#include "screen/scrollback.h"
#include "screen/selection.h"

#include <cstdlib>
#include <cstring>
#include <string>

namespace {

// Wheel motion that makes one notch.
constexpr int kNotch = 120;
// At or above this the wheel turns pages, not lines.
constexpr UINT kPageScroll = 65535;

// Counts clicks of one button: a click near the last, in time, goes one up,
// wrapping after the highest count.
class ClickCounter {
public:
    int Count(UINT message, LPARAM position, int highest)
    {
        LONG time = GetMessageTime();
        int x = short(LOWORD(position));
        int y = short(HIWORD(position));
        bool repeated = message == message_ && std::abs(x - x_) <= GetSystemMetrics(SM_CXDOUBLECLK) / 2 &&
                    std::abs(y - y_) <= GetSystemMetrics(SM_CYDOUBLECLK) / 2 &&
                    DWORD(time - time_) <= GetDoubleClickTime();
        count_ = repeated ? count_ % highest + 1 : 1;
        message_ = message;
        time_ = time;
        x_ = x;
        y_ = y;
        return count_;
    }

private:
    UINT message_ = 0;
    LONG time_ = 0;
    int x_ = 0;
    int y_ = 0;
    int count_ = 0;
};

ClickCounter clicks;

// Selection waits while a command runs, unless it waits for input.
bool MaySelect() { return !CommandRunning || InputMode != 0; }

void OnLeftDown(HWND window, LPARAM position)
{
    int x = short(LOWORD(position));
    int y = short(HIWORD(position));
    int count = clicks.Count(WM_LBUTTONDOWN, position, 3);
    if (!MaySelect() || !TheSelection.InsideText(x, y)) return;
    if (count == 1) {
        TheSelection.SelectionDown(LOWORD(position), HIWORD(position));
        SetCapture(window);
        return;
    }
    uint32_t index = TheSelection.HitTest(LOWORD(position), HIWORD(position));
    if (count == 2) TheSelection.SelectWord(index);
    else TheSelection.SelectLine(index);
}

// A drag outside the text keeps scrolling, a row per test, until the mouse
// moves again or its button comes up.
void OnMouseMove(LPARAM position)
{
    if (TheSelection.DragState == 0) return;
    TheSelection.SelectionMove(LOWORD(position), HIWORD(position));
    if (TheSelection.DragState != 2) return;
    MSG waiting;
    while (!TheSelection.InsideText(short(LOWORD(position)), short(HIWORD(position))) &&
           !PeekMessageW(&waiting, nullptr, WM_MOUSEFIRST, WM_MOUSELAST, PM_NOREMOVE)) {
        uint32_t before = TheSelection.End;
        TheSelection.SelectionMove(LOWORD(position), HIWORD(position));
        if (TheSelection.End == before) Sleep(20);
    }
}

void OnLeftUp()
{
    if (TheSelection.DragState) ReleaseCapture();
    TheSelection.SelectionUp();
}

void OnRightDown(LPARAM position)
{
    if (clicks.Count(WM_RBUTTONDOWN, position, 2) == 1) CopySelectionToClipboard();
    else PasteToEditor();
}

void OnWheel(WPARAM wParam)
{
    int delta = short(HIWORD(wParam));
    UINT lines = 3;
    SystemParametersInfoW(SPI_GETWHEELSCROLLLINES, 0, &lines, 0);
    if (lines == 0) return;
    // Forward motion scrolls up.
    bool up = delta > 0;
    int notches = std::abs(delta) / kNotch;
    for (int n = 0; n < notches; ++n) {
        if (lines >= kPageScroll) {
            TheScrollBar.ScrollCommand(up ? PageUp : PageDown);
            continue;
        }
        for (UINT i = 0; i < lines; ++i) TheScrollBar.ScrollCommand(up ? LineUp : LineDown);
    }
}

bool PlaceText(const std::wstring& text)
{
    HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, (text.size() + 1) * sizeof(wchar_t));
    if (!memory) return false;
    auto* units = static_cast<wchar_t*>(GlobalLock(memory));
    if (!units) {
        GlobalFree(memory);
        return false;
    }
    std::memcpy(units, text.c_str(), (text.size() + 1) * sizeof(wchar_t));
    GlobalUnlock(memory);
    if (!OpenClipboard(MainWindow)) {
        GlobalFree(memory);
        return false;
    }
    EmptyClipboard();
    // The clipboard owns the block once it took it.
    bool placed = SetClipboardData(CF_UNICODETEXT, memory) != nullptr;
    if (!placed) GlobalFree(memory);
    CloseClipboard();
    return placed;
}

} // namespace

void CopySelectionToClipboard()
{
    if (!TheSelection.Exists || !MaySelect()) return;
    if (PlaceText(TheSelection.SelectedText())) TheSelection.ClearSelection();
}

void PasteToEditor()
{
    if (CommandRunning && (InputMode == 0 || InputMode == 2)) return;
    std::wstring text;
    if (Links->ClipboardText(text)) TheEditor.PasteText(text.c_str());
}

bool OnMouseMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_LBUTTONDOWN: OnLeftDown(window, lParam); return true;
    case WM_MOUSEMOVE: OnMouseMove(lParam); return true;
    case WM_LBUTTONUP: OnLeftUp(); return true;
    case WM_RBUTTONDOWN: OnRightDown(lParam); return true;
    case WM_MBUTTONDOWN: PasteToEditor(); return true;
    case WM_MOUSEWHEEL:
        // With Shift or Ctrl the wheel is the system's.
        if (LOWORD(wParam) & (MK_SHIFT | MK_CONTROL)) return false;
        OnWheel(wParam);
        return true;
    case WM_VSCROLL:
        if (LOWORD(wParam) <= SB_PAGEDOWN || LOWORD(wParam) == SB_THUMBTRACK)
            TheScrollBar.ScrollCommand(LOWORD(wParam), HIWORD(wParam));
        return true;
    default: return false;
    }
}
