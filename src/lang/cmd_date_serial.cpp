// date2ser and ser2date: a date in the short date format and its serial day
// number, one the inverse of the other.
#include "app/errors.h"
#include "app/toolkit/omdib.h"
#include "lang/builtins.h"
#include "lang/command_args.h"
#include "lang/short_date.h"
#include "lang/string_text.h"

#include <cwctype>

namespace {

const wchar_t* const kMonths[] = {L"jan", L"feb", L"mar", L"apr", L"may", L"jun",
                                  L"jul", L"aug", L"sep", L"oct", L"nov", L"dec"};
// 31 December 9999, the last date the short format can write.
constexpr int64_t kLastSerial = 3652365;

bool IsAlnum(wchar_t unit) { return iswalnum(unit) != 0; }

// A month name's first three letters, case-blind: 1 to 12, or 0.
int MonthByName(const wchar_t*& p)
{
    const wchar_t* word = p;
    while (*p && IsAlnum(*p) && !iswdigit(*p)) ++p;
    if (p - word < 3) return 0;
    for (int month = 0; month < 12; ++month) {
        int k = 0;
        while (k < 3 && ToLowerUnit(word[k]) == kMonths[month][k]) ++k;
        if (k == 3) return month + 1;
    }
    return 0;
}

// One element of the date: a number, or for a month also a name. -1 when
// the text holds no such element.
int ReadElement(const wchar_t*& p, bool month)
{
    while (*p && !IsAlnum(*p)) ++p;
    if (iswdigit(*p)) {
        int value = 0;
        for (; iswdigit(*p); ++p)
            if (value < 100000) value = value * 10 + (*p - L'0');
        return value;
    }
    if (month && *p) return MonthByName(p);
    return -1;
}

// The date by the short format's order of day, month and year.
bool ParseShortDate(const wchar_t* text, int& year, int& month, int& day)
{
    wchar_t format[80];
    wchar_t separator;
    ReadShortDateFormat(format, 80, separator);
    CharLowerW(format);
    year = month = day = -1;
    const wchar_t* p = text;
    for (const wchar_t* f = format; *f;) {
        wchar_t letter = *f;
        while (*f == letter) ++f;
        if (letter == L'd' && day < 0) day = ReadElement(p, false);
        else if (letter == L'm' && month < 0) month = ReadElement(p, true);
        else if (letter == L'y' && year < 0) year = ReadElement(p, false);
    }
    if (year < 0 || month < 1 || month > 12 || day < 1 || day > 31) return false;
    if (year < 80) year += 2000;
    else if (year < 100) year += 1900;
    return true;
}

int64_t DateToSerial(int64_t year, int64_t month, int64_t day)
{
    int64_t a = year - 1 + (month + 9) / 12;
    int64_t b = (month + 9) % 12;
    return day + (a / 100 * 146097) / 4 + (a % 100 * 1461) / 4 + (b * 153 + 2) / 5;
}

SYSTEMTIME SerialToDate(int64_t serial)
{
    int64_t a = serial * 4 - 1;
    int64_t b = (a % 146097) / 4 * 4 + 3;
    int64_t c = (b % 1461) / 4 * 5 + 2;
    int64_t e = c / 153 + 2;
    SYSTEMTIME date{};
    date.wYear = WORD(a / 146097 * 100 + b / 1461 + e / 12);
    date.wMonth = WORD(e % 12 + 1);
    date.wDay = WORD((c % 153) / 5 + 1);
    return date;
}

} // namespace

void CmdDate2ser()
{
    if (CommandArgs.ArgCount != 1) {
        ReportId(1);
        return;
    }
    int year, month, day;
    if (!ParseShortDate(CommandArgs.Args[0], year, month, day)) {
        SetResult(L"DATE2SER", L"");
        return;
    }
    SetResult(L"DATE2SER", std::to_wstring(DateToSerial(year, month, day)));
}

void CmdSer2date()
{
    if (RejectSwitches()) return;
    if (CommandArgs.ArgCount != 1) {
        ReportId(1);
        return;
    }
    int64_t serial = LeadingNumber(CommandArgs.Args[0]);
    if (serial < 1 || serial > kLastSerial) {
        SetResult(L"SER2DATE", L"");
        return;
    }
    wchar_t text[80];
    FormatShortDate(SerialToDate(serial), 0, text, 80);
    SetResult(L"SER2DATE", text);
}
