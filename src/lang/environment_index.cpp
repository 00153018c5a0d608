#include "lang/environment_index.h"

#include <windows.h>

#include <algorithm>
#include <cstdint>
#include <cwchar>
#include <memory>
#include <unordered_map>
#include <vector>

namespace {

using Index = std::unordered_map<std::wstring, std::wstring>;

// What has become of one name since the last sync. Deleted says that the
// process must drop the name before any new value goes in, which under a
// platform that appends new names moves it to the end. Order numbers the
// first set since then, because that set is where a new name would have
// been appended. The first and the last spelling of the name both matter:
// one platform keeps the spelling a name was created with, another takes the
// latest.
struct PendingChange {
    bool Deleted = false;
    bool HasValue = false;
    uint64_t Order = 0;
    std::wstring Value;
    std::wstring FirstName;
    std::wstring LastName;
};

using Pending = std::unordered_map<std::wstring, PendingChange>;

// The process refuses these names and values; the UNICODE_STRING it keeps
// them in holds at most 32,767 characters.
constexpr size_t kMaxSetting = 32767;

// Upper case, as the process compares names: by the invariant table, which
// the plain letters need no call for.
void UpperKey(std::wstring& key)
{
    bool plain = true;
    for (wchar_t& unit : key) {
        if (unit >= L'a' && unit <= L'z') unit = wchar_t(unit - L'a' + L'A');
        else if (unit >= 0x80) plain = false;
    }
    if (!plain) LCMapStringW(LOCALE_INVARIANT, LCMAP_UPPERCASE, key.data(), int(key.size()), key.data(), int(key.size()));
}

// The key of a name.
void MakeKey(const wchar_t* name, std::wstring& key)
{
    key.assign(name);
    UpperKey(key);
}

Index& TheIndex()
{
    static std::unique_ptr<Index> index;
    if (index) return *index;
    index = std::make_unique<Index>();
    wchar_t* block = GetEnvironmentStringsW();
    if (!block) return *index;
    std::wstring key;
    for (const wchar_t* p = block; *p; p += lstrlenW(p) + 1) {
        const wchar_t* equals = p + 1;
        while (*equals && *equals != L'=') ++equals;
        if (*p == L'=' || !*equals) continue;
        key.assign(p, equals);
        UpperKey(key);
        index->emplace(key, std::wstring(equals + 1));
    }
    FreeEnvironmentStringsW(block);
    return *index;
}

// Held behind a function, so that a sync from a global's constructor finds it built.
Pending& ThePending()
{
    static Pending pending;
    return pending;
}

uint64_t changeCount = 0;

// One key buffer for every lookup, so a read allocates nothing.
std::wstring lookupKey;

// The entries of the last name looked up and changed: a loop reads and sets
// the same variable turn after turn, and then needs no hashing at all.
// Entries of an unordered map stay where they are until erased.
std::wstring lastKey;
std::wstring* lastValue = nullptr;
std::wstring lastChangeKey;
PendingChange* lastChange = nullptr;

// The value entry of the key in lookupKey, or null.
std::wstring* IndexedValue(Index& index)
{
    if (lastValue && lastKey == lookupKey) return lastValue;
    auto found = index.find(lookupKey);
    if (found == index.end()) return nullptr;
    lastKey = lookupKey;
    return lastValue = &found->second;
}

bool Refused(const wchar_t* name, const wchar_t* value)
{
    size_t length = wcslen(name);
    bool refused = length == 0 || length > kMaxSetting || std::wcschr(name + 1, L'=') != nullptr ||
                   (value && wcslen(value) > kMaxSetting);
    if (refused) SetLastError(ERROR_INVALID_PARAMETER);
    return refused;
}

void NotePending(const std::wstring& key, const wchar_t* name, const wchar_t* value)
{
    if (!lastChange || lastChangeKey != key) {
        lastChange = &ThePending()[key];
        lastChangeKey = key;
    }
    PendingChange& change = *lastChange;
    if (!value) {
        change.Deleted = true;
        change.HasValue = false;
        return;
    }
    if (!change.HasValue) {
        change.HasValue = true;
        change.Order = ++changeCount;
        change.FirstName.assign(name);
    }
    change.Value.assign(value);
    change.LastName.assign(name);
}

} // namespace

const std::wstring* FindEnvironment(const wchar_t* name)
{
    if (*name == L'=') {
        // Hidden names are rare and never indexed: read them where they live.
        static std::wstring hidden;
        DWORD n = GetEnvironmentVariableW(name, nullptr, 0);
        if (n == 0) return nullptr;
        hidden.resize(n);
        n = GetEnvironmentVariableW(name, hidden.data(), n);
        hidden.resize(n);
        return &hidden;
    }
    Index& index = TheIndex();
    MakeKey(name, lookupKey);
    return IndexedValue(index);
}

bool WriteEnvironment(const wchar_t* name, const wchar_t* value)
{
    Index& index = TheIndex();
    if (*name == L'=') {
        // Written where they live, after what came before them, so that the
        // block keeps the order of the changes.
        SyncEnvironment();
        return SetEnvironmentVariableW(name, value) != 0;
    }
    if (Refused(name, value)) return false;
    MakeKey(name, lookupKey);
    std::wstring* entry = IndexedValue(index);
    if (!value) {
        if (!entry) return true;
        index.erase(lookupKey);
        lastValue = nullptr;
    } else if (!entry) {
        index.emplace(lookupKey, std::wstring(value));
    } else {
        entry->assign(value);
    }
    NotePending(lookupKey, name, value);
    return true;
}

// Lazy, because the platform's own cost of setting a variable grows with the
// size of the block (it scans the whole block on every set): a loop that sets
// a variable each turn would be bound by it. Pending changes go in the order
// they were made: deletes first, which cannot move other names, then new
// values in the order of their first set, so that names a platform appends
// land where writing each change at once would have put them.
void SyncEnvironment()
{
    Pending& pending = ThePending();
    if (pending.empty()) return;
    std::vector<const PendingChange*> sets;
    for (const auto& [key, change] : pending) {
        if (change.Deleted) SetEnvironmentVariableW(key.c_str(), nullptr);
        if (change.HasValue) sets.push_back(&change);
    }
    std::sort(sets.begin(), sets.end(),
              [](const PendingChange* a, const PendingChange* b) { return a->Order < b->Order; });
    for (const PendingChange* change : sets) {
        if (change->FirstName != change->LastName)
            SetEnvironmentVariableW(change->FirstName.c_str(), change->Value.c_str());
        SetEnvironmentVariableW(change->LastName.c_str(), change->Value.c_str());
    }
    pending.clear();
    lastChange = nullptr;
}
