#include "lang/short_date.h"

#include "app/toolkit/omdib.h"

#include <cwchar>

namespace {

const wchar_t* const kMonthNames[] = {L"Jan", L"Feb", L"Mar", L"Apr", L"May", L"Jun",
                                      L"Jul", L"Aug", L"Sep", L"Oct", L"Nov", L"Dec"};
const wchar_t* const kDayNames[] = {L"Sun", L"Mon", L"Tue", L"Wed", L"Thu", L"Fri", L"Sat"};

struct DateWriter {
    wchar_t* out;
    int size;
    int n = 0;

    void Put(const wchar_t* text)
    {
        for (; *text && n < size - 1; ++text) out[n++] = *text;
        out[n] = 0;
    }
    void Number(int value, const wchar_t* shape)
    {
        wchar_t text[16];
        std::swprintf(text, 16, shape, value);
        Put(text);
    }
    void Marks(int count)
    {
        for (int i = 0; i < count; ++i) Put(L"?");
    }
};

int RunLength(const wchar_t* p, wchar_t letter)
{
    int n = 0;
    while (p[n] == letter) ++n;
    return n;
}

// Moves to the next of the two letters, or to the end.
const wchar_t* SkipTo(const wchar_t* p, wchar_t a, wchar_t b)
{
    while (*p && *p != a && *p != b) ++p;
    return p;
}

} // namespace

void ReadShortDateFormat(wchar_t* format, int size, wchar_t& separator)
{
    GetProfileStringW(L"intl", L"sShortDate", L"dd-mm-yyyy", format, DWORD(size));
    if (!format[0]) CopyCutW(format, L"dd-mm-yyyy", size);
    wchar_t text[8];
    GetProfileStringW(L"intl", L"sDate", L"-", text, 8);
    separator = text[0] ? text[0] : L'-';
}

void FormatShortDate(const SYSTEMTIME& date, const wchar_t* format, wchar_t separator, unsigned options,
                     wchar_t* out, int size)
{
    wchar_t lowered[80];
    CopyCutW(lowered, format, 80);
    CharLowerW(lowered);
    bool valid = date.wDay != 0 && date.wMonth != 0 && date.wMonth <= 12;
    bool padded = (options & DatePadded) != 0;
    DateWriter w{out, size};
    out[0] = 0;
    if (options & DateWithWeekday) {
        w.Put(kDayNames[date.wDayOfWeek % 7]);
        w.Put(L" ");
    }
    wchar_t between[2] = {separator, 0};
    const wchar_t* p = lowered;
    while (*p) {
        wchar_t letter = *p;
        int run = RunLength(p, letter);
        if (letter == L'd') {
            if (!valid) w.Marks(2);
            else w.Number(date.wDay, run >= 2 ? L"%02d" : padded ? L"%2d" : L"%d");
            p = SkipTo(p, L'm', L'y');
        } else if (letter == L'm') {
            if (!valid) w.Marks(run >= 3 ? 3 : 2);
            else if (run >= 3) w.Put(kMonthNames[date.wMonth - 1]);
            else w.Number(date.wMonth, run == 2 ? L"%02d" : padded ? L"%2d" : L"%d");
            p = SkipTo(p, L'd', L'y');
        } else if (letter == L'y') {
            if (!valid) w.Marks(run >= 3 ? 4 : 2);
            else if (run == 2) w.Number(date.wYear % 100, L"%02d");
            else w.Number(date.wYear, L"%d");
            p = SkipTo(p, L'd', L'm');
        } else {
            ++p;
            continue;
        }
        if (*p) w.Put(between);
    }
}

void FormatShortDate(const SYSTEMTIME& date, unsigned options, wchar_t* out, int size)
{
    wchar_t format[80];
    wchar_t separator;
    ReadShortDateFormat(format, 80, separator);
    FormatShortDate(date, format, separator, options, out, size);
}
