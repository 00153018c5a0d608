#include "lang/environment_index.h"

#include <windows.h>

#include <memory>
#include <unordered_map>

namespace {

using Index = std::unordered_map<std::wstring, std::wstring>;

// The key of a name: upper case, as the process compares names.
void MakeKey(const wchar_t* name, std::wstring& key)
{
    key.assign(name);
    if (!key.empty()) CharUpperBuffW(key.data(), DWORD(key.size()));
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
        CharUpperBuffW(key.data(), DWORD(key.size()));
        index->emplace(key, std::wstring(equals + 1));
    }
    FreeEnvironmentStringsW(block);
    return *index;
}

// One key buffer for every lookup, so a read allocates nothing.
std::wstring lookupKey;

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
    auto found = index.find(lookupKey);
    return found == index.end() ? nullptr : &found->second;
}

bool WriteEnvironment(const wchar_t* name, const wchar_t* value)
{
    Index& index = TheIndex();
    if (!SetEnvironmentVariableW(name, value)) return false;
    if (*name == L'=') return true;
    MakeKey(name, lookupKey);
    if (value) index.insert_or_assign(lookupKey, std::wstring(value));
    else index.erase(lookupKey);
    return true;
}
