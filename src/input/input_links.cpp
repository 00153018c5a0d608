#include "input/input_links.h"

#include "input/completion.h"
#include "input/editor.h"
#include "input/history.h"
#include "input/history_window.h"

void InputLinks::AddHistory(const wchar_t* line) { TheHistory.HistoryAdd(line); }

void InputLinks::ResetHistoryNavigation() { TheHistory.HistoryResetNavigation(); }

void InputLinks::HistoryTextChanged() { TheHistory.HistoryTextChanged(TheEditor.Line); }

const wchar_t* InputLinks::RecallHistory(HistoryMove move)
{
    switch (move) {
    case HistoryMove::Previous: return TheHistory.HistoryPrevious();
    case HistoryMove::Next: return TheHistory.HistoryNext();
    case HistoryMove::Newest: return TheHistory.HistoryNewest();
    case HistoryMove::Oldest: return TheHistory.HistoryOldest();
    }
    return nullptr;
}

void InputLinks::HistoryWindowToFront() { ::HistoryWindowToFront(); }

void InputLinks::EnableHistoryList(bool enable) { EnableHistoryWindow(enable); }

void InputLinks::CompleteTab() { ::CompleteTab(); }
