// set, let and xset: the commands that give variables their values, in the
// shell's environment or in the user's permanent environment.
#include "app/errors.h"
#include "app/globals.h"
#include "app/toolkit/handles.h"
#include "app/toolkit/omdib.h"
#include "lang/builtins.h"
#include "lang/command_args.h"
#include "lang/environment_list.h"
#include "lang/expr.h"
#include "lang/variables.h"
#include "screen/colours.h"
#include "screen/pager.h"
#include "screen/screen_store.h"

#include <algorithm>
#include <cwchar>
#include <memory>
#include <string>
#include <vector>

namespace {

// A name and the text behind the first "=" of the statement's free text.
struct Assignment {
    wchar_t Name[kValueMax];
    const wchar_t* Value = nullptr;
};

// tail := [blanks] name "=" value. The name keeps its blanks and goes through
// ResolveSubscripts; the value runs to the end of the statement. Message 32
// and false without "=".
bool ReadAssignment(Assignment& assignment)
{
    const wchar_t* text = SkipWhiteW(CommandArgs.Tail);
    const wchar_t* equals = text;
    while (*equals && *equals != L'=') ++equals;
    if (!*equals) {
        ReportId(32);
        return false;
    }
    int length = int(equals - text);
    CopyCutW(assignment.Name, text, (length < kValueMax - 1 ? length : kValueMax - 1) + 1);
    if (std::wcschr(assignment.Name, L'.')) {
        std::wstring name = assignment.Name;
        ResolveSubscripts(name.c_str(), assignment.Name, kValueMax);
    }
    assignment.Value = equals + 1;
    return true;
}

// One "name=value" line: the name in the name colour, from "=" on the value's.
void ShowVariable(const wchar_t* name, const wchar_t* value)
{
    UseItem(Item::EnvName);
    TheScreen.Write(name);
    UseItem(Item::EnvStr);
    TheScreen.Write(L"=");
    TheScreen.Write(value);
    TheScreen.NewLine();
}

void ListShellEnvironment()
{
    ListingPager pager;
    for (const EnvironmentEntry& entry : ListEnvironment()) {
        if (TheScreen.BreakFlag) return;
        ShowVariable(entry.Name.c_str(), entry.Value.c_str());
    }
}

// The permanent environment of the user: the values under this key.
constexpr const wchar_t* kUserEnvironment = L"Environment";

UniqueHKey OpenUserEnvironment(REGSAM access)
{
    HKEY key = nullptr;
    if (RegOpenKeyExW(HKEY_CURRENT_USER, kUserEnvironment, 0, access, &key) != ERROR_SUCCESS) return UniqueHKey();
    return UniqueHKey(key);
}

void ListUserEnvironment()
{
    UniqueHKey key = OpenUserEnvironment(KEY_QUERY_VALUE);
    if (!key) {
        ReportId(51);
        return;
    }
    DWORD longestName = 0, longestData = 0;
    RegQueryInfoKeyW(key.get(), nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, &longestName,
                     &longestData, nullptr, nullptr);
    std::vector<wchar_t> name(size_t(longestName) + 1);
    std::vector<wchar_t> data(size_t(longestData) / sizeof(wchar_t) + 1);
    for (DWORD index = 0; !TheScreen.BreakFlag; ++index) {
        DWORD nameSize = DWORD(name.size()), dataSize = DWORD(data.size() * sizeof(wchar_t)), type = 0;
        LONG status = RegEnumValueW(key.get(), index, name.data(), &nameSize, nullptr, &type,
                                    reinterpret_cast<BYTE*>(data.data()), &dataSize);
        if (status != ERROR_SUCCESS) break;
        if (type != REG_SZ || name[0] == L'=') continue;
        data[std::min(size_t(dataSize / sizeof(wchar_t)), data.size() - 1)] = 0;
        ShowVariable(name.data(), data.data());
    }
}

// Tells every top-level window that the environment changed. A window that
// does not answer is given up on, so a hung program cannot hang the shell.
void AnnounceEnvironmentChange()
{
    DWORD_PTR answer = 0;
    SendMessageTimeoutW(HWND_BROADCAST, WM_SETTINGCHANGE, 0, reinterpret_cast<LPARAM>(kUserEnvironment),
                        SMTO_ABORTIFHUNG, 5000, &answer);
}

void SetUserVariable(const wchar_t* name, const wchar_t* value)
{
    UniqueHKey key = OpenUserEnvironment(KEY_SET_VALUE);
    if (!key) {
        ReportId(51);
        return;
    }
    LONG status;
    if (*value) {
        DWORD bytes = DWORD((lstrlenW(value) + 1) * sizeof(wchar_t));
        status = RegSetValueExW(key.get(), name, 0, REG_SZ, reinterpret_cast<const BYTE*>(value), bytes);
    } else {
        status = RegDeleteValueW(key.get(), name);
        if (status == ERROR_FILE_NOT_FOUND) status = ERROR_SUCCESS;
    }
    if (status != ERROR_SUCCESS) {
        ReportId(51);
        return;
    }
    AnnounceEnvironmentChange();
}

} // namespace

void CmdSet()
{
    if (CommandArgs.ArgCount == 0) {
        if (RejectSwitches()) return;
        ListShellEnvironment();
        return;
    }
    Assignment assignment;
    if (ReadAssignment(assignment)) SetVariable(assignment.Name, assignment.Value);
}

void CmdLet()
{
    if (CommandArgs.ArgCount == 0) {
        ReportId(1);
        return;
    }
    Assignment assignment;
    if (!ReadAssignment(assignment)) return;
    int error = 0;
    ExprValue result;
    if (!EvaluateExpression(error, assignment.Value, result)) {
        ReportExpressionError(error);
        return;
    }
    if (result.Type == 1) {
        ReportId(50);
        return;
    }
    wchar_t number[64];
    FormatExprValue(result, number, 64);
    SetVariable(assignment.Name, number);
}

void CmdXset()
{
    if (OsFlags.IsWin32s) {
        ReportId(64);
        return;
    }
    if (CommandArgs.ArgCount == 0) {
        ListUserEnvironment();
        return;
    }
    Assignment assignment;
    if (ReadAssignment(assignment)) SetUserVariable(assignment.Name, assignment.Value);
}
