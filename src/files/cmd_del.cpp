// del (erase) and delbut: walk first, then delete, keeping each directory's
// descript.ion in step with one load and one write-back per directory.
//
// A recursive del never follows a junction or a symbolic link: the files
// seen through a link belong to its target, so they stay, and the link
// itself goes with the directories at the end.
#include "app/errors.h"
#include "app/event_pump.h"
#include "app/toolkit/omdib.h"
#include "bars/status_bar.h"
#include "files/arg_paths.h"
#include "files/descriptions.h"
#include "files/dir_tree.h"
#include "files/file_delete.h"
#include "files/file_walker.h"
#include "files/switch_reader.h"
#include "input/unix_mode.h"
#include "lang/builtins.h"
#include "lang/command_args.h"
#include "screen/colours.h"
#include "screen/screen_store.h"

#include <cwchar>
#include <string>

namespace {

struct DeleteOptions {
    std::wstring path;
    int done = 0;
    int prompt = 0;
    int recursive = 0;
    int quiet = 0;
    int force = 0;
    int allFiles = 0;
    int attributesGiven = 0;
    uint16_t mustHave = 0;
    uint16_t mustNotHave = FILE_ATTRIBUTE_DIRECTORY;
    bool recycle = false;
};

enum class Outcome { Done, Stop };

// /a[:]attributes /f /p /q /y /r /s, letter by letter; false after message 2.
bool ReadDeleteSwitches(DeleteOptions& o)
{
    SwitchReader reader(CommandArgs.Switches);
    for (wchar_t letter = reader.Next(); letter; letter = reader.Next()) {
        switch (letter) {
        case L'a':
            o.attributesGiven = 1;
            reader.ReadAttributes(o.mustHave, o.mustNotHave);
            // "d" is read and means nothing: del deletes files only.
            o.mustHave &= uint16_t(~FILE_ATTRIBUTE_DIRECTORY);
            o.mustNotHave |= FILE_ATTRIBUTE_DIRECTORY;
            break;
        case L'f': o.force = 1; break;
        case L'p': o.prompt = 1; break;
        case L'q':
        case L'y':
            o.quiet = 1;
            o.prompt = 0;
            break;
        case L'r':
        case L's': o.recursive = 1; break;
        default: ReportId(2); return false;
        }
    }
    return true;
}

// The directory of a pattern, as it is shown: no trailing backslash unless
// it is a root.
std::wstring DirectoryOf(const std::wstring& pattern)
{
    size_t slash = pattern.find_last_of(L'\\');
    if (slash == std::wstring::npos) return pattern;
    std::wstring directory = pattern.substr(0, slash);
    if (directory.size() < 3 && directory.size() >= 2 && directory[1] == L':') directory += L'\\';
    return directory;
}

bool EndsWith(const std::wstring& text, const wchar_t* tail)
{
    size_t n = std::wcslen(tail);
    return text.size() >= n && std::wcscmp(text.c_str() + text.size() - n, tail) == 0;
}

bool NamesAllFiles(const std::wstring& path)
{
    return EndsWith(path, L"\\*.*") || EndsWith(path, L"\\*.") || EndsWith(path, L"\\*");
}

// The all-files question; true to go on. Skipped when quiet.
bool ConfirmAllFiles(const DeleteOptions& o)
{
    if (o.quiet) return true;
    UseItem(Item::HighText);
    TheScreen.Write(o.recursive ? L"All files from " : L"All files in ");
    UseItem(Item::FileName);
    TheScreen.Write(UnixDisplayW(DirectoryOf(o.path).c_str()));
    UseItem(Item::HighText);
    if (o.attributesGiven) TheScreen.Write(L" with specified attributes");
    TheScreen.Write(L" will be deleted!");
    TheScreen.NewLine();
    TheScreen.Write(L"Delete ALL files (Y/N)?");
    return AskYesNo() == 1;
}

int Walk(const DeleteOptions& o, const wchar_t* pattern)
{
    return o.attributesGiven ? TheWalker.WalkFilesByAttributes(pattern, o.mustHave, o.mustNotHave)
                             : TheWalker.WalkFiles(pattern, 0);
}

// After an all-files deletion the description file goes, except for the
// entries of files that are still there (hidden ones, or those a narrower
// pattern such as "*." left), which are not lost.
void ForgetMissingFiles(DescriptionStore& store, const std::wstring& pattern)
{
    std::wstring directory = TreeDirectory(pattern) + L"\\";
    for (int i = store.Count() - 1; i >= 0; --i) {
        std::wstring name = store.entries[size_t(i)].name;
        if (GetFileAttributesW((directory + name).c_str()) == INVALID_FILE_ATTRIBUTES) store.Remove(name.c_str());
    }
    if (store.Count() == 0) DeleteDescriptions(pattern.c_str());
}

// Deletes what the last walk collected in o.path's directory, in name order.
Outcome DeleteEntries(DeleteOptions& o)
{
    TheWalker.SortByName();
    DescriptionStore store;
    store.Load(o.path.c_str());
    bool keptAny = false;
    for (int i = 0; i < TheWalker.count; ++i) {
        TheScreen.PollBreak();
        if (TheScreen.BreakFlag) break;
        std::wstring full = TheWalker.EntryPath(i);
        const wchar_t* name = TheWalker.entries[i]->cFileName;
        if (o.prompt) {
            int answer = AskDelete(o.recursive ? full.c_str() : name);
            if (answer < 0) break;
            if (answer == 0) {
                keptAny = true;
                continue;
            }
            if (FileOperationDelete(full.c_str(), o.recycle, o.force) != 0) {
                ShowPermissionDenied();
                keptAny = true;
                continue;
            }
        } else if (FileOperationDelete(full.c_str(), o.recycle, o.force) != 0) {
            TheErrors.ReportErrno();
            store.Save();
            return Outcome::Stop;
        }
        store.Remove(name);
        if (!o.recursive) ProgressStep();
        ++o.done;
    }
    if (o.allFiles && !keptAny && !TheScreen.BreakFlag) ForgetMissingFiles(store, o.path);
    store.Save();
    return TheScreen.BreakFlag ? Outcome::Stop : Outcome::Done;
}

void DeleteInDirectory(DeleteOptions& o)
{
    if (Walk(o, o.path.c_str()) != 0) {
        if (!TheScreen.BreakFlag) ReportId(3);
        return;
    }
    if (TheScreen.BreakFlag) return;
    if (NamesAllFiles(o.path)) {
        if (!ConfirmAllFiles(o)) return;
        o.allFiles = 1;
    }
    ProgressStart(uint64_t(TheWalker.count));
    DeleteEntries(o);
}

void DeleteRecursively(DeleteOptions& o)
{
    DWORD attributes = ArgAttributes();
    bool wholeDirectory = attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY);
    if (StartsAtLink(o.path)) {
        if (wholeDirectory) RemoveDirectoryTree(o.path, false);
        return;
    }
    DirTreeList list;
    BuildDirTree(list, o.path.c_str());
    if (TheScreen.BreakFlag) return;
    if (list.count == 0) {
        ReportId(3);
        return;
    }
    SortDirTree(list);
    if (NamesAllFiles(o.path)) {
        if (!ConfirmAllFiles(o)) return;
        o.allFiles = 1;
    }
    ProgressStart(uint64_t(list.count) + 1);
    std::wstring tail = o.path.substr(o.path.find_last_of(L'\\'));
    std::wstring start = o.path;
    for (int i = 0; i < list.count; ++i) {
        TheScreen.PollBreak();
        if (TheScreen.BreakFlag) return;
        o.path = ReplaceTreeTail(list, i, tail.c_str());
        // What a link shows belongs to its target: it is not ours to delete.
        if (!IsDirectoryLink(TreeDirectory(o.path).c_str()) && Walk(o, o.path.c_str()) == 0) {
            if (DeleteEntries(o) == Outcome::Stop) return;
        }
        ProgressStep();
    }
    if (wholeDirectory) RemoveDirectoryTree(start, false);
}

// Exceptions of delbut are bare names: no drive, no directory.
bool HasPathParts(const wchar_t* name) { return std::wcspbrk(name, L":\\/") != nullptr; }

// Whether the name stays the same when argument j is applied to it as a
// rename template: that is how delbut matches its wildcards.
bool IsException(int entry, const std::wstring* templates, int count)
{
    const wchar_t* name = TheWalker.entries[entry]->cFileName;
    for (int j = 0; j < count; ++j) {
        TheWalker.SetTargetName(templates[j].c_str());
        const wchar_t* target = TheWalker.TargetName(entry, false) + std::wcslen(TheWalker.targetDirectory);
        if (CompareNames(target, name) == 0) return true;
    }
    return false;
}

} // namespace

void CmdDel()
{
    DeleteOptions o;
    if (!ReadDeleteSwitches(o)) return;
    if (CommandArgs.ArgCount != 1) {
        ReportId(1);
        return;
    }
    o.path = ArgFullPath(1);
    o.recycle = RecycleBinOption();
    if (o.recursive) DeleteRecursively(o);
    else DeleteInDirectory(o);
    ProgressEnd();
}

void CmdDelbut()
{
    int letters = CountSwitchLetters();
    bool prompt = letters == 1 && std::wcschr(CommandArgs.Switches, L'p');
    if (letters > 1 || (letters == 1 && !prompt)) {
        ReportId(2);
        return;
    }
    if (CommandArgs.ArgCount < 1) {
        ReportId(1);
        return;
    }
    for (int j = 1; j < CommandArgs.ArgCount; ++j) {
        if (HasPathParts(CommandArgs.Args[j])) {
            ReportId(9);
            return;
        }
    }
    std::wstring first = ArgFullPath(1);
    std::wstring pattern = first;
    SetPathTail(pattern, L"*.*");
    if (TheWalker.WalkFiles(pattern.c_str(), 0) != 0) {
        if (!TheScreen.BreakFlag) ReportId(3);
        return;
    }
    if (first.find(L"\\*.*") != std::wstring::npos) {
        ReportId(19);
        return;
    }
    std::wstring templates[ParsedStage::kMaxArgs];
    templates[0] = first;
    for (int j = 1; j < CommandArgs.ArgCount; ++j) templates[j] = CommandArgs.Args[j];

    TheWalker.SortByName();
    DescriptionStore store;
    store.Load(pattern.c_str());
    bool recycle = RecycleBinOption();
    ProgressStart(uint64_t(TheWalker.count));
    for (int i = 0; i < TheWalker.count; ++i) {
        TheScreen.PollBreak();
        if (TheScreen.BreakFlag) break;
        ProgressStep();
        if (IsException(i, templates, CommandArgs.ArgCount)) continue;
        std::wstring full = TheWalker.EntryPath(i);
        const wchar_t* name = TheWalker.entries[i]->cFileName;
        if (prompt) {
            int answer = AskDelete(name);
            if (answer < 0) break;
            if (answer == 0) continue;
            if (FileOperationDelete(full.c_str(), recycle) != 0) {
                ShowPermissionDenied();
                continue;
            }
        } else if (FileOperationDelete(full.c_str(), recycle) != 0) {
            TheErrors.ReportErrno();
            break;
        }
        store.Remove(name);
    }
    store.Save();
    ProgressEnd();
}
