// TAB completion through the editor in a scratch folder: quoting, directories,
// both styles, listing, Ctrl-TAB, redirection, command names, Unix mode.
#include "input_fixture.h"

#include "input/completion.h"
#include "input/input_links.h"
#include "support/temp_folder.h"

#include <windows.h>

#include <string>

namespace {

class CompletionTest : public InputTest {
protected:
    InputLinks links;
    EditorLinks* savedLinks = nullptr;
    TabSettings savedSettings = TheTabSettings;
    TempFolder folder;
    wchar_t savedDirectory[MAX_PATH] = {};

    void SetUp() override
    {
        InputTest::SetUp();
        savedLinks = Links;
        Links = &links;
        GetCurrentDirectoryW(MAX_PATH, savedDirectory);
        for (const wchar_t* name : {L"my file.txt", L"a&b.txt", L"alpha.txt", L"alpine.txt", L"fox.txt"})
            folder.WriteBytes(name, "x");
        CreateDirectoryW((folder / L"Program Files").c_str(), nullptr);
        CreateDirectoryW((folder / L"sub").c_str(), nullptr);
        folder.WriteBytes(L"sub\\inner.txt", "x");
        SetCurrentDirectoryW(folder.Path().c_str());
        TheTabSettings.ShortTabs = 1;
        TheTabSettings.AutoDir = 1;
        TheTabSettings.MapTabs = 0;
        TheTabSettings.IncHidden = 0;
    }
    void TearDown() override
    {
        HoldCtrl(false);
        SetCurrentDirectoryW(savedDirectory);
        TheTabSettings = savedSettings;
        Links = savedLinks;
        InputTest::TearDown();
    }
    static void HoldCtrl(bool held)
    {
        BYTE keys[256];
        GetKeyboardState(keys);
        keys[VK_CONTROL] = held ? 0x80 : 0;
        SetKeyboardState(keys);
    }
    // Typed on a fresh line, then TAB.
    std::wstring Complete(const std::wstring& typed)
    {
        TheEditor.EditorChar(0x1B);
        Type(typed);
        Links->CompleteTab();
        EXPECT_EQ(TheEditor.Caret, lstrlenW(TheEditor.Line)) << typed;
        return Line();
    }
    std::wstring Screen() const
    {
        std::wstring all;
        for (int y = 0; y <= TheScreen.CursorY; ++y) all += Row(y) + L"\n";
        return all;
    }
};

TEST_F(CompletionTest, ShortStyleQuotesNamesThatNeedIt)
{
    struct Case {
        const wchar_t* Typed;
        const wchar_t* Completed;
    };
    const Case cases[] = {
        {L"cd pro", L"cd \"Program Files\\"},      // the opening quote goes where the token starts
        {L"type my", L"type \"my file.txt\" "},    // both quotes and a blank
        {L"type a&", L"type \"a&b.txt\" "},        // & needs quotes without a blank
        {L"type \"my f", L"type \"my file.txt\" "}, // odd quotes: the token runs from the last one
        {L"cd su", L"cd sub\\"},
        {L"type sub\\in", L"type sub\\inner.txt "},
        {L"type sub/in", L"type sub\\inner.txt "},
        {L"echo x >fo", L"echo x >fox.txt "}, // the redirection stays
        {L"echo x >>fo", L"echo x >>fox.txt "},
        {L"cd ..", L"cd .."},  // a place, not a name
        {L"cd sub\\", L"cd sub\\"},
        {L"type zz", L"type zz"}, // no candidate: nothing happens
        {L"hist", L"history "},   // command names at the start of the line
        {L"  strsi", L"  strsize "},
        {L"echo hist", L"echo hist"}, // not a command position
        {L"type *.txt", L"type *.txt"}, // a wildcard with many candidates only lists
        {L"type f*", L"type fox.txt "},
    };
    for (const Case& c : cases) EXPECT_EQ(Complete(c.Typed), c.Completed) << c.Typed;
}

TEST_F(CompletionTest, ShortStyleExtendsToTheCommonPartAndLists)
{
    EXPECT_EQ(Complete(L"type al"), L"type alp");
    std::wstring screen = Screen();
    EXPECT_NE(screen.find(L"alpha.txt    alpine.txt"), std::wstring::npos) << screen;
    EXPECT_EQ(Row(TheScreen.EditY), L">type alp"); // the prompt and line again, under the list
    // Nothing more in common: nothing typed, the list again.
    EXPECT_EQ(Complete(L"type alp"), L"type alp");
    EXPECT_EQ(Complete(L"cd s"), L"cd sub\\");
    EXPECT_EQ(Complete(L"type "), L"type "); // an empty token does nothing

    TheTabSettings.AutoDir = 0;
    int before = TheScreen.EditY;
    EXPECT_EQ(Complete(L"type al"), L"type alp");
    EXPECT_EQ(TheScreen.EditY, before);

    // Ctrl-TAB lists and changes nothing.
    TheScreen.ClearScreen();
    ShowPrompt();
    HoldCtrl(true);
    EXPECT_EQ(Complete(L"cd p"), L"cd p");
    EXPECT_NE(Screen().find(L"[Program Files]"), std::wstring::npos) << Screen();
    EXPECT_EQ(Row(TheScreen.EditY), L">cd p");
}

TEST_F(CompletionTest, CyclingStylePutsEachCandidateInTurn)
{
    TheTabSettings.ShortTabs = 0;
    EXPECT_EQ(Complete(L"type al"), L"type alpha.txt ");
    Links->CompleteTab();
    EXPECT_EQ(Line(), L"type alpine.txt ");
    Links->CompleteTab();
    EXPECT_EQ(Line(), L"type alpha.txt "); // wraps without a pause
    // A quoted candidate and back: the quotes come and go with the name.
    EXPECT_EQ(Complete(L"type m"), L"type \"my file.txt\" ");
    EXPECT_EQ(Complete(L"cd "), L"cd ");
    EXPECT_EQ(Complete(L"type a"), L"type \"a&b.txt\" ");
    Links->CompleteTab();
    EXPECT_EQ(Line(), L"type alpha.txt ");
    // Any other key ends the cycle; the next TAB starts from the line as it stands.
    Key(VK_LEFT);
    Key(VK_END);
    TheEditor.EditorChar(8);
    Links->CompleteTab();
    EXPECT_EQ(Line(), L"type alpha.txt ");
}

// Directories come before files, names sort without regard to case, and the
// common part takes the case of the candidate that first differs; hidden
// files count only when asked for.
TEST_F(CompletionTest, CandidatesComeInOrderWhateverTheirCase)
{
    for (const wchar_t* name : {L"GAMMA2.txt", L"Gamma1.txt", L"gamma0.txt"}) folder.WriteBytes(name, "x");
    CreateDirectoryW((folder / L"gammaz").c_str(), nullptr);
    ASSERT_TRUE(SetFileAttributesW((folder / L"gamma0.txt").c_str(), FILE_ATTRIBUTE_HIDDEN));
    struct Case {
        int ShortTabs;
        int IncHidden;
        const wchar_t* Lines[5]; // after the first TAB and each later one
    };
    const Case cases[] = {
        {1, 0, {L"type Gamma"}},
        {0, 0, {L"type gammaz\\", L"type Gamma1.txt ", L"type GAMMA2.txt ", L"type gammaz\\"}},
        {0, 1, {L"type gammaz\\", L"type gamma0.txt ", L"type Gamma1.txt ", L"type GAMMA2.txt "}},
    };
    TheTabSettings.AutoDir = 0;
    for (const Case& c : cases) {
        TheTabSettings.ShortTabs = c.ShortTabs;
        TheTabSettings.IncHidden = c.IncHidden;
        EXPECT_EQ(Complete(L"type gam"), c.Lines[0]);
        for (int i = 1; i < 5 && c.Lines[i]; ++i) {
            Links->CompleteTab();
            EXPECT_EQ(Line(), c.Lines[i]) << c.ShortTabs << c.IncHidden << i;
        }
    }
}

TEST_F(CompletionTest, UnixModeShowsTheSlashForm)
{
    TheUnixMode.Unix = 1;
    EXPECT_EQ(Complete(L"type sub/in"), L"type sub/inner.txt ");
    EXPECT_EQ(Complete(L"cd su"), L"cd sub/");
    TheUnixMode.Unix = 0;
}

} // namespace
