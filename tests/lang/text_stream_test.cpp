// TextStream on real files: encoding sniffing, line reading in every
// encoding, and writing back byte for byte.
#include "lang/text_stream.h"

#include "app/toolkit/omdib.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

std::vector<std::wstring> ReadAll(TextStream& stream)
{
    std::vector<std::wstring> lines;
    while (const wchar_t* line = stream.ReadLine()) lines.push_back(line);
    return lines;
}

std::string Utf16(const std::wstring& text, bool bigEndian)
{
    std::string bytes;
    for (wchar_t c : text) {
        char lo = char(c & 0xFF), hi = char((c >> 8) & 0xFF);
        bytes += bigEndian ? hi : lo;
        bytes += bigEndian ? lo : hi;
    }
    return bytes;
}

TEST(TextStream, SniffsEveryEncodingAndStartsBehindTheMark)
{
    TempFolder folder;
    struct Case {
        const wchar_t* name;
        std::string bytes;
        int32_t encoding;
    } cases[] = {
        {L"empty", "", CodePageText},
        {L"one", "x", CodePageText},
        {L"plain", "plain text\r\n", CodePageText},
        {L"le", "\xFF\xFE" + Utf16(L"ab\r\n", false), Utf16LE},
        {L"be", "\xFE\xFF" + Utf16(L"ab\r\n", true), Utf16BE},
        {L"utf8", "\xEF\xBB\xBFz\r\n", Utf8Text},
        {L"binary", std::string("MZ\x90\0\x03\0\0\0", 8), NotText},
        {L"late-zero", std::string(100, 'a') + std::string(1, '\0') + "b", NotText},
        // A NUL character early in UTF-16 text makes it "not text", mark or not.
        {L"le-nul", "\xFF\xFE" + Utf16(std::wstring(L"a\0", 2) + std::wstring(20, L'b'), false), NotText},
        // Past the first half a zero unit no longer counts, and the mark wins.
        {L"le-late-nul", "\xFF\xFE" + Utf16(std::wstring(L"abc\0", 4), false), Utf16LE},
    };
    for (const Case& c : cases) {
        folder.WriteBytes(c.name, c.bytes);
        TextStream stream;
        ASSERT_TRUE(stream.Open((folder / c.name).c_str(), GENERIC_READ, FILE_SHARE_READ, OPEN_EXISTING));
        EXPECT_EQ(stream.SniffEncoding(), c.encoding) << c.name;
    }
    TextStream missing;
    EXPECT_FALSE(missing.Open((folder / L"nope").c_str(), GENERIC_READ, 0, OPEN_EXISTING));
    EXPECT_EQ(missing.SniffEncoding(), CodePageText);
}

TEST(TextStream, ReadsTheSameLinesFromEveryEncoding)
{
    TempFolder folder;
    const std::wstring text = L"first\r\nsec\rond\ttab\n\nlast \x00E9\x20AC";
    StringHolder holder;
    std::string utf8 = ToUtf8(holder, text.c_str());
    folder.WriteBytes(L"u8", utf8);
    folder.WriteBytes(L"u8bom", "\xEF\xBB\xBF" + utf8);
    folder.WriteBytes(L"le", "\xFF\xFE" + Utf16(text, false));
    folder.WriteBytes(L"be", "\xFE\xFF" + Utf16(text, true));
    const std::vector<std::wstring> expected = {L"first", L"second tab", L"", L"last \x00E9\x20AC"};
    for (const wchar_t* name : {L"u8bom", L"le", L"be"}) {
        TextStream stream;
        ASSERT_TRUE(stream.Open((folder / name).c_str(), GENERIC_READ, FILE_SHARE_READ, OPEN_EXISTING));
        stream.SniffEncoding();
        EXPECT_EQ(ReadAll(stream), expected) << name;
        EXPECT_EQ(stream.LinesRead, 4);
    }
    // Without a mark UTF-8 is read as code-page text; told the encoding it
    // reads the same lines.
    TextStream plain;
    ASSERT_TRUE(plain.Open((folder / L"u8").c_str(), GENERIC_READ, FILE_SHARE_READ, OPEN_EXISTING));
    EXPECT_EQ(plain.SniffEncoding(), CodePageText);
    plain.Encoding = Utf8Text;
    EXPECT_EQ(ReadAll(plain), expected);
}

TEST(TextStream, EndMarkTabsAndLongLines)
{
    TempFolder folder;
    folder.WriteBytes(L"eof", "one\r\ntwo\x1Aignored\r\nnever\r\n");
    TextStream stream;
    ASSERT_TRUE(stream.Open((folder / L"eof").c_str(), GENERIC_READ, FILE_SHARE_READ, OPEN_EXISTING));
    stream.SniffEncoding();
    EXPECT_EQ(ReadAll(stream), (std::vector<std::wstring>{L"one", L"two"}));

    folder.WriteBytes(L"tabs", "a\tb\r\n");
    TextStream tabs;
    tabs.KeepTabs = 1;
    ASSERT_TRUE(tabs.Open((folder / L"tabs").c_str(), GENERIC_READ, FILE_SHARE_READ, OPEN_EXISTING));
    EXPECT_STREQ(tabs.ReadLine(), L"a\tb");

    // A line past the capacity comes in pieces; the next read goes on.
    folder.WriteBytes(L"long", std::string(2500, 'x') + "\r\nend\r\n");
    TextStream longLines;
    ASSERT_TRUE(longLines.Open((folder / L"long").c_str(), GENERIC_READ, FILE_SHARE_READ, OPEN_EXISTING));
    std::vector<std::wstring> lines = ReadAll(longLines);
    ASSERT_EQ(lines.size(), 4u);
    EXPECT_EQ(lines[0].size(), 1024u);
    EXPECT_EQ(lines[1].size(), 1024u);
    EXPECT_EQ(lines[2].size(), 452u);
    EXPECT_EQ(lines[3], L"end");

    // A binary file reads as lines without a crash.
    std::string binary;
    for (int i = 0; i < 70000; ++i) binary += char(i * 7919 % 256);
    folder.WriteBytes(L"bin", binary);
    TextStream bin;
    ASSERT_TRUE(bin.Open((folder / L"bin").c_str(), GENERIC_READ, FILE_SHARE_READ, OPEN_EXISTING));
    EXPECT_EQ(bin.SniffEncoding(), NotText);
    EXPECT_FALSE(ReadAll(bin).empty());
}

TEST(TextStream, WritesEachEncodingByteForByte)
{
    TempFolder folder;
    struct Case {
        const wchar_t* name;
        int32_t encoding;
        std::string bytes;
    } cases[] = {
        {L"le", Utf16LE, "\xFF\xFE" + Utf16(L"h\x00E9\r\n", false)},
        {L"be", Utf16BE, "\xFE\xFF" + Utf16(L"h\x00E9\r\n", true)},
        {L"u8", Utf8Text, "\xEF\xBB\xBFh\xC3\xA9\r\n"},
    };
    for (const Case& c : cases) {
        TextStream stream;
        ASSERT_TRUE(stream.Create((folder / c.name).c_str()));
        stream.Encoding = c.encoding;
        EXPECT_TRUE(stream.WriteMark());
        EXPECT_TRUE(stream.Write(L"h\x00E9\r\n"));
        stream.Close();
        EXPECT_EQ(folder.ReadBytes(c.name), c.bytes) << c.name;
    }
    int saved = ActiveCodePage;
    ActiveCodePage = 1252;
    TextStream ansi;
    ASSERT_TRUE(ansi.Create((folder / L"ansi").c_str()));
    EXPECT_TRUE(ansi.WriteMark()); // code-page text has no mark
    EXPECT_TRUE(ansi.Write(L"h\x00E9"));
    ansi.Close();
    ActiveCodePage = saved;
    EXPECT_EQ(folder.ReadBytes(L"ansi"), "h\xE9");

    // A closed stream refuses writes rather than crashing.
    EXPECT_FALSE(ansi.Write(L"more"));
}

TEST(TextStream, TemporaryFilesAndSeeking)
{
    TempFolder folder;
    TextStream temp;
    ASSERT_TRUE(temp.OpenTemporary(folder.Path().c_str()));
    std::wstring name = temp.Path;
    EXPECT_EQ(name.rfind(folder.Path(), 0), 0u);
    EXPECT_TRUE(temp.Write(L"abc\r\ndef\r\n"));
    EXPECT_TRUE(temp.Seek(0));
    EXPECT_EQ(ReadAll(temp), (std::vector<std::wstring>{L"abc", L"def"}));
    EXPECT_TRUE(temp.Seek(5));
    EXPECT_STREQ(temp.ReadLine(), L"def");
    EXPECT_EQ(temp.CurrentSize(), 10);
    temp.Close();
    DeleteFileW(name.c_str());
}

} // namespace
