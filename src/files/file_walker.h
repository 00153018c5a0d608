// The file walker: every command that works on a set of files first asks the
// one FileWalker to collect the directory entries that match a wildcard, then
// acts on them. Matching is the platform's find operations; the walker adds
// the choice by attributes, the totals, and destination wildcards.
//
// Entries are whole find records (FileEntry) kept in a pool that grows 2,000
// records at a time and is never released between commands, so a listing of
// thousands of files allocates nothing after the first time. entries[0] to
// entries[count - 1] point into that pool; a new walk overwrites the last.
#pragma once

#include "app/toolkit/omdib.h"

#include <windows.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

using FileEntry = WIN32_FIND_DATAW;

// The attribute bits the walkers look at, out of the platform's.
constexpr DWORD kWalkAttributes = 0x37;
constexpr DWORD kReparseBit = FILE_ATTRIBUTE_REPARSE_POINT;
// The old volume-label bit, which marks a base name collected for command search.
constexpr DWORD kVolumeLabelBit = 0x08;

// Which time a listing shows in an entry's last-write field.
enum class EntryTime { LastWrite, Creation, LastAccess };

class FileWalker {
public:
    static constexpr int kGrowth = 2000;

    int32_t count = 0;
    int32_t longestName = 0;
    int32_t longestExtension = 0;
    FileEntry** entries = nullptr;
    FileEntry current{};
    wchar_t targetDirectory[kPathMax] = {};
    wchar_t targetTemplate[kPathMax] = {};
    // The parts of the pattern last walked. The directory is unbounded so that
    // a walk below a path longer than 260 units still names its entries whole.
    wchar_t drive[3] = {};
    std::wstring directory;
    wchar_t name[kPathMax] = {};
    wchar_t extension[kPathMax] = {};
    uint64_t totalBytes = 0;
    uint64_t allocatedBytes = 0;
    int32_t clusterSize = 0;
    int32_t directoryCount = 0;
    int32_t capacity = 0;

    FileWalker() = default;
    FileWalker(const FileWalker&) = delete;
    FileWalker& operator=(const FileWalker&) = delete;

    // Each walk returns 0 when it collected an entry, 1 when the pattern found
    // nothing or could not be searched.
    // Plain files, with any read-only or archive state, plus what allowance
    // adds of 0x37; hidden entries only when allowance has the hidden bit.
    int WalkFiles(const wchar_t* pattern, DWORD allowance);
    // The entries WalkFiles would collect, each handed to visit and none kept,
    // in the order the system gives them: for callers that keep only a name,
    // such as TAB completion in a folder of many thousand entries. The search
    // leaves out short names and reads in large blocks where the system can.
    int VisitFiles(const wchar_t* pattern, DWORD allowance, const std::function<void(const FileEntry&)>& visit);
    // Entries with every mustHave bit and no mustNotHave bit within 0x37.
    int WalkFilesByAttributes(const wchar_t* pattern, DWORD mustHave, DWORD mustNotHave);
    // Subdirectories only, never "." or "..": no sizes, no cluster look-up.
    int WalkDirs(const wchar_t* pattern);
    // Base names, each once, for the search of command names; adds to what
    // is there. A stored record has attribute 8 and its name cut at the first dot.
    int WalkBaseNames(const wchar_t* pattern);

    // Orders the collected entries; by name unless a comparator is given.
    void SortByName();
    void Sort(bool (*precedes)(const FileEntry* a, const FileEntry* b));

    // Drive, directory and entry i's name, in a shared buffer the next call
    // overwrites.
    const wchar_t* EntryPath(int i);
    // Entry i's short name, in a shared buffer.
    const wchar_t* ShortName(int i);
    // Copies entry i's creation or last-access time over its last-write time.
    void SelectTime(int i, EntryTime which);
    // Copies entry i to current and returns it.
    FileEntry& Take(int i);

    // The destination of a copy: its directory and its name template.
    void SetTarget(const wchar_t* path);
    void SetTargetName(const wchar_t* path);
    // Entry i's name put through the target template, behind the target
    // directory, in a shared buffer.
    const wchar_t* TargetName(int i, bool useShortName);

private:
    template <class Accept> int Walk(const wchar_t* pattern, bool withTotals, Accept accept);
    void BeginWalk(const wchar_t* pattern, bool withTotals);
    void SplitPattern(const wchar_t* pattern);
    void LookUpClusterSize(const wchar_t* pattern);
    // A free record for the next entry (growing the pool), or null when full.
    FileEntry* NextRecord();
    void Collect(const FileEntry& found, bool withTotals);

    std::vector<std::unique_ptr<FileEntry[]>> blocks_;
    std::vector<FileEntry*> pointers_;
};

extern FileWalker TheWalker;

// Names compared without regard to case, each character folded by
// CharUpperW; the first difference decides.
int CompareNames(const wchar_t* a, const wchar_t* b);
// "." or "..", which the find functions yield and every walk skips by name.
inline bool IsDotName(const wchar_t* name)
{
    return name[0] == L'.' && (name[1] == 0 || (name[1] == L'.' && name[2] == 0));
}
// The extension of a name counted after its last dot; 0 without a dot.
int ExtensionLength(const wchar_t* name);

// Replaces what follows the last backslash of path with tail (from the
// backslash itself when tail starts with one); without a backslash, appends a
// backslash and tail.
void SetPathTail(std::wstring& path, const wchar_t* tail);
void SetPathTail(wchar_t* path, const wchar_t* tail, int size = kPathMax);
