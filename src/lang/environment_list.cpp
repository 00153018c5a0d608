#include "lang/environment_list.h"

#include "lang/environment_index.h"
#include "lang/variables.h"

#include <windows.h>

std::vector<EnvironmentEntry> ListEnvironment()
{
    std::vector<EnvironmentEntry> entries;
    SyncEnvironment();
    wchar_t* block = GetEnvironmentStringsW();
    if (!block) return entries;
    for (const wchar_t* p = block; *p; p += lstrlenW(p) + 1) {
        if (*p == L'=') continue;
        std::wstring_view entry(p);
        size_t equals = entry.find(L'=');
        if (equals == std::wstring_view::npos) entries.push_back({std::wstring(entry), {}});
        else entries.push_back({std::wstring(entry.substr(0, equals)), std::wstring(entry.substr(equals + 1))});
    }
    FreeEnvironmentStringsW(block);
    return entries;
}

bool ApplyEnvironmentEdit(const std::wstring& name, const std::wstring& value)
{
    return SetVariable(name.c_str(), value.c_str());
}
