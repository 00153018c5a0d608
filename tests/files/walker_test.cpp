// The walker, its tree lists, destination wildcards and the argument path
// services, on real scratch trees.
#include "files/files_fixture.h"

#include "files/arg_paths.h"
#include "files/dir_tree.h"
#include "files/file_walker.h"
#include "lang/command_args.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <vector>

namespace {

std::set<std::wstring> Collected()
{
    std::set<std::wstring> names;
    for (int i = 0; i < TheWalker.count; ++i) names.insert(TheWalker.entries[i]->cFileName);
    return names;
}

// Parses a command line into CommandArgs, as the dispatcher would.
void ParseLine(const std::wstring& line)
{
    static wchar_t text[4096];
    lstrcpynW(text, line.c_str(), 4096);
    CommandArgs.Parse(text);
}

class CurrentFolder {
public:
    explicit CurrentFolder(const std::wstring& path)
    {
        GetCurrentDirectoryW(MAX_PATH, saved_);
        SetCurrentDirectoryW(path.c_str());
    }
    ~CurrentFolder() { SetCurrentDirectoryW(saved_); }

private:
    wchar_t saved_[MAX_PATH];
};

TEST(Walker, AttributeFiltersChooseEntries)
{
    TempFolder f;
    MakeFile(f, L"plain.txt");
    MakeFile(f, L"ro.txt", "x", FILE_ATTRIBUTE_READONLY);
    MakeFile(f, L"hid.txt", "x", FILE_ATTRIBUTE_HIDDEN);
    MakeFile(f, L"sys.txt", "x", FILE_ATTRIBUTE_SYSTEM);
    MakeDir(f, L"sub");
    MakeDir(f, L"hsub", FILE_ATTRIBUTE_HIDDEN);
    std::wstring all = f / L"*";
    using Names = std::set<std::wstring>;
    struct Case {
        int kind; // 0 WalkFiles, 1 by attributes, 2 WalkDirs
        DWORD a, b;
        Names expected;
    } cases[] = {
        {0, 0, 0, {L"plain.txt", L"ro.txt"}},
        {0, 0x10, 0, {L".", L"..", L"plain.txt", L"ro.txt", L"sub"}},
        {0, 0x27, 0, {L"plain.txt", L"ro.txt", L"hid.txt", L"sys.txt"}},
        {1, 0x02, 0, {L"hid.txt", L"hsub"}},
        {1, 0x10, 0x02, {L".", L"..", L"sub"}},
        {1, 0, 0x10, {L"plain.txt", L"ro.txt", L"hid.txt", L"sys.txt"}},
        {2, 0, 0, {L"sub", L"hsub"}},
    };
    for (const Case& c : cases) {
        int result = c.kind == 0   ? TheWalker.WalkFiles(all.c_str(), c.a)
                     : c.kind == 1 ? TheWalker.WalkFilesByAttributes(all.c_str(), c.a, c.b)
                                   : TheWalker.WalkDirs(all.c_str());
        EXPECT_EQ(result, 0);
        EXPECT_EQ(Collected(), c.expected) << c.kind << " " << c.a << " " << c.b;
    }
    EXPECT_EQ(TheWalker.WalkDirs(all.c_str()), 0);
    EXPECT_EQ(TheWalker.directoryCount, TheWalker.count);
    EXPECT_EQ(TheWalker.WalkFiles((f / L"*.none").c_str(), 0x37), 1);
    EXPECT_EQ(TheWalker.count, 0);
}

TEST(Walker, TotalsCountAnExtraClusterForEveryFileThatIsNotEmpty)
{
    TempFolder f;
    MakeFile(f, L"empty.dat", "");
    ASSERT_EQ(TheWalker.WalkFiles((f / L"*.dat").c_str(), 0), 0);
    int cluster = TheWalker.clusterSize;
    ASSERT_GT(cluster, 0) << "the scratch volume does not tell its cluster size";
    MakeFile(f, L"one.dat", std::string(size_t(cluster), 'a'));
    MakeFile(f, L"small.txt", "abc");
    MakeDir(f, L"d");
    ASSERT_EQ(TheWalker.WalkFiles((f / L"*").c_str(), 0x10), 0);
    EXPECT_EQ(TheWalker.totalBytes, uint64_t(cluster) + 3);
    EXPECT_EQ(TheWalker.allocatedBytes, uint64_t(cluster) * 3);
    EXPECT_EQ(TheWalker.directoryCount, 3); // ".", ".." and d
    EXPECT_EQ(TheWalker.longestName, 9);
    EXPECT_EQ(TheWalker.longestExtension, 3);
    TheWalker.SortByName();
    EXPECT_STREQ(TheWalker.entries[2]->cFileName, L"d");
    EXPECT_EQ(std::wstring(TheWalker.EntryPath(2)), f / L"d");
}

TEST(Walker, TargetNameAppliesTheDestinationTemplate)
{
    TempFolder f;
    struct Case {
        const wchar_t* source;
        const wchar_t* target;
        const wchar_t* expected;
    } cases[] = {
        {L"REPORT.TXT", L"*.BAK", L"REPORT.BAK"},
        {L"XYZ", L"A?C", L"AYC"},
        {L"a.txt", L"*", L"a.txt"},
        {L"a.txt", L"*.*", L"a.txt"},
        {L"A.TXT", L"AB", L"AB"},
        {L"old.txt", L"new.*", L"new.txt"},
        {L"abc.txt", L"?.x", L"a.x"},
        {L"abc.txt", L"??????.*", L"abc.txt"},
        {L"name", L"*.sav", L"name.sav"},
    };
    for (const Case& c : cases) {
        MakeFile(f, c.source);
        ASSERT_EQ(TheWalker.WalkFiles((f / c.source).c_str(), 0), 0);
        TheWalker.SetTarget((L"C:\\dest\\" + std::wstring(c.target)).c_str());
        EXPECT_EQ(std::wstring(TheWalker.TargetName(0, false)), std::wstring(L"C:\\dest\\") + c.expected)
            << c.source << " to " << c.target;
        DeleteFileW((f / c.source).c_str());
    }
}

TEST(Walker, PathTails)
{
    struct Case {
        const wchar_t* path;
        const wchar_t* tail;
        const wchar_t* expected;
    } cases[] = {
        {L"C:\\a\\b.txt", L"*.*", L"C:\\a\\*.*"},
        {L"C:\\a\\b.txt", L"\\x", L"C:\\a\\x"},
        {L"name", L"*.*", L"name\\*.*"},
        {L"name", L"\\x", L"name\\x"},
    };
    for (const Case& c : cases) {
        wchar_t path[260];
        lstrcpyW(path, c.path);
        SetPathTail(path, c.tail);
        EXPECT_STREQ(path, c.expected);
    }
}

TEST(Walker, ArgumentPaths)
{
    TempFolder f;
    MakeDir(f, L"sub");
    MakeFile(f, L"NAME");
    CurrentFolder here(f.Path());
    std::wstring root = f.Path().substr(0, 3);
    struct Case {
        std::wstring line;
        std::wstring full;
    } cases[] = {
        {L"dir NAME.", f / L"NAME."},
        {L"dir sub", f / L"sub\\*"},
        {L"dir sub\\", f / L"sub\\*"},
        {L"dir sub/", f / L"sub\\*"},
        {L"dir *.txt", f / L"*.txt"},
        {L"dir NAME", f / L"NAME"},
        {L"dir", f.Path() + L"\\*"},
        {L"dir " + root, root + L"*"},
    };
    for (const Case& c : cases) {
        ParseLine(c.line);
        EXPECT_EQ(std::wstring(ArgFullPath(CommandArgs.ArgCount ? 1 : 0)), c.full) << c.line;
    }
    ParseLine(L"dir sub");
    EXPECT_EQ(std::wstring(ArgDirectory(1)), f / L"sub");
    ParseLine(L"dir NAME");
    EXPECT_EQ(ArgDirectory(1), nullptr);
}

TEST(Walker, DirTreeListsEveryDirectoryOnceAndNeverEntersALink)
{
    TempFolder f;
    for (const wchar_t* d : {L"a", L"a\\b", L"a\\b\\c", L"d"}) MakeDir(f, d);
    bool junction = MakeJunction(f / L"a\\up", f / L"a");
    bool symlink = MakeDirectoryLink(f / L"d\\loop", f.Path());
    DirTreeList list;
    BuildDirTree(list, (f / L"*.txt").c_str());
    if (junction) RemoveLink(f / L"a\\up");
    if (symlink) RemoveLink(f / L"d\\loop");
    EXPECT_FALSE(IsLink(f / L"a\\up") || IsLink(f / L"d\\loop"));
    if (!junction && !symlink) GTEST_SKIP() << "Wine made neither a junction nor a directory link";
    SortDirTree(list);
    std::vector<std::wstring> expected = {f / L"*.*", f / L"a\\*.*", f / L"a\\b\\*.*", f / L"a\\b\\c\\*.*",
                                          f / L"d\\*.*"};
    EXPECT_EQ(list.items, expected);
    EXPECT_EQ(list.count, 5);
    EXPECT_EQ(list.startTail, int(f.Path().size()));
    EXPECT_EQ(std::wstring(ReplaceTreeTail(list, 1, L"*.log")), f / L"a\\*.log");
    EXPECT_EQ(list.items[1], f / L"a\\*.log");

    DirTreeList empty;
    BuildDirTree(empty, L"");
    EXPECT_EQ(empty.count, 0);
}

TEST(Walker, TreesAndWalksBelowPathsLongerThanThePlatformLimit)
{
    TempFolder f;
    std::wstring deep = L"\\\\?\\" + f.Path();
    std::wstring relative;
    for (int i = 0; i < 6; ++i) {
        std::wstring part = L"level" + std::to_wstring(i) + std::wstring(50, L'x');
        deep += L"\\" + part;
        relative += (relative.empty() ? L"" : L"\\") + part;
        ASSERT_TRUE(CreateDirectoryW(deep.c_str(), nullptr));
    }
    HANDLE h = CreateFileW((deep + L"\\end.txt").c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    ASSERT_NE(h, INVALID_HANDLE_VALUE);
    CloseHandle(h);
    DirTreeList list;
    BuildDirTree(list, (f / L"*").c_str());
    ASSERT_EQ(list.count, 7);
    SortDirTree(list);
    std::wstring deepest = list.items.back();
    EXPECT_GT(deepest.size(), 300u);
    EXPECT_EQ(TheWalker.WalkFiles(ReplaceTreeTail(list, 6, L"*.txt"), 0), 0);
    EXPECT_EQ(std::wstring(TheWalker.EntryPath(0)), f / (relative + L"\\end.txt"));
    // Remove the deep tree here: the scratch folder's own clean-up uses short paths.
    DeleteFileW((deep + L"\\end.txt").c_str());
    for (int i = 0; i < 6; ++i) {
        RemoveDirectoryW(deep.c_str());
        deep.resize(deep.find_last_of(L'\\'));
    }
}

} // namespace
