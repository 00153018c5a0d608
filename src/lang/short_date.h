// The short date format of the system's regional settings, shared by the
// internal date variables, file listings and the date commands. The format
// is sShortDate of section "intl" (default "dd-mm-yyyy") walked element by
// element; the separator written between elements is the first character of
// sDate (default "-"), whatever the format itself puts there.
#pragma once

#include <windows.h>

enum ShortDateOptions : unsigned {
    DateWithWeekday = 1, // "Sun " and so on in front
    DatePadded = 2,      // a single "d" or "m" is padded by a blank
};

// The format and separator as the system holds them now.
void ReadShortDateFormat(wchar_t* format, int size, wchar_t& separator);
// date by format and separator into out (size units, cut silently). A date
// with day 0, month 0 or a month above 12 keeps its shape, written with "?".
void FormatShortDate(const SYSTEMTIME& date, const wchar_t* format, wchar_t separator, unsigned options,
                     wchar_t* out, int size);
// The same with the format read from the system.
void FormatShortDate(const SYSTEMTIME& date, unsigned options, wchar_t* out, int size);
