// The editor's key and character handlers: at the prompt, where Enter may
// complete a command or a group of lines, and in a line read of a running
// command.
#include "input/editor.h"

#include "app/errors.h"
#include "app/globals.h"
#include "app/host.h"
#include "app/run_line.h"
#include "input/editor_links.h"
#include "screen/colours.h"
#include "screen/screen_store.h"

#include <windows.h>

namespace {

constexpr wchar_t kCtrlC = 3;
constexpr wchar_t kBackspace = 8;
constexpr wchar_t kTab = 9;
constexpr wchar_t kEnter = 0x0D;
constexpr wchar_t kCtrlV = 0x16;
constexpr wchar_t kCtrlZ = 0x1A;
constexpr wchar_t kEsc = 0x1B;
constexpr int kPromptLimit = kLineMax - 1;


} // namespace

int CommandLineEditor::EditorKey(int virtualKey, unsigned modifiers)
{
    if (virtualKey >= VK_F1 && virtualKey <= VK_F12) {
        Links->FunctionKey(virtualKey);
        return 0;
    }
    return HandleKey(virtualKey, modifiers, false);
}

int CommandLineEditor::ReadEditorKey(int virtualKey, unsigned modifiers)
{
    bool viewKey = virtualKey == VK_CONTROL || virtualKey == VK_INSERT || virtualKey == VK_SHIFT ||
                   virtualKey == VK_PRIOR || virtualKey == VK_NEXT;
    if (!viewKey) Links->MoveView(ViewMove::Bottom);
    return HandleKey(virtualKey, modifiers, true);
}

int CommandLineEditor::HandleKey(int virtualKey, unsigned modifiers, bool reading)
{
    bool ctrl = (modifiers & ModCtrl) != 0;
    if (virtualKey == 'C' && ctrl && Links->SelectionStanding()) {
        Links->CopySelection();
        (reading ? ReadCopySwallowsCtrlC : CopySwallowsCtrlC) = 1;
        return 0;
    }
    if (virtualKey != VK_CONTROL && virtualKey != VK_SHIFT && virtualKey != VK_INSERT) Links->ClearSelection();
    // A completion goes on only while TAB follows TAB.
    if (!reading && virtualKey != VK_TAB && virtualKey != VK_CONTROL) Cycling = 0;
    int length = Length();
    switch (virtualKey) {
    case VK_PRIOR: Links->MoveView(ctrl ? ViewMove::LineUp : ViewMove::PageUp); break;
    case VK_NEXT: Links->MoveView(ctrl ? ViewMove::LineDown : ViewMove::PageDown); break;
    case VK_END:
        Caret = length;
        RedrawLine();
        break;
    case VK_HOME:
        Caret = 0;
        RedrawLine();
        break;
    case VK_LEFT:
        if (Caret > 0) {
            int width;
            if (ctrl) WordLeft();
            else Caret = IndexPrevW(Line, Caret, &width);
        }
        RedrawLine();
        break;
    case VK_RIGHT:
        if (Caret < length) {
            int width;
            if (ctrl) WordRight();
            else Caret = IndexNextW(Line, Caret, &width);
        }
        RedrawLine();
        break;
    case VK_UP:
    case VK_DOWN:
        if (!reading) {
            HistoryMove move = virtualKey == VK_UP ? (ctrl ? HistoryMove::Newest : HistoryMove::Previous)
                                                   : (ctrl ? HistoryMove::Oldest : HistoryMove::Next);
            if (const wchar_t* text = Links->RecallHistory(move)) ReplaceLine(text, length);
        }
        break;
    case VK_INSERT:
        if (ctrl) Links->CopySelection();
        else if (modifiers & ModShift) Paste();
        else {
            InsertMode = !InsertMode;
            Host->RebuildCaret();
        }
        break;
    case VK_DELETE: {
        int width;
        IndexNextW(Line, Caret, &width);
        // A line read never reaches past its own limit.
        if (reading && Caret + width > kReadLimit) width = kReadLimit - Caret;
        RemoveUnits(Caret, width);
        if (!reading) Links->HistoryTextChanged();
        RedrawLine();
        break;
    }
    default: break;
    }
    return 0;
}

int CommandLineEditor::EditorChar(wchar_t unit, unsigned modifiers)
{
    if (CopySwallowsCtrlC && unit == kCtrlC) {
        CopySwallowsCtrlC = 0;
        return 0;
    }
    Links->ClearSelection();
    if (unit != kTab) Cycling = 0;
    switch (unit) {
    case kCtrlC: BreakAtPrompt(); return 0;
    case kBackspace: Backspace(false); return 0;
    case kEnter: return Enter();
    case kCtrlV: Paste(); return 0;
    case kEsc:
        if (modifiers & ModShift) Links->HistoryWindowToFront();
        else ClearLine(false);
        return 0;
    default: break;
    }
    // A tab arrives here only after TAB completion had its key press.
    if (unit < 0x20 || !InsertUnit(unit, kPromptLimit)) return 0;
    Links->HistoryTextChanged();
    RedrawLine();
    return 0;
}

int CommandLineEditor::ReadEditorChar(wchar_t unit, unsigned modifiers)
{
    Links->MoveView(ViewMove::Bottom);
    switch (unit) {
    case kBackspace: Backspace(true); return 0;
    case kEnter:
        Caret = Length();
        RedrawLine();
        return 1;
    case kCtrlV: Paste(); return 0;
    case kCtrlZ:
        EndOfInput = 1;
        Caret = Length();
        RedrawLine();
        return 1;
    case kEsc:
        if (modifiers & ModShift) Links->HistoryWindowToFront();
        else ClearLine(true);
        return 0;
    case kTab: unit = L' '; break;
    default: break;
    }
    if (unit >= 0x20 && InsertUnit(unit, kReadLimit)) RedrawLine();
    return 0;
}

void CommandLineEditor::BreakAtPrompt()
{
    // The typed text stays on the screen; the new prompt starts an empty line.
    OpenGroup.Clear();
    Links->ResetHistoryNavigation();
    Host->HideCaret();
    TheScreen.ShowBreak();
    if (Links->CancelButtonMark()) {
        TheScreen.LineFeed();
        UseItem(Item::HighText);
        TheScreen.WriteCells(L"Cancelled Button Mark");
        TheScreen.LineFeed();
    }
    ShowPrompt();
}

int CommandLineEditor::Enter()
{
    Host->AcceptDrops(false);
    Links->ResetHistoryNavigation();
    Caret = Length();
    RedrawLine();
    Host->HideCaret();
    EndScreenLine();
    CopyCutW(Submitted, Line, kLineMax);
    ResetLine();

    const wchar_t* first = SkipWhiteW(Submitted);
    if (!*first) {
        // Blanks alone neither run nor end an open group.
        if (!OpenGroup.Empty()) ShowMorePrompt();
        else ShowPrompt();
        return 0;
    }
    GroupJoiner::Result joined = OpenGroup.Add(Submitted);
    if (joined == GroupJoiner::Result::TooLong) {
        OpenGroup.Clear();
        ReportId(59);
        ShowPrompt();
        return 0;
    }
    Links->AddHistory(Submitted);
    if (joined == GroupJoiner::Result::Complete) {
        CopyCutW(Submitted, OpenGroup.Text(), kLineMax);
        OpenGroup.Clear();
        return 1;
    }
    ShowMorePrompt();
    return 0;
}
