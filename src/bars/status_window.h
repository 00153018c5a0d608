// The status bar's own window: a small popup owned by the main window, whose
// client area the status bar paints from its memory bitmap.
#pragma once

#include <windows.h>

constexpr int kStatusWidth = 191;
constexpr int kStatusHeight = 93;
constexpr DWORD kStatusStyle = WS_POPUP | WS_BORDER;
constexpr DWORD kStatusExStyle = WS_EX_TOOLWINDOW;

// Registers the class on first use; null when the window cannot be made.
HWND CreateStatusWindow();
