// The history: the last 256 lines typed at the prompt, kept across restarts
// in section History of the settings store, with two ways of recalling them.
// With nothing typed, Up and Down step through the entries one by one; with
// text on the line, they move among the entries that begin with that text.
#pragma once

#include "app/toolkit/omdib.h"

#include <memory>

class HistoryList {
public:
    static constexpr int kCapacity = 256;

    // Loads the entries kept by the last session.
    HistoryList();
    HistoryList(const HistoryList&) = delete;
    HistoryList& operator=(const HistoryList&) = delete;

    // A new newest entry; a repeat of the newest one is dropped.
    void HistoryAdd(const wchar_t* text);
    // Up and Down; each returns the text to show (never null).
    const wchar_t* HistoryPrevious();
    const wchar_t* HistoryNext();
    // Ctrl-Up and Ctrl-Down.
    const wchar_t* HistoryNewest();
    const wchar_t* HistoryOldest();
    // After every edit: the whole line becomes what recalls must begin with.
    void HistoryTextChanged(const wchar_t* text);
    void HistoryResetNavigation();
    void HistoryClear();
    void HistoryLoad();
    // Replaces section History with the entries, numbered from 0.
    void HistorySave() const;

    int Count() const { return count_; }
    // Entry i, oldest first; null past the end.
    const wchar_t* Entry(int i) const { return i >= 0 && i < kCapacity ? entries_[i].get() : nullptr; }

private:
    const wchar_t* Recall(const wchar_t* text);
    bool Matches(int i) const;

    std::unique_ptr<wchar_t[]> entries_[kCapacity];
    wchar_t prefix_[kLineMax] = {};
    wchar_t recalled_[kLineMax] = {};
    int count_ = 0;
    // count_ when the line shown is not from the history.
    int position_ = 0;
};

extern HistoryList TheHistory;
