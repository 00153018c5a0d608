// attrib: shows the read-only, hidden, system and archive attributes of
// files, and changes them: attrib [+r|-r] [+h|-h] [+s|-s] [+a|-a] [pattern...] [/s] [/d]
#include "app/errors.h"
#include "files/arg_paths.h"
#include "files/dir_tree.h"
#include "files/file_walker.h"
#include "files/long_path.h"
#include "files/switch_reader.h"
#include "input/unix_mode.h"
#include "lang/builtins.h"
#include "lang/command_args.h"
#include "screen/colours.h"
#include "screen/pager.h"
#include "screen/screen_store.h"

#include <string>
#include <vector>

namespace {

constexpr DWORD kChangeable = FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM |
                              FILE_ATTRIBUTE_ARCHIVE;

struct AttribRequest {
    DWORD set = 0;
    DWORD clear = 0;
    bool recurse = false;
    bool directories = false;
    bool Changes() const { return set || clear; }
};

// "+rh" or "-a": true when the word is such a change, with its bits added.
bool ReadChange(const wchar_t* word, AttribRequest& request)
{
    if (word[0] != L'+' && word[0] != L'-') return false;
    DWORD bits = 0;
    for (const wchar_t* p = word + 1; *p; ++p) {
        DWORD bit = AttributeOfLetter(ToLowerUnit(*p));
        if (!bit || bit == FILE_ATTRIBUTE_DIRECTORY) return false;
        bits |= bit;
    }
    if (!bits) return false;
    (word[0] == L'+' ? request.set : request.clear) |= bits;
    return true;
}

void WriteAttributes(DWORD attributes, const std::wstring& path)
{
    wchar_t letters[] = L"             ";
    if (attributes & FILE_ATTRIBUTE_ARCHIVE) letters[0] = L'A';
    if (attributes & FILE_ATTRIBUTE_SYSTEM) letters[3] = L'S';
    if (attributes & FILE_ATTRIBUTE_HIDDEN) letters[4] = L'H';
    if (attributes & FILE_ATTRIBUTE_READONLY) letters[5] = L'R';
    UseItem(Item::FileAttrib);
    TheScreen.Write(letters);
    UseItem(Item::FileName);
    TheScreen.Write(UnixDisplayW(path.c_str()));
    TheScreen.NewLine();
}

// Shows or changes the entries of one pattern; the count it matched, or -1
// after a failed change.
int ApplyToPattern(const AttribRequest& request, const wchar_t* pattern)
{
    TheWalker.WalkFilesByAttributes(pattern, 0, request.directories ? 0 : FILE_ATTRIBUTE_DIRECTORY);
    TheWalker.SortByName();
    int matched = 0;
    for (int i = 0; i < TheWalker.count && !TheScreen.BreakFlag; ++i) {
        const FileEntry& e = TheWalker.Take(i);
        if (IsDotName(e.cFileName)) continue;
        ++matched;
        std::wstring path = TheWalker.EntryPath(i);
        if (!request.Changes()) {
            WriteAttributes(e.dwFileAttributes, path);
            continue;
        }
        DWORD changed = ((e.dwFileAttributes & ~request.clear) | request.set) & (kChangeable | 0x2000);
        std::wstring holder;
        if (!SetFileAttributesW(PlatformPath(path.c_str(), holder), changed ? changed : FILE_ATTRIBUTE_NORMAL)) {
            TheErrors.ReportPlatformError(GetLastError());
            return -1;
        }
    }
    return matched;
}

// The pattern, or with /s the pattern in every directory below its own.
int ApplyToArgument(const AttribRequest& request, const std::wstring& pattern)
{
    if (!request.recurse) return ApplyToPattern(request, pattern.c_str());
    std::wstring tail = pattern.substr(pattern.find_last_of(L'\\'));
    DirTreeList list;
    BuildDirTree(list, pattern.c_str());
    SortDirTree(list);
    int matched = 0;
    for (int i = 0; i < list.count && !TheScreen.BreakFlag; ++i) {
        int n = ApplyToPattern(request, ReplaceTreeTail(list, i, tail.c_str()));
        if (n < 0) return n;
        matched += n;
    }
    return matched;
}

} // namespace

void CmdAttrib()
{
    AttribRequest request;
    SwitchReader reader(CommandArgs.Switches);
    while (wchar_t letter = reader.Next()) {
        if (letter == L's') request.recurse = true;
        else if (letter == L'd') request.directories = true;
        else return ReportId(2);
    }
    std::vector<int> patterns;
    for (int i = 1; i <= CommandArgs.ArgCount; ++i)
        if (!ReadChange(CommandArgs.Args[i - 1], request)) patterns.push_back(i);
    if (patterns.empty()) patterns.push_back(0);
    if ((request.set & request.clear) != 0) return ReportId(21);
    ListingPager pager(!request.Changes());
    int matched = 0;
    for (int i : patterns) {
        std::wstring pattern = ArgFullPath(i);
        if (pattern.empty()) continue;
        int n = ApplyToArgument(request, pattern);
        if (n < 0) return;
        matched += n;
    }
    if (matched == 0 && !TheScreen.BreakFlag) ReportId(3);
}
