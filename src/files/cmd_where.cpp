// where: finds files by a pattern in every directory of a given path, or of
// every fixed drive and the current one, and lists them in the long form of
// dir with their full paths: where [drive:][path\]pattern
// go: changes to the first directory of the current drive whose name fits a
// pattern: go name
#include "app/errors.h"
#include "app/toolkit/omdib.h"
#include "files/arg_paths.h"
#include "files/dir_layout.h"
#include "files/dir_tree.h"
#include "files/file_walker.h"
#include "input/unix_mode.h"
#include "lang/builtins.h"
#include "lang/command_args.h"
#include "lang/directories.h"
#include "screen/colours.h"
#include "screen/pager.h"
#include "screen/screen_store.h"

#include <cwchar>
#include <string>

namespace {

bool HasPath(const wchar_t* arg) { return std::wcschr(arg, L'\\') || std::wcschr(arg, L'/') || std::wcschr(arg, L':'); }

// The directories to search: below the argument's own directory when it
// names one, else every fixed drive and the current one. The tail of the
// pattern (from its last backslash) comes back in tail.
void SearchTree(DirTreeList& list, std::wstring& tail)
{
    const wchar_t* arg = CommandArgs.Args[0];
    if (HasPath(arg)) {
        std::wstring pattern = ArgRawPath(1);
        if (pattern.empty()) return;
        tail = pattern.substr(pattern.find_last_of(L'\\'));
        BuildDirTree(list, pattern.c_str());
    } else {
        tail = std::wstring(L"\\") + arg;
        BuildDriveTrees(list, (L"C:" + tail).c_str());
    }
    SortDirTree(list);
}

} // namespace

void CmdWhere()
{
    if (RejectSwitches()) return;
    if (CommandArgs.ArgCount != 1) return ReportId(1);
    ListingPager pager;
    DirTreeList list;
    std::wstring tail;
    SearchTree(list, tail);
    DatePattern pattern;
    pattern.Read();
    TheListing = ListingState{};
    TheListing.longNames = 1;
    int found = 0;
    for (int i = 0; i < list.count && !TheScreen.BreakFlag; ++i) {
        TheWalker.WalkFiles(ReplaceTreeTail(list, i, tail.c_str()), FILE_ATTRIBUTE_DIRECTORY);
        for (int j = 0; j < TheWalker.count && !TheScreen.BreakFlag; ++j) {
            const FileEntry& e = TheWalker.Take(j);
            if (IsDotName(e.cFileName)) continue;
            std::wstring path = TheWalker.EntryPath(j);
            WriteListLine(e, pattern, UnixDisplayW(path.c_str()));
            TheScreen.NewLine();
            ++found;
        }
    }
    TheListing = ListingState{};
    if (TheScreen.BreakFlag) return;
    if (TheWalker.count > TheWalker.capacity) return ReportId(14);
    if (found == 0) return ReportId(3);
    TheScreen.NewLine();
    UseItem(Item::Text);
    WriteCommaNumber(uint64_t(found), 6);
    TheScreen.Write(L" file(s) found");
    TheScreen.NewLine();
}

void CmdGo()
{
    if (RejectSwitches()) return;
    if (CommandArgs.ArgCount != 1) return ReportId(1);
    const wchar_t* name = CommandArgs.Args[0];
    if (HasPath(name)) {
        if (!ChangeDirectory(name)) TheErrors.ReportErrno();
        return;
    }
    wchar_t here[MAX_PATH];
    DWORD n = GetCurrentDirectoryW(MAX_PATH, here);
    if (n < 3 || n >= MAX_PATH || here[1] != L':') return ReportId(3);
    DirTreeList list;
    BuildDirTree(list, (std::wstring(here, 3) + L"*").c_str());
    SortDirTree(list);
    for (int i = 0; i < list.count && !TheScreen.BreakFlag; ++i) {
        if (TheWalker.WalkDirs(ReplaceTreeTail(list, i, name)) != 0) continue;
        TheWalker.SortByName();
        if (!ChangeDirectory(TheWalker.EntryPath(0))) TheErrors.ReportErrno();
        return;
    }
    if (!TheScreen.BreakFlag) ReportId(3);
}
