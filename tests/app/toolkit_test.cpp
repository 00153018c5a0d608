// The text and path toolkit: walkers, quotes, characters, numbers, paths.
#include "app/toolkit/omdib.h"

#include <gtest/gtest.h>

#include <string>

namespace {

// Offset of a walker's result within its text.
using Walker = const wchar_t* (*)(const wchar_t*);
long Walk(Walker walker, const wchar_t* text) { return long(walker(text) - text); }

TEST(Toolkit, WalkersStopWhereTheContractSays)
{
    EXPECT_EQ(Walk(SkipWhiteW, L" \t x"), 3);
    EXPECT_EQ(Walk(SkipWhiteW, L""), 0);
    EXPECT_EQ(Walk(SkipAlphaW, L"/x"), 2);
    EXPECT_EQ(Walk(SkipAlphaW, L"a b"), 1);
    EXPECT_EQ(Walk(SkipAlphaW, L"(x=1)\ty"), 5);
    // After the opening quote: a doubled quote does not close the string.
    const wchar_t* s = L"abc\"\"def\" x";
    EXPECT_EQ(SkipStrW(s) - s, 9);
    EXPECT_EQ(s[SkipStrW(s) - s], L' ');
    EXPECT_EQ(Walk(SkipStrW, L"never closed"), 12);
    EXPECT_EQ(Walk(SkipArgW, L"\"C:\\a b\\x.exe\"  arg"), 16);
    EXPECT_EQ(Walk(SkipArgW, L"prog arg"), 5);
    EXPECT_EQ(Walk(SkipArgW, L"  prog"), 6);
    EXPECT_EQ(Walk(SkipNumW, L"123x"), 3);
}

TEST(Toolkit, GroupsNestAndRespectQuotesAndEscapes)
{
    EXPECT_EQ(Walk(SkipGroupW, L"(a(b)c) d"), 7);
    EXPECT_EQ(Walk(SkipGroupW, L"(a"), 2);
    EXPECT_EQ(Walk(SkipGroupW, L"{a)b"), 3); // either closer ends either group
    EXPECT_EQ(Walk(SkipGroupW, L"(\")\") x"), 5);
    EXPECT_EQ(Walk(SkipGroupW, L"(^)) x"), 4);

    EXPECT_EQ(GetGroupW(L"no brackets"), 0);
    EXPECT_EQ(GetGroupW(L"(a)"), 0);
    EXPECT_NE(GetGroupW(L"if x ("), 0);
    EXPECT_NE(GetGroupW(L"{"), 0);
    EXPECT_NE(GetGroupW(L"(a^)"), 0);
    EXPECT_EQ(GetGroupW(L"echo \"(\""), 0);
    EXPECT_EQ(GetGroupW(L"echo ^("), 0);
    EXPECT_NE(GetGroupW(L"(a (b) (c"), 0);

    EXPECT_EQ(CharLastW(L"if x ("), L'(');
    EXPECT_EQ(CharLastW(L""), 0);
}

TEST(Toolkit, QuotesAreRemovedAndDoubledQuotesReduced)
{
    wchar_t a[] = L"\"a\"\"b\"";
    EXPECT_STREQ(ConvertStrW(a), L"a\"b");
    wchar_t b[] = L"\"open to the end";
    EXPECT_STREQ(ConvertStrW(b), L"open to the end");
    wchar_t c[] = L"`x``y` tail";
    EXPECT_STREQ(ConvertStrExW(c, L'`'), L"x`y");
    wchar_t d[] = L"\"\"";
    EXPECT_STREQ(ConvertStrW(d), L"");
}

TEST(Toolkit, CharactersGroupSurrogatesAndCombiningMarks)
{
    // U+1D11E (musical G clef) as a surrogate pair, then "e" with two marks.
    const wchar_t text[] = L"a\xD834\xDD1E" L"e\x0301\x0308z";
    int width = 0;
    EXPECT_EQ(IndexNextW(text, 0, &width), 1);
    EXPECT_EQ(width, 1);
    EXPECT_EQ(IndexNextW(text, 1, &width), 3);
    EXPECT_EQ(width, 2);
    EXPECT_EQ(IndexNextW(text, 3, &width), 6);
    EXPECT_EQ(width, 3);
    EXPECT_EQ(IndexPrevW(text, 3, &width), 1);
    EXPECT_EQ(width, 2);
    EXPECT_EQ(IndexPrevW(text, 6, &width), 3);
    EXPECT_EQ(width, 3);
    EXPECT_EQ(IndexPrevW(text, 0, &width), 0);
    EXPECT_EQ(width, 0);
    EXPECT_EQ(CharCountW(text, 7), 4);
    EXPECT_EQ(CharCountW(L"\xD834\xDD1E", 2), 1);

    int units = 0;
    EXPECT_EQ(_CharNextW(text + 3, -1, &units), text + 6);
    EXPECT_EQ(units, 3);
    EXPECT_EQ(_CharNextW(text + 3, 2, &units), text + 5); // limited look-ahead
    EXPECT_EQ(_CharPrevW(text, text + 7), text + 6);

    // Forward and backward walks agree at every boundary.
    int forward[8], n = 0;
    for (int i = 0; text[i]; i = IndexNextW(text, i, &width)) forward[n++] = i;
    for (int k = n - 1, i = 7; k >= 0; --k) {
        i = IndexPrevW(text, i, &width);
        EXPECT_EQ(i, forward[k]);
    }
    // A lone low surrogate or a mark at the start is a character of its own.
    EXPECT_EQ(IndexNextW(L"\xDD1Ex", 0, &width), 1);
    EXPECT_EQ(IndexNextW(L"\x0301\x0301x", 0, &width), 2);
}

TEST(Toolkit, FillSearchCopy)
{
    wchar_t buffer[8] = L"abcdefg";
    lstrnsetW(buffer, L'x', 0);
    EXPECT_STREQ(buffer, L"abcdefg");
    lstrnsetW(buffer, L'x', 3);
    EXPECT_STREQ(buffer, L"xxxdefg");

    const wchar_t* hay = L"Hello World";
    EXPECT_EQ(lstrstriW(hay, L"WORLD"), hay + 6);
    EXPECT_EQ(lstrstriW(hay, L"worlds"), nullptr);

    wchar_t chain[32];
    wchar_t* end = lstpcpyW(chain, L"ab");
    end = lstpcpyW(end, L"cd");
    EXPECT_STREQ(chain, L"abcd");
    EXPECT_EQ(end, chain + 4);

    wchar_t small[4];
    CopyCutW(small, L"abcdef", 4);
    EXPECT_STREQ(small, L"abc");
}

TEST(Toolkit, NumbersInEveryBaseAndAtTheLimits)
{
    const wchar_t* end;
    EXPECT_EQ(lstrtoi64W(L"0x1F", &end, 0), 31);
    EXPECT_EQ(*end, 0);
    EXPECT_EQ(lstrtoi64W(L"017", &end, 0), 15);
    EXPECT_EQ(lstrtoi64W(L"-42", &end, 0), -42);
    EXPECT_EQ(lstrtoi64W(L"  +7", &end, 0), 7);
    EXPECT_EQ(lstrtoi64W(L"08", &end, 0), 0); // octal stops at 8
    EXPECT_EQ(*end, L'8');
    const wchar_t* junk = L"xyz";
    EXPECT_EQ(lstrtoi64W(junk, &end, 0), 0);
    EXPECT_EQ(end, junk);
    EXPECT_EQ(lstrtoi64W(L"9223372036854775807", &end, 0), INT64_MAX);
    EXPECT_EQ(lstrtoi64W(L"-9223372036854775808", &end, 0), INT64_MIN);
    EXPECT_EQ(lstrtoi64W(L"99999999999999999999999", &end, 0), INT64_MAX);
    EXPECT_EQ(*end, 0);

    EXPECT_EQ(wtoi64_ex(L"-123abc"), -123);
    EXPECT_EQ(wtoui64_ex(L"18446744073709551615"), UINT64_MAX);
    EXPECT_EQ(atoi64_ex("77 "), 77);
    EXPECT_EQ(atoui64_ex("12"), 12u);

    wchar_t buffer[72];
    EXPECT_STREQ(i64tow_ex(INT64_MIN, buffer, 10), L"-9223372036854775808");
    EXPECT_STREQ(ui64tow_ex(UINT64_MAX, buffer, 10), L"18446744073709551615");
    EXPECT_STREQ(ui64tow_ex(255, buffer, 16), L"ff");
    EXPECT_STREQ(i64tow_ex(0, buffer, 10), L"0");
}

TEST(Toolkit, ThousandsSeparators)
{
    struct Case {
        const wchar_t* in;
        const wchar_t* out;
    } cases[] = {{L"0", L"0"},
                 {L"999", L"999"},
                 {L"1000", L"1,000"},
                 {L"-1234567", L"-1,234,567"},
                 {L"123456", L"123,456"},
                 {L"9223372036854775807", L"9,223,372,036,854,775,807"},
                 {L"12345 bytes", L"12,345 bytes"}};
    for (const Case& c : cases) {
        wchar_t buffer[64];
        lstrcpyW(buffer, c.in);
        EXPECT_STREQ(StrCommaW(buffer), c.out) << c.in;
    }
}

TEST(Toolkit, PathsSplitAndMergeRoundTrip)
{
    struct Case {
        const wchar_t *path, *drive, *dir, *name, *ext;
    } cases[] = {
        {L"C:\\dir\\sub\\file.txt", L"C:", L"\\dir\\sub\\", L"file", L".txt"},
        {L"file", L"", L"", L"file", L""},
        {L"a.b.c", L"", L"", L"a.b", L".c"},
        {L"D:name.", L"D:", L"", L"name", L"."},
        {L"..", L"", L"", L"..", L""},
        {L"x\\.hidden", L"", L"x\\", L"", L".hidden"},
        {L"\\\\server\\share\\f.x", L"", L"\\\\server\\share\\", L"f", L".x"},
        {L"c:/unix/style", L"c:", L"/unix/", L"style", L""},
    };
    for (const Case& c : cases) {
        wchar_t drive[260], dir[260], name[260], ext[260], merged[260];
        FNSplitW(c.path, drive, dir, name, ext);
        EXPECT_STREQ(drive, c.drive) << c.path;
        EXPECT_STREQ(dir, c.dir) << c.path;
        EXPECT_STREQ(name, c.name) << c.path;
        EXPECT_STREQ(ext, c.ext) << c.path;
        FNMergeW(merged, drive, dir, name, ext);
        EXPECT_STREQ(merged, c.path) << c.path;
    }
    wchar_t merged[260];
    FNMergeW(merged, L"E:", L"\\top", L"n", L"ext");
    EXPECT_STREQ(merged, L"E:\\top\\n.ext");
    FNMergeW(merged, nullptr, nullptr, L"only", nullptr);
    EXPECT_STREQ(merged, L"only");
    // An over-long merge is cut, never overrun.
    std::wstring longName(400, L'n');
    FNMergeW(merged, L"C:", L"\\", longName.c_str(), L".x");
    EXPECT_EQ(lstrlenW(merged), 259);
}

TEST(Toolkit, CurrentDriveAndDirectory)
{
    wchar_t saved[MAX_PATH];
    GetCurrentDirectoryW(MAX_PATH, saved);
    int drive = GetDisk();
    ASSERT_GE(drive, 0);
    EXPECT_EQ(drive, ToUpperUnit(saved[0]) - L'A');
    wchar_t dir[MAX_PATH];
    ASSERT_EQ(GetCurDirW(0, dir), 0);
    EXPECT_STREQ(dir, saved + 3);
    EXPECT_EQ(GetCurDirW(99, dir), -1);

    CreateDirectoryW(L"CaseTest", nullptr);
    wchar_t path[MAX_PATH];
    lstrcpyW(path, saved);
    if (path[lstrlenW(path) - 1] != L'\\') lstrcatW(path, L"\\");
    lstrcatW(path, L"cASEtEST");
    GetFileNameCaseW(path);
    EXPECT_NE(std::wstring(path).find(L"CaseTest"), std::wstring::npos);
    RemoveDirectoryW(L"CaseTest");
}

TEST(Toolkit, ConversionsRoundTripThroughUtf8AndCodePages)
{
    StringHolder holder;
    const wchar_t* wide = L"caf\x00E9 \xD834\xDD1E";
    const char* utf8 = ToUtf8(holder, wide);
    ASSERT_NE(utf8, nullptr);
    EXPECT_STREQ(utf8, "caf\xC3\xA9 \xF0\x9D\x84\x9E");
    StringHolder back;
    EXPECT_STREQ(FromUtf8(back, utf8), wide);
    EXPECT_STREQ(CopyWide(back, L"copy"), L"copy");
    holder.Reset();
    EXPECT_EQ(holder.narrow, nullptr);
    EXPECT_EQ(ToNarrow(holder, nullptr), nullptr);

    int saved = ActiveCodePage;
    ActiveCodePage = 1252;
    char narrow[16];
    EXPECT_EQ(ToNarrowInto(L"caf\x00E9", narrow, 16), 4);
    EXPECT_EQ(static_cast<unsigned char>(narrow[3]), 0xE9);
    wchar_t again[16];
    ToWideInto(narrow, again, 16);
    EXPECT_STREQ(again, L"caf\x00E9");
    EXPECT_STREQ(ToWide(holder, narrow), L"caf\x00E9");
    // Into a buffer too small for the text: cut to the buffer, terminated in its last unit.
    char shortNarrow[4];
    ToNarrowInto(L"abcdefgh", shortNarrow, 4);
    EXPECT_STREQ(shortNarrow, "abc");
    wchar_t shortWide[4];
    ToWideInto("abcdefgh", shortWide, 4);
    EXPECT_STREQ(shortWide, L"abc");
    ActiveCodePage = CP_UTF8; // two bytes a character: only whole characters are kept
    EXPECT_EQ(ToNarrowInto(L"\x00E9\x00E9\x00E9", shortNarrow, 4), 2);
    EXPECT_STREQ(shortNarrow, "\xC3\xA9");
    // Code pages that refuse conversion flags still convert towards wide text.
    for (int page : {int(CP_UTF8), int(CP_UTF7)}) {
        ActiveCodePage = page;
        EXPECT_STREQ(ToWide(holder, "plain"), L"plain") << page;
        ToWideInto("plain", again, 16);
        EXPECT_STREQ(again, L"plain") << page;
    }
    ActiveCodePage = CP_UTF8;
    EXPECT_STREQ(ToWide(holder, "caf\xC3\xA9"), L"caf\x00E9");
    ActiveCodePage = saved;

    wchar_t swapped[] = {0x4100, 0x4200, 0};
    SwapBytes(swapped, 2);
    EXPECT_STREQ(swapped, L"AB");
}

} // namespace
