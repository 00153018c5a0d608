// The editor's buffer and its picture on the screen: drawing at the anchor,
// the caret's cell, typing, removing, pasting and dropping.
#include "input/editor.h"

#include "app/event_pump.h"
#include "app/globals.h"
#include "app/host.h"
#include "input/editor_links.h"
#include "input/unix_mode.h"
#include "screen/screen_store.h"

#include <cstring>

GroupJoiner OpenGroup;
int CopySwallowsCtrlC = 0;
int ReadCopySwallowsCtrlC = 0;
int CaretHidden = 0;

void CommandLineEditor::ResetLine()
{
    Caret = 0;
    std::memset(Line, 0, sizeof(Line));
    TheScreen.EditX = TheScreen.CursorX;
    TheScreen.EditY = TheScreen.CursorY;
}

void CommandLineEditor::RedrawLine()
{
    if (SuppressRedraw || Host->TerminalEchoes()) return;
    // A command's own output owns the screen, except while it reads a line.
    if (CommandRunning && InputMode != 1) return;
    Host->HideCaret();
    TheScreen.Locate(TheScreen.EditX, TheScreen.EditY);
    // The blank behind the text erases what a deletion left over.
    TheScreen.WriteCells(Line);
    TheScreen.WriteCells(L" ");

    // The caret's cell, counted in characters from the anchor; the writing
    // above may have scrolled, which moved the anchor up with the text.
    int x = TheScreen.EditX;
    int y = TheScreen.EditY;
    for (int steps = CharCountW(Line, Caret); steps > 0; --steps)
        if (++x >= ScreenWidth) {
            x = 0;
            ++y;
        }
    if (y < 0 && !CaretHidden) {
        Host->HideCaret();
        CaretHidden = 1;
    } else if (y >= 0 && CaretHidden) {
        Host->ShowCaret();
        CaretHidden = 0;
    }
    TheScreen.Locate(x, y);
    Host->ShowCaret();
    Host->Refresh();
}

void CommandLineEditor::EndScreenLine()
{
    if (!Host->TerminalEchoes()) TheScreen.LineFeed();
}

bool CommandLineEditor::InsertUnit(wchar_t unit, int limit)
{
    int length = Length();
    if (length >= limit) return false;
    if (InsertMode) {
        std::memmove(Line + Caret + 1, Line + Caret, size_t(length - Caret + 1) * sizeof(wchar_t));
        Line[Caret] = unit;
    } else {
        bool atEnd = Line[Caret] == 0;
        Line[Caret] = unit;
        if (atEnd) Line[Caret + 1] = 0;
    }
    ++Caret;
    return true;
}

void CommandLineEditor::RemoveUnits(int index, int count)
{
    int length = Length();
    if (index >= length || count <= 0) return;
    if (index + count > length) count = length - index;
    std::memmove(Line + index, Line + index + count, size_t(length - index - count + 1) * sizeof(wchar_t));
}

void CommandLineEditor::Backspace(bool reading)
{
    // One unit, not one character: after a surrogate pair only its second
    // half goes.
    if (Caret <= 0) return;
    --Caret;
    RemoveUnits(Caret, 1);
    if (!reading) Links->HistoryTextChanged();
    RedrawLine();
}

void CommandLineEditor::ClearLine(bool reading)
{
    // Blanks over the old text first, so the redraw erases it on the screen.
    int length = Length();
    for (int i = 0; i < length; ++i) Line[i] = L' ';
    Caret = 0;
    RedrawLine();
    std::memset(Line, 0, sizeof(Line));
    if (!reading) Links->ResetHistoryNavigation();
}

void CommandLineEditor::WordLeft()
{
    int width;
    Caret = IndexPrevW(Line, Caret, &width);
    while (Caret > 0 && Line[Caret] == L' ') --Caret;
    while (Caret > 0 && Line[Caret] != L' ') --Caret;
    // Stopped on the blank in front of the word: stand on its first letter.
    if (Caret > 0 && Line[Caret] == L' ') ++Caret;
}

void CommandLineEditor::WordRight()
{
    while (Line[Caret] && Line[Caret] != L' ') ++Caret;
    while (Line[Caret] == L' ') ++Caret;
}

void CommandLineEditor::BlankLine()
{
    std::wstring text = Line;
    for (size_t i = 0; i < text.size(); ++i) Line[i] = L' ';
    RedrawLine();
    CopyCutW(Line, text.c_str(), kLineMax);
}

void CommandLineEditor::ReplaceLine(const wchar_t* text, int oldLength)
{
    if (lstrcmpW(text, Line) == 0) return;
    for (int i = 0; i < oldLength && i < kLineMax - 1; ++i) Line[i] = L' ';
    RedrawLine();
    std::memset(Line, 0, sizeof(Line));
    CopyCutW(Line, text, kLineMax);
    Caret = Length();
    RedrawLine();
}

void CommandLineEditor::TypeLine(const wchar_t* text, bool submit)
{
    Links->MoveView(ViewMove::Bottom);
    if (submit) EditorChar(0x1B);
    SuppressRedraw = 1;
    for (const wchar_t* p = text; *p; ++p) EditorChar(*p);
    SuppressRedraw = 0;
    RedrawLine();
    if (submit) EditorChar(L'\r');
}

void CommandLineEditor::PasteText(const wchar_t* text)
{
    Links->MoveView(ViewMove::Bottom);
    // A key wait takes no paste; the first line end stops it, so only the
    // first line of a longer text arrives.
    if (InputMode == 2) return;
    for (int i = 0; i < kLineMax - 1 && (text[i] >= 0x20 || text[i] == L'\t'); ++i) {
        wchar_t unit = text[i] == L'\t' ? L' ' : text[i];
        if (InputMode) ReadEditorChar(unit);
        else EditorChar(unit);
    }
}

void CommandLineEditor::Paste()
{
    std::wstring text;
    if (Links->ClipboardText(text)) PasteText(text.c_str());
}

void CommandLineEditor::DropFiles(std::span<const DroppedFile> files, bool capsLock)
{
    for (const DroppedFile& file : files) {
        bool hasBlank = file.Name.find(L' ') != std::wstring::npos;
        std::wstring name = file.Name;
        // A folder with a blank gets no closing quote: that is how the
        // system always typed it.
        if (!file.IsDirectory) name += hasBlank ? L"\" " : L" ";
        else name += files.size() > 1 ? L"\\ " : L"\\";
        std::wstring shown = UnixDisplayW(name.c_str());
        if (!capsLock)
            for (wchar_t& unit : shown) unit = ToLowerUnit(unit);
        if (hasBlank) TypeLine(L"\"", false);
        TypeLine(shown.c_str(), false);
    }
}
