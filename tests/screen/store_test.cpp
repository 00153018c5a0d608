// Store operations: resizing, saving the screen, the store size and its
// limits, line insertion, and the console's view of cells.
#include "screen_fixture.h"

#include "app/profile/profile.h"
#include "support/temp_folder.h"

#include <string>

namespace {

std::wstring Repeat(const std::wstring& piece, int count)
{
    std::wstring text;
    for (int i = 0; i < count; ++i) text += piece;
    return text;
}

// Settings in a throw-away file for the length of a test; the limits are put
// back afterwards since every store reads them.
class SettingsScope {
public:
    SettingsScope() { TheProfile.SelectStore((L"INI=" + (folder / L"omb.ini")).c_str()); }
    ~SettingsScope()
    {
        TheProfile.SelectStore(L"INI=" L"T:\\unused.ini");
        LoadScreenLimits();
    }
    void Set(const wchar_t* key, const wchar_t* value) { ProfileWriteString(L"Ombrel", key, value); }

    TempFolder folder;
};

TEST_F(ScreenTest, NarrowingHidesColumnsAndWideningShowsThemAgain)
{
    store->ResizeCells(120, 24);
    std::wstring wide = Repeat(L"0123456789", 12);
    store->Write(wide.c_str());
    store->ResizeCells(70, 24);
    EXPECT_EQ(Row(0), wide.substr(0, 70));
    store->ResizeCells(120, 24);
    EXPECT_EQ(Row(0), wide);
    // The requested size is held within 60..MaxWidth and 5..MaxHeight.
    store->ResizeCells(10, 1);
    EXPECT_EQ(ScreenWidth, 60);
    EXPECT_EQ(ScreenHeight, 5);
    store->ResizeCells(100000, 100000);
    EXPECT_EQ(ScreenWidth, MaxWidth);
    EXPECT_EQ(ScreenHeight, MaxHeight);
}

TEST_F(ScreenTest, ShrinkingBelowTheCursorDropsTopRowsOutsideHistory)
{
    store->Write(L"history");
    store->LineFeed();
    for (int i = 0; i < 23; ++i) {
        store->Write((L"row " + std::to_wstring(i)).c_str());
        store->LineFeed();
    }
    // "history" went up one row; the cursor stands on row 23.
    ASSERT_EQ(Row(-1), L"history");
    store->Write(L"cursor row");
    store->ResizeCells(80, 10);
    EXPECT_EQ(Row(9), L"cursor row");
    EXPECT_EQ(Row(8), L"row 22");
    EXPECT_EQ(Row(0), L"row 14");
    EXPECT_EQ(Row(-1), L"history");
    EXPECT_EQ(Row(10), L"");
    ExpectCursor(10, 9);

    // Growing again shows blank rows below; nothing comes back.
    store->ResizeCells(80, 24);
    EXPECT_EQ(Row(10), L"");
    EXPECT_EQ(Row(9), L"cursor row");
}

TEST_F(ScreenTest, SaveScreenEmptiesTheStoreAndRestoreBringsItBack)
{
    EXPECT_EQ(store->RestoreScreen(), -1);
    store->Write(L"before");
    store->LineFeed();
    store->Write(L"second");
    ASSERT_EQ(store->SaveScreen(), 0);
    EXPECT_EQ(store->CellAt(0, 0).Units(), nullptr);
    EXPECT_FALSE(cells::isblank(store->CellAt(0, 0)));
    EXPECT_EQ(Row(0), L"");
    store->Locate(3, 0);
    store->Write(L"during");
    store->LineFeed();
    EXPECT_EQ(Row(0), L"during");
    // A console program reading the row passes the empty cells and gets the text.
    wchar_t units[8] = {};
    EXPECT_EQ(store->ReadChars(0, 0, 6, units), 6);
    EXPECT_EQ(std::wstring(units), L"during");
    ASSERT_EQ(store->RestoreScreen(), 0);
    EXPECT_EQ(Row(0), L"before");
    EXPECT_EQ(Row(1), L"second");
    ExpectCursor(6, 1);
    EXPECT_EQ(store->RestoreScreen(), -1);
}

TEST_F(ScreenTest, StoreSizeIsClampedAndKeepsTheNewestRows)
{
    SettingsScope settings;
    for (int i = 0; i < 40; ++i) {
        store->Write((L"line " + std::to_wstring(i)).c_str());
        store->LineFeed();
    }
    std::wstring bottom = Row(22);
    std::wstring oldest = Row(-17);

    store->SetScrollBack(1000000);
    EXPECT_EQ(store->Rows(), MaxScroll + MaxHeight);
    EXPECT_EQ(ScrollBack, store->Rows());
    EXPECT_EQ(ProfileReadInt(L"Ombrel", L"ScrollBack", 0), store->Rows());
    EXPECT_EQ(Row(22), bottom);
    EXPECT_EQ(Row(-17), oldest);
    // Rows added on top are empty, not blank.
    const ScreenCell& top = store->CellAt(0, -store->History());
    EXPECT_FALSE(cells::isblank(top));
    EXPECT_EQ(cells::count(top), 0);

    store->SetScrollBack(1);
    EXPECT_EQ(store->Rows(), 2 * MaxHeight + 30);
    EXPECT_EQ(Row(22), bottom);
    EXPECT_EQ(Row(-17), oldest);
    store->SetScrollBack(5000);
    store->SetScrollBack(-5);
    EXPECT_EQ(store->Rows(), 2 * MaxHeight + 30);
    EXPECT_EQ(Row(22), bottom);

    // A history limit below the screen area plus 30 rows cannot be had: the
    // floor wins over the ceiling.
    settings.Set(L"MaxScroll", L"100");
    LoadScreenLimits();
    store->SetScrollBack(1000000);
    EXPECT_EQ(store->Rows(), 2 * MaxHeight + 30);
    EXPECT_EQ(Row(22), bottom);
}

TEST_F(ScreenTest, HandEditedLimitsAreClampedBeforeTheStoreIsBuilt)
{
    SettingsScope settings;
    settings.Set(L"MaxWidth", L"5");
    settings.Set(L"MaxHeight", L"99999");
    settings.Set(L"MaxScroll", L"-3");
    LoadScreenLimits();
    EXPECT_EQ(MaxWidth, kMinWidth);
    EXPECT_EQ(MaxHeight, kMaxHeightLimit);
    EXPECT_EQ(MaxScroll, 0);

    settings.Set(L"ScrollBack", L"-7");
    ScreenStore narrow;
    EXPECT_EQ(MaxWidth, kMinWidth);
    EXPECT_EQ(narrow.Rows(), 2 * MaxHeight + 30);
    // The global width asks for more than a row holds: rows wrap at the stride.
    narrow.Write(Repeat(L"x", 130).c_str());
    EXPECT_EQ(narrow.RowText(0), Repeat(L"x", 60));
    EXPECT_EQ(narrow.RowText(2), Repeat(L"x", 10));
    narrow.ResizeCells(80, 24);
    EXPECT_EQ(ScreenWidth, 60);

    settings.Set(L"MaxWidth", L"100000");
    settings.Set(L"MaxHeight", L"0");
    settings.Set(L"MaxScroll", L"99999999");
    settings.Set(L"ScrollBack", L"2147483647");
    ScreenStore huge;
    EXPECT_EQ(huge.Rows(), kMaxScrollLimit + kMinHeight);
    EXPECT_EQ(MaxWidth, kMaxWidthLimit);
    EXPECT_EQ(MaxHeight, kMinHeight);
    EXPECT_EQ(MaxScroll, kMaxScrollLimit);
    ScreenWidth = 80;
    ScreenHeight = 24;
    ScreenStore tall(300);
    tall.Write(L"fits");
    for (int i = 0; i < 5; ++i) tall.LineFeed();
    EXPECT_EQ(tall.RowText(-1), L"fits");
    EXPECT_EQ(tall.CursorY, 4);
}

TEST_F(ScreenTest, InsertAndDeleteLineMoveTheRowsBelow)
{
    for (int i = 0; i < 24; ++i) {
        store->Locate(0, i);
        store->Write((L"r" + std::to_wstring(i)).c_str());
    }
    store->InsertLine(2);
    EXPECT_EQ(Row(1), L"r1");
    EXPECT_EQ(Row(2), L"");
    EXPECT_EQ(Row(3), L"r2");
    EXPECT_EQ(Row(23), L"r22");
    // The first hidden row takes part: the last visible row moves into it.
    EXPECT_EQ(Row(24), L"r23");
    store->DeleteLine(0);
    store->DeleteLine(1);
    EXPECT_EQ(Row(0), L"r1");
    EXPECT_EQ(Row(1), L"r2");
    EXPECT_EQ(Row(22), L"r23");
    EXPECT_EQ(Row(23), L"");
    store->ScrollRegion(5, 7, -100);
    EXPECT_EQ(Row(4), L"r5");
    EXPECT_EQ(Row(5), L"");
    EXPECT_EQ(Row(7), L"");
    EXPECT_EQ(Row(8), L"r9");
    store->ScrollRegion(0, 3, 2);
    EXPECT_EQ(Row(0), L"");
    EXPECT_EQ(Row(1), L"");
    EXPECT_EQ(Row(2), L"r1");
    EXPECT_EQ(Row(3), L"r2");
    EXPECT_EQ(Row(4), L"r5");
}

TEST_F(ScreenTest, TheConsoleSeesFourBitColoursAndUnits)
{
    uint16_t codes[3] = {0x03, 0x1C, 0xF0};
    EXPECT_EQ(store->WriteAttrs(78, 0, 3, codes), 3);
    EXPECT_EQ(store->CellAt(78, 0).Attr, 23);
    EXPECT_EQ(store->CellAt(79, 0).Attr, 2 | 24 << 8);
    EXPECT_EQ(store->CellAt(0, 1).Attr, 39 << 8);
    uint16_t back[3] = {};
    EXPECT_EQ(store->ReadAttrs(78, 0, 3, back), 3);
    // The way back is coarse: palette 23 reads as 11, not 3.
    EXPECT_EQ(back[0], 0x0B);
    EXPECT_EQ(back[1], 0xB4);
    EXPECT_EQ(back[2], 0xF0);

    store->Locate(0, 5);
    store->Write(L"a\u0301\u0302bc");
    // Each cell takes its old character's units from the count.
    EXPECT_EQ(store->WriteChars(0, 5, 3, L"xyz"), 3);
    EXPECT_EQ(Row(5), L"xbc");
    EXPECT_EQ(store->WriteChars(0, 5, 2, L"pq"), 2);
    EXPECT_EQ(Row(5), L"pqc");
    wchar_t units[16] = {};
    EXPECT_EQ(store->ReadChars(0, 5, 4, units), 4);
    EXPECT_EQ(std::wstring(units, 4), L"pqc ");
    store->Locate(0, 5);
    EXPECT_EQ(store->CharAtCursor(), 0);
    store->Locate(1, 5);
    EXPECT_EQ(store->CharAtCursor(), L'q');
}

// Every cell of every row is a one-unit blank in attr.
::testing::AssertionResult AllRowsBlank(const ScreenStore& store, uint16_t attr)
{
    for (int y = -store.History(); y < MaxHeight; ++y)
        for (int x = 0; x < MaxWidth; ++x) {
            const ScreenCell& cell = store.CellAt(x, y);
            if (!cells::isblank(cell) || cell.Capacity != 1 || cell.Attr != attr)
                return ::testing::AssertionFailure() << "cell " << x << ", " << y;
        }
    return ::testing::AssertionSuccess();
}

TEST_F(ScreenTest, RowsComingBackFromTheTopAreWholeBlankRows)
{
    store->ResizeCells(MaxWidth, 24);
    store->Locate(200, 23);
    store->Write(L"e\u0301\u0302\u0303\u0304\u0305wide");
    uint16_t codes[4] = {0x1C, 0x1C, 0x1C, 0x1C};
    store->WriteAttrs(MaxWidth - 2, 22, 4, codes);
    store->Locate(3, 5);
    store->Attr = 0x2A05;
    store->ClearToEnd();
    store->Locate(7, 4);
    store->Write(L"x\u0301");
    store->ClearScreen();
    store->ResizeCells(80, 24);

    // A full turn of the ring in a new colour: every row comes back blank.
    store->Attr = uint16_t(5 | ItemValue(Item::BackGrd) << 8);
    store->Locate(0, 23);
    for (int i = 0; i < store->Rows(); ++i) store->LineFeed();
    EXPECT_TRUE(AllRowsBlank(*store, store->Attr));

    // And again in the same colour, after text in the visible columns.
    for (int y = 0; y < 24; ++y) {
        store->Locate(0, y);
        store->Write(std::wstring(80, L'z').c_str());
    }
    store->Locate(0, 23);
    for (int i = 0; i < store->Rows(); ++i) store->LineFeed();
    EXPECT_TRUE(AllRowsBlank(*store, store->Attr));
}

TEST(ScreenCells, CopyJoinsCellTextAndEmptyCellsGiveNothing)
{
    ScreenCell* row = cells::alloc(6);
    ASSERT_NE(row, nullptr);
    const wchar_t* text = L"a\u0301\u0302\u0303\u0304\u0305b\U0001F600";
    text = cells::set(row[0], text, 7);
    text = cells::set(row[1], text, 7);
    text = cells::set(row[2], text, 7);
    EXPECT_EQ(*text, 0);
    cells::toblank(row[3], 7);
    // row[4] stays empty; row[5] loses its buffer but keeps its capacity.
    cells::set(row[5], L"xyz", 7);
    cells::empty(row[5]);
    EXPECT_EQ(row[0].Capacity, 6);
    EXPECT_EQ(row[5].Capacity, 1);
    EXPECT_FALSE(cells::isblank(row[4]));
    EXPECT_FALSE(cells::isblank(row[5]));
    EXPECT_EQ(cells::count(row[5]), 0);

    EXPECT_EQ(cells::text_size(row, 6), 11);
    wchar_t joined[16];
    EXPECT_EQ(cells::copy_screen(row, joined, 6), 10);
    EXPECT_EQ(std::wstring(joined), L"a\u0301\u0302\u0303\u0304\u0305b\U0001F600 ");

    // A longer character grows the buffer to exactly its size.
    cells::set(row[1], L"c\u0301\u0302", 9);
    EXPECT_EQ(row[1].Capacity, 3);
    EXPECT_EQ(row[1].Attr, 9);
    cells::set(row[2], L"d\u0301\u0302\u0303", 9);
    cells::set(row[0], L"e\u0301\u0302\u0303\u0304\u0305\u0306", 9);
    EXPECT_EQ(cells::copy_screen(row, joined, 3), 14);
    EXPECT_EQ(std::wstring(joined), L"e\u0301\u0302\u0303\u0304\u0305\u0306c\u0301\u0302d\u0301\u0302\u0303");
    cells::set(row[5], L"q", 9);
    EXPECT_EQ(row[5].Capacity, 1);
    cells::free(row, 6);
}

TEST_F(ScreenTest, CountersCountEachCellOperation)
{
    uint32_t sets = CellCounters.set;
    store->Write(L"a\u0301bc\U0001F600");
    EXPECT_EQ(CellCounters.set - sets, 4u);
    uint32_t scrolls = CellCounters.scrollup;
    store->Locate(0, 23);
    store->LineFeed();
    EXPECT_EQ(CellCounters.scrollup - scrolls, 1u);

    ScreenWidth = 80;
    TheScreen.ClearScreen();
    PrintCellCounters();
    const wchar_t* labels[] = {L"clear_screen: ", L"         get: ", L"         set: ", L" copy_screen: ",
                               L"       count: ", L"       alloc: ", L"        free: ", L"       empty: ",
                               L"  scrolldown: ", L"    scrollup: ", L"     isblank: ", L"     toblank: ",
                               L"   text_size: "};
    for (int i = 0; i < 13; ++i) EXPECT_EQ(TheScreen.RowText(i).rfind(labels[i], 0), 0u) << i;
    EXPECT_EQ(TheScreen.RowText(12), L"   text_size: 128");
}

} // namespace

// Rows turn round the ring many times and are blanked only when reached
// again: history must still read as the lines written, in order, with every
// cell behind a line a fresh blank, whatever the row held on earlier turns.
TEST_F(ScreenTest, HistoryAfterManyTurnsReadsAsTheLinesWritten)
{
    auto lineText = [](int i) {
        if (i % 3 == 2) return std::wstring(); // a line end alone touches no cell
        std::wstring text = L"line " + std::to_wstring(i);
        if (i % 5 == 0) text += L" e\u0301\u0302\u0303" + std::wstring(size_t(i % 70), L'w');
        return text;
    };
    const int lines = store->Rows() * 5 / 2;
    store->Locate(0, 23);
    for (int i = 0; i < lines; ++i) {
        store->Attr = uint16_t((i % 4 + 1) | ItemValue(Item::BackGrd) << 8);
        if (!lineText(i).empty()) store->Write(lineText(i).c_str());
        store->LineFeed();
    }
    for (int y = -store->History(); y < 23; ++y) {
        int i = lines - 23 + y;
        ASSERT_EQ(Row(y), lineText(i)) << "row " << y;
        for (int x = int(lineText(i).size()) - (i % 5 == 0 ? 3 : 0); x < MaxWidth; ++x)
            ASSERT_EQ(store->CellAt(x, y).Capacity, 1) << "cell " << x << ", " << y;
    }

    // Clearing the screen in a new colour reaches the rows still waiting.
    store->Attr = uint16_t(7 | ItemValue(Item::BackGrd) << 8);
    store->ClearScreen();
    for (int y = 0; y < MaxHeight; ++y)
        for (int x = 0; x < MaxWidth; ++x)
            ASSERT_TRUE(cells::isblank(store->CellAt(x, y)) && Foreground(x, y) == 7) << x << ", " << y;
    EXPECT_EQ(Row(-1), lineText(lines - 24));
}
