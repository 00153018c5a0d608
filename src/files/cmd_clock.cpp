// date and time: show the clock, or set it where the user has the right.
//   date [new date]   in the order of the regional short date (day, month, year)
//   time [hh:mm[:ss[.cc]]]
#include "app/errors.h"
#include "lang/builtins.h"
#include "lang/command_args.h"
#include "lang/short_date.h"
#include "screen/colours.h"
#include "screen/screen_store.h"

#include <cwchar>
#include <cwctype>

namespace {

// Up to count numbers of text, each followed by one separator out of
// separators (or the end); false when anything else stands there.
bool ReadNumbers(const wchar_t* text, const wchar_t* separators, int* numbers, int count, int& found)
{
    found = 0;
    const wchar_t* p = text;
    while (*p && found < count) {
        if (!std::iswdigit(*p)) return false;
        int value = 0;
        for (int digits = 0; std::iswdigit(*p); ++p, ++digits) {
            if (digits == 4) return false;
            value = value * 10 + (*p - L'0');
        }
        numbers[found++] = value;
        if (*p && !std::wcschr(separators, *p)) return false;
        if (*p) ++p;
    }
    return *p == 0;
}

// The order of day, month and year in the regional short date: for each of
// the three positions, 'd', 'm' or 'y'.
void DateOrder(wchar_t order[3])
{
    wchar_t format[80];
    wchar_t separator;
    ReadShortDateFormat(format, 80, separator);
    CharLowerW(format);
    int n = 0;
    for (const wchar_t* p = format; *p && n < 3; ++p)
        if ((*p == L'd' || *p == L'm' || *p == L'y') && (p == format || p[-1] != *p)) order[n++] = *p;
    if (n != 3) {
        order[0] = L'd';
        order[1] = L'm';
        order[2] = L'y';
    }
}

void ShowNow(const wchar_t* label, const wchar_t* value)
{
    UseItem(Item::Text);
    TheScreen.Write(label);
    UseItem(Item::HighText);
    TheScreen.Write(value);
    TheScreen.NewLine();
}

void SetClock(SYSTEMTIME& now)
{
    if (!SetLocalTime(&now)) TheErrors.ReportPlatformError(GetLastError());
}

bool ValidDate(int day, int month, int year)
{
    static const int kDays[] = {31, 29, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    if (year < 1601 || year > 9999 || month < 1 || month > 12 || day < 1 || day > kDays[month - 1]) return false;
    bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
    return month != 2 || day <= 28 || leap;
}

} // namespace

void CmdDate()
{
    if (RejectSwitches()) return;
    SYSTEMTIME now;
    GetLocalTime(&now);
    if (CommandArgs.ArgCount == 0) {
        wchar_t text[80];
        FormatShortDate(now, DateWithWeekday, text, 80);
        return ShowNow(L"Current date is ", text);
    }
    if (CommandArgs.ArgCount > 1) return ReportId(1);
    int numbers[3];
    int found;
    if (!ReadNumbers(CommandArgs.Args[0], L"-/. ", numbers, 3, found) || found != 3) return ReportId(24);
    wchar_t order[3];
    DateOrder(order);
    int day = 0, month = 0, year = 0;
    for (int i = 0; i < 3; ++i) (order[i] == L'd' ? day : order[i] == L'm' ? month : year) = numbers[i];
    if (year < 100) year += year < 80 ? 2000 : 1900;
    if (!ValidDate(day, month, year)) return ReportId(24);
    now.wDay = WORD(day);
    now.wMonth = WORD(month);
    now.wYear = WORD(year);
    SetClock(now);
}

void CmdTime()
{
    if (RejectSwitches()) return;
    SYSTEMTIME now;
    GetLocalTime(&now);
    if (CommandArgs.ArgCount == 0) {
        wchar_t text[32];
        std::swprintf(text, 32, L"%2u:%02u:%02u.%02u", unsigned(now.wHour), unsigned(now.wMinute),
                      unsigned(now.wSecond), unsigned(now.wMilliseconds / 10));
        return ShowNow(L"Current time is ", text);
    }
    if (CommandArgs.ArgCount > 1) return ReportId(1);
    int numbers[4] = {0, 0, 0, 0};
    int found;
    if (!ReadNumbers(CommandArgs.Args[0], L":.,", numbers, 4, found) || found < 2) return ReportId(23);
    if (numbers[0] > 23 || numbers[1] > 59 || numbers[2] > 59 || numbers[3] > 99) return ReportId(23);
    now.wHour = WORD(numbers[0]);
    now.wMinute = WORD(numbers[1]);
    now.wSecond = WORD(numbers[2]);
    now.wMilliseconds = WORD(numbers[3] * 10);
    SetClock(now);
}
