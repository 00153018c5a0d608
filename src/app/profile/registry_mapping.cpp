#include "app/profile/registry_mapping.h"

#include "app/toolkit/handles.h"
#include "app/toolkit/omdib.h"

#include <windows.h>

#include <cwchar>
#include <string>

namespace {

const wchar_t kMappingKey[] = L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\IniFileMapping\\";
const wchar_t kUserPrefix[] = L"#USR:";
// Full access, as the mapping is created and its value set in one go.
constexpr REGSAM kAllAccess = 0xF003F;

// The text of a mapping value behind its "USR:" (after any of the platform's
// flag characters ! # @), or null when it maps elsewhere.
const wchar_t* UserKeyOf(const wchar_t* mapping)
{
    while (*mapping == L'!' || *mapping == L'#' || *mapping == L'@') ++mapping;
    return HasPrefixI(mapping, L"USR:") ? mapping + 4 : nullptr;
}

std::wstring WithoutExtension(const std::wstring& base)
{
    size_t dot = base.rfind(L'.');
    return dot == std::wstring::npos ? base : base.substr(0, dot);
}

} // namespace

bool HasPrefixI(const wchar_t* text, const wchar_t* prefix)
{
    int n = lstrlenW(prefix);
    return lstrlenW(text) >= n && CompareStringOrdinal(text, n, prefix, n, TRUE) == CSTR_EQUAL;
}

void CreateUserKey(const wchar_t* path)
{
    HKEY key = nullptr;
    if (RegCreateKeyExW(HKEY_CURRENT_USER, path, 0, nullptr, 0, kAllAccess, nullptr, &key, nullptr) == ERROR_SUCCESS)
        RegCloseKey(key);
}

void FindMappedRoot(const wchar_t* mappingName, const wchar_t* fallbackRoot, wchar_t* root)
{
    std::wstring path = std::wstring(kMappingKey) + mappingName;
    HKEY opened = nullptr;
    if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, path.c_str(), 0, KEY_QUERY_VALUE, &opened) != ERROR_SUCCESS) {
        CopyCutW(root, fallbackRoot, kPathMax);
        return;
    }
    UniqueHKey owner(opened);
    wchar_t mapping[kPathMax + 8] = {};
    DWORD bytes = sizeof mapping - sizeof(wchar_t);
    DWORD type = 0;
    if (RegQueryValueExW(opened, nullptr, nullptr, &type, reinterpret_cast<BYTE*>(mapping), &bytes) != ERROR_SUCCESS ||
        type != REG_SZ)
        mapping[0] = 0;
    const wchar_t* userKey = UserKeyOf(mapping);
    CopyCutW(root, userKey ? userKey : L"", kPathMax);
}

void MapStoreToRegistry(wchar_t* name, wchar_t* root)
{
    root[0] = 0;
    for (wchar_t* p = name; *p; ++p)
        if (*p == L'/') *p = L'\\';
    const wchar_t* slash = wcsrchr(name, L'\\');
    std::wstring base = slash ? slash + 1 : name;
    if (base.empty()) return;
    std::wstring userRoot = L"Software\\" + WithoutExtension(base);

    std::wstring working = std::wstring(kMappingKey) + base;
    HKEY mappingKey = nullptr;
    DWORD disposition = 0;
    if (RegCreateKeyExW(HKEY_LOCAL_MACHINE, working.c_str(), 0, nullptr, 0, kAllAccess, nullptr, &mappingKey,
                        &disposition) != ERROR_SUCCESS) {
        // No rights for the mapping: the per-user key is written directly.
        CreateUserKey(userRoot.c_str());
        CopyCutW(root, userRoot.c_str(), kPathMax);
        return;
    }
    if (disposition == REG_CREATED_NEW_KEY) {
        working = kUserPrefix + userRoot;
        RegSetValueExW(mappingKey, nullptr, 0, REG_SZ, reinterpret_cast<const BYTE*>(working.c_str()),
                       DWORD((working.size() + 1) * sizeof(wchar_t)));
    }
    RegCloseKey(mappingKey);
    // The per-user key named by the working text past its first five units.
    // When the mapping already existed that text is still the mapping's path,
    // which creates a key nobody reads ("ARE\Microsoft\..."); earlier
    // releases did the same, and users' registries carry that key, so every
    // release leaves the same registry behind.
    CreateUserKey(working.c_str() + 5);
    WritePrivateProfileStringW(nullptr, nullptr, nullptr, name);
    FindMappedRoot(base.c_str(), userRoot.c_str(), root);
}
