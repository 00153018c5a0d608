// CommandLineEditor: the line being typed. It is no control of its own: the
// text lives in Line, and the editor draws it into the text screen at an
// anchor (the store's EditX, EditY) right behind whatever was printed last,
// and puts the screen's cursor where the caret is. Two faces share the one
// buffer: the prompt (4095 units, groups, history) and the line read of a
// running command (78 units). The same object holds a redirected standard
// input, which the readers use in place of the keyboard.
//
// Both hosts drive it through the key and character handlers below; nothing
// in it needs a window, so tests call the handlers directly.
#pragma once

#include "app/toolkit/omdib.h"
#include "lang/group_join.h"
#include "input/redirected_input.h"

#include <span>
#include <string>

// A file or folder dropped on the window, as the editor types it.
struct DroppedFile {
    std::wstring Name;
    bool IsDirectory = false;
};

class CommandLineEditor {
public:
    // The longest line of a read during a running command.
    static constexpr int kReadLimit = 78;

    int Caret = 0;
    // Zero-filled behind the text whenever a new line starts.
    wchar_t Line[kLineMax] = {};
    // The line as Enter left it, then the whole command for RunTopLevelLine.
    wchar_t Submitted[kLineMax] = {};
    RedirectedInput Input;
    // 1 insert, 0 overwrite; not saved.
    int InsertMode = 1;
    // Ctrl-Z or the end of the redirected input was seen.
    int EndOfInput = 0;
    // On while TypeLine feeds text, so the line is drawn once at the end.
    int SuppressRedraw = 0;
    // The last key was a completion that can go on (TAB completion reads it).
    int Cycling = 0;

    // WM_KEYDOWN and WM_CHAR at the prompt. EditorChar gives 1 when a whole
    // command stands in Submitted.
    int EditorKey(int virtualKey, unsigned modifiers = 0);
    int EditorChar(wchar_t unit, unsigned modifiers = 0);
    // The same during a line read; ReadEditorChar gives 1 on Enter or Ctrl-Z.
    int ReadEditorKey(int virtualKey, unsigned modifiers = 0);
    int ReadEditorChar(wchar_t unit, unsigned modifiers = 0);

    // Feeds text as if typed; with submit the line is cleared first and Enter
    // follows (the caller then runs the line).
    void TypeLine(const wchar_t* text, bool submit);
    // An empty line anchored at the screen's cursor.
    void ResetLine();
    // Draws the line at the anchor and puts the cursor and caret at Caret.
    void RedrawLine();
    // Erases the line's picture from the screen and keeps its text, before
    // a size change lays the screen out anew; the next paint redraws it.
    void BlankLine();
    // Shows a recalled line in place of the oldLength units shown now.
    void ReplaceLine(const wchar_t* text, int oldLength);
    // Types the first line of a text (clipboard contents).
    void PasteText(const wchar_t* text);
    // Types the names of dropped files; Caps Lock off lower-cases them.
    void DropFiles(std::span<const DroppedFile> files, bool capsLock);
    // Ends the screen line the edit line stands on (not when the terminal
    // echoes the typing itself).
    void EndScreenLine();

private:
    int Length() const { return lstrlenW(Line); }
    int HandleKey(int virtualKey, unsigned modifiers, bool reading);
    bool InsertUnit(wchar_t unit, int limit);
    void RemoveUnits(int index, int count);
    void Backspace(bool reading);
    void ClearLine(bool reading);
    void Paste();
    void BreakAtPrompt();
    int Enter();
    void WordLeft();
    void WordRight();
};

extern CommandLineEditor TheEditor;

// The lines of an unfinished group so far; empty when no group is open.
extern GroupJoiner OpenGroup;
// The Ctrl-C key press copied a selection, so its character is dropped (at
// the prompt, and in a line read).
extern int CopySwallowsCtrlC;
extern int ReadCopySwallowsCtrlC;
// The caret's cell lies above the screen, so the caret was hidden once.
extern int CaretHidden;
