// The mouse and the scroll bar of the main window: clicks counted by the
// system's double-click time and distance select (left 1 drag, 2 word, 3
// line), copy (right 1) and paste (right 2, middle); the wheel and the bar
// move the view of history.
#pragma once

#include <windows.h>

// True when the message was a mouse or scroll message and is handled.
bool OnMouseMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
// The selection to the clipboard as text; it is cleared when that worked.
void CopySelectionToClipboard();
// The clipboard's first line typed into the command line, when a line is read
// or none is running.
void PasteToEditor();
