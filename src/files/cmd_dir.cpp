// dir: lists a directory in the long, short, wide, column or bare form, with
// descriptions, sorted, selected by attributes, and down the tree.
#include "app/errors.h"
#include "bars/status_bar.h"
#include "files/arg_paths.h"
#include "files/descriptions.h"
#include "files/dir_layout.h"
#include "files/dir_tree.h"
#include "files/file_walker.h"
#include "files/long_path.h"
#include "files/switch_reader.h"
#include "input/unix_mode.h"
#include "lang/builtins.h"
#include "lang/command_args.h"
#include "screen/colours.h"
#include "screen/pager.h"
#include "screen/screen_geometry.h"
#include "screen/screen_store.h"

#include <algorithm>
#include <cwchar>
#include <string>

namespace {

enum DirFlag : uint32_t {
    DirPage = 0x01,
    DirColumns = 0x02,
    DirSubdirs = 0x08,
    DirSorted = 0x10,
    DirLong = 0x40,
    DirFit = 0x80,
    DirBare = 0x100,
    DirVolume = 0x200,
    DirWide = 0x400, // "/t:c" sets it too: that listing comes out wide
    DirAccess = 0x800,
};

struct DirOptions {
    std::wstring path;
    int32_t attributesGiven = 0;
    uint16_t mustHave = 0;
    uint16_t mustNotHave = 0;
    uint32_t flags = 0;
};

struct SortOptions {
    int groupDirectories = 1;
    int byExtension = 0;
    int reverseNames = 0;
    int byDate = 0;
    int bySize = 0;
};

SortOptions TheSort;

bool IsDirectory(const FileEntry* e) { return (e->dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0; }

const wchar_t* ExtensionOf(const wchar_t* name)
{
    const wchar_t* dot = std::wcsrchr(name, L'.');
    return dot ? dot : L"";
}

int CompareForListing(const FileEntry* a, const FileEntry* b)
{
    if (TheSort.byDate) {
        int c = CompareFileTime(&a->ftLastWriteTime, &b->ftLastWriteTime);
        return TheSort.byDate > 0 ? c : -c;
    }
    if (TheSort.bySize) {
        uint64_t x = (uint64_t(a->nFileSizeHigh) << 32) | a->nFileSizeLow;
        uint64_t y = (uint64_t(b->nFileSizeHigh) << 32) | b->nFileSizeLow;
        int c = x < y ? -1 : x > y ? 1 : 0;
        return TheSort.bySize > 0 ? c : -c;
    }
    const FileEntry* x = TheSort.reverseNames ? b : a;
    const FileEntry* y = TheSort.reverseNames ? a : b;
    int g = TheSort.reverseNames ? -TheSort.groupDirectories : TheSort.groupDirectories;
    if (IsDirectory(x) && IsDirectory(y)) return CompareNames(x->cFileName, y->cFileName);
    if (IsDirectory(x)) return -g;
    if (IsDirectory(y)) return g;
    if (TheSort.byExtension) {
        int c = CompareNames(ExtensionOf(x->cFileName), ExtensionOf(y->cFileName));
        if (c) return c;
    }
    return CompareNames(x->cFileName, y->cFileName);
}

bool PrecedesForListing(const FileEntry* a, const FileEntry* b) { return CompareForListing(a, b) < 0; }

void TakeSortLetter(wchar_t letter, bool negated)
{
    switch (letter) {
    case L'g': TheSort.groupDirectories = negated ? -1 : 1; break;
    case L'e': TheSort.byExtension = negated ? 0 : 1; break;
    case L'n': TheSort.reverseNames = negated ? 1 : 0; break;
    case L'd': TheSort.byDate = negated ? -1 : 1; break;
    case L's': TheSort.bySize = negated ? -1 : 1; break;
    }
}

// The switches into options and the listing state; false after message 2.
bool ReadSwitches(DirOptions& options)
{
    SwitchReader reader(CommandArgs.Switches);
    while (wchar_t letter = reader.Next()) {
        switch (letter) {
        case L'4': TheListing.fourDigitYear = 1; break;
        case L'a':
            options.attributesGiven = 1;
            reader.ReadAttributes(options.mustHave, options.mustNotHave);
            break;
        case L'b': options.flags |= DirBare; break;
        case L'd': options.flags |= DirColumns; break;
        case L'f': options.flags |= DirFit; break;
        case L'j': TheListing.nameFlags |= NameJustified; break;
        case L'l': TheListing.nameFlags |= NameLower; break;
        case L'n': options.flags |= DirLong; break;
        case L'o':
            options.flags |= DirSorted;
            reader.ReadLetters(L"gends", TakeSortLetter);
            break;
        case L'p': options.flags |= DirPage; break;
        case L's': options.flags |= DirSubdirs; break;
        case L't': {
            wchar_t which = reader.ReadOneLetter();
            if (which == L'a') options.flags |= DirAccess;
            else if (which == L'c') options.flags |= DirWide;
            break;
        }
        case L'v': options.flags |= DirVolume; break;
        case L'w': options.flags |= DirWide; break;
        case L'x': TheListing.showShortNames = 1; break;
        default: ReportId(2); return false;
        }
    }
    return true;
}

// The longest name the volume of path allows, 0 when it will not tell.
DWORD MaxComponentLength(const std::wstring& path)
{
    std::wstring root = VolumeRoot(path.c_str());
    DWORD longest = 0;
    if (!GetVolumeInformationW(root.empty() ? nullptr : root.c_str(), nullptr, 0, nullptr, &longest, nullptr, nullptr,
                               0))
        return 0;
    return longest;
}

void WriteTotals()
{
    UseItem(Item::Text);
    WriteCommaNumber(uint64_t(TheWalker.count - TheWalker.directoryCount), 6);
    TheScreen.Write(L" file(s) ");
    WriteCommaNumber(uint64_t(TheWalker.totalBytes), 14);
    TheScreen.Write(L" bytes ");
    WriteCommaNumber(uint64_t(TheWalker.allocatedBytes), 16);
    TheScreen.Write(L" bytes allocated");
    TheScreen.NewLine();
    WriteCommaNumber(uint64_t(TheWalker.directoryCount), 6);
    TheScreen.Write(L" dir(s)  ");
    std::wstring directory = std::wstring(TheWalker.drive) + TheWalker.directory;
    std::wstring holder;
    const wchar_t* where = directory.empty() ? nullptr : PlatformPath(directory.c_str(), holder);
    ULARGE_INTEGER totalFree{};
    DWORD sectors = 0, bytes = 0, freeClusters = 0, clusters = 0;
    if (GetDiskFreeSpaceExW(where, nullptr, nullptr, &totalFree))
        WriteCommaNumber(uint64_t(totalFree.QuadPart), 14);
    else if (GetDiskFreeSpaceW(where, &sectors, &bytes, &freeClusters, &clusters))
        WriteCommaNumber(uint64_t(uint64_t(freeClusters) * sectors * bytes), 14);
    else
        TheScreen.Write(L"              ");
    TheScreen.Write(L" bytes free");
    TheScreen.NewLine();
}

void ListLines(const DirOptions& options, const std::wstring& path)
{
    bool bare = (options.flags & DirBare) != 0;
    DescriptionStore descriptions;
    if (!bare) descriptions.Load(path.c_str());
    TheListing.longNames = MaxComponentLength(path) != 12 ? 1 : 0;
    if (options.flags & DirLong) TheListing.longNames = 1;
    else if ((options.flags & DirFit) && TheWalker.longestName < 13 && TheWalker.longestExtension < 4)
        TheListing.longNames = 0;
    DatePattern pattern;
    pattern.Read();
    for (int i = 0; i < TheWalker.count && !TheScreen.BreakFlag; ++i) {
        if (bare) {
            const FileEntry& e = TheWalker.Take(i);
            if (IsDotName(e.cFileName)) continue;
            wchar_t name[kPathMax];
            lstrcpynW(name, e.cFileName, kPathMax);
            if (TheListing.nameFlags & NameLower) CharLowerW(name);
            UseItem(Item::FileName);
            TheScreen.Write(name);
            TheScreen.NewLine();
            if (!(options.flags & DirSubdirs)) ProgressStep();
            continue;
        }
        if (options.flags & DirAccess) TheWalker.SelectTime(i, EntryTime::LastAccess);
        const FileEntry& e = TheWalker.Take(i);
        if (TheListing.showShortNames) {
            int n = lstrlenW(lstrcpynW(TheListing.shortColumn, e.cAlternateFileName, 13));
            if (TheListing.nameFlags & NameLower) CharLowerW(TheListing.shortColumn);
            while (n < 12) TheListing.shortColumn[n++] = L' ';
            TheListing.shortColumn[12] = 0;
        }
        WriteListLine(e, pattern);
        TheScreen.Write(L" ");
        if (descriptions.Count()) WriteDescription(descriptions.Lookup(e.cFileName).description);
        TheScreen.NewLine();
        if (!(options.flags & DirSubdirs)) ProgressStep();
    }
    TheListing.longNames = 0;
}

void ListColumns(const DirOptions& options)
{
    int width = std::max(2, ScreenWidth);
    int cell = TheWalker.longestName + 3;
    if (cell >= width) cell = width - 1;
    int perLine = std::max(1, width / cell);
    int rows = (options.flags & DirWide) ? 1 : std::max(1, (TheWalker.count - 1) / perLine + 1);
    bool down = !(options.flags & DirWide);
    std::wstring text;
    int index = 0;
    int walkLength = TheWalker.count;
    for (int position = 0; position < walkLength && !TheScreen.BreakFlag; ++position) {
        if (position > 0 && position % perLine == 0) {
            TheScreen.NewLine();
            if (down) index = position / perLine;
        }
        text.assign(size_t(cell), L' ');
        if (index >= TheWalker.count) {
            ++walkLength; // a blank cell keeps the last line whole
            TheScreen.Write(text.c_str());
            index += rows;
            continue;
        }
        const FileEntry& e = TheWalker.Take(index);
        std::wstring shown = IsDirectory(&e) ? L"[" + std::wstring(e.cFileName) + L"]" : e.cFileName;
        text.replace(0, std::min(shown.size(), size_t(cell)), shown, 0, size_t(cell));
        if (TheListing.nameFlags & NameLower) CharLowerW(text.data());
        UseItem(IsDirectory(&e) ? Item::Number : Item::FileName);
        TheScreen.Write(text.c_str());
        index += rows;
        if (!(options.flags & DirSubdirs)) ProgressStep();
    }
    TheScreen.NewLine();
}

// One directory's listing; true when it found something.
bool ListOne(const DirOptions& options, const std::wstring& path)
{
    if (options.attributesGiven) TheWalker.WalkFilesByAttributes(path.c_str(), options.mustHave, options.mustNotHave);
    else TheWalker.WalkFiles(path.c_str(), FILE_ATTRIBUTE_DIRECTORY);
    if (options.flags & DirSorted) TheWalker.Sort(PrecedesForListing);
    if ((options.flags & DirSubdirs) && TheWalker.count == 0) return false;
    bool bare = (options.flags & DirBare) != 0;
    if (!bare) {
        UseItem(Item::HighText);
        TheScreen.Write(L"     Directory of ");
        UseItem(Item::HighFile);
        TheScreen.Write(UnixDisplayW(path.c_str()));
        TheScreen.NewLine();
        TheScreen.NewLine();
    }
    bool subdirs = (options.flags & DirSubdirs) != 0;
    if (!subdirs) ProgressStart(uint64_t(TheWalker.count));
    if (!bare && (options.flags & (DirColumns | DirWide))) ListColumns(options);
    else ListLines(options, path);
    if (!subdirs) ProgressEnd();
    if (!TheScreen.BreakFlag && !bare) WriteTotals();
    return TheWalker.count > 0;
}

void ListTree(DirOptions& options)
{
    std::wstring tail = options.path.substr(std::min(options.path.find_last_of(L'\\'), options.path.size()));
    DirTreeList list;
    BuildDirTree(list, options.path.c_str());
    SortDirTree(list);
    ProgressStart(uint64_t(list.count));
    bool any = false;
    for (int i = 0; i < list.count && !TheScreen.BreakFlag; ++i) {
        if (ListOne(options, ReplaceTreeTail(list, i, tail.c_str()))) {
            TheScreen.NewLine();
            any = true;
        }
        ProgressStep();
    }
    ProgressEnd();
    if (any || TheScreen.BreakFlag || list.count == 0) return;
    // Nothing anywhere: the heading and the zero totals still show once.
    options.flags &= ~DirSubdirs;
    ListOne(options, list.Item(0));
}

} // namespace

void CmdDir()
{
    TheListing = ListingState{};
    TheSort = SortOptions{};
    if (CommandArgs.ArgCount > 1) {
        ReportId(1);
        return;
    }
    DirOptions options;
    if (!ReadSwitches(options)) {
        TheListing = ListingState{};
        return;
    }
    if (options.mustHave & options.mustNotHave) {
        TheListing = ListingState{};
        ReportId(21);
        return;
    }
    options.path = ArgFullPath(CommandArgs.ArgCount ? 1 : 0);
    ListingPager pager;
    if ((options.flags & DirVolume) && !(options.flags & DirBare)) WriteVolumeHeading(options.path.c_str());
    if (options.flags & DirSubdirs) ListTree(options);
    else ListOne(options, options.path);
    TheListing = ListingState{};
}
