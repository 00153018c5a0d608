// The screen's font: the record made from the settings, and the font actually
// made, which must keep the cell grid whatever face was asked for.
#include "screen/render_font.h"

#include "app/profile/profile.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <cwchar>
#include <string>

namespace {

class SettingsFile {
public:
    explicit SettingsFile(const std::string& text)
    {
        folder_.WriteBytes(L"font.ini", text);
        TheProfile.SelectStore((L"INI=" + (folder_ / L"font.ini")).c_str());
    }
    ~SettingsFile() { TheProfile.SelectStore(L""); }

private:
    TempFolder folder_;
};

bool IsFixedPitch(HFONT font, int& averageWidth)
{
    HDC screen = GetDC(nullptr);
    HGDIOBJ old = SelectObject(screen, font);
    TEXTMETRICW metrics{};
    GetTextMetricsW(screen, &metrics);
    SIZE narrow{}, wide{};
    GetTextExtentPoint32W(screen, L"i", 1, &narrow);
    GetTextExtentPoint32W(screen, L"W", 1, &wide);
    SelectObject(screen, old);
    ReleaseDC(nullptr, screen);
    averageWidth = metrics.tmAveCharWidth;
    return narrow.cx == wide.cx && narrow.cx == metrics.tmAveCharWidth;
}

TEST(ScreenFont, TheSettingsMakeTheRecord)
{
    {
        SettingsFile settings("");
        FontChoice choice = ReadFontChoice();
        EXPECT_STREQ(choice.Family, L"Courier New");
        LOGFONTW record = FontRecord(choice, 96);
        EXPECT_EQ(record.lfHeight, -13); // 10 points at 96 pixels per inch, rounded
        EXPECT_EQ(record.lfWidth, 0);
        EXPECT_EQ(record.lfWeight, FW_BOLD);
        EXPECT_EQ(record.lfCharSet, 0);
        EXPECT_STREQ(record.lfFaceName, L"Courier New");
    }
    {
        SettingsFile settings("[Ombrel]\r\nFontFamily=Terminal\r\nFontWidth=10\r\nFontHeight=18\r\n"
                              "FontPoint=14\r\nFontBold=0\r\n");
        LOGFONTW record = FontRecord(ReadFontChoice(), 120);
        EXPECT_EQ(record.lfHeight, 18);
        EXPECT_EQ(record.lfWidth, 10);
        EXPECT_EQ(record.lfCharSet, 255);
        EXPECT_EQ(record.lfWeight, FW_NORMAL);
    }
    {
        // Only the family's own spelling selects the raster sizes.
        SettingsFile settings("[Ombrel]\r\nFontFamily=terminal\r\nFontPoint=14\r\n");
        LOGFONTW record = FontRecord(ReadFontChoice(), 120);
        EXPECT_EQ(record.lfHeight, -23);
        EXPECT_EQ(record.lfCharSet, 0);
    }
    {
        // A family name longer than a face name is cut, not overrun.
        SettingsFile settings("[Ombrel]\r\nFontFamily=" + std::string(100, 'x') + "\r\n");
        FontChoice choice = ReadFontChoice();
        EXPECT_EQ(std::wcslen(choice.Family), size_t(kFamilyMax - 1));
        EXPECT_EQ(std::wcslen(FontRecord(choice, 96).lfFaceName), size_t(LF_FACESIZE - 1));
    }
}

TEST(ScreenFont, AnyFaceGivesAFixedPitchCell)
{
    for (const wchar_t* family : {L"Courier New", L"No Such Face At All", L"DejaVu Sans", L"Tahoma"}) {
        FontChoice choice;
        lstrcpyW(choice.Family, family);
        ScreenFont font;
        ASSERT_TRUE(font.Make(choice)) << family;
        int average = 0;
        EXPECT_TRUE(IsFixedPitch(font.Handle(), average)) << family;
        EXPECT_EQ(font.CellWidth(), average) << family;
        EXPECT_GT(font.CellHeight(), font.CellWidth()) << family;
        EXPECT_EQ(font.Slack(), 1);
    }
    // A larger point size makes a larger cell.
    FontChoice small, large;
    large.Point = 20;
    ScreenFont smallFont, largeFont;
    ASSERT_TRUE(smallFont.Make(small));
    ASSERT_TRUE(largeFont.Make(large));
    EXPECT_GT(largeFont.CellHeight(), smallFont.CellHeight());
    EXPECT_GT(largeFont.CellWidth(), smallFont.CellWidth());
}

} // namespace
