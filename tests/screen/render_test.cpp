// The painter against a surface that records what it is asked to draw: which
// rows a frame covers, which runs of which colours, and where the caret goes.
#include "screen/render.h"

#include "screen_fixture.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <vector>

namespace {

struct PaintedRun {
    int Column;
    int Row;
    std::wstring Text;
    int Cells;
    RunColours Colours;
};

struct Frame {
    FrameRows Rows;
    std::vector<PaintedRun> Runs;
    int CaretX = -1;
    int CaretY = -1;
    bool Ended = false;
};

class RecordingSurface : public RenderSurface {
public:
    std::vector<Frame> Frames;

    void BeginFrame(const FrameRows& rows) override { Frames.push_back({rows, {}}); }
    void PaintRun(int column, int row, const wchar_t* text, int units, int cellCount,
                  const RunColours& colours) override
    {
        Frames.back().Runs.push_back({column, row, std::wstring(text, size_t(units)), cellCount, colours});
    }
    void PaintCaret(int column, int row) override
    {
        Frames.back().CaretX = column;
        Frames.back().CaretY = row;
    }
    void EndFrame() override { Frames.back().Ended = true; }

    std::vector<PaintedRun> RunsOfRow(int row) const
    {
        std::vector<PaintedRun> runs;
        for (const PaintedRun& run : Frames.back().Runs)
            if (run.Row == row) runs.push_back(run);
        return runs;
    }
};

class RenderTest : public ScreenTest {
protected:
    void SetUp() override
    {
        ScreenTest::SetUp();
        savedBackGrd = ItemColour[int(Item::BackGrd)];
        std::copy(std::begin(Palette), std::end(Palette), std::begin(savedPalette));
        std::copy(std::begin(PaletteDefault), std::end(PaletteDefault), std::begin(Palette));
    }
    void TearDown() override
    {
        ItemColour[int(Item::BackGrd)] = savedBackGrd;
        std::copy(std::begin(savedPalette), std::end(savedPalette), std::begin(Palette));
    }

    void WriteIn(uint8_t fore, uint8_t back, const wchar_t* text)
    {
        store->Attr = uint16_t(fore | back << 8);
        store->WriteCells(text);
    }
    uint8_t BackGrd() const { return ItemValue(Item::BackGrd); }

    ScreenPainter painter;
    RecordingSurface surface;
    uint8_t savedBackGrd = 0;
    COLORREF savedPalette[kPaletteSize] = {};
};

TEST_F(RenderTest, RunsEndWhereTheAttributeChanges)
{
    const uint8_t text = ItemValue(Item::Text);
    WriteIn(2, BackGrd(), L"red ");
    WriteIn(18, BackGrd(), L"green");
    WriteIn(2, BackGrd(), L"!");
    store->Locate(10, 3);
    WriteIn(13, 26, L"e\u0301x");
    painter.PaintAll(*store, surface);

    ASSERT_EQ(surface.Frames.size(), 1u);
    const Frame& frame = surface.Frames[0];
    EXPECT_TRUE(frame.Rows.Whole);
    EXPECT_EQ(frame.Rows.First, 0);
    EXPECT_EQ(frame.Rows.Last, 23);
    EXPECT_TRUE(frame.Ended);

    std::vector<PaintedRun> row0 = surface.RunsOfRow(0);
    ASSERT_EQ(row0.size(), 4u);
    EXPECT_EQ(row0[0].Text, L"red ");
    EXPECT_EQ(row0[0].Column, 0);
    EXPECT_EQ(row0[0].Colours.Fore, PaletteDefault[2]);
    EXPECT_EQ(row0[1].Text, L"green");
    EXPECT_EQ(row0[1].Column, 4);
    EXPECT_EQ(row0[1].Colours.Fore, PaletteDefault[18]);
    EXPECT_EQ(row0[2].Text, L"!");
    EXPECT_EQ(row0[2].Column, 9);
    // The blanks behind the text are one run in the colour the store blanks in.
    EXPECT_EQ(row0[3].Column, 10);
    EXPECT_EQ(row0[3].Text, std::wstring(70, L' '));
    EXPECT_EQ(row0[3].Colours.Fore, PaletteDefault[text]);

    // A plain row is one run; a combining mark stays in its base's cell.
    EXPECT_EQ(surface.RunsOfRow(1).size(), 1u);
    EXPECT_EQ(surface.RunsOfRow(1)[0].Cells, 80);
    std::vector<PaintedRun> row3 = surface.RunsOfRow(3);
    ASSERT_EQ(row3.size(), 3u);
    EXPECT_EQ(row3[1].Column, 10);
    EXPECT_EQ(row3[1].Text, L"e\u0301x");
    EXPECT_EQ(row3[1].Cells, 2);
    EXPECT_EQ(row3[2].Column, 12);
    EXPECT_EQ(row3[2].Cells, 68);
    // Every visible row is drawn, each over exactly the screen's width.
    for (int y = 0; y < 24; ++y) {
        int cells = 0;
        for (const PaintedRun& run : surface.RunsOfRow(y)) cells += run.Cells;
        EXPECT_EQ(cells, 80) << y;
    }
    EXPECT_EQ(frame.CaretX, 12);
    EXPECT_EQ(frame.CaretY, 3);
}

TEST_F(RenderTest, OnlyTheBackGrdBackgroundIsTransparent)
{
    WriteIn(39, BackGrd(), L"plain");
    WriteIn(39, 26, L"boxed");
    painter.PaintAll(*store, surface);
    std::vector<PaintedRun> row = surface.RunsOfRow(0);
    ASSERT_GE(row.size(), 2u);
    EXPECT_TRUE(row[0].Colours.Transparent);
    EXPECT_FALSE(row[1].Colours.Transparent);
    EXPECT_EQ(row[1].Colours.Back, PaletteDefault[26]);
    EXPECT_EQ(row[1].Colours.Fore, PaletteDefault[39]);

    // The test is against the item as it is now: making blue the background
    // item turns the boxed run transparent and the plain one opaque.
    ItemColour[int(Item::BackGrd)] = 26;
    painter.PaintAll(*store, surface);
    row = surface.RunsOfRow(0);
    EXPECT_FALSE(row[0].Colours.Transparent);
    EXPECT_EQ(row[0].Colours.Back, PaletteDefault[savedBackGrd]);
    EXPECT_TRUE(row[1].Colours.Transparent);

    // Cells keep indices: a changed palette entry recolours them.
    Palette[39] = RGB(1, 2, 3);
    painter.PaintAll(*store, surface);
    EXPECT_EQ(surface.RunsOfRow(0)[0].Colours.Fore, RGB(1, 2, 3));
}

TEST_F(RenderTest, OnlyChangedRowsAreRepainted)
{
    painter.PaintAll(*store, surface);
    EXPECT_FALSE(painter.PaintChanges(*store, surface));
    EXPECT_EQ(surface.Frames.size(), 1u);

    store->Locate(0, 5);
    WriteIn(2, BackGrd(), L"five");
    store->Locate(3, 7);
    WriteIn(2, BackGrd(), L"seven");
    ASSERT_TRUE(painter.PaintChanges(*store, surface));
    const Frame& band = surface.Frames.back();
    EXPECT_FALSE(band.Rows.Whole);
    EXPECT_EQ(band.Rows.First, 5);
    EXPECT_EQ(band.Rows.Last, 7);
    for (const PaintedRun& run : band.Runs) {
        EXPECT_GE(run.Row, 5);
        EXPECT_LE(run.Row, 7);
    }
    EXPECT_EQ(surface.RunsOfRow(7)[1].Text, L"seven");
    EXPECT_EQ(band.CaretX, 8);
    EXPECT_EQ(band.CaretY, 7);
    EXPECT_FALSE(painter.PaintChanges(*store, surface));

    // A scroll moves every row: the whole screen is drawn again.
    store->Locate(0, 23);
    store->LineFeed();
    ASSERT_TRUE(painter.PaintChanges(*store, surface));
    EXPECT_TRUE(surface.Frames.back().Rows.Whole);
    EXPECT_EQ(surface.RunsOfRow(6)[1].Text, L"seven");

    // The pager's mark lies over a whole frame at the cursor, in HighText
    // over the background, and is no part of a band of rows.
    store->AtMore = 1;
    store->Locate(0, 23);
    painter.PaintAll(*store, surface);
    const PaintedRun& mark = surface.Frames.back().Runs.back();
    EXPECT_EQ(mark.Text, L"-- more --");
    EXPECT_EQ(mark.Row, 23);
    EXPECT_EQ(mark.Column, 0);
    EXPECT_EQ(mark.Colours.Fore, PaletteDefault[ItemValue(Item::HighText)]);
    EXPECT_TRUE(mark.Colours.Transparent);
    WriteIn(2, BackGrd(), L"x");
    ASSERT_TRUE(painter.PaintChanges(*store, surface));
    EXPECT_NE(surface.Frames.back().Runs.back().Text, L"-- more --");
    store->AtMore = 0;

    // A narrower screen is drawn at its new width, without reflow.
    store->ResizeCells(60, 10);
    ASSERT_TRUE(painter.PaintChanges(*store, surface));
    EXPECT_EQ(surface.Frames.back().Rows.Last, 9);
    EXPECT_EQ(surface.Frames.back().Rows.Columns, 60);
    for (const PaintedRun& run : surface.Frames.back().Runs) EXPECT_LE(run.Column + run.Cells, 60);
}

} // namespace
