// The status window's events: painting, dragging by a focus rectangle on the
// desktop, the clock's and the stopwatch's mouse buttons and keys.
#include "bars/status_window.h"

#include "app/globals.h"
#include "app/profile/profile.h"
#include "bars/status_bar.h"

#include <cwchar>

namespace {

constexpr wchar_t kClassName[] = L"OmbrelStatusBar";

// The drag in progress: where the mouse took hold of the window, and the
// rectangle last drawn on the desktop.
struct Drag {
    bool active = false;
    POINT grip{};
    RECT shown{};
} TheDrag;

void DrawOnDesktop(const RECT& rect)
{
    HDC desktop = GetDC(nullptr);
    DrawFocusRect(desktop, &rect);
    ReleaseDC(nullptr, desktop);
}

void BeginDrag(HWND window, LPARAM position)
{
    GetWindowRect(window, &TheDrag.shown);
    TheDrag.grip = {short(LOWORD(position)), short(HIWORD(position))};
    ClientToScreen(window, &TheDrag.grip);
    TheDrag.active = true;
    SetCapture(window);
    DrawOnDesktop(TheDrag.shown);
}

void FollowDrag(HWND window)
{
    if (!TheDrag.active) return;
    POINT cursor;
    GetCursorPos(&cursor);
    RECT place;
    GetWindowRect(window, &place);
    DrawOnDesktop(TheDrag.shown);
    OffsetRect(&place, cursor.x - TheDrag.grip.x, cursor.y - TheDrag.grip.y);
    TheDrag.shown = place;
    DrawOnDesktop(TheDrag.shown);
}

// Only the first instance, whose main title has no colon, keeps the place.
void EndDrag(HWND window)
{
    if (!TheDrag.active) return;
    TheDrag.active = false;
    DrawOnDesktop(TheDrag.shown);
    ReleaseCapture();
    RECT place;
    GetWindowRect(window, &place);
    if (EqualRect(&place, &TheDrag.shown)) return;
    SetWindowPos(window, nullptr, TheDrag.shown.left, TheDrag.shown.top, 0, 0,
                 SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    wchar_t title[64] = L"";
    if (MainWindow) GetWindowTextW(MainWindow, title, 64);
    if (std::wcschr(title, L':')) return;
    ProfileWriteInt(L"StatusBar", L"XOrigin", TheDrag.shown.left);
    ProfileWriteInt(L"StatusBar", L"YOrigin", TheDrag.shown.top);
}

void Repaint(HWND window) { InvalidateRect(window, nullptr, FALSE); }

LRESULT CALLBACK StatusWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    StatusBar& bar = TheStatusBar;
    switch (message) {
    case WM_PAINT: {
        PAINTSTRUCT paint;
        BeginPaint(window, &paint);
        bar.Paint(paint.hdc);
        EndPaint(window, &paint);
        return 0;
    }
    case WM_ERASEBKGND: return 1; // the face covers every pixel
    case WM_CLOSE: bar.Hide(); return 0;
    case WM_LBUTTONDOWN: BeginDrag(window, lParam); return 0;
    case WM_MOUSEMOVE: FollowDrag(window); return 0;
    case WM_LBUTTONUP: EndDrag(window); return 0;
    case WM_CAPTURECHANGED:
        if (TheDrag.active && reinterpret_cast<HWND>(lParam) != window) {
            TheDrag.active = false;
            DrawOnDesktop(TheDrag.shown);
        }
        return 0;
    case WM_LBUTTONDBLCLK: bar.FlipHour24(); break;
    case WM_RBUTTONDOWN: bar.FlipStopwatchMode(); break;
    case WM_RBUTTONDBLCLK:
    case WM_MBUTTONDOWN: bar.StartStopStopwatch(); break;
    case WM_KEYDOWN:
        if (wParam == VK_SPACE) bar.StartStopStopwatch();
        else if (wParam == VK_ESCAPE && bar.StopwatchMode) bar.ClearStopwatch();
        else return 0;
        break;
    default: return DefWindowProcW(window, message, wParam, lParam);
    }
    Repaint(window);
    return 0;
}

} // namespace

HWND CreateStatusWindow()
{
    static bool registered = false;
    if (!registered) {
        WNDCLASSW status{};
        status.style = CS_DBLCLKS;
        status.lpfnWndProc = StatusWindowProc;
        status.hInstance = GetModuleHandleW(nullptr);
        status.hCursor = LoadCursorW(nullptr, MAKEINTRESOURCEW(32512));
        status.lpszClassName = kClassName;
        registered = RegisterClassW(&status) != 0;
        if (!registered) return nullptr;
    }
    return CreateWindowExW(kStatusExStyle, kClassName, L"Status Bar", kStatusStyle, 0, 0, kStatusWidth,
                           kStatusHeight, MainWindow, nullptr, GetModuleHandleW(nullptr), nullptr);
}
