#include "files/file_delete.h"

#include "app/errors.h"
#include "app/event_pump.h"
#include "app/globals.h"
#include "app/profile/profile.h"
#include "bars/status_bar.h"
#include "files/descriptions.h"
#include "files/dir_tree.h"
#include "screen/colours.h"
#include "screen/screen_store.h"

#include <windows.h>
#include <shellapi.h>

#include <cwchar>
#include <string>

namespace {

// The shell's request: silent, no confirmation, allow undo.
constexpr FILEOP_FLAGS kRecycleFlags = 0x54;

int Recycle(const wchar_t* path)
{
    // The shell takes a list of names ended by a second terminator.
    std::wstring from = path;
    from.push_back(L'\0');
    SHFILEOPSTRUCTW request{};
    request.wFunc = FO_DELETE;
    request.pFrom = from.c_str();
    request.fFlags = kRecycleFlags;
    return SHFileOperationW(&request) == 0 ? 0 : -1;
}

int Unlink(const wchar_t* path)
{
    // Refused here as the platform refuses it, also where it would not (Wine as root).
    DWORD attributes = GetFileAttributesW(path);
    if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY)) {
        SetLastError(ERROR_ACCESS_DENIED);
        return -1;
    }
    return DeleteFileW(path) ? 0 : -1;
}

bool IsDriveRoot(const std::wstring& directory) { return directory.size() == 2 && directory[1] == L':'; }

bool RemoveOrReport(const std::wstring& directory)
{
    if (RemoveDirectoryDescribed(directory.c_str())) return true;
    TheErrors.ReportPlatformError(GetLastError());
    return false;
}

int DeleteOnce(const wchar_t* path, bool recycle)
{
    return recycle && !OsFlags.IsWin32s ? Recycle(path) : Unlink(path);
}

} // namespace

bool RecycleBinOption() { return ProfileReadInt(L"Ombrel", L"RecycleBin", 0) != 0; }

int FileOperationDelete(const wchar_t* path, bool recycle, bool force)
{
    if (!force) return DeleteOnce(path, recycle);
    DWORD attributes = GetFileAttributesW(path);
    if (attributes == INVALID_FILE_ATTRIBUTES) return -1;
    SetFileAttributesW(path, attributes & ~DWORD(FILE_ATTRIBUTE_READONLY));
    if (DeleteOnce(path, recycle) == 0) return 0;
    DWORD code = GetLastError();
    SetFileAttributesW(path, attributes);
    SetLastError(code);
    return -1;
}

bool IsDirectoryLink(const wchar_t* path)
{
    DWORD attributes = GetFileAttributesW(path);
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) &&
           (attributes & FILE_ATTRIBUTE_REPARSE_POINT);
}

bool RemoveDirectoryDescribed(const wchar_t* directory)
{
    DescriptionStore store;
    store.Load(directory);
    const wchar_t* slash = std::wcsrchr(directory, L'\\');
    store.Remove(slash ? slash + 1 : directory);
    if (!RemoveDirectoryW(directory)) return false;
    store.Save();
    return true;
}

int AskDelete(const wchar_t* name)
{
    UseItem(Item::HighText);
    TheScreen.Write(L"Delete ");
    UseItem(Item::FileName);
    TheScreen.Write(name);
    UseItem(Item::HighText);
    TheScreen.Write(L" (Y/N)?");
    return AskYesNo();
}

void ShowPermissionDenied()
{
    UseItem(Item::Error);
    TheScreen.Write(L"Permission denied");
    TheScreen.NewLine();
    TheScreen.NewLine();
}

std::wstring TreeDirectory(const std::wstring& item)
{
    size_t slash = item.find_last_of(L'\\');
    return slash == std::wstring::npos ? item : item.substr(0, slash);
}

bool StartsAtLink(const std::wstring& pattern) { return IsDirectoryLink(TreeDirectory(pattern).c_str()); }

// The tree is used in the order it was built, which puts every directory
// before its subdirectories, so walking it backwards empties each directory
// before its own turn. A sort by text would not do: a name such as "(old)"
// sorts before the "*.*" tail of its parent.
void RemoveDirectoryTree(const std::wstring& pattern, bool countProgress)
{
    // The walk lists a link without entering it, but one that starts at a
    // link would go through it: such a start stands for the link alone.
    if (StartsAtLink(pattern)) {
        if (countProgress) ProgressStart(1);
        RemoveOrReport(TreeDirectory(pattern));
        return;
    }
    DirTreeList list;
    BuildDirTree(list, pattern.c_str());
    if (countProgress) ProgressStart(uint64_t(list.count));
    for (int i = list.count - 1; i >= 0; --i) {
        std::wstring directory = TreeDirectory(list.Item(i));
        if (i == 0 && IsDriveRoot(directory)) break;
        TheScreen.PollBreak();
        if (TheScreen.BreakFlag || !RemoveOrReport(directory)) return;
        if (countProgress) ProgressStep();
    }
}
