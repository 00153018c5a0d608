#include "files/dir_tree.h"

#include "app/toolkit/handles.h"
#include "app/toolkit/omdib.h"
#include "files/file_walker.h"
#include "files/long_path.h"
#include "screen/screen_store.h"

#include <windows.h>

#include <algorithm>
#include <new>

namespace {

bool Enterable(const FileEntry& e)
{
    return (e.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) && !(e.dwFileAttributes & kReparseBit) &&
           !IsDotName(e.cFileName);
}

// working ends in "\*.*"; adds each enterable subdirectory and recurses into
// it. False on a break.
bool AddSubdirectories(DirTreeList& list, std::wstring& working)
{
    TheScreen.PollBreak();
    if (TheScreen.BreakFlag) return false;
    std::wstring holder;
    FileEntry found;
    UniqueFindHandle find(FindFirstFileW(PlatformPath(working.c_str(), holder), &found));
    if (!find) return true;
    do {
        if (!Enterable(found)) continue;
        SetPathTail(working, found.cFileName);
        working += L"\\*.*";
        list.Add(working);
        if (!AddSubdirectories(list, working)) return false;
        // Step back up: cut the "\*.*" and the name, then put "*.*" back.
        working.resize(working.find_last_of(L'\\'));
        SetPathTail(working, L"*.*");
    } while (FindNextFileW(find.get(), &found));
    return true;
}

} // namespace

void DirTreeList::Clear()
{
    items.clear();
    count = 0;
    capacity = 0;
    startTail = -1;
}

void DirTreeList::Add(const std::wstring& path)
{
    if (count == capacity) {
        try {
            items.reserve(size_t(capacity) + kGrowth);
        } catch (const std::bad_alloc&) {
            return; // the walk goes on with what it has
        }
        capacity += kGrowth;
    }
    items.push_back(path);
    ++count;
}

void BuildDirTree(DirTreeList& list, const wchar_t* startPattern)
{
    if (!startPattern || !*startPattern) return;
    std::wstring working(startPattern);
    size_t slash = working.find_last_of(L'\\');
    list.startTail = slash == std::wstring::npos ? -1 : int(slash);
    SetPathTail(working, L"*.*");
    list.Add(working);
    if (!AddSubdirectories(list, working)) list.Clear();
}

void BuildDriveTrees(DirTreeList& list, const wchar_t* patternWithDrive)
{
    std::wstring pattern(patternWithDrive);
    if (pattern.size() < 2 || pattern[1] != L':') return;
    int current = GetDisk();
    for (int letter = 0; letter < 26; ++letter) {
        wchar_t root[4] = {wchar_t(L'A' + letter), L':', L'\\', 0};
        if (GetDriveTypeW(root) != DRIVE_FIXED && letter != current) continue;
        pattern[0] = root[0];
        BuildDirTree(list, pattern.c_str());
        if (TheScreen.BreakFlag) {
            list.Clear();
            return;
        }
    }
}

void SortDirTree(DirTreeList& list)
{
    std::sort(list.items.begin(), list.items.end(),
              [](const std::wstring& a, const std::wstring& b) { return CompareNames(a.c_str(), b.c_str()) < 0; });
}

const wchar_t* ReplaceTreeTail(DirTreeList& list, int i, const wchar_t* tail)
{
    static std::wstring copy;
    if (i < 0 || i >= list.count) {
        copy = L"C:\\";
        return copy.c_str();
    }
    std::wstring& item = list.items[size_t(i)];
    SetPathTail(item, tail);
    copy = item;
    return copy.c_str();
}
