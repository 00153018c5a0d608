// Deleting single files and directories for del, delbut, rd and move: the
// recycle bin option, the forced deletion of read-only files, and the
// removal of a directory with its entry in its parent's descriptions.
#pragma once

#include <string>

// The RecycleBin setting, read once by each command that deletes.
bool RecycleBinOption();

// Deletes one file, through the recycle bin when recycle is set and the
// platform has one. A read-only file is refused, unless force makes it
// writable first (its attributes come back when the deletion fails). 0 or
// -1, with the platform's code left in the last error.
int FileOperationDelete(const wchar_t* path, bool recycle, bool force = false);

// True when path names a junction or a symbolic link to a directory: the
// recursive commands remove such a link itself and never what it points at.
bool IsDirectoryLink(const wchar_t* path);

// Removes one directory, taking its entry out of its parent's descriptions
// when that works; false with the platform's code left in the last error.
bool RemoveDirectoryDescribed(const wchar_t* directory);

// The directory a pattern or a tree item stands in: the text before its
// last backslash.
std::wstring TreeDirectory(const std::wstring& item);
// True when the directory of pattern is a link (see IsDirectoryLink).
bool StartsAtLink(const std::wstring& pattern);

// Removes the directories of a tree, given as a pattern in its top directory
// ("C:\OLD\*.*"), deepest first, each with its description; a drive root
// stays. Stops at the first failure with the platform's message, or at a
// break. A link in the tree, or at its top, is removed itself and never
// entered. With countProgress the percent indicator counts directories.
void RemoveDirectoryTree(const std::wstring& pattern, bool countProgress);

// "Delete NAME (Y/N)?", answered by the yes-or-no reader: 1, 0, or -1 on Ctrl-C.
int AskDelete(const wchar_t* name);
// The failure of one confirmed deletion, after which the run goes on.
void ShowPermissionDenied();
