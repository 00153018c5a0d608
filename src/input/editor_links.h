// The parts of line input that plug into the editor from outside it: the
// history, completion, function keys, the scrollback view, the selection and
// clipboard, the button bar's mark mode and the mail check. Each is optional:
// with nothing attached, the keys that belong to it do nothing, and the editor
// itself works the same.
#pragma once

#include <string>

enum class HistoryMove { Previous, Next, Newest, Oldest };
enum class ViewMove { PageUp, PageDown, LineUp, LineDown, Bottom };

class EditorLinks {
public:
    virtual ~EditorLinks() = default;

    // History: each physical line typed is an entry; navigation restarts
    // after Enter, Esc and Ctrl-C, and editing the recalled text ends it.
    virtual void AddHistory(const wchar_t* line) {}
    virtual void ResetHistoryNavigation() {}
    virtual void HistoryTextChanged() {}
    // The entry to show, or null when there is none in that direction.
    virtual const wchar_t* RecallHistory(HistoryMove move) { return nullptr; }
    virtual void HistoryWindowToFront() {}
    // The history list may not start a command while one runs.
    virtual void EnableHistoryList(bool enable) {}

    // TAB at the prompt, and F1 to F12.
    virtual void CompleteTab() {}
    virtual void FunctionKey(int virtualKey) {}

    // The scrollback view; Bottom returns to the live screen.
    virtual void MoveView(ViewMove move) {}

    // A selection standing on the screen, copied by Ctrl-C or Ctrl-Insert.
    virtual bool SelectionStanding() { return false; }
    virtual void CopySelection() {}
    virtual void ClearSelection() {}
    // The clipboard's text, for Shift-Insert and Ctrl-V; false when it has none.
    virtual bool ClipboardText(std::wstring& text) { return false; }

    // Ctrl-C ends a pending button mark; true when one was pending.
    virtual bool CancelButtonMark() { return false; }
    virtual void CheckMail() {}
};

// What is attached now; a set of empty links until something is.
extern EditorLinks* Links;
