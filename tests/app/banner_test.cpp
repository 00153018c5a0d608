// The window program's banner: its title in colours, the five information
// lines, and a tip only while the setting Tips is on.
#include "app/banner.h"
#include "app/profile/profile.h"
#include "input/unix_mode.h"
#include "screen/colours.h"
#include "screen/screen_store.h"
#include "store_scope.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <cwctype>
#include <string>

namespace {

uint8_t Colour(Item item) { return ItemColour[static_cast<int>(item)]; }
uint8_t ForegroundAt(int x, int y) { return uint8_t(TheScreen.CellAt(x, y).Attr & 0xFF); }

// The banner into a cleared screen, with the setting Tips as given.
void PrintWithTips(const TempFolder& folder, int tips)
{
    StoreScope store(L"INI=" + (folder / L"banner.ini"));
    ProfileWriteInt(L"Ombrel", L"Tips", tips);
    TheScreen.ClearScreen();
    TheScreen.BreakFlag = 0;
    PrintBanner();
}

// A count with thousands separators and its unit.
bool IsCount(const std::wstring& text, const std::wstring& unit)
{
    if (text.size() <= unit.size() || text.substr(text.size() - unit.size()) != unit) return false;
    std::wstring digits = text.substr(0, text.size() - unit.size());
    for (size_t i = 0; i < digits.size(); ++i) {
        bool commaPlace = (digits.size() - i) % 4 == 0;
        if (commaPlace ? digits[i] != L',' : !iswdigit(digits[i])) return false;
    }
    return true;
}

TEST(Banner, TitleAndInformationLinesInTheirColours)
{
    TempFolder folder;
    PrintWithTips(folder, 0);
    EXPECT_EQ(TheScreen.RowText(0), L"        OOP - General Command Shell for Windows v8.2");
    EXPECT_EQ(ForegroundAt(8, 0), Colour(Item::Number));
    EXPECT_EQ(ForegroundAt(14, 0), Colour(Item::FileName));
    EXPECT_EQ(ForegroundAt(48, 0), Colour(Item::Error));
    EXPECT_EQ(ForegroundAt(50, 0), Colour(Item::Error));
    EXPECT_FALSE(TheScreen.RowText(1).empty());
    EXPECT_EQ(ForegroundAt(0, 1), Colour(Item::BoldText));
    EXPECT_EQ(TheScreen.RowText(2), L"");
    EXPECT_EQ(TheScreen.RowText(3), L"");

    const std::wstring labels[] = {L" Character Encoding........ ", L" Run-As Privileges......... ",
                                   L" Windows Directory......... ", L" Display Capability........ ",
                                   L" Free System Memory........ "};
    std::wstring values[5];
    for (int i = 0; i < 5; ++i) {
        std::wstring row = TheScreen.RowText(4 + i);
        ASSERT_EQ(row.substr(0, labels[i].size()), labels[i]);
        values[i] = row.substr(labels[i].size());
        EXPECT_EQ(ForegroundAt(1, 4 + i), Colour(Item::Text));
        EXPECT_EQ(ForegroundAt(int(labels[i].size()), 4 + i), Colour(Item::HighText));
    }
    EXPECT_EQ(values[0], L"Unicode");
    EXPECT_TRUE(values[1] == L"Adminstrator" || values[1] == L"Limited") << values[1];
    wchar_t windows[MAX_PATH];
    GetWindowsDirectoryW(windows, MAX_PATH);
    EXPECT_EQ(values[2], windows);
    EXPECT_TRUE(IsCount(values[3], L" colours")) << values[3];
    EXPECT_TRUE(IsCount(values[4], L" bytes")) << values[4];

    // Tips off: the information ends the banner, with one line end more.
    EXPECT_EQ(TheScreen.RowText(9), L"");
    EXPECT_EQ(TheScreen.CursorY, 10);
}

TEST(Banner, WindowsDirectoryIsShownInUnixFormInUnixMode)
{
    TempFolder folder;
    int savedUnix = TheUnixMode.Unix;
    TheUnixMode.Unix = 1;
    PrintWithTips(folder, 0);
    TheUnixMode.Unix = savedUnix;
    wchar_t windows[MAX_PATH];
    GetWindowsDirectoryW(windows, MAX_PATH);
    std::wstring expected = windows;
    for (wchar_t& unit : expected)
        if (unit == L'\\') unit = L'/';
    const std::wstring label = L" Windows Directory......... ";
    EXPECT_EQ(TheScreen.RowText(6), label + expected);
}

TEST(Banner, ATipFollowsWhileTipsIsOn)
{
    TempFolder folder;
    PrintWithTips(folder, 1);
    EXPECT_EQ(TheScreen.RowText(9), L"");
    EXPECT_EQ(TheScreen.RowText(10), L"");
    std::wstring tip = TheScreen.RowText(11);
    ASSERT_EQ(tip.substr(0, 5), L"Tip: ");
    EXPECT_GT(tip.size(), 5u);
    EXPECT_EQ(ForegroundAt(0, 11), Colour(Item::HighText));
    EXPECT_EQ(ForegroundAt(5, 11), Colour(Item::Text));
    // The tip's own last line end, then the banner's: one blank row at the end.
    EXPECT_EQ(TheScreen.CursorX, 0);
    EXPECT_EQ(TheScreen.RowText(TheScreen.CursorY - 1), L"");
    EXPECT_FALSE(TheScreen.RowText(TheScreen.CursorY - 2).empty());
}

} // namespace
