// The size of the text screen: plain process-wide integers, since the window
// and the configuration code read them as well as the store.
//
// MaxWidth (row stride), MaxHeight (rows of the screen area) and MaxScroll
// (most rows of history) are read once at start-up; ScrollBack is the total
// of rows in the store, screen area included; ScreenWidth and ScreenHeight
// are the columns and rows in use now. History, the rows above the screen
// area, is ScrollBack - MaxHeight.
#pragma once

#include "app/profile/profile.h"

extern int ScreenWidth;
extern int ScreenHeight;
extern int ScrollBack;

// Limits that hand-edited settings are brought back into. The upper ones keep
// the store within memory a desktop has; the lower ones are the smallest
// screen the window allows.
constexpr int kMinWidth = 60;
constexpr int kMaxWidthLimit = 1000;
constexpr int kMinHeight = 5;
constexpr int kMaxHeightLimit = 250;
constexpr int kMaxScrollLimit = 10000;

// Reads MaxWidth, MaxHeight and MaxScroll from the settings, clamped.
void LoadScreenLimits();
// Brings a requested store size within the limits: history no larger than
// MaxScroll, and at least the screen area plus 30 rows (which wins when
// MaxScroll is smaller), so a stock 250 becomes 270.
int ClampScrollBack(int rows);
// A screen size within 60..MaxWidth columns and 5..MaxHeight rows.
int ClampColumns(int columns);
int ClampRows(int rows);
