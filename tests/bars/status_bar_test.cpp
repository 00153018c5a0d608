// The status bar without its window: which alarm rings at which minute, the
// clock's figures, the label on the face, and the settings it reads.
#include "app/profile/profile.h"
#include "bars/status_bar.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

struct Minute {
    int hour, minute;
    int rings; // the sound event expected, 0 for silence
};

struct AlarmCase {
    const char* name;
    int alarm1On, alarm2On, hourly, halfHourly;
    AlarmTime alarm1;
    std::vector<Minute> minutes;
};

TEST(StatusBarAlarms, EachKindRingsOnEnteringItsMinute)
{
    const AlarmCase cases[] = {
        {"an alarm for the current minute waits until the clock has left it", 1, 0, 0, 0, {30, 7},
         {{7, 30, 0}, {7, 30, 0}, {7, 31, 0}, {7, 29, 0}, {7, 30, 5}, {7, 30, 0}}},
        {"alarm 2 rings with its own event", 0, 1, 0, 0, {30, 7}, {{8, 14, 0}, {8, 15, 6}, {20, 15, 0}}},
        {"a disabled alarm stays silent", 0, 0, 0, 0, {30, 7}, {{7, 29, 0}, {7, 30, 0}, {7, 59, 0}, {8, 0, 0}}},
        {"on the hour the hourly beep rings and the half-hourly keeps quiet", 0, 0, 1, 1, {30, 7},
         {{9, 59, 0}, {10, 0, 2}, {10, 1, 0}, {10, 30, 4}, {10, 59, 0}, {11, 0, 2}}},
        {"the half-hourly beep alone rings on the hour too", 0, 0, 0, 1, {30, 7}, {{9, 59, 0}, {10, 0, 4}, {10, 30, 0}}},
        {"alarm 1 comes first in its minute, and its ring silences the hourly beep", 1, 0, 1, 0, {0, 8},
         {{7, 59, 0}, {8, 0, 5}, {8, 1, 0}, {9, 0, 2}}},
        {"after a ring the others ring again once they have left their minute", 1, 0, 1, 0, {30, 8},
         {{7, 59, 0}, {8, 0, 2}, {8, 1, 0}, {8, 30, 5}, {9, 0, 2}}},
    };
    for (const AlarmCase& c : cases) {
        StatusBar& bar = TheStatusBar;
        Armed1 = Armed2 = ArmedHourly = ArmedHalfHourly = 0;
        bar.Alarm1On = c.alarm1On;
        bar.Alarm2On = c.alarm2On;
        bar.Hourly = c.hourly;
        bar.HalfHourly = c.halfHourly;
        bar.Alarm1 = c.alarm1;
        bar.Alarm2 = {15, 8};
        for (const Minute& m : c.minutes) {
            bar.LastRing = 0;
            bar.RunAlarms(m.hour, m.minute);
            EXPECT_EQ(bar.LastRing, m.rings) << c.name << " at " << m.hour << ":" << m.minute;
        }
    }
}

TEST(StatusBarAlarms, TheFaceNamesTheAlarmForTheRestOfItsMinute)
{
    StatusBar& bar = TheStatusBar;
    Armed1 = 0;
    bar.Alarm1On = 1;
    bar.Alarm1 = {5, 6};
    bar.StopwatchMode = 0;
    bar.RunAlarms(6, 4);
    EXPECT_STREQ(bar.Label(6 * 60 + 4), L"Time");
    bar.RunAlarms(6, 5);
    EXPECT_STREQ(bar.Label(6 * 60 + 5), L"Alarm 1");
    EXPECT_STREQ(bar.Label(6 * 60 + 6), L"Time");
    bar.StopwatchMode = 1;
    EXPECT_STREQ(bar.Label(6 * 60 + 6), L"Stopwatch");
    bar.StopwatchMode = 0;
}

TEST(StatusBarClock, TwelveAndTwentyFourHourFormsAndTheStopwatch)
{
    struct Case {
        int hour24, hour, minute, second, shownHour;
        const wchar_t* mark;
    } cases[] = {
        {0, 0, 5, 9, 12, L"AM"},  {0, 11, 59, 0, 11, L"AM"}, {0, 12, 0, 0, 12, L"PM"},
        {0, 13, 7, 30, 1, L"PM"}, {0, 23, 59, 59, 11, L"PM"}, {1, 0, 5, 9, 0, L""},
        {1, 13, 7, 30, 13, L""},
    };
    StatusBar& bar = TheStatusBar;
    bar.StopwatchMode = 0;
    for (const Case& c : cases) {
        bar.Hour24 = c.hour24;
        SYSTEMTIME now{};
        now.wHour = WORD(c.hour);
        now.wMinute = WORD(c.minute);
        now.wSecond = WORD(c.second);
        ClockFigures clock = bar.Clock(now);
        EXPECT_EQ(clock.Hour, c.shownHour) << c.hour;
        EXPECT_EQ(clock.Minute, c.minute) << c.hour;
        EXPECT_EQ(clock.Second, c.second) << c.hour;
        EXPECT_STREQ(clock.Mark, c.mark) << c.hour;
    }
    // The stopwatch shows what it counted, hours wrapping at 24, with no mark.
    bar.Hour24 = 0;
    bar.FlipStopwatchMode();
    bar.StopwatchElapsed = 25 * 3600 + 61;
    ClockFigures watch = bar.Clock(SYSTEMTIME{});
    EXPECT_EQ(watch.Hour, 1);
    EXPECT_EQ(watch.Minute, 1);
    EXPECT_EQ(watch.Second, 1);
    EXPECT_STREQ(watch.Mark, L"");
    // Started, it resumes from the figure shown; stopped, the figure stays.
    bar.StartStopStopwatch();
    EXPECT_EQ(bar.StopwatchRunning, 1);
    EXPECT_GE(bar.Clock(SYSTEMTIME{}).Minute, 1);
    bar.StartStopStopwatch();
    int held = bar.StopwatchElapsed;
    EXPECT_GE(held, 25 * 3600 + 61);
    EXPECT_EQ(bar.Clock(SYSTEMTIME{}).Second, held % 60);
    bar.ClearStopwatch();
    EXPECT_EQ(bar.Clock(SYSTEMTIME{}).Hour, 0);
    bar.FlipStopwatchMode();
    EXPECT_EQ(bar.StopwatchMode, 0);
    // Outside stopwatch mode the start key does nothing.
    bar.StartStopStopwatch();
    EXPECT_EQ(bar.StopwatchRunning, 0);
}

TEST(StatusBarSettings, AnUnknownSchemeReadsAsTheDefaultAndStaysStored)
{
    ProfileWriteInt(L"StatusBar", L"Colour", 300);
    ProfileWriteInt(L"StatusBar", L"Hour2", 17);
    ProfileWriteInt(L"StatusBar", L"Minute2", 45);
    StatusBar bar;
    EXPECT_EQ(bar.ColourScheme, 234);
    EXPECT_EQ(bar.Colours().Digits, COLORREF(0x8080));
    EXPECT_EQ(ProfileReadInt(L"StatusBar", L"Colour", 0), 300);
    EXPECT_EQ(bar.Alarm2.Hour, 17);
    EXPECT_EQ(bar.Alarm2.Minute, 45);
    EXPECT_EQ(bar.Alarm1.Hour, 12); // the default
    ProfileWriteInt(L"StatusBar", L"Colour", 237);
    StatusBar teal;
    EXPECT_EQ(teal.Colours().Face, COLORREF(0x808000));
    // Without a window nothing is painted, and the flip of the clock form is kept.
    bar.FlipHour24();
    EXPECT_EQ(ProfileReadInt(L"StatusBar", L"24hour", -1), 1);
    EXPECT_GT(bar.FreeKbytes(), 0u);
}

} // namespace
