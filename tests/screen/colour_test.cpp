// Colours: names, schemes, the HLS editor's arithmetic, the colour command
// end to end, and text redirected to a file in its encoding.
#include "screen_fixture.h"

#include "app/globals.h"
#include "app/profile/profile.h"
#include "lang/shell_command.h"
#include "support/ombc_runner.h"
#include "support/temp_folder.h"

#include <algorithm>
#include <cstdlib>
#include <string>

namespace {

TEST(Colours, NamesResolveToPaletteIndicesOrItemValues)
{
    EXPECT_EQ(ColourByName(L"grey"), 38);
    EXPECT_EQ(ColourByName(L"GRAY"), 38);
    EXPECT_EQ(ColourByName(L"Red"), 2);
    EXPECT_EQ(ColourByName(L"magenta"), 32);
    EXPECT_EQ(ColourByName(L"nosuch"), -1);
    EXPECT_EQ(ColourByName(L""), -1);
    uint8_t saved = ItemColour[static_cast<int>(Item::HighLHS)];
    ItemColour[static_cast<int>(Item::HighLHS)] = 31;
    EXPECT_EQ(ColourByName(L"highlhs"), 31);
    ItemColour[static_cast<int>(Item::HighLHS)] = saved;
}

TEST(Colours, SchemesFillTheWorkingCopyAndCancelForgetsTheChoice)
{
    ColourPageState page;
    page.Open();
    uint8_t text = ItemValue(Item::Text);
    page.SelectScheme(7);
    EXPECT_EQ(page.Working[static_cast<int>(Item::FileName)], 0);
    EXPECT_EQ(page.Working[static_cast<int>(Item::BackGrd)], 39);
    EXPECT_EQ(DefaultScheme, 7);
    DefaultText = static_cast<int>(Item::Error);
    page.AssignToSelected(13);
    EXPECT_EQ(page.Working[static_cast<int>(Item::Error)], 13);
    page.SelectScheme(99);
    EXPECT_EQ(DefaultScheme, 7);
    page.Cancel();
    EXPECT_EQ(DefaultScheme, 0);
    EXPECT_EQ(DefaultText, 0);
    EXPECT_EQ(ItemValue(Item::Text), text);
}

TEST(Colours, HlsConversionIsTheClassicIntegerOne)
{
    HlsColour red = RgbToHls(RGB(255, 0, 0));
    EXPECT_EQ(red.Hue, 0);
    EXPECT_EQ(red.Luminance, 120);
    EXPECT_EQ(red.Saturation, 240);
    HlsColour blue = RgbToHls(RGB(0, 0, 255));
    EXPECT_EQ(blue.Hue, 160);
    EXPECT_EQ(blue.Saturation, 240);
    HlsColour grey = RgbToHls(RGB(128, 128, 128));
    EXPECT_EQ(grey.Hue, 160);
    EXPECT_EQ(grey.Saturation, 0);
    EXPECT_EQ(HlsToRgb(HlsColour{80, 120, 240}), RGB(0, 255, 0));
    EXPECT_EQ(HlsToRgb(HlsColour{0, 240, 0}), RGB(255, 255, 255));
    // Every built-in colour comes back within rounding.
    for (COLORREF colour : PaletteDefault) {
        COLORREF back = HlsToRgb(RgbToHls(colour));
        EXPECT_LE(std::abs(int(GetRValue(back)) - int(GetRValue(colour))), 3) << std::hex << colour;
        EXPECT_LE(std::abs(int(GetGValue(back)) - int(GetGValue(colour))), 3) << std::hex << colour;
        EXPECT_LE(std::abs(int(GetBValue(back)) - int(GetBValue(colour))), 3) << std::hex << colour;
    }
}

TEST(Colours, ItemsAndPaletteComeFromTheSettingsAndGoBack)
{
    TempFolder folder;
    TheProfile.SelectStore((L"INI=" + (folder / L"colours.ini")).c_str());
    uint8_t items[kItemCount];
    std::copy(std::begin(ItemColour), std::end(ItemColour), items);

    ProfileWriteString(L"Colour40", L"Text", L"5");
    ProfileWriteString(L"Colour40", L"Error", L"77");
    ProfileWriteString(L"Colour40", L"DefaultScheme", L"3");
    ProfileWriteString(L"Colour40", L"rgb07", L"123456");
    LoadColours();
    EXPECT_EQ(ItemValue(Item::Text), 5);
    EXPECT_EQ(ItemValue(Item::Error), items[static_cast<int>(Item::Error)]);
    EXPECT_EQ(DefaultScheme, 3);
    if (PaletteEditable()) {
        EXPECT_EQ(Palette[7], COLORREF(123456));
    }
    EXPECT_EQ(Palette[8], PaletteDefault[8]);

    SetPaletteEntry(9, RGB(1, 2, 3));
    EXPECT_EQ(ProfileReadInt(L"Colour40", L"rgb09", 0), int(RGB(1, 2, 3)));
    ItemColour[static_cast<int>(Item::FileDesc)] = 12;
    SaveItems();
    EXPECT_EQ(ProfileReadInt(L"Colour40", L"FileDesc", 0), 12);
    EXPECT_EQ(ProfileReadInt(L"Colour40", L"DefaultScheme", 0), 3);

    std::copy(std::begin(items), std::end(items), ItemColour);
    std::copy(std::begin(PaletteDefault), std::end(PaletteDefault), Palette);
    DefaultScheme = 0;
    TheProfile.SelectStore(L"INI=" L"T:\\unused.ini");
}

// Runs one line in this process and returns the attribute of the first cell
// the line wrote.
uint16_t AttrOfLine(const wchar_t* line)
{
    TheScreen.ClearScreen();
    TheShell.RunLine(line);
    return TheScreen.CellAt(0, 0).Attr;
}

TEST(ColourCommand, TheColourOutlastsTheStatementAndBadNamesChangeNothing)
{
    uint16_t plain = uint16_t(ItemValue(Item::Text) | ItemValue(Item::BackGrd) << 8);
    TheScreen.Attr = TheScreen.ResetAttr = plain;

    TheShell.RunLine(L"colour red");
    EXPECT_EQ(AttrOfLine(L"echo x"), 2 | ItemValue(Item::BackGrd) << 8);
    EXPECT_EQ(AttrOfLine(L"color white blue & echo y"), 39 | 26 << 8);
    EXPECT_EQ(TheScreen.RowText(0), L"y");

    // Unknown names and bad backgrounds leave the colour alone, silently.
    TheShell.RunLine(L"colour backgrd text");
    uint16_t chosen = uint16_t(ItemValue(Item::BackGrd) | ItemValue(Item::Text) << 8);
    EXPECT_EQ(AttrOfLine(L"colour nosuch & echo z"), chosen);
    EXPECT_EQ(TheScreen.RowText(0), L"z");
    EXPECT_EQ(ErrorLevel, 0);
    EXPECT_EQ(AttrOfLine(L"colour red 99 & echo z"), chosen);

    EXPECT_EQ(AttrOfLine(L"colour red green blue"), uint16_t(ItemValue(Item::Error) | (chosen & 0xFF00)));
    EXPECT_EQ(TheScreen.RowText(0), L"Invalid number of parameters");
    EXPECT_EQ(ErrorLevel, 1);
    TheShell.RunLine(L"colour /q red");
    EXPECT_EQ(ErrorLevel, 1);
    EXPECT_EQ(TheScreen.ResetAttr, chosen);
    TheScreen.Attr = TheScreen.ResetAttr = plain;
}

TEST(ColourCommand, ReportsThroughTheConsoleHost)
{
    OmbcResult wrong = RunOmbc(L"/C \"colour\"");
    EXPECT_EQ(wrong.Output, L"Invalid number of parameters\r\n\r\n");
    EXPECT_EQ(wrong.ExitCode, 1);
    OmbcResult quiet = RunOmbc(L"/C \"colour nosuch & colour red & echo done\"");
    EXPECT_EQ(quiet.Output, L"done\r\n");
    EXPECT_EQ(quiet.ExitCode, 0);
}

TEST_F(ScreenTest, RedirectedTextGoesToTheFileInItsEncoding)
{
    TempFolder folder;
    auto open = [&](const wchar_t* name) {
        return CreateFileW((folder / name).c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                           nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    };
    int unicode = UnicodeRedirection;

    UnicodeRedirection = 1;
    store->OpenRedirect(open(L"wide.txt"));
    store->FieldWidth = 4;
    store->Write(L"\u00e9");
    store->NewLine();
    store->CloseRedirect();
    EXPECT_EQ(folder.ReadBytes(L"wide.txt"), std::string("\xFF\xFE \0 \0 \0\xE9\0\r\0\n\0", 14));

    // A file with content keeps its own encoding, whatever the setting says.
    folder.WriteBytes(L"utf8.txt", "\xEF\xBB\xBFold\r\n");
    store->OpenRedirect(open(L"utf8.txt"));
    store->WriteEscaped(L"\x1b[5;5H\u00e9\tx\x1b[31m\n");
    store->CloseRedirect();
    EXPECT_EQ(folder.ReadBytes(L"utf8.txt"), "\xEF\xBB\xBFold\r\n\xC3\xA9   x\r\n");
    // The sequences moved the screen's cursor; no text reached the screen.
    EXPECT_EQ(store->CursorY, 4);
    EXPECT_EQ(Row(4), L"");

    UnicodeRedirection = 0;
    store->OpenRedirect(open(L"plain.txt"));
    store->CommaNext = 1;
    store->WriteInt(12345);
    store->BreakFlag = 1;
    store->Write(L"dropped");
    store->NewLine();
    store->CloseRedirect();
    EXPECT_EQ(folder.ReadBytes(L"plain.txt"), "12,345");
    EXPECT_EQ(store->Redirected, 0);
    UnicodeRedirection = unicode;
}

} // namespace
