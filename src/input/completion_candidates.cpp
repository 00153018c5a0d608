// Where completion candidates come from: directory entries, built-in
// command names, programs on PATH and registered applications.
#include "input/completion.h"

#include "app/profile/settings_table.h"
#include "app/toolkit/omdib.h"
#include "files/file_walker.h"
#include "lang/dispatch.h"
#include "lang/environment_index.h"

#include <algorithm>
#include <cwchar>
#include <vector>

namespace {

std::wstring UpperKey(const std::wstring& name)
{
    std::wstring key = name;
    for (wchar_t& unit : key) unit = ToUpperUnit(unit);
    return key;
}

bool StartsWithI(const wchar_t* text, const wchar_t* prefix)
{
    for (; *prefix; ++text, ++prefix)
        if (ToUpperUnit(*text) != ToUpperUnit(*prefix)) return false;
    return true;
}

int Group(DWORD attributes)
{
    if (attributes == kCommandMark) return 0;
    return (attributes & FILE_ATTRIBUTE_DIRECTORY) ? 1 : 2;
}

// Applications registered under App Paths whose key begins with the pattern,
// names a program (.EXE) and has a path as its default value.
void AddRegisteredApplications(CandidateList& list, const wchar_t* pattern)
{
    HKEY paths;
    if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, L"Software\\Microsoft\\Windows\\CurrentVersion\\App Paths", 0,
                      KEY_READ, &paths) != ERROR_SUCCESS)
        return;
    wchar_t name[kPathMax];
    for (DWORD i = 0;; ++i) {
        DWORD length = kPathMax;
        if (RegEnumKeyExW(paths, i, name, &length, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS) break;
        if (!StartsWithI(name, pattern) || !lstrstriW(name, L".EXE")) continue;
        wchar_t target[kPathMax];
        LONG bytes = sizeof target;
        if (RegQueryValueW(paths, name, target, &bytes) == ERROR_SUCCESS && target[0]) list.AddCommand(name);
    }
    RegCloseKey(paths);
}

} // namespace

TabSettings::TabSettings()
    : ShortTabs(SettingInt(L"Ombrel", L"ShortTabs")), AutoDir(SettingInt(L"Ombrel", L"AutoDir")),
      MapTabs(SettingInt(L"Ombrel", L"MapTabs")), IncHidden(SettingInt(L"Ombrel", L"IncHidden"))
{
}

void CandidateList::Clear()
{
    text_.clear();
    entries_.clear();
    commandKeys_.clear();
    Longest = 0;
}

void CandidateList::Add(std::wstring_view name, DWORD attributes)
{
    entries_.push_back({uint32_t(text_.size()), uint32_t(name.size()), attributes});
    text_.insert(text_.end(), name.begin(), name.end());
    text_.push_back(0);
    for (wchar_t unit : name) text_.push_back(ToUpperUnit(unit));
    text_.push_back(0);
    Longest = std::max(Longest, int(name.size()));
}

void CandidateList::AddCommand(const wchar_t* name)
{
    std::wstring shown = name;
    shown = shown.substr(0, shown.find(L'.'));
    if (!commandKeys_.insert(UpperKey(shown)).second) return;
    Add(shown, kCommandMark);
}

void CandidateList::Sort()
{
    const wchar_t* text = text_.data();
    auto precedes = [text](const Entry& a, const Entry& b) {
        int groupA = Group(a.Attributes), groupB = Group(b.Attributes);
        if (groupA != groupB) return groupA < groupB;
        return std::wcscmp(text + a.Offset + a.Length + 1, text + b.Offset + b.Length + 1) < 0;
    };
    // Stable, so that names of the same key keep the order they came in.
    std::stable_sort(entries_.begin(), entries_.end(), precedes);
}

void CandidateList::AddCommands(const wchar_t* pattern, bool firstColumn)
{
    for (const wchar_t* name : OfferedHelpNames())
        if (StartsWithI(name, pattern)) AddCommand(name);
    AddPathPrograms(pattern);
    if (firstColumn) AddRegisteredApplications(*this, pattern);
}

void CandidateList::AddFiles(const wchar_t* pattern, DWORD mask)
{
    TheWalker.VisitFiles(pattern, mask, [this](const FileEntry& entry) {
        if (!IsDotName(entry.cFileName)) Add(entry.cFileName, entry.dwFileAttributes);
    });
}

void CandidateList::AddPathPrograms(const wchar_t* pattern)
{
    const std::wstring* path = FindEnvironment(L"PATH");
    if (!path || path->size() >= size_t(kLineMax)) return;
    TheWalker.count = 0;
    for (const wchar_t* start = path->c_str(); *start;) {
        const wchar_t* end = start;
        while (*end && *end != L';') ++end;
        std::wstring directory(start, size_t(end - start));
        start = *end ? end + 1 : end;
        if (!directory.empty() && directory.back() == L'\\') directory.pop_back();
        if (directory.empty()) continue;
        for (const wchar_t* extension : {L"*.EXC", L"*.COM", L"*.EXE", L"*.CMD", L"*.BAT", L"*.WBT"})
            TheWalker.WalkBaseNames((directory + L"\\" + pattern + extension).c_str());
    }
    for (int i = 0; i < TheWalker.count; ++i) AddCommand(TheWalker.entries[i]->cFileName);
}
