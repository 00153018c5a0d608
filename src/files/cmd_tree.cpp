// tree: draws the directory tree below a directory, with its files under /f,
// in line-drawing characters or, with /a, in plain ASCII: tree [path] [/f] [/a]
// A junction or link is drawn where it stands and never entered.
#include "app/errors.h"
#include "files/arg_paths.h"
#include "files/file_walker.h"
#include "files/switch_reader.h"
#include "input/unix_mode.h"
#include "lang/builtins.h"
#include "lang/command_args.h"
#include "screen/colours.h"
#include "screen/pager.h"
#include "screen/screen_store.h"

#include <algorithm>
#include <string>
#include <vector>

namespace {

struct TreeGlyphs {
    const wchar_t* branch;
    const wchar_t* last;
    const wchar_t* through;
};

const TreeGlyphs kLines{L"\u251c\u2500\u2500\u2500", L"\u2514\u2500\u2500\u2500", L"\u2502   "};
const TreeGlyphs kAscii{L"+---", L"\\---", L"|   "};

struct TreeChild {
    std::wstring name;
    DWORD attributes;
    bool IsDirectory() const { return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0; }
};

struct TreeWalk {
    const TreeGlyphs& glyphs;
    bool files;
    int directories = 0;
};

// The entries of directory, copied out of the walker before any deeper walk
// overwrites it: files first, then directories, each by name.
std::vector<TreeChild> Children(const std::wstring& directory, bool files)
{
    std::vector<TreeChild> children;
    TheWalker.WalkFilesByAttributes((directory + L"\\*").c_str(), 0, 0);
    TheWalker.SortByName();
    for (int i = 0; i < TheWalker.count; ++i) {
        const FileEntry& e = *TheWalker.entries[i];
        bool isDirectory = (e.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
        if (IsDotName(e.cFileName) || (!isDirectory && !files)) continue;
        children.push_back({e.cFileName, e.dwFileAttributes});
    }
    std::stable_partition(children.begin(), children.end(), [](const TreeChild& c) { return !c.IsDirectory(); });
    return children;
}

void WriteTreeLine(const std::wstring& prefix, const wchar_t* glyph, const TreeChild& child)
{
    UseItem(Item::Text);
    TheScreen.Write(prefix.c_str());
    TheScreen.Write(glyph);
    UseItem(child.IsDirectory() ? Item::HighFile : Item::FileName);
    TheScreen.Write(child.name.c_str());
    if (child.attributes & kReparseBit) {
        UseItem(Item::Number);
        TheScreen.Write(L" <JUNCTION>");
    }
    TheScreen.NewLine();
}

void DrawBranch(TreeWalk& walk, const std::wstring& directory, const std::wstring& prefix)
{
    TheScreen.PollBreak();
    if (TheScreen.BreakFlag) return;
    std::vector<TreeChild> children = Children(directory, walk.files);
    bool anyDirectory = std::any_of(children.begin(), children.end(), [](const TreeChild& c) { return c.IsDirectory(); });
    for (size_t i = 0; i < children.size() && !TheScreen.BreakFlag; ++i) {
        const TreeChild& child = children[i];
        if (!child.IsDirectory()) {
            // Files hang from the line of the directories below them, if any.
            UseItem(Item::Text);
            TheScreen.Write(prefix.c_str());
            TheScreen.Write(anyDirectory ? walk.glyphs.through : L"    ");
            UseItem(Item::FileName);
            TheScreen.Write(child.name.c_str());
            TheScreen.NewLine();
            continue;
        }
        bool last = i + 1 == children.size();
        WriteTreeLine(prefix, last ? walk.glyphs.last : walk.glyphs.branch, child);
        ++walk.directories;
        if (child.attributes & kReparseBit) continue;
        DrawBranch(walk, directory + L"\\" + child.name, prefix + (last ? L"    " : walk.glyphs.through));
    }
}

} // namespace

void CmdTree()
{
    bool files = false, ascii = false;
    SwitchReader reader(CommandArgs.Switches);
    while (wchar_t letter = reader.Next()) {
        if (letter == L'f') files = true;
        else if (letter == L'a') ascii = true;
        else return ReportId(2);
    }
    if (CommandArgs.ArgCount > 1) return ReportId(1);
    const wchar_t* start = ArgDirectory(CommandArgs.ArgCount ? 1 : 0);
    if (!start) return ReportId(3);
    std::wstring root = start;
    if (root.size() > 3 && root.back() == L'\\') root.pop_back();
    ListingPager pager;
    UseItem(Item::HighFile);
    TheScreen.Write(UnixDisplayW(root.c_str()));
    TheScreen.NewLine();
    if (root.back() == L'\\') root.pop_back();
    TreeWalk walk{ascii ? kAscii : kLines, files};
    DrawBranch(walk, root, L"");
    if (walk.directories == 0 && !TheScreen.BreakFlag) {
        UseItem(Item::Text);
        TheScreen.Write(L"No subdirectories");
        TheScreen.NewLine();
    }
}
