#include "exec/associations.h"

#include "app/toolkit/handles.h"
#include "app/toolkit/omdib.h"
#include "lang/command_args.h"
#include "lang/environment_index.h"

#include <windows.h>

#include <string>

namespace {

// The default value (or the named one) of a key under HKEY_CLASSES_ROOT.
std::wstring ClassesValue(const std::wstring& key, const wchar_t* name = nullptr)
{
    HKEY raw = nullptr;
    if (RegOpenKeyExW(HKEY_CLASSES_ROOT, key.c_str(), 0, KEY_QUERY_VALUE, &raw) != ERROR_SUCCESS) return {};
    UniqueHKey opened(raw);
    wchar_t value[kLineMax] = {};
    DWORD size = sizeof(value) - sizeof(wchar_t), type = 0;
    if (RegQueryValueExW(opened.get(), name, nullptr, &type, reinterpret_cast<BYTE*>(value), &size) != ERROR_SUCCESS ||
        (type != REG_SZ && type != REG_EXPAND_SZ))
        return {};
    return value;
}

std::wstring OpenCommandFor(const wchar_t* extension)
{
    std::wstring type = ClassesValue(extension);
    std::wstring command;
    if (!type.empty()) command = ClassesValue(type + L"\\shell\\open\\command");
    else {
        std::wstring perceived = ClassesValue(extension, L"PerceivedType");
        if (!perceived.empty())
            command = ClassesValue(L"SystemFileAssociations\\" + perceived + L"\\shell\\open\\command");
    }
    if (command.empty()) return {};
    wchar_t expanded[kLineMax];
    SyncEnvironment();
    DWORD n = ExpandEnvironmentStringsW(command.c_str(), expanded, kLineMax);
    return (n == 0 || n > DWORD(kLineMax)) ? command : std::wstring(expanded);
}

std::wstring FullPathOr(const wchar_t* word)
{
    wchar_t full[kPathMax];
    DWORD n = GetFullPathNameW(word, kPathMax, full, nullptr);
    return (n == 0 || n >= kPathMax) ? std::wstring(word) : std::wstring(full);
}

// The open command with the file put in: at "%1" (or "%L"), else its path
// without extension at "^", else behind a blank at the end.
std::wstring InsertFile(std::wstring command, const wchar_t* word)
{
    size_t mark = command.find(L"%L");
    if (mark == std::wstring::npos) mark = command.find(L"%l");
    if (mark != std::wstring::npos) command[mark + 1] = L'1';
    mark = command.find(L"%1");
    if (mark != std::wstring::npos) return command.substr(0, mark) + FullPathOr(word) + command.substr(mark + 2);
    mark = command.find(L'^');
    if (mark != std::wstring::npos) {
        std::wstring path = FullPathOr(word);
        size_t dot = path.find_last_of(L'.');
        size_t slash = path.find_last_of(L'\\');
        if (dot != std::wstring::npos && (slash == std::wstring::npos || dot > slash)) path.resize(dot);
        return command.substr(0, mark) + path + command.substr(mark + 1);
    }
    return command + L" " + FullPathOr(word);
}

} // namespace

std::unique_ptr<wchar_t[]> ApplyAssociation()
{
    wchar_t drive[kPathMax], directory[kPathMax], name[kPathMax], extension[kPathMax];
    FNSplitW(CommandArgs.Command, drive, directory, name, extension);
    if (!extension[0] || !extension[1]) return nullptr;
    std::wstring command = OpenCommandFor(extension);
    if (command.empty()) return nullptr;
    auto stage = std::make_unique<wchar_t[]>(kLineMax);
    CopyCutW(stage.get(), InsertFile(command, CommandArgs.Command).c_str(), kLineMax);
    CommandArgs.Parse(stage.get());
    return stage;
}
