// The history through the editor's real keys: stepping, prefix search,
// duplicates, capacity, long lines; saving to and loading from the settings
// store, also a damaged one; and the history command in ombc.exe.
#include "input_fixture.h"

#include "app/profile/profile.h"
#include "app/store_scope.h"
#include "input/history.h"
#include "input/input_links.h"
#include "support/ombc_runner.h"
#include "support/temp_folder.h"

#include <windows.h>

#include <string>
#include <vector>

namespace {

class HistoryTest : public InputTest {
protected:
    InputLinks links;
    EditorLinks* savedLinks = nullptr;

    void SetUp() override
    {
        InputTest::SetUp();
        savedLinks = Links;
        Links = &links;
        TheHistory.HistoryClear();
    }
    void TearDown() override
    {
        TheHistory.HistoryClear();
        Links = savedLinks;
        InputTest::TearDown();
    }
    void Submit(const std::wstring& text)
    {
        Type(text);
        TheEditor.EditorChar(L'\r');
        ShowPrompt();
    }
    std::vector<std::wstring> Entries() const
    {
        std::vector<std::wstring> all;
        for (int i = 0; i < TheHistory.Count(); ++i) all.push_back(TheHistory.Entry(i));
        return all;
    }
};

TEST_F(HistoryTest, StepsAndSearchesByTypedPrefix)
{
    Key(VK_UP);
    EXPECT_EQ(Line(), L""); // empty history: nothing to recall
    for (const wchar_t* line : {L"dir a", L"echo one", L"dir b", L"DIR c"}) Submit(line);

    struct Step {
        int Key;
        unsigned Modifiers;
        const wchar_t* Shown;
    };
    const Step plain[] = {
        {VK_UP, 0, L"DIR c"},        {VK_UP, 0, L"dir b"},        {VK_UP, 0, L"echo one"}, {VK_DOWN, 0, L"dir b"},
        {VK_DOWN, 0, L"DIR c"},      {VK_DOWN, 0, L""},           {VK_DOWN, 0, L""},       {VK_DOWN, ModCtrl, L"dir a"},
        {VK_UP, ModCtrl, L"DIR c"},
    };
    for (const Step& step : plain) {
        Key(step.Key, step.Modifiers);
        EXPECT_EQ(Line(), step.Shown);
        EXPECT_EQ(Row(TheScreen.EditY), L">" + std::wstring(step.Shown)); // the old text is erased
    }

    // Typed text: only entries that begin with it, case-sensitive, and the
    // typed text again past the newest.
    TheEditor.EditorChar(0x1B);
    Type(L"dir");
    const Step prefixed[] = {
        {VK_UP, 0, L"dir b"}, {VK_UP, 0, L"dir a"}, {VK_UP, 0, L"dir a"}, {VK_DOWN, 0, L"dir b"}, {VK_DOWN, 0, L"dir"},
    };
    for (const Step& step : prefixed) {
        Key(step.Key, step.Modifiers);
        EXPECT_EQ(Line(), step.Shown);
    }
    TheEditor.EditorChar(0x1B);
    Type(L"ab");
    Key(VK_UP, 0, 2);
    Key(VK_DOWN, 0, 2);
    EXPECT_EQ(Line(), L"ab");

    // Editing a recalled line makes the whole line the new prefix.
    TheEditor.EditorChar(0x1B);
    Key(VK_UP, 0, 2);
    EXPECT_EQ(Line(), L"dir b");
    TheEditor.EditorChar(8);
    Key(VK_UP);
    EXPECT_EQ(Line(), L"dir b");
    Key(VK_UP);
    EXPECT_EQ(Line(), L"dir a");
}

TEST_F(HistoryTest, DropsOnlyRepeatsOfTheNewestAndKeeps256)
{
    for (const wchar_t* line : {L"a", L"a", L"b", L"a", L"  "}) Submit(line);
    EXPECT_EQ(Entries(), (std::vector<std::wstring>{L"a", L"b", L"a"}));

    for (int i = 0; i <= 256; ++i) Submit(L"line " + std::to_wstring(i));
    EXPECT_EQ(TheHistory.Count(), 256);
    EXPECT_STREQ(TheHistory.Entry(0), L"line 1");
    EXPECT_STREQ(TheHistory.Entry(255), L"line 256");

    std::wstring longest(kLineMax - 1, L'x');
    longest.front() = L'a';
    TheEditor.TypeLine(longest.c_str(), false);
    TheEditor.EditorChar(L'\r');
    ShowPrompt();
    Key(VK_UP);
    EXPECT_EQ(Line(), longest);
}

TEST_F(HistoryTest, SurvivesTheStoreAndLoadsWhatADamagedStoreHolds)
{
    TempFolder folder;
    std::wstring ini = folder / L"store.ini";
    StoreScope store(L"INI=" + ini);
    std::wstring longest(kLineMax - 1, L'y');
    for (const std::wstring& line : {std::wstring(L"echo \"quoted\" "), std::wstring(L" lead"), longest})
        TheHistory.HistoryAdd(line.c_str());
    TheHistory.HistorySave();
    TheHistory.HistoryClear();
    TheHistory.HistoryLoad();
    EXPECT_EQ(Entries(), (std::vector<std::wstring>{L"echo \"quoted\" ", L" lead", longest}));

    // Garbage, keys without values, a line longer than any line, repeats,
    // more than 256 keys, and a last line cut off in the middle.
    std::string damaged = "[History]\r\n\x01\x02\xff\xfe junk\r\nnovalue\r\n0=same\r\n1=same\r\n2=" +
                          std::string(10000, 'z') + "\r\n";
    for (int i = 3; i < 300; ++i) damaged += std::to_string(i) + "=\"line " + std::to_string(i) + "\"\r\n";
    damaged += "300=\"cut off";
    folder.WriteBytes(L"store.ini", damaged);
    TheHistory.HistoryClear();
    TheHistory.HistoryLoad();
    ASSERT_EQ(TheHistory.Count(), 256);
    EXPECT_STREQ(TheHistory.Entry(254), L"line 299");
    EXPECT_EQ(std::wstring(TheHistory.Entry(255)).substr(0, 4), L"\"cut");

    folder.WriteBytes(L"store.ini", std::string(5000, '\0') + "\xff\xfe[History\r\n=\r\n");
    TheHistory.HistoryClear();
    TheHistory.HistoryLoad();
    EXPECT_EQ(TheHistory.Count(), 0);
}

TEST_F(HistoryTest, ValuesOfTheWrongTypeInTheRegistryStoreAreSkipped)
{
    StoreScope store(L"");
    ASSERT_NE(TheProfile.RegistryRoot[0], 0);
    std::wstring section = std::wstring(TheProfile.RegistryRoot) + L"\\History";
    HKEY key;
    ASSERT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, section.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key,
                              nullptr),
              ERROR_SUCCESS);
    const BYTE binary[] = {0xff, 0xfe, 0x00, 0x41, 0x42};
    RegSetValueExW(key, L"0", 0, REG_BINARY, binary, sizeof binary);
    const wchar_t text[] = L"echo kept";
    RegSetValueExW(key, L"1", 0, REG_SZ, reinterpret_cast<const BYTE*>(text), sizeof text);
    // Text without its terminator, as a hand-made value may be.
    RegSetValueExW(key, L"2", 0, REG_SZ, reinterpret_cast<const BYTE*>(L"odd"), 5);
    RegCloseKey(key);
    TheHistory.HistoryLoad();
    RegDeleteKeyW(HKEY_CURRENT_USER, section.c_str());
    ASSERT_GE(TheHistory.Count(), 1);
    EXPECT_STREQ(TheHistory.Entry(0), L"echo kept");
}

TEST(HistoryCommand, ListsClearsAndRefusesOtherArguments)
{
    EXPECT_EQ(TypedOutput("echo a\nrem b\nhistory\n"), L"a\n  1: echo a\n  2: rem b\n  3: history\n");
    EXPECT_EQ(TypedOutput("echo a\nhistory /b\nhis\n"), L"a\n  1: his\n");
    EXPECT_EQ(TypedOutput("history x\nhistory a b\nhistory /q\n"),
              L"Invalid parameter\n\nInvalid parameter\n\nInvalid switch\n\n");
}

} // namespace
