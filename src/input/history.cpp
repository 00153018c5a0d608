#include "input/history.h"

#include "app/errors.h"
#include "app/profile/profile.h"
#include "app/sound_events.h"
#include "input/history_window.h"

#include <algorithm>
#include <new>

namespace {

constexpr const wchar_t* kSection = L"History";
constexpr const wchar_t* kRecallSound = L"History UP/DOWN key";
// Key names of the section: 16384 bytes.
constexpr int kNameUnits = 8192;

std::unique_ptr<wchar_t[]> CopyText(const wchar_t* text)
{
    int length = lstrlenW(text);
    if (length > kLineMax - 1) length = kLineMax - 1;
    std::unique_ptr<wchar_t[]> copy(new wchar_t[size_t(length) + 1]);
    std::copy(text, text + length, copy.get());
    copy[length] = 0;
    return copy;
}

} // namespace

HistoryList::HistoryList() { HistoryLoad(); }

bool HistoryList::Matches(int i) const
{
    const wchar_t* entry = Entry(i);
    if (!entry) return false;
    int length = lstrlenW(prefix_);
    for (int k = 0; k < length; ++k)
        if (entry[k] != prefix_[k]) return false;
    return true;
}

const wchar_t* HistoryList::Recall(const wchar_t* text)
{
    CopyCutW(recalled_, text ? text : L"", kLineMax);
    return recalled_;
}

void HistoryList::HistoryAdd(const wchar_t* text)
{
    const wchar_t* newest = Entry(position_ < 1 ? 0 : position_ - 1);
    if (newest && lstrcmpW(newest, text) == 0) return;
    if (count_ == kCapacity) {
        std::move(entries_ + 1, entries_ + kCapacity, entries_);
        count_ = kCapacity - 1;
        HistoryWindowDropFirst();
    }
    entries_[count_] = CopyText(text);
    ++count_;
    position_ = count_;
    HistoryWindowAppend(entries_[count_ - 1].get());
}

const wchar_t* HistoryList::HistoryPrevious()
{
    if (!prefix_[0]) {
        if (position_ < 1) {
            PlaySoundEvent(kRecallSound);
            return Recall(Entry(position_));
        }
        --position_;
        return Recall(Entry(position_));
    }
    const wchar_t* provisional = Matches(position_) ? Entry(position_) : prefix_;
    for (int i = std::min(position_, count_) - 1; i >= 0; --i) {
        if (Matches(i)) {
            position_ = i;
            return Recall(Entry(i));
        }
    }
    PlaySoundEvent(kRecallSound);
    return Recall(provisional);
}

const wchar_t* HistoryList::HistoryNext()
{
    if (position_ >= count_) {
        PlaySoundEvent(kRecallSound);
        return Recall(prefix_);
    }
    if (!prefix_[0]) {
        ++position_;
        return Recall(Entry(position_));
    }
    for (int i = position_ + 1; i < count_; ++i) {
        if (Matches(i)) {
            position_ = i;
            return Recall(Entry(i));
        }
    }
    position_ = count_;
    return Recall(prefix_);
}

const wchar_t* HistoryList::HistoryNewest()
{
    position_ = count_;
    return HistoryPrevious();
}

const wchar_t* HistoryList::HistoryOldest()
{
    position_ = -1;
    return HistoryNext();
}

void HistoryList::HistoryTextChanged(const wchar_t* text)
{
    CopyCutW(prefix_, text, kLineMax);
    position_ = count_;
}

void HistoryList::HistoryResetNavigation()
{
    position_ = count_;
    prefix_[0] = 0;
}

void HistoryList::HistoryClear()
{
    for (auto& entry : entries_) entry.reset();
    count_ = 0;
    position_ = 0;
    prefix_[0] = 0;
    HistoryWindowClearRows();
}

void HistoryList::HistoryLoad()
{
    std::unique_ptr<wchar_t[]> names(new (std::nothrow) wchar_t[kNameUnits]);
    if (!names) {
        ReportId(13);
        return;
    }
    ProfileReadString(kSection, nullptr, L"", names.get(), kNameUnits);
    // Room for the quotes of a full line, which the reader may see when the
    // value was written by hand.
    wchar_t value[kLineMax + 2];
    for (const wchar_t* name = names.get(); *name; name += lstrlenW(name) + 1) {
        ProfileReadString(kSection, name, L"", value, kLineMax + 2);
        value[kLineMax - 1] = 0;
        // A value the reader cannot take as text comes back empty.
        if (value[0]) HistoryAdd(value);
    }
}

void HistoryList::HistorySave() const
{
    ProfileWriteString(kSection, nullptr, nullptr);
    ProfileWriteString(nullptr, nullptr, nullptr);
    for (int i = 0; i < kCapacity; ++i) {
        if (!entries_[i]) continue;
        wchar_t key[12];
        i64tow_ex(i, key, 10);
        ProfileWriteQuoted(kSection, key, entries_[i].get());
    }
}
