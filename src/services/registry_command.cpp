#include "services/registry_command.h"

#include "app/errors.h"
#include "lang/command_args.h"

#include <cwchar>

const RegistryRoot kRegistryRoots[4] = {
    {L"HKEY_CLASSES_ROOT", HKEY_CLASSES_ROOT},
    {L"HKEY_CURRENT_USER", HKEY_CURRENT_USER},
    {L"HKEY_LOCAL_MACHINE", HKEY_LOCAL_MACHINE},
    {L"HKEY_USERS", HKEY_USERS},
};

namespace {

bool RunsOn64BitSystem()
{
    if (sizeof(void*) == 8) return true;
    BOOL wow64 = FALSE;
    return IsWow64Process(GetCurrentProcess(), &wow64) && wow64;
}

} // namespace

RegistryCommand::RegistryCommand() : system64_(RunsOn64BitSystem())
{
    if (!system64_) return;
    advapi_ = LoadLibraryW(L"ADVAPI32.dll");
    if (advapi_)
        deleteKeyEx_ = reinterpret_cast<DeleteKeyExFn>(
            reinterpret_cast<void*>(GetProcAddress(advapi_, "RegDeleteKeyExW")));
}

RegistryCommand::~RegistryCommand()
{
    if (advapi_) FreeLibrary(advapi_);
}

bool RegistryCommand::ReadSwitches()
{
    for (const wchar_t* s = CommandArgs.Switches; *s; s += 2) {
        bool known = (s[0] == L'3' && s[1] == L'2') || (s[0] == L'6' && s[1] == L'4');
        if (!known) {
            ReportId(2);
            return false;
        }
        if (s[0] == L'6' && system64_) viewFlag = KEY_WOW64_64KEY;
    }
    return true;
}

HKEY RegistryCommand::RootByName(const wchar_t* name)
{
    for (const RegistryRoot& root : kRegistryRoots)
        if (lstrcmpiW(root.Name, name) == 0) return root.Key;
    return nullptr;
}

bool RegistryCommand::SplitPath(const wchar_t* text, RegistryPath& path) const
{
    std::wstring whole = text;
    for (wchar_t& unit : whole)
        if (unit == L'/') unit = L'\\';
    size_t slash = whole.find(L'\\');
    HKEY root = slash == std::wstring::npos ? nullptr : RootByName(whole.substr(0, slash).c_str());
    if (!root) {
        ReportId(60);
        return false;
    }
    path.Root = root;
    path.RootName = whole.substr(0, slash);
    path.SubKey = whole.substr(slash + 1);
    return true;
}

bool RegistryCommand::DeleteKey(const RegistryPath& path) const
{
    if (!system64_) return RegDeleteKeyW(path.Root, path.SubKey.c_str()) == ERROR_SUCCESS;
    // Without the call for a view there is nothing safe to do.
    if (!deleteKeyEx_) return true;
    return deleteKeyEx_(path.Root, path.SubKey.c_str(), viewFlag, 0) == ERROR_SUCCESS;
}
