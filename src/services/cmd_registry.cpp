// getreg, setreg and enumreg: values and subkeys of a registry key, read
// into a variable named after the command, or written.
#include "app/errors.h"
#include "app/toolkit/handles.h"
#include "app/toolkit/omdib.h"
#include "lang/builtins.h"
#include "lang/command_args.h"
#include "services/registry_command.h"
#include "services/result_list.h"

#include <cstring>
#include <cwchar>
#include <vector>

namespace {

constexpr DWORD kValueBytesMax = 8192;

UniqueHKey OpenKey(const RegistryPath& path, REGSAM access)
{
    HKEY key = nullptr;
    if (RegOpenKeyExW(path.Root, path.SubKey.c_str(), 0, access, &key) != ERROR_SUCCESS) return UniqueHKey();
    return UniqueHKey(key);
}

// The value as text; a message and false when it cannot be shown.
bool ValueText(HKEY key, const wchar_t* name, std::wstring& text)
{
    DWORD type = 0, bytes = 0;
    if (RegQueryValueExW(key, name, nullptr, &type, nullptr, &bytes) != ERROR_SUCCESS) {
        ReportId(60);
        return false;
    }
    if (bytes > kValueBytesMax) {
        ReportId(62);
        return false;
    }
    std::vector<BYTE> data(size_t(bytes) + 2 * sizeof(wchar_t), 0);
    if (RegQueryValueExW(key, name, nullptr, &type, data.data(), &bytes) != ERROR_SUCCESS) {
        ReportId(60);
        return false;
    }
    const auto* units = reinterpret_cast<const wchar_t*>(data.data());
    size_t count = bytes / sizeof(wchar_t);
    DWORD number = 0;
    std::memcpy(&number, data.data(), sizeof number);
    switch (type) {
    case REG_SZ:
    case REG_EXPAND_SZ: text.assign(units, wcsnlen(units, count)); return true;
    case REG_DWORD: text = std::to_wstring(number); return true;
    case REG_DWORD_BIG_ENDIAN: text = std::to_wstring(SwapBytes(number)); return true;
    case REG_MULTI_SZ: {
        text.clear();
        for (size_t i = 0; i < count && units[i];) {
            size_t length = wcsnlen(units + i, count - i);
            if (!text.empty()) text += L',';
            text.append(units + i, length);
            i += length + 1;
        }
        return true;
    }
    default: ReportId(61); return false;
    }
}

DWORD TypeByName(const wchar_t* word)
{
    if (lstrcmpiW(word, L"REG_EXPAND_SZ") == 0) return REG_EXPAND_SZ;
    if (lstrcmpiW(word, L"REG_DWORD") == 0 || lstrcmpiW(word, L"REG_DWORD_LITTLE_ENDIAN") == 0) return REG_DWORD;
    if (lstrcmpiW(word, L"REG_DWORD_BIG_ENDIAN") == 0) return REG_DWORD_BIG_ENDIAN;
    return REG_SZ;
}

// A number as strtoul reads it with base 0: hexadecimal behind 0x, octal
// behind 0, a minus sign wrapping round.
DWORD NumberData(const std::wstring& data) { return DWORD(std::wcstoul(data.c_str(), nullptr, 0)); }

void WriteValue(const RegistryCommand& command, const RegistryPath& path, const std::wstring& name,
                const std::wstring& data, DWORD type)
{
    HKEY created = nullptr;
    if (RegCreateKeyExW(path.Root, path.SubKey.c_str(), 0, nullptr, 0, command.viewFlag | KEY_WRITE, nullptr,
                        &created, nullptr) != ERROR_SUCCESS) {
        ReportId(60);
        return;
    }
    UniqueHKey key(created);
    if (data.empty()) {
        if (RegDeleteValueW(key.get(), name.c_str()) != ERROR_SUCCESS) ReportId(63);
        return;
    }
    LONG result;
    if (type == REG_DWORD || type == REG_DWORD_BIG_ENDIAN) {
        DWORD number = NumberData(data);
        if (type == REG_DWORD_BIG_ENDIAN) number = SwapBytes(number);
        result = RegSetValueExW(key.get(), name.c_str(), 0, type, reinterpret_cast<const BYTE*>(&number),
                                sizeof number);
    } else {
        result = RegSetValueExW(key.get(), name.c_str(), 0, type, reinterpret_cast<const BYTE*>(data.c_str()),
                                DWORD((data.size() + 1) * sizeof(wchar_t)));
    }
    if (result != ERROR_SUCCESS) ReportId(51);
}

// The key the first argument names, opened for reading; null after a
// message for a wrong switch, count or key.
UniqueHKey OpenArgumentKey(RegistryCommand& command, int mostArguments)
{
    if (!command.ReadSwitches()) return UniqueHKey();
    if (CommandArgs.ArgCount < 1 || CommandArgs.ArgCount > mostArguments) {
        ReportId(1);
        return UniqueHKey();
    }
    RegistryPath path;
    if (!command.SplitPath(CommandArgs.Args[0], path)) return UniqueHKey();
    UniqueHKey key = OpenKey(path, command.viewFlag | KEY_READ);
    if (!key) ReportId(60);
    return key;
}

} // namespace

void CmdGetreg()
{
    RegistryCommand command;
    UniqueHKey key = OpenArgumentKey(command, 2);
    if (!key) return;
    if (CommandArgs.ArgCount == 2) {
        std::wstring text;
        if (ValueText(key.get(), CommandArgs.Args[1], text)) SetResultVariable(L"GETREG", text);
        return;
    }
    NameList names;
    std::vector<wchar_t> name(16384);
    for (DWORD i = 0;; ++i) {
        DWORD length = DWORD(name.size());
        if (RegEnumValueW(key.get(), i, name.data(), &length, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS)
            break;
        if (name[0]) names.Add(name.data());
    }
    SetResultVariable(L"GETREG", names.Text());
}

void CmdEnumreg()
{
    RegistryCommand command;
    UniqueHKey key = OpenArgumentKey(command, 1);
    if (!key) return;
    NameList names;
    wchar_t name[256];
    for (DWORD i = 0;; ++i) {
        DWORD length = 256;
        if (RegEnumKeyExW(key.get(), i, name, &length, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS) break;
        names.Add(name);
    }
    SetResultVariable(L"ENUMREG", names.Text());
}

void CmdSetreg()
{
    RegistryCommand command;
    if (!command.ReadSwitches()) return;
    if (CommandArgs.ArgCount < 1 || CommandArgs.ArgCount > 3) {
        ReportId(1);
        return;
    }
    RegistryPath path;
    if (!command.SplitPath(CommandArgs.Args[0], path)) return;
    if (CommandArgs.ArgCount == 1) {
        if (!command.DeleteKey(path)) ReportId(63);
        return;
    }
    std::wstring entry = CommandArgs.Args[1];
    size_t equals = entry.find(L'=');
    std::wstring name = entry.substr(0, equals);
    std::wstring data = equals == std::wstring::npos ? std::wstring() : entry.substr(equals + 1);
    DWORD type = CommandArgs.ArgCount == 3 ? TypeByName(CommandArgs.Args[2]) : REG_SZ;
    WriteValue(command, path, name, data, type);
}
