// findreg: searches the names and data of registry values for a text and
// prints every match under its key, the text shown in bold.
#include "app/errors.h"
#include "app/globals.h"
#include "app/host.h"
#include "app/toolkit/handles.h"
#include "app/toolkit/omdib.h"
#include "lang/builtins.h"
#include "lang/command_args.h"
#include "screen/colours.h"
#include "screen/screen_store.h"
#include "services/registry_command.h"

#include <cstring>
#include <cwchar>
#include <string>
#include <vector>

namespace {

constexpr int kNameMax = 512;

// Collects the keys below root, depth first, into the command's list.
void CollectKeys(RegistryCommand& command, const RegistryRoot& root, const std::wstring& path)
{
    TheScreen.PollBreak();
    HKEY opened = nullptr;
    HKEY parent = root.Key;
    if (!path.empty()) {
        if (RegOpenKeyExW(root.Key, path.c_str(), 0, command.viewFlag | KEY_ENUMERATE_SUB_KEYS, &opened) !=
            ERROR_SUCCESS)
            return;
        parent = opened;
    }
    UniqueHKey key(opened);
    wchar_t name[kNameMax];
    for (DWORD i = 0; !TheScreen.BreakFlag; ++i) {
        DWORD length = kNameMax;
        if (RegEnumKeyExW(parent, i, name, &length, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS) break;
        std::wstring child = path.empty() ? std::wstring(name) : path + L"\\" + name;
        if (child.size() >= size_t(kNameMax)) continue;
        command.keyList.push_back({root.Key, root.Name, child});
        CollectKeys(command, root, child);
        TheScreen.PollBreak();
    }
}

// The text of one value as name=data; false for the types not searched.
bool EntryText(const wchar_t* name, DWORD type, const std::vector<BYTE>& data, DWORD bytes, std::wstring& text)
{
    text = name;
    text += L'=';
    if (type == REG_SZ || type == REG_EXPAND_SZ) {
        const auto* units = reinterpret_cast<const wchar_t*>(data.data());
        text.append(units, wcsnlen(units, bytes / sizeof(wchar_t)));
        return true;
    }
    if ((type == REG_DWORD || type == REG_DWORD_BIG_ENDIAN) && bytes >= sizeof(DWORD)) {
        DWORD number;
        std::memcpy(&number, data.data(), sizeof number);
        if (type == REG_DWORD_BIG_ENDIAN) number = SwapBytes(number);
        text += std::to_wstring(number);
        return true;
    }
    return false;
}

// The text with each occurrence of the search text in bold.
void PrintMatch(const std::wstring& text, const std::wstring& search)
{
    size_t from = 0;
    while (from < text.size()) {
        const wchar_t* hit = lstrstriW(text.c_str() + from, search.c_str());
        size_t at = hit ? size_t(hit - text.c_str()) : text.size();
        UseItem(Item::Text);
        TheScreen.Write(text.substr(from, at - from).c_str());
        if (!hit) break;
        UseItem(Item::BoldText);
        TheScreen.Write(text.substr(at, search.size()).c_str());
        from = at + search.size();
    }
    TheScreen.NewLine();
}

void SearchKey(RegistryCommand& command, const RegistryPath& path, const std::wstring& search)
{
    TheScreen.PollBreak();
    HKEY opened = nullptr;
    if (RegOpenKeyExW(path.Root, path.SubKey.c_str(), 0, command.viewFlag | KEY_QUERY_VALUE, &opened) !=
        ERROR_SUCCESS)
        return;
    UniqueHKey key(opened);
    int matches = 0;
    wchar_t name[kNameMax];
    std::vector<BYTE> data(4096);
    for (DWORD i = 0; !TheScreen.BreakFlag; ++i) {
        DWORD length = kNameMax, type = 0, bytes = DWORD(data.size());
        LONG result = RegEnumValueW(key.get(), i, name, &length, nullptr, &type, data.data(), &bytes);
        if (result == ERROR_MORE_DATA) {
            // A long value gets a buffer of its own size, once.
            data.resize(size_t(bytes) + sizeof(wchar_t));
            length = kNameMax;
            bytes = DWORD(data.size());
            result = RegEnumValueW(key.get(), i, name, &length, nullptr, &type, data.data(), &bytes);
        }
        if (result != ERROR_SUCCESS) break;
        std::wstring text;
        if (!EntryText(name, type, data, bytes, text) || !lstrstriW(text.c_str(), search.c_str())) continue;
        if (matches++ == 0) {
            TheScreen.NewLine();
            UseItem(Item::FileName);
            TheScreen.Write((path.RootName + L"\\" + path.SubKey).c_str());
            TheScreen.NewLine();
        }
        UseItem(Item::Number);
        TheScreen.FieldWidth = 5;
        TheScreen.WriteInt(matches);
        UseItem(Item::Text);
        TheScreen.Write(L" ");
        PrintMatch(text, search);
        TheScreen.PollBreak();
    }
    command.matchCount += matches;
}

} // namespace

void CmdFindreg()
{
    RegistryCommand command;
    if (!command.ReadSwitches()) return;
    if (OsFlags.IsWin32s) {
        ReportId(64);
        return;
    }
    if (CommandArgs.ArgCount < 1 || CommandArgs.ArgCount > 2) {
        ReportId(1);
        return;
    }
    std::wstring search = CommandArgs.Args[CommandArgs.ArgCount - 1];
    if (search.empty()) {
        ReportId(9);
        return;
    }
    HKEY only = nullptr;
    if (CommandArgs.ArgCount == 2 && !(only = RegistryCommand::RootByName(CommandArgs.Args[0]))) {
        ReportId(60);
        return;
    }
    TheScreen.BreakFlag = 0;
    for (const RegistryRoot& root : kRegistryRoots)
        if (!only || root.Key == only) CollectKeys(command, root, L"");

    TheScreen.Paging = TheScreen.PageEnabled;
    TheScreen.PageLines = 0;
    TheScreen.BreakFlag = 0;
    UseItem(Item::HighText);
    TheScreen.Write(L"Searching Registry for ");
    UseItem(Item::BoldText);
    TheScreen.Write((L"\"" + search + L"\"").c_str());
    TheScreen.NewLine();
    for (const RegistryPath& path : command.keyList) {
        if (TheScreen.BreakFlag) break;
        SearchKey(command, path, search);
    }
    // A break still gets its summary.
    TheScreen.BreakFlag = 0;
    TheScreen.NewLine();
    if (command.matchCount == 0) {
        UseItem(Item::HighText);
        TheScreen.Write(L"    No matches");
    } else {
        UseItem(Item::Number);
        TheScreen.FieldWidth = 5;
        TheScreen.WriteInt(command.matchCount);
        UseItem(Item::HighText);
        TheScreen.Write(L" match(es) found");
    }
    TheScreen.NewLine();
    TheScreen.Paging = 0;
    Host->Refresh();
}
