#include "exec/program_search.h"

#include "app/errors.h"
#include "app/profile/profile.h"
#include "app/toolkit/handles.h"
#include "app/toolkit/omdib.h"
#include "lang/command_args.h"
#include "lang/environment_index.h"

#include <windows.h>

#include <memory>

const wchar_t* const ProgramSuffixes[8] = {L".EXC", L".LNK", L".PIF", L".COM", L".EXE", L".CMD", L".BAT", L".WBT"};

namespace {

bool IsFile(const wchar_t* path)
{
    DWORD attributes = GetFileAttributesW(path);
    return attributes != INVALID_FILE_ATTRIBUTES && !(attributes & FILE_ATTRIBUTE_DIRECTORY);
}

bool HasDotInName(const wchar_t* path) { return *ExtensionOf(path) != 0; }

// A path with a dot in its last part must exist as it is; otherwise the
// suffixes are tried in order and the first file that exists wins.
std::wstring TrySuffixes(const std::wstring& path)
{
    if (path.empty() || path.size() >= size_t(kPathMax)) return {};
    if (HasDotInName(path.c_str())) return IsFile(path.c_str()) ? path : std::wstring();
    for (const wchar_t* suffix : ProgramSuffixes) {
        std::wstring candidate = path + suffix;
        if (candidate.size() < size_t(kPathMax) && IsFile(candidate.c_str())) return candidate;
    }
    return {};
}

std::wstring FullPathOf(const wchar_t* word)
{
    wchar_t full[kPathMax];
    DWORD n = GetFullPathNameW(word, kPathMax, full, nullptr);
    return (n == 0 || n >= kPathMax) ? std::wstring() : std::wstring(full);
}

std::wstring EnvironmentValue(const wchar_t* name)
{
    const std::wstring* value = FindEnvironment(name);
    return (!value || value->size() >= size_t(kLineMax) - 1) ? std::wstring() : *value;
}

// Each piece of PATH up to the next ";" is a folder, taken as it stands (an
// empty piece in the middle names the root of the current drive); quotes
// around a folder are the user's way of writing one with a ";" in it.
std::wstring SearchPathFolders(const std::wstring& fileName)
{
    std::wstring path = EnvironmentValue(L"PATH");
    size_t start = 0;
    while (start < path.size()) {
        size_t end = start;
        bool quoted = false;
        while (end < path.size() && (quoted || path[end] != L';')) {
            if (path[end] == L'"') quoted = !quoted;
            ++end;
        }
        std::wstring folder;
        for (size_t i = start; i < end; ++i)
            if (path[i] != L'"') folder += path[i];
        if (folder.empty() || (folder.back() != L'\\' && folder.back() != L'/')) folder += L'\\';
        std::wstring found = TrySuffixes(folder + fileName);
        if (!found.empty()) return found;
        start = end + 1;
    }
    return {};
}

// The App Paths key names programs that are in no PATH folder.
std::wstring SearchAppPaths(const wchar_t* word)
{
    std::wstring name = word;
    const wchar_t* extension = ExtensionOf(word);
    if (!*extension) name += L".EXE";
    else if (extension[1] == 0) name = name.substr(0, name.size() - 1) + L".EXE";
    else return {};
    std::wstring key = L"Software\\Microsoft\\Windows\\CurrentVersion\\App Paths\\" + name;
    HKEY raw = nullptr;
    if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, key.c_str(), 0, KEY_QUERY_VALUE, &raw) != ERROR_SUCCESS) return {};
    UniqueHKey opened(raw);
    wchar_t value[kPathMax / 2 + 1] = {};
    DWORD size = kPathMax, type = 0;
    if (RegQueryValueExW(opened.get(), nullptr, nullptr, &type, reinterpret_cast<BYTE*>(value), &size) !=
            ERROR_SUCCESS ||
        (type != REG_SZ && type != REG_EXPAND_SZ))
        return {};
    value[kPathMax / 2] = 0;
    std::wstring text = value;
    if (text.size() >= 2 && text.front() == L'"' && text.back() == L'"') text = text.substr(1, text.size() - 2);
    wchar_t expanded[kPathMax];
    SyncEnvironment();
    DWORD n = ExpandEnvironmentStringsW(text.c_str(), expanded, kPathMax);
    if (n == 0 || n > DWORD(kPathMax)) return {};
    const wchar_t* slash = wcsrchr(expanded, L'\\');
    if (!slash || !wcschr(slash, L'.')) return {};
    return expanded;
}

std::wstring SearchProper(const wchar_t* word)
{
    if (!*word || lstrlenW(word) >= kPathMax) return {};
    std::wstring found = TrySuffixes(FullPathOf(word));
    if (!found.empty()) return found;
    wchar_t drive[kPathMax], directory[kPathMax], name[kPathMax], extension[kPathMax];
    FNSplitW(word, drive, directory, name, extension);
    if (directory[0] == 0 && name[0]) found = SearchPathFolders(std::wstring(name) + extension);
    if (found.empty() && drive[0] == 0 && directory[0] == 0) found = SearchAppPaths(word);
    return found;
}

using RedirectionSwitch = BOOL(WINAPI*)(PVOID*);

// A 32-bit shell on a 64-bit system sees System32 through the redirection;
// only there is the search beneath it worth doing. A 64-bit shell has no
// redirection to switch off, and the call fails by design.
bool AskWow64()
{
    using Query = BOOL(WINAPI*)(HANDLE, PBOOL);
    auto query = reinterpret_cast<Query>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"KERNEL32.DLL"), "IsWow64Process")));
    BOOL wow64 = FALSE;
    return query && query(GetCurrentProcess(), &wow64) && wow64;
}

// Asked once: a process never changes its kind.
bool RunsUnderWow64()
{
    static const bool wow64 = AskWow64();
    return wow64;
}

// A GUI program found in System32 beneath the redirection starts through
// Sysnative, the one name under which a 32-bit process reaches it.
std::wstring ThroughSysnative(const std::wstring& found)
{
    std::wstring windows = EnvironmentValue(L"windir");
    if (windows.empty()) return found;
    std::wstring system = windows + L"\\System32\\";
    if (found.size() < system.size() || CompareStringOrdinal(found.c_str(), int(system.size()), system.c_str(),
                                                             int(system.size()), TRUE) != CSTR_EQUAL)
        return found;
    return windows + L"\\Sysnative\\" + found.substr(system.size());
}

std::wstring SearchBeneathRedirection(const wchar_t* word)
{
    // The setting is read only where it can matter, so a search costs no
    // settings read in a 64-bit shell.
    if (!RunsUnderWow64() || !ProfileReadInt(L"Ombrel", L"WOW64", 1)) return {};
    HMODULE kernel = GetModuleHandleW(L"KERNEL32.DLL");
    auto disable = reinterpret_cast<RedirectionSwitch>(
        reinterpret_cast<void*>(GetProcAddress(kernel, "Wow64DisableWow64FsRedirection")));
    auto revert = reinterpret_cast<RedirectionSwitch>(
        reinterpret_cast<void*>(GetProcAddress(kernel, "Wow64RevertWow64FsRedirection")));
    if (!disable || !revert) return {};
    PVOID old = nullptr;
    if (!disable(&old)) {
        ReportId(110);
        return {};
    }
    std::wstring found = SearchProper(word);
    int kind = found.empty() ? -1 : ExecutableKind(found.c_str());
    if (!revert(&old)) ReportId(109);
    return kind == 0 ? ThroughSysnative(found) : std::wstring();
}

} // namespace

const wchar_t* ExtensionOf(const wchar_t* path)
{
    const wchar_t* dot = nullptr;
    for (const wchar_t* p = path; *p; ++p) {
        if (*p == L'\\' || *p == L'/' || *p == L':') dot = nullptr;
        else if (*p == L'.') dot = p;
    }
    return dot ? dot : L"";
}

bool IsProgramSuffix(const wchar_t* extension)
{
    for (const wchar_t* suffix : ProgramSuffixes)
        if (lstrcmpiW(extension, suffix) == 0) return true;
    return false;
}

bool IsBatchSuffix(const wchar_t* extension)
{
    return lstrcmpiW(extension, L".CMD") == 0 || lstrcmpiW(extension, L".BAT") == 0 ||
           lstrcmpiW(extension, L".WBT") == 0;
}

std::wstring FindProgramFor(const wchar_t* word)
{
    std::wstring found = SearchBeneathRedirection(word);
    if (!found.empty()) return found;
    return SearchProper(word);
}

std::wstring FindProgram(int argument)
{
    if (argument == 0) return FindProgramFor(CommandArgs.Command);
    return CommandArgs.ArgCount > 0 ? FindProgramFor(CommandArgs.Args[0]) : std::wstring();
}

std::wstring FindBatchProgram(const wchar_t* word)
{
    std::wstring found = FindProgramFor(word);
    return (!found.empty() && IsBatchSuffix(ExtensionOf(found.c_str()))) ? found : std::wstring();
}
