// The real main window drawing the store: text written through the writer
// appears in its cells in its colour, the BackGrd colour fills the rest, and
// the window's size follows the cells of the measured font. The pixels are
// read back from the window itself.
#include "screen/colours.h"
#include "screen/render_window.h"
#include "screen/screen_store.h"
#include "window_fixture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <initializer_list>
#include <iterator>
#include <vector>

namespace {

// The client area as it shows now, as 32-bit pixels.
class ClientPicture {
public:
    explicit ClientPicture(HWND window)
    {
        RECT client;
        GetClientRect(window, &client);
        width_ = client.right;
        height_ = client.bottom;
        pixels_.resize(size_t(width_) * size_t(height_));
        HDC windowDc = GetDC(window);
        HDC memory = CreateCompatibleDC(windowDc);
        BITMAPINFO info{};
        info.bmiHeader.biSize = sizeof(info.bmiHeader);
        info.bmiHeader.biWidth = width_;
        info.bmiHeader.biHeight = -height_;
        info.bmiHeader.biPlanes = 1;
        info.bmiHeader.biBitCount = 32;
        void* bits = nullptr;
        HBITMAP bitmap = CreateDIBSection(memory, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
        HGDIOBJ old = SelectObject(memory, bitmap);
        BitBlt(memory, 0, 0, width_, height_, windowDc, 0, 0, SRCCOPY);
        GdiFlush();
        const auto* source = static_cast<const DWORD*>(bits);
        // A DIB holds blue in the low byte; COLORREF holds red there.
        for (size_t i = 0; i < pixels_.size(); ++i)
            pixels_[i] = RGB((source[i] >> 16) & 0xFF, (source[i] >> 8) & 0xFF, source[i] & 0xFF);
        SelectObject(memory, old);
        DeleteObject(bitmap);
        DeleteDC(memory);
        ReleaseDC(window, windowDc);
    }

    COLORREF At(int x, int y) const { return pixels_[size_t(y) * size_t(width_) + size_t(x)]; }
    // Pixels of the colour within the cells from column, row, count wide.
    int CountInCells(COLORREF colour, int column, int row, int count) const
    {
        int found = 0;
        for (int y = row * TheScreen.FontHeight; y < (row + 1) * TheScreen.FontHeight; ++y)
            for (int x = column * TheScreen.FontWidth; x < (column + count) * TheScreen.FontWidth; ++x)
                if (At(x, y) == colour) ++found;
        return found;
    }
    int CellArea(int count) const { return count * TheScreen.FontWidth * TheScreen.FontHeight; }

private:
    int width_ = 0;
    int height_ = 0;
    std::vector<COLORREF> pixels_;
};

class RenderWindowTest : public MainWindowTest {
protected:
    uint8_t savedItems[kItemCount] = {};

    void SetUp() override
    {
        std::copy(std::begin(ItemColour), std::end(ItemColour), std::begin(savedItems));
        std::copy(std::begin(PaletteDefault), std::end(PaletteDefault), std::begin(Palette));
        ScreenWidth = 80;
        ScreenHeight = 24;
        MainWindowTest::SetUp();
        if (HasFatalFailure()) return;
        ShowWindow(MainWindow, SW_SHOWNORMAL);
        CommandRunning = 1;
        Pump();
        TheScreen.BreakFlag = 0;
        TheScreen.Attr = uint16_t(ItemValue(Item::Text) | ItemValue(Item::BackGrd) << 8);
        TheScreen.ClearScreen();
    }
    void TearDown() override
    {
        std::copy(std::begin(savedItems), std::end(savedItems), std::begin(ItemColour));
        CommandRunning = 0;
        MainWindowTest::TearDown();
    }

    // Text through the writer in a palette foreground on a palette background.
    static void WriteAt(int x, int y, uint8_t fore, uint8_t back, const wchar_t* text)
    {
        TheScreen.Locate(x, y);
        TheScreen.Attr = uint16_t(fore | back << 8);
        TheScreen.Write(text);
    }
    static SIZE ClientSize()
    {
        RECT client;
        GetClientRect(MainWindow, &client);
        return {client.right, client.bottom};
    }
};

TEST_F(RenderWindowTest, TextShowsInItsCellsInItsColourOverTheBackground)
{
    // The cell is the measured font's: a fixed-pitch font gives every
    // character that width, and the window holds whole cells.
    ASSERT_GT(TheScreen.FontWidth, 0);
    ASSERT_GT(TheScreen.FontHeight, 0);
    SIZE client = ClientSize();
    EXPECT_EQ(client.cx, 80 * TheScreen.FontWidth + GetSystemMetrics(SM_CXVSCROLL));
    EXPECT_EQ(client.cy, 24 * TheScreen.FontHeight);

    const uint8_t red = 2;
    const uint8_t yellow = 13;
    const uint8_t blue = 26;
    const COLORREF background = Palette[ItemValue(Item::BackGrd)];
    WriteAt(5, 2, red, ItemValue(Item::BackGrd), L"WWWW");
    WriteAt(5, 4, blue, yellow, L"MM  MM");
    Host->Refresh();

    ClientPicture picture(MainWindow);
    // Red strokes in the written cells, and none in the cells around them.
    EXPECT_GT(picture.CountInCells(Palette[red], 5, 2, 4), picture.CellArea(4) / 20);
    EXPECT_EQ(picture.CountInCells(Palette[red], 0, 2, 5), 0);
    EXPECT_EQ(picture.CountInCells(Palette[red], 9, 2, 10), 0);
    EXPECT_EQ(picture.CountInCells(Palette[red], 5, 1, 4), 0);
    EXPECT_EQ(picture.CountInCells(Palette[red], 5, 3, 4), 0);
    // Text on BackGrd leaves the background between the strokes.
    EXPECT_GT(picture.CountInCells(background, 5, 2, 4), picture.CellArea(4) / 4);
    // Any other background is a box of that colour over every cell written,
    // the blanks included.
    EXPECT_EQ(picture.CountInCells(Palette[yellow], 7, 4, 2), picture.CellArea(2));
    EXPECT_GT(picture.CountInCells(Palette[blue], 5, 4, 2), 0);
    EXPECT_EQ(picture.CountInCells(background, 5, 4, 6), 0);
    // Blank cells and the strip below the last row show the background; the
    // scroll bar stands at the right edge.
    EXPECT_EQ(picture.CountInCells(background, 0, 10, 80), picture.CellArea(80));
    EXPECT_EQ(picture.At(client.cx - GetSystemMetrics(SM_CXVSCROLL) - 1, client.cy - 1), background);
    EXPECT_NE(picture.At(client.cx - 1, client.cy - 1), background);
}

TEST_F(RenderWindowTest, OutputIsDrawnOnTheTimerWithoutInvalidation)
{
    TheView.PaintAll();
    const uint8_t green = 18;
    WriteAt(0, 6, green, ItemValue(Item::BackGrd), L"HHHHHHHH");
    // Nothing reaches the window until it is asked to draw what changed.
    EXPECT_EQ(ClientPicture(MainWindow).CountInCells(Palette[green], 0, 6, 8), 0);
    SendMessageW(MainWindow, WM_TIMER, 300, 0);
    EXPECT_GT(ClientPicture(MainWindow).CountInCells(Palette[green], 0, 6, 8), 0);

    // A new background item recolours every blank once the screen is cleared.
    ItemColour[int(Item::BackGrd)] = 25;
    TheScreen.Attr = uint16_t(ItemValue(Item::Text) | 25 << 8);
    TheScreen.ClearScreen();
    SendMessageW(MainWindow, WM_TIMER, 300, 0);
    ClientPicture cleared(MainWindow);
    EXPECT_EQ(cleared.CountInCells(Palette[25], 0, 6, 8), cleared.CellArea(8));
    EXPECT_EQ(cleared.CountInCells(Palette[green], 0, 6, 8), 0);
}

TEST_F(RenderWindowTest, AGlyphThatBreaksTheGridStaysInItsCell)
{
    const uint8_t white = 39;
    // A character the font cannot fit in one cell, then text that must stay
    // in its own columns behind it.
    WriteAt(10, 8, white, ItemValue(Item::BackGrd), L"\U0001F600WWW");
    WriteAt(10, 9, white, ItemValue(Item::BackGrd), L"WWWW");
    Host->Refresh();
    ClientPicture picture(MainWindow);
    EXPECT_GT(picture.CountInCells(Palette[white], 10, 8, 1), 0);
    for (int column = 11; column < 14; ++column)
        EXPECT_EQ(picture.CountInCells(Palette[white], column, 8, 1),
                  picture.CountInCells(Palette[white], column, 9, 1))
            << column;
    EXPECT_EQ(picture.CountInCells(Palette[white], 14, 8, 4), 0);

    // A right-to-left letter goes cell by cell too, whatever its width, so
    // that the system does not reorder the run.
    ScreenFont font;
    ASSERT_TRUE(font.Make(ReadFontChoice()));
    GdiSurface surface;
    ASSERT_TRUE(surface.Attach(MainWindow, font.Handle(), font.CellWidth(), font.CellHeight(), font.Slack()));
    EXPECT_FALSE(surface.NeedsPerCellDrawing(L"plain text", 10));
    EXPECT_TRUE(surface.NeedsPerCellDrawing(L"ab\u05D0", 3));
    EXPECT_TRUE(surface.NeedsPerCellDrawing(L"\U0001F600", 2));
    EXPECT_FALSE(surface.NeedsPerCellDrawing(L"", 0));
}

TEST_F(RenderWindowTest, ResizingTheWindowResizesTheScreenInWholeCells)
{
    RECT frame;
    GetWindowRect(MainWindow, &frame);
    SIZE client = ClientSize();
    int extraX = (frame.right - frame.left) - client.cx;
    int extraY = (frame.bottom - frame.top) - client.cy;
    int scrollBar = GetSystemMetrics(SM_CXVSCROLL);
    WriteAt(70, 3, 2, ItemValue(Item::BackGrd), L"far");

    // Half a cell more than 65 x 12 still makes 65 x 12.
    int width = scrollBar + 65 * TheScreen.FontWidth + TheScreen.FontWidth / 2;
    int height = 12 * TheScreen.FontHeight + TheScreen.FontHeight / 2;
    SetWindowPos(MainWindow, nullptr, 0, 0, width + extraX, height + extraY, SWP_NOMOVE | SWP_NOZORDER);
    EXPECT_EQ(ScreenWidth, 65);
    EXPECT_EQ(ScreenHeight, 12);

    // Wider again, the text past the narrow edge is still in its columns.
    SetWindowPos(MainWindow, nullptr, 0, 0, scrollBar + 80 * TheScreen.FontWidth + extraX,
                 24 * TheScreen.FontHeight + extraY, SWP_NOMOVE | SWP_NOZORDER);
    EXPECT_EQ(ScreenWidth, 80);
    EXPECT_EQ(ScreenHeight, 24);
    Pump();
    EXPECT_GT(ClientPicture(MainWindow).CountInCells(Palette[2], 70, 3, 3), 0);

    // A frame dragged by its lower right corner stops at whole cells; one
    // dragged by its upper left corner keeps its lower right one in place.
    RECT dragged{100, 100, 100 + width + extraX, 100 + height + extraY};
    SendMessageW(MainWindow, WM_SIZING, WMSZ_BOTTOMRIGHT, reinterpret_cast<LPARAM>(&dragged));
    EXPECT_EQ(dragged.left, 100);
    EXPECT_EQ(dragged.right - dragged.left, scrollBar + 65 * TheScreen.FontWidth + extraX);
    EXPECT_EQ(dragged.bottom - dragged.top, 12 * TheScreen.FontHeight + extraY);
    dragged = {100, 100, 100 + width + extraX, 100 + height + extraY};
    SendMessageW(MainWindow, WM_SIZING, WMSZ_TOPLEFT, reinterpret_cast<LPARAM>(&dragged));
    EXPECT_EQ(dragged.right, 100 + width + extraX);
    EXPECT_EQ(dragged.bottom, 100 + height + extraY);
    EXPECT_EQ(dragged.right - dragged.left, scrollBar + 65 * TheScreen.FontWidth + extraX);

    // The smallest window the frame allows is 60 x 5 cells.
    MINMAXINFO limits{};
    SendMessageW(MainWindow, WM_GETMINMAXINFO, 0, reinterpret_cast<LPARAM>(&limits));
    SIZE smallest = TheView.WindowSize(60, 5, GetWindowLongW(MainWindow, GWL_STYLE));
    EXPECT_EQ(limits.ptMinTrackSize.x, smallest.cx);
    EXPECT_EQ(limits.ptMinTrackSize.y, smallest.cy);
}

} // namespace
