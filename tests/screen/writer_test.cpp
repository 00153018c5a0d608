// The writer: deferred wrap, characters per cell, fields, numbers, the break
// contract and scrolling into history.
#include "screen_fixture.h"

#include "app/host.h"

#include <string>

namespace {

std::wstring Repeat(wchar_t unit, int count) { return std::wstring(size_t(count), unit); }

// Numbered lines in full, so that every row is told apart.
std::wstring LineText(int n) { return L"line " + std::to_wstring(n); }

TEST_F(ScreenTest, WrapWaitsForTheCharacterAfterAFullRow)
{
    std::wstring full = Repeat(L'a', 80);
    store->Write(full.c_str());
    ExpectCursor(80, 0);
    store->NewLine();
    EXPECT_EQ(Row(0), full);
    EXPECT_EQ(Row(1), L"");
    ExpectCursor(0, 1);

    store->Write(Repeat(L'b', 80).c_str());
    store->Write(L"c");
    EXPECT_EQ(Row(1), Repeat(L'b', 80));
    EXPECT_EQ(Row(2), L"c");
    ExpectCursor(1, 2);

    // A cursor placed past the edge wraps before its first character.
    store->Locate(85, 5);
    store->Write(L"z");
    EXPECT_EQ(Row(6), L"z");
    ExpectCursor(1, 6);
}

TEST_F(ScreenTest, OneCellHoldsACharacterWithItsMarksOrASurrogatePair)
{
    store->Write(L"e\u0301\u0302\u0303x\U0001F600y");
    EXPECT_EQ(CellText(0, 0), L"e\u0301\u0302\u0303");
    EXPECT_EQ(store->CellAt(0, 0).Capacity, 4);
    EXPECT_EQ(CellText(1, 0), L"x");
    EXPECT_EQ(CellText(2, 0), L"\U0001F600");
    EXPECT_EQ(CellText(3, 0), L"y");
    ExpectCursor(4, 0);

    // A shorter character keeps the larger buffer, zero-filled behind it.
    store->Locate(0, 0);
    store->Write(L"q");
    const ScreenCell& cell = store->CellAt(0, 0);
    ASSERT_EQ(cell.Capacity, 4);
    EXPECT_EQ(std::wstring(cell.Units(), 4), std::wstring(L"q\0\0\0", 4));
    store->Locate(0, 0);
    store->Write(L" ");
    EXPECT_TRUE(cells::isblank(store->CellAt(0, 0)));
    EXPECT_EQ(cells::count(store->CellAt(0, 0)), 1);

    // Combining marks at the very start of a text still take one cell.
    store->Locate(0, 1);
    store->Write(L"\u0301\u0302");
    EXPECT_EQ(store->CursorX, 1);
}

TEST_F(ScreenTest, FieldsAlignRightOnceAndNumbersTakeSeparatorsOnce)
{
    store->FieldWidth = 6;
    store->Write(L"abc");
    store->Write(L"|");
    store->NewLine();
    store->FieldWidth = 6;
    store->Write(L"abcdefgh");
    store->NewLine();
    store->CommaNext = 1;
    store->WriteInt64(1234567);
    store->Write(L" ");
    store->WriteInt64(1234567);
    store->NewLine();
    store->CommaNext = 1;
    store->FieldWidth = 12;
    store->WriteInt(-98765);
    store->NewLine();
    store->CommaNext = 1;
    store->WriteUInt64(18446744073709551615ull);
    store->NewLine();
    store->FieldWidth = 500; // more than any field: capped, not overrun
    store->Write(L"x");

    EXPECT_EQ(Row(0), L"   abc|");
    EXPECT_EQ(Row(1), L"abcdefgh");
    EXPECT_EQ(Row(2), L"1,234,567 1234567");
    EXPECT_EQ(Row(3), L"     -98,765");
    EXPECT_EQ(Row(4), L"18,446,744,073,709,551,615");
    EXPECT_EQ(Row(5), Repeat(L' ', 39) + L"x");
    EXPECT_EQ(store->FieldWidth, 0);
    EXPECT_EQ(store->CommaNext, 0);
}

TEST_F(ScreenTest, NothingIsWrittenWhileBreakFlagIsSet)
{
    store->Write(L"kept");
    store->BreakFlag = 1;
    store->FieldWidth = 10;
    store->Write(L"dropped");
    EXPECT_EQ(store->FieldWidth, 0);
    store->NewLine();
    store->WriteInt(42);
    store->WriteEscaped(L"gone\nalso gone");
    EXPECT_EQ(Row(0), L"kept");
    EXPECT_EQ(Row(1), L"");
    ExpectCursor(4, 0);
    // Control characters still act on the cursor; only text is dropped.
    store->WriteEscaped(L"gone\r");
    ExpectCursor(0, 0);
    store->Locate(4, 0);

    // The store side ignores the flag: the break mark itself is written so.
    store->ShowBreak();
    EXPECT_EQ(Row(0), L"kept^C");
    EXPECT_EQ(Foreground(4, 0), ItemValue(Item::Text));
}

TEST_F(ScreenTest, ScrolledRowsGoIntoHistoryAndTheOldestFallOff)
{
    for (int i = 0; i < 30; ++i) {
        store->Write(LineText(i).c_str());
        store->NewLine();
    }
    // 30 lines and the empty row under the cursor: 7 rows went up.
    ExpectCursor(0, 23);
    EXPECT_EQ(Row(0), LineText(7));
    EXPECT_EQ(Row(22), LineText(29));
    EXPECT_EQ(Row(-1), LineText(6));
    EXPECT_EQ(Row(-7), LineText(0));
    EXPECT_EQ(Row(-8), L"");

    // The blank rows below the visible screen scroll too; a full store loses
    // its oldest rows, one per scroll.
    int total = store->Rows();
    int history = store->History();
    for (int i = 30; i < 30 + total; ++i) {
        store->Write(LineText(i).c_str());
        store->NewLine();
    }
    int last = 30 + total - 1;
    EXPECT_EQ(Row(22), LineText(last));
    EXPECT_EQ(Row(-history), LineText(last - 22 - history));
    EXPECT_EQ(Row(-history - 1), L"");
    EXPECT_EQ(Row(23), L"");
    EXPECT_EQ(Row(24), L"");
}

TEST_F(ScreenTest, ACursorBelowTheScreenScrollsOnceAndWritesFromColumnZero)
{
    store->Locate(40, 500);
    store->Write(L"low");
    EXPECT_EQ(Row(23), L"low");
    ExpectCursor(3, 23);

    // Rows above the screen are history: writing there reaches the store,
    // and rows above the whole store take nothing.
    store->Locate(5, -3);
    store->Write(L"up");
    EXPECT_EQ(Row(-3), L"     up");
    store->Locate(0, -100000);
    store->Write(L"nowhere");
    ExpectCursor(7, -100000);
}

TEST_F(ScreenTest, TheObserverHearsEveryFinishedRow)
{
    struct Lines : ScreenObserver {
        std::wstring seen;
        const ScreenStore* screen = nullptr;
        void LineCompleted(int y) override { seen += screen->RowText(y) + L"|"; }
    } lines;
    lines.screen = store.get();
    store->Observer = &lines;
    store->Write((Repeat(L'x', 80) + L"yz").c_str());
    store->NewLine();
    store->Write(L"last");
    store->NewLine();
    EXPECT_EQ(lines.seen, Repeat(L'x', 80) + L"|yz|last|");
}

TEST_F(ScreenTest, WriteCharTakesOneWholeCharacter)
{
    const wchar_t* text = L"a\u0301b";
    const wchar_t* next = store->WriteChar(text);
    EXPECT_EQ(next, text + 2);
    store->WriteUnit(L'!');
    store->WriteFloat(2.5);
    EXPECT_EQ(Row(0), L"a\u0301!2.5");
    ExpectCursor(5, 0);
}

} // namespace
