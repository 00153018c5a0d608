// The scroll bar's view of history and the mouse selection on the program's
// own screen, with a display that records what the window would be asked.
#include "screen/scrollback.h"
#include "screen/selection.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

class RecordingDisplay : public ScrollDisplay {
public:
    int Position = 0;
    int Maximum = 0;
    int Page = 0;
    std::vector<int> Painted; // top rows of the views painted
    int Caret = 0;            // shows minus hides

    void SetBar(int position, int maximum, int page) override
    {
        Position = position;
        Maximum = maximum;
        Page = page;
    }
    void PaintHistory(int topRow) override { Painted.push_back(topRow); }
    void ShowCaret(bool show) override { Caret += show ? 1 : -1; }
};

class ScrollbackTest : public testing::Test {
protected:
    RecordingDisplay display;

    void SetUp() override
    {
        TheScreen.ResizeCells(80, 24);
        TheScreen.ClearScreen();
        TheScreen.BreakFlag = 0;
        TheScreen.Observer = &TheScrollBar;
        TheScrollBar = ScrollBarState();
        TheScrollBar.Display = &display;
        TheScrollBar.ResetRange();
        TheSelection = ScreenSelection();
        TheScreen.FontWidth = 8;
        TheScreen.FontHeight = 12;
    }
    void TearDown() override
    {
        TheScreen.Observer = nullptr;
        TheScrollBar = ScrollBarState();
        TheSelection = ScreenSelection();
    }

    static void Lines(int count, const wchar_t* prefix = L"line ")
    {
        for (int i = 1; i <= count; ++i) {
            TheScreen.Write((prefix + std::to_wstring(i)).c_str());
            TheScreen.NewLine();
        }
    }
    static int History() { return TheScreen.History(); }
};

TEST_F(ScrollbackTest, TheBarMovesThroughWrittenHistoryOnly)
{
    // Nothing in history: the bar cannot move.
    TheScrollBar.ScrollCommand(LineUp);
    EXPECT_EQ(TheScrollBar.Viewing, 0);
    EXPECT_TRUE(display.Painted.empty());

    Lines(40); // 40 lines from the top of 24 rows: 17 rows enter history
    EXPECT_EQ(TheScrollBar.Filled, 17);
    TheScrollBar.SyncBar();
    EXPECT_EQ(display.Position, 18);
    EXPECT_EQ(display.Maximum, History() + 1);
    EXPECT_EQ(display.Page, History() + 1 - 17);

    struct Step {
        int code;
        int position;
        int viewing;
        int topRow; // from History
    };
    const Step steps[] = {
        {LineUp, 0, 1, -1},   {LineUp, 0, 1, -2},    {PageUp, 0, 1, -17},  {LineUp, 0, 1, -17},
        {LineDown, 0, 1, -16}, {Thumb, 5, 1, -13},   {PageDown, 0, 0, 0},  {Thumb, 1, 1, -17},
        {Thumb, 18, 0, 0},    {LineUp, 0, 1, -1},    {LineDown, 0, 0, 0},
    };
    for (const Step& step : steps) {
        SCOPED_TRACE(testing::Message() << "code " << step.code << " at row " << step.topRow);
        TheScrollBar.ScrollCommand(step.code, step.position);
        EXPECT_EQ(TheScrollBar.Viewing, step.viewing);
        EXPECT_EQ(TheScrollBar.TopRow(), History() + step.topRow);
        // The caret goes while history shows.
        EXPECT_EQ(display.Caret, step.viewing ? -1 : 0);
    }
    EXPECT_EQ(display.Painted.back(), History());
}

TEST_F(ScrollbackTest, FilledStopsShortOfHistoryAndClsForgetsIt)
{
    Lines(History() + 100);
    EXPECT_EQ(TheScrollBar.Filled, History() - 1);
    TheScrollBar.ScrollCommand(Thumb, 1);
    // The oldest reachable row: History - Filled, one below the store's top.
    EXPECT_EQ(TheScrollBar.TopRow(), 1);
    EXPECT_EQ(TheScreen.RowText(1 - History()), L"line 79");
    TheScrollBar.SnapBack();
    TheScrollBar.Filled = 0;
    TheScrollBar.ResetRange();
    TheScrollBar.ScrollCommand(PageUp);
    EXPECT_EQ(TheScrollBar.Viewing, 0);
}

TEST_F(ScrollbackTest, WordsLinesAndDragsCopyAsTheUserSeesThem)
{
    TheScreen.Locate(0, 2);
    TheScreen.Write(L"alpha  beta-gamma   ");
    TheScreen.Locate(0, 3);
    TheScreen.Write(L"second row");
    TheScreen.Locate(0, 4);
    TheScreen.Write(L"   third");
    auto at = [](int column, int row) { return uint32_t((History() + row) * MaxWidth + column); };
    struct Case {
        const char* name;
        uint32_t anchor;
        uint32_t end;
        std::wstring text;
    };
    const Case cases[] = {
        {"across rows: one CR LF between, no trailing blanks", at(7, 2), at(2, 4), L"beta-gamma\r\nsecond row\r\n   "},
        {"backwards the same", at(2, 4), at(7, 2), L"beta-gamma\r\nsecond row\r\n   "},
        {"inside a row", at(1, 3), at(3, 3), L"eco"},
        {"to the end of the last row: no CR LF after it", at(0, 3), at(79, 3), L"second row"},
        // A blank row keeps the one cell the walk for its end stops on.
        {"past the text into a blank row", at(3, 4), at(5, 5), L"third\r\n "},
        {"a blank cell alone", at(5, 2), at(5, 2), L" "},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        TheSelection.Anchor = c.anchor;
        TheSelection.End = c.end;
        EXPECT_EQ(TheSelection.SelectedText(), c.text);
    }

    TheSelection.SelectWord(at(9, 2));
    EXPECT_EQ(TheSelection.SelectedText(), L"beta-gamma");
    EXPECT_EQ(TheSelection.Marking, 1);
    TheSelection.SelectWord(at(0, 2));
    EXPECT_EQ(TheSelection.SelectedText(), L"alpha");
    TheSelection.SelectWord(at(6, 2));
    EXPECT_EQ(TheSelection.SelectedText(), L" ");
    TheSelection.SelectLine(at(40, 4));
    EXPECT_EQ(TheSelection.SelectedText(), L"   third");
    TheSelection.SelectionUp();
    EXPECT_EQ(TheSelection.Exists, 1);
    EXPECT_EQ(TheSelection.Marking, 0);
    EXPECT_EQ(TheSelection.ClearSelection(), 1);
    EXPECT_EQ(TheSelection.ClearSelection(), 0);
}

TEST_F(ScrollbackTest, AClickWithoutMovementNeverSelects)
{
    TheScreen.Locate(0, 1);
    TheScreen.Write(L"drag me over");
    // Pixels: 8 x 12 cells.
    TheSelection.SelectionDown(8 * 5, 12 * 1 + 3);
    TheSelection.SelectionMove(8 * 5, 12 * 1 + 3);
    TheSelection.SelectionUp();
    EXPECT_EQ(TheSelection.Exists, 0);

    TheSelection.SelectionDown(8 * 5, 12 * 1 + 3);
    TheSelection.SelectionMove(8 * 6, 12 * 1 + 3);
    TheSelection.SelectionMove(8 * 11, 12 * 1 + 3);
    EXPECT_EQ(TheSelection.Highlighted(), true);
    TheSelection.SelectionUp();
    EXPECT_EQ(TheSelection.Exists, 1);
    EXPECT_EQ(TheSelection.SelectedText(), L"me over");
}

TEST_F(ScrollbackTest, HitTestsPastTheEdgesClampAndScroll)
{
    Lines(30);
    int top = History();
    auto index = [](int row, int column) { return uint32_t(row * MaxWidth + column); };
    // Left of the window: the end of the row before.
    EXPECT_EQ(TheSelection.HitTest(65536 - 9, 12 * 3), index(top + 2, 80));
    // Right of the text: the column past the last.
    EXPECT_EQ(TheSelection.HitTest(8 * 200, 12 * 3), index(top + 3, 80));
    // Above the window: row 0 of a view scrolled up by one.
    EXPECT_EQ(TheSelection.HitTest(8 * 2, 65536 - 13), index(top - 1, 2));
    EXPECT_EQ(TheScrollBar.Viewing, 1);
    // Below it: the row past the last, and the view comes down again.
    EXPECT_EQ(TheSelection.HitTest(8 * 2, 12 * 40), index(top + 24, 2));
    EXPECT_EQ(TheScrollBar.Viewing, 0);
}

} // namespace
