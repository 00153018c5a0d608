// The main window: its classes, its creation and its procedure.
#pragma once

#include <windows.h>

// Registers Ombrel, OmbrelDialog and OmbrelShadowDialog; false when the main
// class cannot be registered.
bool RegisterWindowClasses(HINSTANCE instance);
// Creates the main window at its saved place, titled with the instance number.
HWND CreateMainWindow(HINSTANCE instance);
LRESULT CALLBACK MainWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
// Writes what waits for the end of a session: window place and size (first
// instance only), the statement counter, the history.
void SaveSession();

// The size of one character cell in pixels.
int CellWidth();
int CellHeight();

extern int SystemMenuBase;
extern HBRUSH FaceBrush;
extern HBRUSH NullBrush;
