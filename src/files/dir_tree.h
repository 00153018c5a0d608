// DirTreeList: the recursive list of a directory tree, for commands that
// act in every subdirectory. Each item is a directory path with the tail
// "*.*" behind it, as in C:\TOOLS\BIN\*.*; the start directory comes first,
// then its subdirectories depth first in the platform's order.
//
// A reparse point (junction or symbolic link) is listed where it stands but
// never entered, so a link that points at its own parent cannot make the
// walk endless.
#pragma once

#include <string>
#include <vector>

class DirTreeList {
public:
    static constexpr int kGrowth = 5000;

    int count = 0;
    std::vector<std::wstring> items;
    // Offset of the last backslash of the start path, -1 when there is none.
    int startTail = -1;
    int capacity = 0;

    const wchar_t* Item(int i) const { return items[size_t(i)].c_str(); }
    void Clear();
    void Add(const std::wstring& path);
};

// Lists startPattern's directory and everything below it; an empty pattern,
// or a break, leaves the list empty.
void BuildDirTree(DirTreeList& list, const wchar_t* startPattern);
// The same for every fixed drive, and the current one, with the pattern's
// drive letter replaced by each in turn.
void BuildDriveTrees(DirTreeList& list, const wchar_t* patternWithDrive);
// Orders the items by their whole text, case ignored.
void SortDirTree(DirTreeList& list);
// Item i with what follows its last backslash replaced by tail, stored back
// and returned as a copy in a shared buffer; past the end, a drive's root.
const wchar_t* ReplaceTreeTail(DirTreeList& list, int i, const wchar_t* tail);
