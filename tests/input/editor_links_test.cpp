// What the editor hands to the parts that plug into it: history entries and
// recalls, scrollback moves, the selection's Ctrl-C and the clipboard.
#include "input_fixture.h"

#include "input/editor_links.h"

#include <windows.h>

#include <vector>

namespace {

class RecordingLinks : public EditorLinks {
public:
    std::vector<std::wstring> Added;
    std::vector<ViewMove> Moves;
    std::vector<HistoryMove> Recalls;
    int Resets = 0;
    int Copies = 0;
    bool Selection = false;
    std::wstring Clipboard;

    void AddHistory(const wchar_t* line) override { Added.push_back(line); }
    void ResetHistoryNavigation() override { ++Resets; }
    const wchar_t* RecallHistory(HistoryMove move) override
    {
        Recalls.push_back(move);
        return move == HistoryMove::Previous ? L"dir /w" : nullptr;
    }
    void MoveView(ViewMove move) override { Moves.push_back(move); }
    bool SelectionStanding() override { return Selection; }
    void CopySelection() override { ++Copies; }
    bool ClipboardText(std::wstring& text) override
    {
        text = Clipboard;
        return !Clipboard.empty();
    }
};

class EditorLinksTest : public InputTest {
protected:
    RecordingLinks links;
    EditorLinks* saved = nullptr;
    void SetUp() override
    {
        InputTest::SetUp();
        saved = Links;
        Links = &links;
    }
    void TearDown() override
    {
        Links = saved;
        InputTest::TearDown();
    }
};

TEST_F(EditorLinksTest, EachPhysicalLineIsAHistoryEntry)
{
    Type(L"(echo a");
    EnterAndRun();
    Type(L"  ");
    EnterAndRun();
    Type(L"echo b)");
    EXPECT_EQ(EnterAndRun(), 1);
    EXPECT_EQ(links.Added, (std::vector<std::wstring>{L"(echo a", L"echo b)"}));
    EXPECT_EQ(links.Resets, 3);

    // Up shows the recalled entry in place of what was typed.
    Type(L"something longer");
    Key(VK_UP);
    EXPECT_EQ(Line(), L"dir /w");
    EXPECT_EQ(Row(TheScreen.CursorY), L">dir /w");
    EXPECT_EQ(TheEditor.Caret, 6);
    Key(VK_DOWN, ModCtrl); // nothing there: the line stays
    EXPECT_EQ(Line(), L"dir /w");
    EXPECT_EQ(links.Recalls, (std::vector<HistoryMove>{HistoryMove::Previous, HistoryMove::Oldest}));

    // A line read has no history.
    InputMode = 1;
    TheEditor.ReadEditorKey(VK_UP);
    EXPECT_EQ(links.Recalls.size(), 2u);
    InputMode = 0;
}

TEST_F(EditorLinksTest, PageKeysMoveTheView)
{
    Key(VK_PRIOR);
    Key(VK_PRIOR, ModCtrl);
    Key(VK_NEXT);
    Key(VK_NEXT, ModCtrl);
    EXPECT_EQ(links.Moves, (std::vector<ViewMove>{ViewMove::PageUp, ViewMove::LineUp, ViewMove::PageDown,
                                                  ViewMove::LineDown}));
    // In a line read, editing keys bring the view back to the live screen first.
    links.Moves.clear();
    TheEditor.ReadEditorKey(VK_PRIOR);
    TheEditor.ReadEditorKey(VK_HOME);
    EXPECT_EQ(links.Moves, (std::vector<ViewMove>{ViewMove::PageUp, ViewMove::Bottom}));
}

TEST_F(EditorLinksTest, CtrlCWithASelectionCopiesInsteadOfBreaking)
{
    Type(L"echo x");
    links.Selection = true;
    Key('C', ModCtrl);
    EXPECT_EQ(links.Copies, 1);
    Type(L"\x03"); // the character of the same key press is dropped
    EXPECT_EQ(Line(), L"echo x");
    EXPECT_EQ(Row(0), L">echo x");
    // The next Ctrl-C breaks as usual.
    Type(L"\x03");
    EXPECT_EQ(Row(0), L">echo x^C");
    EXPECT_EQ(Line(), L"");
}

TEST_F(EditorLinksTest, PasteTypesTheFirstLineOfTheClipboard)
{
    Type(L"echo ");
    links.Clipboard = L"one\ttwo\r\nthree";
    Type(L"\x16");
    EXPECT_EQ(Line(), L"echo one two");
    Key(VK_HOME);
    Key(VK_INSERT, ModShift);
    EXPECT_EQ(Line(), L"one twoecho one two");

    // In a line read the read's limit holds.
    TheEditor.ResetLine();
    InputMode = 1;
    CommandRunning = 1;
    links.Clipboard = std::wstring(100, L'p');
    TheEditor.ReadEditorChar(0x16);
    EXPECT_EQ(lstrlenW(TheEditor.Line), 78);
    // A key wait takes no paste.
    TheEditor.ResetLine();
    InputMode = 2;
    TheEditor.ReadEditorChar(0x16);
    EXPECT_EQ(Line(), L"");
    InputMode = 0;
    CommandRunning = 0;
}

} // namespace
