#include "app/profile/registry_profile.h"

#include "app/toolkit/handles.h"
#include "app/toolkit/omdib.h"

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

namespace {

std::wstring SectionPath(const wchar_t* root, const wchar_t* section)
{
    std::wstring path = root;
    if (*section) path.append(L"\\").append(section);
    return path;
}

UniqueHKey OpenSection(const wchar_t* root, const wchar_t* section, REGSAM access)
{
    HKEY key = nullptr;
    if (RegOpenKeyExW(HKEY_CURRENT_USER, SectionPath(root, section).c_str(), 0, access, &key) != ERROR_SUCCESS)
        return UniqueHKey();
    return UniqueHKey(key);
}

// Text of a value as stored; numbers entered by hand as REG_DWORD read as
// their decimal text. False when the value is missing or of another type.
bool ReadStoredValue(HKEY key, const wchar_t* name, std::wstring& value)
{
    DWORD type = 0, bytes = 0;
    if (RegQueryValueExW(key, name, nullptr, &type, nullptr, &bytes) != ERROR_SUCCESS) return false;
    std::vector<BYTE> data(bytes + sizeof(wchar_t));
    if (RegQueryValueExW(key, name, nullptr, &type, data.data(), &bytes) != ERROR_SUCCESS) return false;
    if (type == REG_DWORD && bytes == sizeof(DWORD)) {
        DWORD number;
        memcpy(&number, data.data(), sizeof number);
        value = std::to_wstring(number);
        return true;
    }
    if (type != REG_SZ && type != REG_EXPAND_SZ) return false;
    value.assign(reinterpret_cast<const wchar_t*>(data.data()), bytes / sizeof(wchar_t));
    size_t end = value.find(L'\0');
    if (end != std::wstring::npos) value.resize(end);
    return true;
}

// As the platform's INI reader: blanks at both ends go, then one pair of
// matching enclosing quotes, single or double.
void CleanValue(std::wstring& value)
{
    size_t first = value.find_first_not_of(L" \t");
    if (first == std::wstring::npos) {
        value.clear();
        return;
    }
    value = value.substr(first, value.find_last_not_of(L" \t") - first + 1);
    if (value.size() >= 2 && (value.front() == L'"' || value.front() == L'\'') && value.back() == value.front())
        value = value.substr(1, value.size() - 2);
}

bool ReadValue(const wchar_t* root, const wchar_t* section, const wchar_t* key, std::wstring& value)
{
    UniqueHKey opened = OpenSection(root, section, KEY_QUERY_VALUE);
    if (!opened || !ReadStoredValue(opened.get(), key, value)) return false;
    CleanValue(value);
    return true;
}

int CopyOut(const std::wstring& text, wchar_t* buffer, int size)
{
    if (size <= 0) return 0;
    int n = int(text.size()) < size - 1 ? int(text.size()) : size - 1;
    text.copy(buffer, size_t(n));
    buffer[n] = 0;
    return n;
}

// Zero-terminated names and one more terminator; cut to size - 2 units with
// two terminators when they do not fit.
int CopyNameList(const std::vector<std::wstring>& names, wchar_t* buffer, int size)
{
    if (size <= 0) return 0;
    if (size < 2) {
        buffer[0] = 0;
        return 0;
    }
    std::wstring list;
    for (const auto& name : names) list.append(name).push_back(0);
    if (int(list.size()) + 1 <= size) {
        list.copy(buffer, list.size());
        buffer[list.size()] = 0;
        return int(list.size());
    }
    list.copy(buffer, size_t(size - 2));
    buffer[size - 2] = 0;
    buffer[size - 1] = 0;
    return size - 2;
}

std::vector<std::wstring> SectionNames(const wchar_t* root)
{
    std::vector<std::wstring> names;
    UniqueHKey opened = OpenSection(root, L"", KEY_ENUMERATE_SUB_KEYS);
    wchar_t name[256];
    for (DWORD i = 0; opened; ++i) {
        DWORD length = 256;
        if (RegEnumKeyExW(opened.get(), i, name, &length, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS) break;
        names.emplace_back(name, length);
    }
    return names;
}

std::vector<std::wstring> KeyNames(const wchar_t* root, const wchar_t* section)
{
    std::vector<std::wstring> names;
    UniqueHKey opened = OpenSection(root, section, KEY_QUERY_VALUE);
    // The longest value name the registry allows, and its terminator.
    std::vector<wchar_t> name(16384);
    for (DWORD i = 0; opened; ++i) {
        DWORD length = DWORD(name.size());
        if (RegEnumValueW(opened.get(), i, name.data(), &length, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS)
            break;
        if (length) names.emplace_back(name.data(), length);
    }
    return names;
}

// Leading blanks, a sign, then decimal digits or 0x and hexadecimal digits;
// overflow wraps at 32 bits and anything else reads as 0, as the platform's
// integer reader does.
int ParseInt(const std::wstring& text)
{
    const wchar_t* p = SkipWhiteW(text.c_str());
    bool negative = *p == L'-';
    if (*p == L'-' || *p == L'+') ++p;
    uint32_t base = 10;
    if (p[0] == L'0' && (p[1] == L'x' || p[1] == L'X')) {
        base = 16;
        p += 2;
    }
    uint32_t value = 0;
    for (;; ++p) {
        uint32_t digit;
        if (*p >= L'0' && *p <= L'9') digit = uint32_t(*p - L'0');
        else if (base == 16 && *p >= L'a' && *p <= L'f') digit = uint32_t(*p - L'a' + 10);
        else if (base == 16 && *p >= L'A' && *p <= L'F') digit = uint32_t(*p - L'A' + 10);
        else break;
        value = value * base + digit;
    }
    return int(negative ? 0u - value : value);
}

bool Failed(LONG code)
{
    SetLastError(DWORD(code));
    return false;
}

bool DeleteSection(const wchar_t* root, const wchar_t* section)
{
    LONG code = RegDeleteKeyW(HKEY_CURRENT_USER, SectionPath(root, section).c_str());
    return code == ERROR_SUCCESS || code == ERROR_FILE_NOT_FOUND || Failed(code);
}

bool DeleteKey(const wchar_t* root, const wchar_t* section, const wchar_t* key)
{
    HKEY opened = nullptr;
    LONG code = RegOpenKeyExW(HKEY_CURRENT_USER, SectionPath(root, section).c_str(), 0, KEY_SET_VALUE, &opened);
    if (code == ERROR_FILE_NOT_FOUND) return true;
    if (code != ERROR_SUCCESS) return Failed(code);
    UniqueHKey owner(opened);
    code = RegDeleteValueW(opened, key);
    return code == ERROR_SUCCESS || code == ERROR_FILE_NOT_FOUND || Failed(code);
}

bool SetKey(const wchar_t* root, const wchar_t* section, const wchar_t* key, const wchar_t* text)
{
    HKEY created = nullptr;
    LONG code = RegCreateKeyExW(HKEY_CURRENT_USER, SectionPath(root, section).c_str(), 0, nullptr, 0, KEY_SET_VALUE,
                                nullptr, &created, nullptr);
    if (code != ERROR_SUCCESS) return Failed(code);
    UniqueHKey owner(created);
    DWORD bytes = DWORD((lstrlenW(text) + 1) * sizeof(wchar_t));
    code = RegSetValueExW(created, key, 0, REG_SZ, reinterpret_cast<const BYTE*>(text), bytes);
    return code == ERROR_SUCCESS || Failed(code);
}

bool Flush(const wchar_t* root)
{
    UniqueHKey opened = OpenSection(root, L"", KEY_QUERY_VALUE);
    if (!opened) return Failed(ERROR_FILE_NOT_FOUND);
    LONG code = RegFlushKey(opened.get());
    return code == ERROR_SUCCESS || Failed(code);
}

} // namespace

namespace RegistryProfile {

int ReadString(const wchar_t* root, const wchar_t* section, const wchar_t* key, const wchar_t* defaultText,
               wchar_t* buffer, int size)
{
    if (!section) return CopyNameList(SectionNames(root), buffer, size);
    if (!key) return CopyNameList(KeyNames(root, section), buffer, size);
    std::wstring value;
    if (!ReadValue(root, section, key, value)) {
        // The platform drops trailing blanks of a default too.
        value = defaultText ? defaultText : L"";
        value.resize(value.find_last_not_of(L" \t") + 1);
    }
    return CopyOut(value, buffer, size);
}

int ReadInt(const wchar_t* root, const wchar_t* section, const wchar_t* key, int defaultValue)
{
    std::wstring value;
    if (!section || !key || !ReadValue(root, section, key, value) || value.empty()) return defaultValue;
    return ParseInt(value);
}

bool WriteString(const wchar_t* root, const wchar_t* section, const wchar_t* key, const wchar_t* text)
{
    if (!section && !key && !text) return Flush(root);
    if (!section) return Failed(ERROR_INVALID_PARAMETER);
    if (!key) return DeleteSection(root, section);
    if (!text) return DeleteKey(root, section, key);
    return SetKey(root, section, key, text);
}

} // namespace RegistryProfile
