// The short date format: elements, separators, options and invalid dates.
#include "lang/short_date.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::wstring Format(const wchar_t* format, wchar_t separator, SYSTEMTIME date, unsigned options = 0, int size = 80)
{
    wchar_t out[80];
    FormatShortDate(date, format, separator, options, out, size);
    return out;
}

// Saturday, 7 March 2026 and Monday, 1 December 2005.
const SYSTEMTIME kMarch{2026, 3, 6, 7, 0, 0, 0, 0};
const SYSTEMTIME kDecember{2005, 12, 1, 1, 0, 0, 0, 0};

TEST(ShortDate, ElementsAndSeparators)
{
    EXPECT_EQ(Format(L"dd-mm-yyyy", L'-', kMarch), L"07-03-2026");
    EXPECT_EQ(Format(L"d/m/yy", L'/', kMarch), L"7/3/26");
    EXPECT_EQ(Format(L"M/d/yyyy", L'/', kMarch), L"3/7/2026");
    EXPECT_EQ(Format(L"yyyy.MM.dd", L'.', kMarch), L"2026.03.07");
    EXPECT_EQ(Format(L"dd MMM yyyy", L' ', kMarch), L"07 Mar 2026");
    EXPECT_EQ(Format(L"d-mmmm-y", L'-', kDecember), L"1-Dec-2005");
    EXPECT_EQ(Format(L"yy", L'-', kDecember), L"05");
    // The separator is the system's, whatever the format writes between elements.
    EXPECT_EQ(Format(L"dd-mm-yyyy", L'/', kMarch), L"07/03/2026");
    EXPECT_EQ(Format(L"yyyy'x'mm", L'.', kMarch), L"2026.03");
}

TEST(ShortDate, Options)
{
    EXPECT_EQ(Format(L"dd-mm-yyyy", L'-', kMarch, DateWithWeekday), L"Sat 07-03-2026");
    EXPECT_EQ(Format(L"d/m/yyyy", L'/', kMarch, DatePadded), L" 7/ 3/2026");
    EXPECT_EQ(Format(L"d/m/yyyy", L'/', kDecember, DatePadded | DateWithWeekday), L"Mon  1/12/2005");
}

// "?\?" is written so because "??" followed by some characters once had a
// meaning of its own in C++ source.
TEST(ShortDate, InvalidDatesKeepTheirShape)
{
    SYSTEMTIME noDay = kMarch;
    noDay.wDay = 0;
    SYSTEMTIME badMonth = kMarch;
    badMonth.wMonth = 13;
    EXPECT_EQ(Format(L"dd-mm-yyyy", L'-', noDay), L"?\?-?\?-?\?\?\?");
    EXPECT_EQ(Format(L"dd-mmm-yy", L'-', badMonth), L"?\?-?\?\?-?\?");
    EXPECT_EQ(Format(L"m/d/yyy", L'/', badMonth), L"?\?/?\?/?\?\?\?");
}

TEST(ShortDate, CutAtTheBuffer)
{
    EXPECT_EQ(Format(L"dd-mm-yyyy", L'-', kMarch, DateWithWeekday, 6), L"Sat 0");
    EXPECT_EQ(Format(L"dd-mm-yyyy", L'-', kMarch, 0, 1), L"");
}

} // namespace
