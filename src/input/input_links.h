// The line-input parts that plug into the editor: the history with its list
// window, and TAB completion. Both hosts attach these (the window host adds
// its own parts on top).
#pragma once

#include "input/editor_links.h"

class InputLinks : public EditorLinks {
public:
    void AddHistory(const wchar_t* line) override;
    void ResetHistoryNavigation() override;
    void HistoryTextChanged() override;
    const wchar_t* RecallHistory(HistoryMove move) override;
    void HistoryWindowToFront() override;
    void EnableHistoryList(bool enable) override;
    void CompleteTab() override;
};
