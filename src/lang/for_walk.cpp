// The file side of for: a pattern item searched through the walker, and the
// directories of a /r loop.
#include "files/dir_tree.h"
#include "files/file_walker.h"
#include "lang/for_loop.h"

namespace {

// The part of a pattern in front of its name: the drive and directory as
// written, which each name found is shown behind.
std::wstring PatternDirectory(const wchar_t* pattern)
{
    const wchar_t* cut = pattern;
    for (const wchar_t* p = pattern; *p; ++p)
        if (*p == L'\\' || *p == L'/' || *p == L':') cut = p + 1;
    return std::wstring(pattern, cut);
}

} // namespace

// The walker keeps only its last walk, and the body may walk again: the
// names are copied out before the first turn.
void ForLoop::SearchPattern(const wchar_t* pattern)
{
    found_.clear();
    foundIndex_ = 0;
    int none = directoriesOnly_ ? TheWalker.WalkDirs(pattern) : TheWalker.WalkFiles(pattern, 0);
    if (none) return;
    std::wstring directory = PatternDirectory(pattern);
    for (int i = 0; i < TheWalker.count; ++i) found_.push_back(directory + TheWalker.entries[i]->cFileName);
}

void ForLoop::CollectDirectories()
{
    wchar_t full[kPathMax];
    DWORD n = GetFullPathNameW(root_.c_str(), kPathMax, full, nullptr);
    std::wstring start = (n > 0 && n < kPathMax) ? full : root_;
    if (!start.empty() && start.back() != L'\\') start += L'\\';
    start += L"*.*";
    DirTreeList tree;
    BuildDirTree(tree, start.c_str());
    SortDirTree(tree);
    for (int i = 0; i < tree.count; ++i) {
        std::wstring directory = tree.Item(i);
        directory.resize(directory.size() - 3); // the "*.*" behind each
        directories_.push_back(directory);
    }
    GetCurrentDirectoryW(kPathMax, savedDirectory_);
    directorySaved_ = true;
}
