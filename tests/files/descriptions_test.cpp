// descript.ion files: loading in every encoding, malformed files, the rules
// of names, and writing back; describe end to end.
#include "files/files_fixture.h"

#include "app/toolkit/omdib.h"
#include "files/descriptions.h"
#include "support/ombc_runner.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::string Utf16(const std::wstring& text)
{
    std::string bytes = "\xFF\xFE";
    for (wchar_t c : text) bytes += {char(c & 0xFF), char(c >> 8)};
    return bytes;
}

std::string Narrow(const std::wstring& text, UINT codePage)
{
    int n = WideCharToMultiByte(codePage, 0, text.c_str(), int(text.size()), nullptr, 0, nullptr, nullptr);
    std::string bytes(size_t(n), '\0');
    WideCharToMultiByte(codePage, 0, text.c_str(), int(text.size()), bytes.data(), n, nullptr, nullptr);
    return bytes;
}

std::wstring Described(DescriptionStore& store, const wchar_t* name) { return store.Lookup(name).description; }

TEST(Descriptions, LoadEveryEncodingAndMalformedFilesWithoutHarm)
{
    TempFolder f;
    std::wstring text = L"plain.txt The plain one\r\n\"with blank.txt\" Quoted name\r\n"
                        L"tab.txt\tAfter a tab\r\n. the folder itself\r\n\r\n  indented.txt  two blanks\r\n"
                        L"caf\u00e9.txt Caf\u00e9 au lait\r\nlast.txt no line end";
    struct Case {
        const char* label;
        std::string bytes;
    } cases[] = {
        {"utf-16", Utf16(text)},
        {"utf-8", "\xEF\xBB\xBF" + Narrow(text, CP_UTF8)},
        {"code page", Narrow(text, CodePageOf(ActiveCodePage))},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.label);
        f.WriteBytes(L"descript.ion", c.bytes);
        DescriptionStore store;
        store.Load((f / L"*.*").c_str());
        EXPECT_EQ(store.Count(), 6);
        EXPECT_EQ(Described(store, L"PLAIN.TXT"), L"The plain one");
        EXPECT_EQ(Described(store, L"C:\\elsewhere\\with blank.txt"), L"Quoted name");
        EXPECT_EQ(Described(store, L"tab.txt"), L"After a tab");
        EXPECT_EQ(Described(store, L"indented.txt"), L" two blanks");
        EXPECT_EQ(Described(store, L"caf\u00e9.txt."), L"Caf\u00e9 au lait");
        EXPECT_EQ(Described(store, L"last.txt"), L"no line end");
        EXPECT_EQ(Described(store, L"."), L"");
    }
    // Over-long lines, binary bytes and no line end load without harm.
    std::string hostile = std::string(5000, 'n') + " long\r\nok.txt fine\r\n" + std::string("\x01\xFF\xFE\x80 \x00\x1A", 7);
    hostile += std::string(3000, '\xAA');
    f.WriteBytes(L"descript.ion", hostile);
    DescriptionStore store;
    store.Load((f / L"x").c_str());
    EXPECT_EQ(Described(store, L"ok.txt"), L"fine");
    for (const DescriptionEntry& e : store.entries) EXPECT_LT(lstrlenW(e.description), 128);
}

TEST(Descriptions, ChangesAreWrittenBackInTheEncodingTheyCameIn)
{
    TempFolder f;
    f.WriteBytes(L"descript.ion", "b.txt Bee\r\na.txt Ay\r\n. dropped\r\n");
    DescriptionStore store;
    store.Load((f / L"b.txt").c_str());
    EXPECT_EQ(store.Add(L"A.TXT", L"Replaced"), 0);
    EXPECT_EQ(store.Add(L"x y.txt", std::wstring(200, L'd').c_str()), 0);
    EXPECT_EQ(store.Add(L"empty.txt", L""), 1);
    EXPECT_EQ(store.Remove(L"nothing.txt"), 1);
    EXPECT_EQ(store.Save(), 0);
    EXPECT_EQ(f.ReadBytes(L"descript.ion"),
              "a.txt Replaced\r\nb.txt Bee\r\n\"x y.txt\" " + std::string(127, 'd') + "\r\n");
    EXPECT_TRUE(GetFileAttributesW((f / L"descript.ion").c_str()) & FILE_ATTRIBUTE_HIDDEN);

    f.WriteBytes(L"descript.ion", Utf16(L"one.txt \u00e9t\u00e9\r\n"));
    store.Load((f / L"one.txt").c_str());
    EXPECT_EQ(store.Add(L"two.txt", L"Deux"), 0);
    EXPECT_EQ(store.Save(), 0);
    EXPECT_EQ(f.ReadBytes(L"descript.ion"), Utf16(L"one.txt \u00e9t\u00e9\r\ntwo.txt Deux\r\n"));

    // Taking away the last description takes away the file.
    store.Load((f / L"one.txt").c_str());
    EXPECT_EQ(store.Remove(L"ONE.TXT."), 0);
    EXPECT_EQ(store.Remove(L"two.txt"), 0);
    EXPECT_EQ(store.Save(), 0);
    EXPECT_FALSE(f.Exists(L"descript.ion"));

    // A new file is UTF-16 with its mark.
    store.Load((f / L"new.txt").c_str());
    store.Add(L"new.txt", L"Fresh");
    store.Save();
    EXPECT_EQ(f.ReadBytes(L"descript.ion"), Utf16(L"new.txt Fresh\r\n"));
}

TEST(Descriptions, DescribeCommand)
{
    TempFolder f;
    MakeFile(f, L"a.txt");
    MakeFile(f, L"long name.txt");
    struct Case {
        const wchar_t* line;
        std::wstring output;
        std::string file;
    } cases[] = {
        {L"describe a.txt \"The first\"", L"", Utf16(L"a.txt The first\r\n")},
        {L"describe \"long name.txt\" Second", L"", Utf16(L"a.txt The first\r\n\"long name.txt\" Second\r\n")},
        {L"describe A.TXT", L"", Utf16(L"\"long name.txt\" Second\r\n")},
        {L"describe a.txt", L"Unable to delete description\n\n", Utf16(L"\"long name.txt\" Second\r\n")},
        {L"describe missing.txt Text", L"*", Utf16(L"\"long name.txt\" Second\r\n")},
        {L"describe a.txt one two", L"Invalid number of parameters\n\n", Utf16(L"\"long name.txt\" Second\r\n")},
        {L"describe /x a.txt", L"Invalid switch\n\n", Utf16(L"\"long name.txt\" Second\r\n")},
        {L"describe \"long name.txt\"", L"", ""},
    };
    for (const Case& c : cases) {
        OmbcResult r = RunOmbcIn(f.Path(), L"/C " + std::wstring(c.line));
        if (c.output == L"*") EXPECT_NE(JoinLines(r.Output), L"") << c.line;
        else EXPECT_EQ(JoinLines(r.Output), c.output) << c.line;
        EXPECT_EQ(f.ReadBytes(L"descript.ion"), c.file) << c.line;
    }
}

} // namespace
