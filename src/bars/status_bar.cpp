// The status bar's record: its settings, the window's life, the clock, the
// memory figure and the four kinds of alarm.
#include "bars/status_bar.h"

#include "app/errors.h"
#include "app/globals.h"
#include "app/profile/profile.h"
#include "bars/status_window.h"

#include <cwchar>

int Armed1 = 0;
int Armed2 = 0;
int ArmedHourly = 0;
int ArmedHalfHourly = 0;

namespace {

constexpr UINT kShowItem = 207;
constexpr UINT kInFrontItem = 212;
constexpr uint64_t kMostKbytes = 999999999; // nine digits on the face

// Digits, face, plain face, dark edge, light edge of schemes 233 to 238.
const SchemeColours kSchemes[] = {
    {0xFFFFFF, 0xC0C0C0, 0xFFFFFF, 0, 0xE6E6E6}, {0x8080, 0xC0C0C0, 0x8080, 0, 0xBDFFFF},
    {0, 0x80, 0, 0xFF, 0xD5D5FF},                {0, 0x8000, 0, 0xFF00, 0xD5FFD5},
    {0, 0x808000, 0, 0xFFFF00, 0xFFFFD5},        {0, 0x3DB8, 0, 0x276EFF, 0xBDE1FF},
};

int Setting(const wchar_t* key, int defaultValue) { return ProfileReadInt(L"StatusBar", key, defaultValue); }

int TickSeconds() { return int32_t(GetTickCount64() / 1000); }

void SetSystemMenuItem(UINT item, const wchar_t* text)
{
    if (MainWindow) ModifyMenuW(GetSystemMenu(MainWindow, FALSE), item, MF_BYCOMMAND | MF_STRING, item, text);
}

BOOL CALLBACK CountOtherInstance(HWND window, LPARAM data)
{
    wchar_t className[16];
    if (window != MainWindow && GetClassNameW(window, className, 16) && std::wcscmp(className, L"Ombrel") == 0)
        ++*reinterpret_cast<int*>(data);
    return TRUE;
}

// Plays one of the sound events. The sound events of the Attributes pages
// are not part of this program yet; the system's own sound stands in.
void PlaySoundEvent(int) { MessageBeep(MB_ICONASTERISK); }

} // namespace

StatusBar::StatusBar()
{
    Plain = Setting(L"Plain", 1);
    // An unknown scheme reads as 234 and the stored value stays as it is.
    ColourScheme = Setting(L"Colour", 234);
    if (ColourScheme < 233 || ColourScheme > 238) ColourScheme = 234;
    InFront = Setting(L"InFront", 0);
    ShowPhysical = Setting(L"Memory", 0);
    Hour24 = Setting(L"24hour", 0);
    Hourly = Setting(L"Hourly", 0);
    HalfHourly = Setting(L"HalfHourly", 0);
    Alarm1On = Setting(L"Alarm1", 0);
    Alarm2On = Setting(L"Alarm2", 0);
    Alarm1 = {uint8_t(Setting(L"Minute1", 0)), uint8_t(Setting(L"Hour1", 12))};
    Alarm2 = {uint8_t(Setting(L"Minute2", 0)), uint8_t(Setting(L"Hour2", 12))};
}

StatusBar::~StatusBar() { FreeFace(); }

void StatusBar::PaintPercent()
{
    if (Window) RedrawWindow(Window, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
}

void ProgressEnd()
{
    TheStatusBar.PaintPercent();
    TheStatusBar.Percent = -1;
}

void StatusBar::Show()
{
    ProfileWriteInt(L"StatusBar", L"Display", 1);
    MakeFace();
    Window = CreateStatusWindow();
    if (!Window) {
        Hide();
        ReportId(30);
        return;
    }
    SetSystemMenuItem(kShowItem, L"&Hide");
    Place();
    ShowWindow(Window, SW_SHOWNOACTIVATE);
}

void StatusBar::Hide()
{
    if (Window) DestroyWindow(Window);
    Window = nullptr;
    SetSystemMenuItem(kShowItem, L"&Show");
    ProfileWriteInt(L"StatusBar", L"Display", 0);
    FreeFace();
}

void StatusBar::Toggle()
{
    if (Window) Hide();
    else Show();
}

void StatusBar::ToggleInFront()
{
    InFront = !InFront;
    ProfileWriteInt(L"StatusBar", L"InFront", InFront);
    if (MainWindow)
        CheckMenuItem(GetSystemMenu(MainWindow, FALSE), kInFrontItem,
                      MF_BYCOMMAND | (InFront ? MF_CHECKED : MF_UNCHECKED));
    if (Window) Place();
}

// The bottom right corner of the screen unless a stored place lies on it;
// each other running instance moves the window 4 pixels further.
void StatusBar::Place()
{
    RECT frame = {0, 0, kStatusWidth, kStatusHeight};
    AdjustWindowRectEx(&frame, kStatusStyle, FALSE, kStatusExStyle);
    int width = frame.right - frame.left, height = frame.bottom - frame.top;
    int screenWidth = GetSystemMetrics(SM_CXSCREEN), screenHeight = GetSystemMetrics(SM_CYSCREEN);
    int x = Setting(L"XOrigin", screenWidth - width);
    int y = Setting(L"YOrigin", screenHeight - height);
    if (x < 0 || x >= screenWidth || y < 0 || y >= screenHeight) {
        x = screenWidth - width;
        y = screenHeight - height;
    }
    int others = 0;
    EnumWindows(CountOtherInstance, reinterpret_cast<LPARAM>(&others));
    x += 4 * others;
    y += 4 * others;
    SetWindowPos(Window, InFront ? HWND_TOPMOST : HWND_NOTOPMOST, x, y, width, height, SWP_NOACTIVATE);
}

void StatusBar::Refresh()
{
    SYSTEMTIME now;
    GetLocalTime(&now);
    if (Window) RedrawWindow(Window, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
    RunAlarms(now.wHour, now.wMinute);
}

// An alarm rings on entering its minute: its flag is set while the time does
// not match, and any ring clears all four, so the half-hourly beep keeps
// quiet on the hour when the hourly one has rung.
void StatusBar::RunAlarms(int hour, int minute)
{
    struct Kind {
        int32_t enabled;
        bool matches;
        int soundEvent;
        int& armed;
    } kinds[] = {
        {Alarm1On, hour == Alarm1.Hour && minute == Alarm1.Minute, 5, Armed1},
        {Alarm2On, hour == Alarm2.Hour && minute == Alarm2.Minute, 6, Armed2},
        {Hourly, minute == 0, 2, ArmedHourly},
        {HalfHourly, minute == 0 || minute == 30, 4, ArmedHalfHourly},
    };
    for (Kind& kind : kinds) {
        if (!kind.enabled) continue;
        if (!kind.matches) {
            kind.armed = 1;
        } else if (kind.armed) {
            Ring(kind.soundEvent, hour * 60 + minute);
            Armed1 = Armed2 = ArmedHourly = ArmedHalfHourly = 0;
        }
    }
}

// The system's beep setting is switched on for the ring and put back after.
void StatusBar::Ring(int soundEvent, int minuteOfDay)
{
    BOOL beep = FALSE;
    SystemParametersInfoW(SPI_GETBEEP, 0, &beep, 0);
    SystemParametersInfoW(SPI_SETBEEP, TRUE, nullptr, 0);
    PlaySoundEvent(soundEvent);
    SystemParametersInfoW(SPI_SETBEEP, beep, nullptr, 0);
    LastRing = soundEvent;
    LastRingMinute = minuteOfDay;
}

ClockFigures StatusBar::Clock(const SYSTEMTIME& now)
{
    ClockFigures clock;
    if (StopwatchMode) {
        if (StopwatchRunning) StopwatchElapsed = TickSeconds() - StopwatchStart;
        clock.Hour = StopwatchElapsed / 3600 % 24;
        clock.Minute = StopwatchElapsed / 60 % 60;
        clock.Second = StopwatchElapsed % 60;
        return clock;
    }
    clock.Hour = now.wHour;
    clock.Minute = now.wMinute;
    clock.Second = now.wSecond;
    if (!Hour24) {
        clock.Mark = clock.Hour < 12 ? L"AM" : L"PM";
        if (clock.Hour > 12) clock.Hour -= 12;
        if (clock.Hour == 0) clock.Hour = 12;
    }
    return clock;
}

uint64_t StatusBar::FreeKbytes() const
{
    MEMORYSTATUSEX status{};
    status.dwLength = sizeof(status);
    if (!GlobalMemoryStatusEx(&status)) return 0;
    uint64_t bytes = status.ullTotalPageFile == 0 || ShowPhysical ? status.ullAvailPhys : status.ullAvailPageFile;
    uint64_t kbytes = bytes / 1024;
    return kbytes < kMostKbytes ? kbytes : kMostKbytes;
}

SchemeColours StatusBar::Colours() const { return kSchemes[ColourScheme - 233]; }

const wchar_t* StatusBar::Label(int minuteOfDay) const
{
    if (LastRing && LastRingMinute == minuteOfDay) {
        switch (LastRing) {
        case 5: return L"Alarm 1";
        case 6: return L"Alarm 2";
        case 2: return L"Hourly";
        default: return L"Half hour";
        }
    }
    return StopwatchMode ? L"Stopwatch" : L"Time";
}

void StatusBar::FlipHour24()
{
    Hour24 = !Hour24;
    ProfileWriteInt(L"StatusBar", L"24hour", Hour24);
}

void StatusBar::ClearStopwatch() { StopwatchElapsed = StopwatchStart = StopwatchRunning = 0; }

void StatusBar::FlipStopwatchMode()
{
    StopwatchMode = !StopwatchMode;
    ClearStopwatch();
}

// Starting again resumes from the figure on show.
void StatusBar::StartStopStopwatch()
{
    if (!StopwatchMode) return;
    StopwatchRunning = !StopwatchRunning;
    if (StopwatchRunning) StopwatchStart = TickSeconds() - StopwatchElapsed;
}
