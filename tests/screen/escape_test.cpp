// Control characters and escape sequences through WriteEscaped, and the
// console writers that share its shape.
#include "screen_fixture.h"

#include <cstdint>
#include <string>
#include <vector>

namespace {

struct CursorCase {
    const wchar_t* Text;
    int X;
    int Y;
};

TEST_F(ScreenTest, CursorSequencesMoveFromWhereTheyStandWithoutClamp)
{
    const CursorCase cases[] = {
        {L"\x1b[A", 10, 4},        {L"\x1b[3A", 10, 2},      {L"\x1b[B", 10, 6},
        {L"\x1b[2C", 12, 5},       {L"\x1b[D", 9, 5},        {L"\x1b[20A", 10, -15},
        {L"\x1b[30D", -20, 5},     {L"\x1b[H", 0, 0},        {L"\x1b[3;7H", 6, 2},
        {L"\x1b[3;7f", 6, 2},      {L"\x1b[;5H", 4, 0},      {L"\x1b[0;0H", -1, -1},
        {L"\x1b[2A\x1b[3C", 13, 3}, {L"\x1b[s\x1b[H\x1b[u", 10, 5},
        // Numbers wrap as 32-bit values instead of failing.
        {L"\x1b[4294967295C", 9, 5}, {L"\x1b[4294967297B", 10, 6},
    };
    for (const CursorCase& c : cases) {
        store->Locate(10, 5);
        store->WriteEscaped(c.Text);
        EXPECT_EQ(store->CursorX, c.X) << testing::PrintToString(std::wstring(c.Text));
        EXPECT_EQ(store->CursorY, c.Y) << testing::PrintToString(std::wstring(c.Text));
    }
    // A saved position lives for one call only.
    store->WriteEscaped(L"\x1b[7;7H\x1b[s");
    store->WriteEscaped(L"\x1b[u");
    ExpectCursor(0, 0);
    store->WriteEscaped(nullptr);
    ExpectCursor(0, 0);
}

struct PictureCase {
    const wchar_t* Text;
    std::vector<std::wstring> Rows;
    int X;
    int Y;
};

TEST_F(ScreenTest, EscapedTextDrawsTheExpectedPicture)
{
    const PictureCase cases[] = {
        {L"abc\bX", {L"abX"}, 3, 0},
        {L"abc\rX", {L"Xbc"}, 1, 0},
        {L"a\nb", {L"a", L"b"}, 1, 1},
        {L"a\x01\x1f" L"b", {L"ab"}, 2, 0},
        {L"abc\tX", {L"abc     X"}, 9, 0},
        {L"12345678\tX", {L"12345678        X"}, 17, 0},
        {L"hello\x1b[2DXY", {L"helXY"}, 5, 0},
        {L"abcdef\x1b[3D\x1b[K!", {L"abc!"}, 4, 0},
        // K with a parameter acts, and leaves its final unit behind as text.
        {L"abcdef\x1b[3D\x1b[2K", {L"abcK"}, 4, 0},
        {L"x\x1b[2Jy", {L"y"}, 1, 0},
        // Unknown or malformed: the ESC goes, the rest is printed.
        {L"\x1b[1;2J", {L"[1;2J"}, 5, 0},
        {L"\x1b[5z", {L"[5z"}, 3, 0},
        {L"\x1bX", {L"X"}, 1, 0},
        {L"\x1b[12", {L"[12"}, 3, 0},
        {L"\x1b[-5A", {L"[-5A"}, 4, 0},
        // Known sequences before an unknown one in the same run stay applied.
        {L"\x1b[2C\x1b[1B\x1b[9zQ", {L"", L"  [2C", L"     [1B[9zQ"}, 12, 2},
    };
    for (const PictureCase& c : cases) {
        store->ClearScreen();
        store->WriteEscaped(c.Text);
        std::string label = testing::PrintToString(std::wstring(c.Text));
        for (size_t y = 0; y < c.Rows.size(); ++y) EXPECT_EQ(Row(int(y)), c.Rows[y]) << label;
        EXPECT_EQ(store->CursorX, c.X) << label;
        EXPECT_EQ(store->CursorY, c.Y) << label;
    }
}

TEST_F(ScreenTest, TabsPadToEightAndWrapAtTheRightEdge)
{
    store->Locate(78, 0);
    store->WriteEscaped(L"\tZ");
    EXPECT_EQ(Row(1), L"Z");
    ExpectCursor(1, 1);

    // One batch pads to at most 255 units.
    store->ClearScreen();
    store->WriteEscaped((std::wstring(250, L'a') + L"\tX").c_str());
    EXPECT_EQ(Row(3), std::wstring(10, L'a') + L"     X");

    // A batch holds 4,095 units; more is dropped.
    store->ClearScreen();
    store->WriteEscaped(std::wstring(5000, L'b').c_str());
    ExpectCursor(4095 - 51 * 80, 23);
}

TEST_F(ScreenTest, SgrChangesOnlyTheByteItNames)
{
    store->WriteEscaped(L"\x1b[31mA\x1b[0mB\x1b[1;37mC\x1b[0;37mD\x1b[44mE\x1b[51mF\x1b[60mG"
                        L"\x1b[4;5;7;8;99mH\x1b[mI\x1b[52;;57mJ");
    struct Expected {
        int Foreground;
        int Background;
    };
    const uint8_t backGrd = ItemValue(Item::BackGrd);
    const Expected expected[] = {
        {1, backGrd},  {1, backGrd},  {39, backGrd}, {38, backGrd},
        {38, 26},      {ItemValue(Item::Error), 26}, {ItemValue(Item::Error), backGrd},
        {ItemValue(Item::Error), backGrd}, {ItemValue(Item::Error), backGrd}, {ItemValue(Item::Text), backGrd},
    };
    EXPECT_EQ(Row(0), L"ABCDEFGHIJ");
    for (int x = 0; x < 10; ++x) {
        EXPECT_EQ(Foreground(x, 0), expected[x].Foreground) << x;
        EXPECT_EQ(Background(x, 0), expected[x].Background) << x;
    }
    // The bright choice outlives the call; the colours are the store's.
    store->WriteEscaped(L"\x1b[1m");
    store->WriteEscaped(L"\x1b[32mK");
    EXPECT_EQ(Foreground(10, 0), 16);
    EXPECT_EQ(BrightFlag, 1);
}

TEST_F(ScreenTest, TheDefaultPromptColoursPathSignAndInput)
{
    store->Attr = 0x0501;
    store->WriteEscaped(L"\x1b[1;56;60mC:\\\x1b[53m>\x1b[0;57mtyped");
    EXPECT_EQ(Row(0), L"C:\\>typed");
    const uint8_t backGrd = ItemValue(Item::BackGrd);
    EXPECT_EQ(store->CellAt(0, 0).Attr, ItemValue(Item::BoldText) | backGrd << 8);
    EXPECT_EQ(store->CellAt(2, 0).Attr, ItemValue(Item::BoldText) | backGrd << 8);
    EXPECT_EQ(store->CellAt(3, 0).Attr, ItemValue(Item::Number) | backGrd << 8);
    EXPECT_EQ(store->CellAt(4, 0).Attr, ItemValue(Item::Text) | backGrd << 8);
    EXPECT_EQ(BrightFlag, 0);
}

TEST_F(ScreenTest, ParseSequencesStepsBackAndReportsWhereTextGoesOn)
{
    EscapeState state;
    store->Locate(1, 0);
    const wchar_t* text = L"\b\b\x1b[2Cq";
    EXPECT_EQ(store->ParseSequences(state, text), text + 6);
    ExpectCursor(2, 0);
    // An unknown sequence hands back its start, after any backspaces.
    const wchar_t* unknown = L"\b\x1b[2z";
    EXPECT_EQ(store->ParseSequences(state, unknown), unknown + 1);
    EXPECT_EQ(state.Failed, 1);
}

TEST_F(ScreenTest, WildCursorPositionsNeverReachOutsideTheStore)
{
    const wchar_t* wild[] = {
        L"\x1b[99999999999Ax", L"\x1b[2147483648;2147483648Hxy", L"\x1b[2147483647Cxy", L"\x1b[2147483647Dxy",
        L"\x1b[999999999999999999999999Bx\x1b[K", L"\x1b[2000000000D\b\b\tx\x1b[K", L"\x1b[300A\x1b[K\x1b[sz\x1b[u",
    };
    for (const wchar_t* text : wild) {
        store->Locate(3, 3);
        store->WriteEscaped(text);
        store->ClearToEnd();
        store->CharAtCursor();
        store->WriteEscaped(L"\x1b[H" L"ok");
        EXPECT_EQ(Row(0).substr(0, 2), L"ok") << testing::PrintToString(std::wstring(text));
    }
    // Past the edge at the bottom: one wrap, one scroll, column 0.
    store->ClearScreen();
    store->WriteEscaped(L"\x1b[2147483648;2147483648Hxy");
    EXPECT_EQ(Row(23), L"xy");
    ExpectCursor(2, 23);

    uint16_t attrs[8] = {};
    wchar_t units[8] = {};
    EXPECT_EQ(store->ReadAttrs(-1, 0, 8, attrs), 0);
    EXPECT_EQ(store->ReadAttrs(0, 24, 8, attrs), 0);
    EXPECT_EQ(store->ReadChars(79, 23, 8, units), 1);
    EXPECT_EQ(store->WriteChars(0, -5, 8, L"abcdefgh"), 0);
}

TEST_F(ScreenTest, ConsoleWritersKeepOrFilterControlUnits)
{
    store->ConsoleWrite(L"a\x07" L"b\x1bZc", 1, 0);
    EXPECT_EQ(Row(0), L"abZc");
    store->LineFeed();
    store->ConsoleWrite(L"a\x07" L"b\x1bZ", 0, 0);
    EXPECT_EQ(CellText(1, 1), L"\x07");
    EXPECT_EQ(CellText(3, 1), L"\x1b");
    store->LineFeed();
    // Backspace steps back without blanking; sequences still work.
    store->ConsoleWrite(L"xyz\b\b\x1b[31mQ", 1, 0);
    EXPECT_EQ(Row(2), L"xQz");
    EXPECT_EQ(Foreground(1, 2), 1);

    store->BreakFlag = 1;
    EXPECT_EQ(store->ConsoleWriteCount(L"dropped", 7, 1, 0), 7);
    EXPECT_EQ(Row(3), L"");
    store->LineFeed();
    EXPECT_EQ(store->ConsoleWriteCount(L"kept\0more", 9, 1, 1), 9);
    EXPECT_EQ(Row(3), L"keptmore");

    store->LineFeed();
    for (const wchar_t* p = L"ab\tc\rd\be\nf"; *p; ++p) EXPECT_EQ(store->ConsoleWriteUnit(*p), *p);
    EXPECT_EQ(Row(4), L"eb      c");
    EXPECT_EQ(Row(5), L"f");

    // A console batch holds 4,096 units, one more than an echo batch; more is dropped.
    store->ClearScreen();
    EXPECT_EQ(store->ConsoleWrite(std::wstring(5000, L'b').c_str(), 1, 0), 5000);
    ExpectCursor(4096 - 51 * 80, 23);
}

} // namespace
