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

// What the clock shows: the hour already in its display form (12-hour or
// not), and the mark beside it ("AM", "PM" or blank).
struct ClockFigures {
    int Hour = 0;
    int Minute = 0;
    int Second = 0;
    const wchar_t* Mark = L"";
};

// The five colours of a scheme, 0x00BBGGRR.
struct SchemeColours {
    COLORREF Digits, Face, PlainFace, Dark, Light;
};

class StatusBar {
public:
    // 0 to 100, or -1 while no indicator runs.
    int32_t Percent = -1;
    // The amount that stands for 100, and the amount done (never above it).
    uint64_t Total = 0;
    uint64_t Done = 0;

    int32_t InFront = 0;
    int32_t Plain = 1;
    // Seconds on the tick clock at which the stopwatch counted 0.
    int32_t StopwatchStart = 0;
    int32_t StopwatchRunning = 0;
    // The display shows the stopwatch in place of the clock.
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
    // 233 to 238.
    int32_t ColourScheme = 234;
    // The sound event of the last ring (0 none) and the minute of the day it
    // rang in: the face names the alarm for the rest of that minute.
    int32_t LastRing = 0;
    int32_t LastRingMinute = -1;

    // Reads the settings of section StatusBar.
    StatusBar();
    ~StatusBar();
    StatusBar(const StatusBar&) = delete;
    StatusBar& operator=(const StatusBar&) = delete;

    // Percent from Done and Total; Total is never 0 while an indicator runs.
    void Recompute()
    {
        // The plain product overflows only for totals beyond 2^64 / 100; such
        // totals are scaled down first so the figure still climbs to 100.
        Percent = Total <= UINT64_MAX / 100 ? int32_t(Done * 100 / Total) : int32_t(Done / (Total / 100));
    }
    // Draws the percent figure on the window at once; nothing without a window.
    void PaintPercent();

    // The window up or down; Display is written either way.
    void Show();
    void Hide();
    void Toggle();
    // System-menu item 212: on top of every window, or not.
    void ToggleInFront();
    // Once a second from the main timer: paints the face when the window is
    // up, and rings the alarms whether it is up or not.
    void Refresh();

    // The alarm pass of Refresh at a given time of day.
    void RunAlarms(int hour, int minute);
    // The clock figures at a time of day, and the stopwatch's figures now.
    ClockFigures Clock(const SYSTEMTIME& now);
    // Free memory in Kbytes, as the face shows it.
    uint64_t FreeKbytes() const;
    SchemeColours Colours() const;
    // The face's label: the alarm that rang this minute, else what the clock shows.
    const wchar_t* Label(int minuteOfDay) const;

    // The mouse and the keys on the window (status_window.cpp).
    void FlipHour24();
    void FlipStopwatchMode();
    void StartStopStopwatch();
    void ClearStopwatch();

    // Composes the face in the memory bitmap and copies it to the window in
    // one step, so the figures never flicker (status_face.cpp).
    void Paint(HDC target);

private:
    void Place();
    void Ring(int soundEvent, int minuteOfDay);
    void MakeFace();
    void FreeFace();

    HBITMAP face_ = nullptr;
    HFONT bigDigits_ = nullptr;
    HFONT smallDigits_ = nullptr;
    HFONT labelFont_ = nullptr;
};

extern StatusBar TheStatusBar;
// One flag per kind of alarm, process-wide and 0 at start: set while the time
// is outside the alarm's minute, so a ring needs the clock to enter it.
extern int Armed1, Armed2, ArmedHourly, ArmedHalfHourly;

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
