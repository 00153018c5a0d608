// The pager's wait at a full page, driven by a host that plays back keys and
// window size changes, on the program's own screen.
#include "app/event_pump.h"
#include "app/host.h"
#include "screen/pager.h"
#include "screen/screen_store.h"

#include <gtest/gtest.h>

#include <deque>
#include <vector>
#include <string>

namespace {

// Each wait of the pager takes the next step: a key, or a change of the
// window's height followed by the Resized report.
struct PageStep {
    wchar_t Key = 0;
    int NewHeight = 0;
};

class PagingHost : public ShellHost {
public:
    std::deque<PageStep> Steps;
    // The row above the cursor each time the pager painted its mark.
    std::vector<std::wstring> MarkedRows;

    void PollBreak() override {}
    wchar_t ReadKey() override { return 3; }
    bool ReadLine(wchar_t*, int) override { return false; }
    void RequestExit() override {}
    bool Interactive() const override { return true; }
    void Refresh() override
    {
        if (TheScreen.AtMore) MarkedRows.push_back(TheScreen.RowText(TheScreen.CursorY - 1));
    }
    InputEvent NextInput(InputWait wait) override
    {
        EXPECT_EQ(wait, InputWait::Page);
        EXPECT_EQ(InputMode, 2);
        if (Steps.empty()) return {InputKind::End, 0, 0};
        PageStep step = Steps.front();
        Steps.pop_front();
        if (step.NewHeight == 0) return {InputKind::Char, step.Key, 0};
        TheScreen.ResizeCells(ScreenWidth, step.NewHeight);
        return {InputKind::Resized, 0, 0};
    }
};

class PagerTest : public testing::Test {
protected:
    PagingHost host;
    ShellHost* savedHost = nullptr;

    void SetUp() override
    {
        savedHost = Host;
        Host = &host;
        TheScreen.ResizeCells(80, 10);
        TheScreen.ClearScreen();
        TheScreen.PagePause = Pause;
        TheScreen.PageEnabled = 1;
        TheScreen.BreakFlag = 0;
    }
    void TearDown() override
    {
        TheScreen.PagePause = nullptr;
        TheScreen.PageEnabled = 1;
        TheScreen.BreakFlag = 0;
        TheScreen.ResizeCells(80, 24);
        Host = savedHost;
    }

    // A listing of numbered lines under the pager; the lines that got out.
    static int List(int lines)
    {
        ListingPager pager;
        int written = 0;
        for (int i = 1; i <= lines && !TheScreen.BreakFlag; ++i) {
            TheScreen.Write((L"line " + std::to_wstring(i)).c_str());
            TheScreen.NewLine();
            written = i;
        }
        return written;
    }
};

TEST_F(PagerTest, WaitsAtEachPageAndEndsAtCtrlC)
{
    struct Case {
        const char* name;
        int pageEnabled;
        std::deque<PageStep> steps;
        int lines;
        std::vector<std::wstring> waitedAfter; // the last line shown at each mark
        int written;
        int broke;
    };
    // A page is ScreenHeight - 1 = 9 rows.
    const Case cases[] = {
        {"one page never waits", 1, {}, 8, {}, 8, 0},
        {"every key gives the next page", 1, {{L' '}, {L'q'}}, 26, {L"line 9", L"line 18"}, 26, 0},
        {"Ctrl-C drops the rest", 1, {{L'x'}, {3}}, 40, {L"line 9", L"line 18"}, 18, 1},
        {"page off runs straight through", 0, {}, 40, {}, 40, 0},
        // Growing by 3 rows lets just those fill before the next wait.
        {"growing resumes without a key", 1, {{0, 13}, {L' '}}, 20, {L"line 9", L"line 12"}, 20, 0},
        {"shrinking keeps waiting", 1, {{0, 7}, {L' '}}, 12, {L"line 9"}, 12, 0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        TheScreen.ResizeCells(80, 10);
        TheScreen.ClearScreen();
        TheScreen.PageEnabled = c.pageEnabled;
        host.Steps = c.steps;
        host.MarkedRows.clear();
        EXPECT_EQ(List(c.lines), c.written);
        EXPECT_EQ(host.MarkedRows, c.waitedAfter);
        EXPECT_TRUE(host.Steps.empty());
        EXPECT_EQ(TheScreen.BreakFlag, c.broke);
        EXPECT_EQ(TheScreen.Paging, 0);
        EXPECT_EQ(TheScreen.AtMore, 0);
        EXPECT_EQ(InputMode, 0);
        // The mark never entered the cells.
        for (int y = 0; y < ScreenHeight; ++y) EXPECT_EQ(TheScreen.RowText(y).find(L"more"), std::wstring::npos);
        TheScreen.BreakFlag = 0;
    }
}

TEST_F(PagerTest, TheScopeArmsFromTheSettingAndDisarmsOnEveryWayOut)
{
    TheScreen.BreakFlag = 1;
    TheScreen.PageLines = 5;
    {
        ListingPager pager;
        EXPECT_EQ(TheScreen.Paging, 1);
        EXPECT_EQ(TheScreen.BreakFlag, 0);
        EXPECT_EQ(TheScreen.PageLines, 0);
    }
    EXPECT_EQ(TheScreen.Paging, 0);
    TheScreen.TakeDamage();
    {
        ListingPager notArmed(false);
        EXPECT_EQ(TheScreen.Paging, 0);
    }
    EXPECT_FALSE(TheScreen.TakeDamage().Whole);
    auto failing = [] {
        ListingPager pager;
        TheScreen.BreakFlag = 1; // a reported error leaves early
        return;
    };
    failing();
    EXPECT_EQ(TheScreen.Paging, 0);
    EXPECT_TRUE(TheScreen.TakeDamage().Whole);
    TheScreen.PageEnabled = 0;
    ListingPager off;
    EXPECT_EQ(TheScreen.Paging, 0);
}

} // namespace
