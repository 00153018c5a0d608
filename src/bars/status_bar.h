// The status bar: a small floating window beside the main window with the
// time, the free memory and how much of the running command is done, plus a
// stopwatch and four kinds of alarm.
//
// The record comes first with the percent indicator, since commands reach it
// most often: the Progress calls only touch these fields and never paint
// (ProgressEnd apart), so a command pays nothing for the display, with the
// window up or not. The once-a-second Refresh pulls the figure onto the face.
#pragma once

#include <windows.h>

#include <cstdint>

struct AlarmTime {
    uint8_t Minute = 0;
    uint8_t Hour = 12;
};

class StatusBar {
public:
    // 0 to 100, or -1 while no indicator runs.
    int32_t Percent = -1;
    // The amount that stands for 100, and the amount done (never above it).
    uint64_t Total = 0;
    uint64_t Done = 0;

    int32_t HiddenForNow = 0;
    int32_t InFront = 0;
    int32_t Plain = 1;
    int32_t StopwatchStart = 0;
    int32_t StopwatchRunning = 0;
    int32_t StopwatchMode = 0;
    int32_t ShowPhysical = 0;
    int32_t StopwatchElapsed = 0;
    HWND Window = nullptr;
    int32_t Hour24 = 0;
    AlarmTime Alarm1;
    AlarmTime Alarm2;
    int32_t Alarm1On = 0;
    int32_t Alarm2On = 0;
    int32_t Hourly = 0;
    int32_t HalfHourly = 0;
    int32_t ColourScheme = 234;

    // Percent from Done and Total; Total is never 0 while an indicator runs.
    void Recompute()
    {
        // The plain product overflows only for totals beyond 2^64 / 100; such
        // totals are scaled down first so the figure still climbs to 100.
        Percent = Total <= UINT64_MAX / 100 ? int32_t(Done * 100 / Total) : int32_t(Done / (Total / 100));
    }
    // Draws the percent figure on the window at once; nothing without a window.
    void PaintPercent();
};

extern StatusBar TheStatusBar;

// The percent indicator, for any command that works through a known amount.
// A total of 0 leaves the indicator off, and the other calls then do nothing.
inline void ProgressStart(uint64_t total)
{
    if (total == 0) {
        TheStatusBar.Percent = -1;
        return;
    }
    TheStatusBar.Total = total;
    TheStatusBar.Done = 0;
    TheStatusBar.Percent = 0;
}

inline void ProgressStep()
{
    if (TheStatusBar.Percent < 0) return;
    if (TheStatusBar.Done < TheStatusBar.Total) ++TheStatusBar.Done;
    TheStatusBar.Recompute();
}

inline void ProgressAdd(uint64_t amount)
{
    if (TheStatusBar.Percent < 0) return;
    uint64_t left = TheStatusBar.Total - TheStatusBar.Done;
    TheStatusBar.Done += amount < left ? amount : left;
    TheStatusBar.Recompute();
}

// Paints the last figure first and only then switches the indicator off, so
// that figure stays on show until the next refresh.
void ProgressEnd();
