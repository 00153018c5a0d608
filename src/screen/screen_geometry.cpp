#include "screen/screen_geometry.h"

#include <algorithm>
#include <cstdint>

int ScreenWidth = 80;
int ScreenHeight = 24;
int ScrollBack = 270;

void LoadScreenLimits()
{
    MaxWidth = std::clamp(ProfileReadInt(L"Ombrel", L"MaxWidth", 220), kMinWidth, kMaxWidthLimit);
    MaxHeight = std::clamp(ProfileReadInt(L"Ombrel", L"MaxHeight", 120), kMinHeight, kMaxHeightLimit);
    MaxScroll = std::clamp(ProfileReadInt(L"Ombrel", L"MaxScroll", 2500), 0, kMaxScrollLimit);
}

int ClampScrollBack(int rows)
{
    int64_t history = int64_t(rows) - MaxHeight;
    if (history > MaxScroll) history = MaxScroll;
    if (history < MaxHeight + 30) history = MaxHeight + 30;
    return int(history) + MaxHeight;
}

int ClampColumns(int columns) { return std::max(std::min(columns, MaxWidth), kMinWidth); }

int ClampRows(int rows) { return std::max(std::min(rows, MaxHeight), kMinHeight); }
