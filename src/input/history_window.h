// The history list window: a small modeless window that shows the history as
// a live list. A row is run by double-click or Enter; a typed letter searches
// backwards for a row that begins with it.
#pragma once

#include <windows.h>

// 0 while the window is closed.
extern HWND HistoryListWindow;
// The window stays on top of all others (setting InFront).
extern int ListInFront;

// Opens the window, or brings it to the front when it is open.
void OpenHistoryWindow();
// Opens it at start-up when the last session left it open.
void RestoreHistoryWindow();
// The editor's Shift-Esc: the keyboard goes to the list.
void HistoryWindowToFront();
// The list may not start a command while one runs.
void EnableHistoryWindow(bool enable);

// Kept in step with the history itself; nothing happens while it is closed.
void HistoryWindowAppend(const wchar_t* text);
void HistoryWindowDropFirst();
void HistoryWindowClearRows();
