#include "files/file_walker.h"

#include "files/long_path.h"
#include "app/toolkit/handles.h"
#include "screen/screen_store.h"

#include <algorithm>
#include <new>

FileWalker TheWalker;

namespace {

bool IsSlash(wchar_t c) { return c == L'\\' || c == L'/'; }

wchar_t FoldUpper(wchar_t c)
{
    if (c < 0x80) return (c >= L'a' && c <= L'z') ? wchar_t(c - 32) : c;
    return wchar_t(reinterpret_cast<ULONG_PTR>(CharUpperW(reinterpret_cast<LPWSTR>(ULONG_PTR(c)))));
}

uint64_t EntrySize(const FileEntry& e) { return (uint64_t(e.nFileSizeHigh) << 32) | e.nFileSizeLow; }

// A plain file, with any read-only or archive state, or an entry with no
// attribute outside allowance; hidden ones only when allowance has the bit.
bool AllowedFile(DWORD attributes, DWORD allowance)
{
    DWORD a = attributes & kWalkAttributes;
    if ((a & FILE_ATTRIBUTE_HIDDEN) && !(allowance & FILE_ATTRIBUTE_HIDDEN)) return false;
    return a == 0 || (a & ~(allowance | FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_ARCHIVE)) == 0;
}

// The search without short names and with large reads; systems that do not
// know that level or flag get the plain search.
HANDLE FindFirstQuick(const wchar_t* path, FileEntry& found)
{
    HANDLE find = FindFirstFileExW(path, FindExInfoBasic, &found, FindExSearchNameMatch, nullptr,
                                   FIND_FIRST_EX_LARGE_FETCH);
    if (find == INVALID_HANDLE_VALUE && GetLastError() == ERROR_INVALID_PARAMETER)
        find = FindFirstFileW(path, &found);
    return find;
}

bool PrecedesByName(const FileEntry* a, const FileEntry* b) { return CompareNames(a->cFileName, b->cFileName) < 0; }

} // namespace

int CompareNames(const wchar_t* a, const wchar_t* b)
{
    for (;; ++a, ++b) {
        wchar_t x = FoldUpper(*a);
        wchar_t y = FoldUpper(*b);
        if (x != y) return int(x) - int(y);
        if (!x) return 0;
    }
}

int ExtensionLength(const wchar_t* name)
{
    const wchar_t* dot = nullptr;
    const wchar_t* p = name;
    for (; *p; ++p)
        if (*p == L'.') dot = p;
    return dot ? int(p - dot - 1) : 0;
}

void SetPathTail(std::wstring& path, const wchar_t* tail)
{
    size_t slash = path.find_last_of(L'\\');
    if (slash == std::wstring::npos) {
        if (tail[0] != L'\\') path += L'\\';
        path += tail;
        return;
    }
    path.replace(tail[0] == L'\\' ? slash : slash + 1, std::wstring::npos, tail);
}

void SetPathTail(wchar_t* path, const wchar_t* tail, int size)
{
    std::wstring text(path);
    SetPathTail(text, tail);
    CopyCutW(path, text.c_str(), size);
}

void FileWalker::SplitPattern(const wchar_t* pattern)
{
    const wchar_t* p = pattern;
    drive[0] = 0;
    if (p[0] && p[1] == L':') {
        drive[0] = p[0];
        drive[1] = L':';
        drive[2] = 0;
        p += 2;
    }
    const wchar_t* tail = p;
    for (const wchar_t* q = p; *q; ++q)
        if (IsSlash(*q)) tail = q + 1;
    directory.assign(p, tail);
    FNSplitW(tail, nullptr, nullptr, name, extension);
}

void FileWalker::LookUpClusterSize(const wchar_t* pattern)
{
    clusterSize = 0;
    std::wstring root = VolumeRoot(pattern);
    DWORD sectors = 0, bytes = 0, freeClusters = 0, clusters = 0;
    if (GetDiskFreeSpaceW(root.empty() ? nullptr : root.c_str(), &sectors, &bytes, &freeClusters, &clusters))
        clusterSize = int32_t(sectors * bytes);
}

void FileWalker::BeginWalk(const wchar_t* pattern, bool withTotals)
{
    count = 0;
    directoryCount = 0;
    longestName = 0;
    longestExtension = 0;
    totalBytes = 0;
    allocatedBytes = 0;
    SplitPattern(pattern);
    if (withTotals) LookUpClusterSize(pattern);
    else clusterSize = 0;
}

FileEntry* FileWalker::NextRecord()
{
    if (count >= capacity) {
        std::unique_ptr<FileEntry[]> block(new (std::nothrow) FileEntry[kGrowth]);
        if (!block) return nullptr; // the walk goes on and reports what it has
        for (int i = 0; i < kGrowth; ++i) pointers_.push_back(&block[i]);
        blocks_.push_back(std::move(block));
        capacity += kGrowth;
        entries = pointers_.data();
    }
    return entries[count];
}

void FileWalker::Collect(const FileEntry& found, bool withTotals)
{
    FileEntry* record = NextRecord();
    if (!record) return;
    *record = found;
    ++count;
    longestName = std::max(longestName, int32_t(lstrlenW(found.cFileName)));
    longestExtension = std::max(longestExtension, int32_t(ExtensionLength(found.cFileName)));
    if (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) ++directoryCount;
    if (!withTotals) return;
    uint64_t size = EntrySize(found);
    totalBytes += size;
    // A file that is not empty always gets one cluster more than its whole
    // clusters, also when it fills the last one exactly.
    if (clusterSize) allocatedBytes += (size / uint64_t(clusterSize) + (size ? 1 : 0)) * uint64_t(clusterSize);
}

template <class Accept> int FileWalker::Walk(const wchar_t* pattern, bool withTotals, Accept accept)
{
    BeginWalk(pattern, withTotals);
    std::wstring holder;
    FileEntry found;
    UniqueFindHandle find(FindFirstFileW(PlatformPath(pattern, holder), &found));
    if (!find) return 1;
    do {
        if (accept(found)) Collect(found, withTotals);
    } while (!TheScreen.BreakFlag && FindNextFileW(find.get(), &found));
    return count ? 0 : 1;
}

int FileWalker::WalkFiles(const wchar_t* pattern, DWORD allowance)
{
    return Walk(pattern, true, [=](const FileEntry& e) { return AllowedFile(e.dwFileAttributes, allowance); });
}

int FileWalker::VisitFiles(const wchar_t* pattern, DWORD allowance,
                           const std::function<void(const FileEntry&)>& visit)
{
    std::wstring holder;
    FileEntry found;
    UniqueFindHandle find(FindFirstQuick(PlatformPath(pattern, holder), found));
    if (!find) return 1;
    bool visited = false;
    do {
        if (!AllowedFile(found.dwFileAttributes, allowance)) continue;
        visit(found);
        visited = true;
    } while (!TheScreen.BreakFlag && FindNextFileW(find.get(), &found));
    return visited ? 0 : 1;
}

int FileWalker::WalkFilesByAttributes(const wchar_t* pattern, DWORD mustHave, DWORD mustNotHave)
{
    return Walk(pattern, true, [=](const FileEntry& e) {
        DWORD a = e.dwFileAttributes & kWalkAttributes;
        return (a & mustHave) == mustHave && (a & mustNotHave) == 0;
    });
}

int FileWalker::WalkDirs(const wchar_t* pattern)
{
    return Walk(pattern, false, [](const FileEntry& e) {
        return (e.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) && !IsDotName(e.cFileName);
    });
}

int FileWalker::WalkBaseNames(const wchar_t* pattern)
{
    std::wstring holder;
    FileEntry found;
    UniqueFindHandle find(FindFirstFileW(PlatformPath(pattern, holder), &found));
    if (!find) return count ? 0 : 1;
    do {
        DWORD a = found.dwFileAttributes & kWalkAttributes;
        if (a != 0 && (a & 0x16) != 0) continue;
        std::wstring key(found.cFileName);
        size_t lastDot = key.find_last_of(L'.');
        if (lastDot != std::wstring::npos) key.resize(lastDot);
        bool known = std::any_of(entries, entries + count, [&](const FileEntry* e) {
            return (e->dwFileAttributes & kVolumeLabelBit) && CompareNames(e->cFileName, key.c_str()) == 0;
        });
        if (known) continue;
        FileEntry* record = NextRecord();
        if (!record) break;
        *record = found;
        record->dwFileAttributes = kVolumeLabelBit;
        for (wchar_t* p = record->cFileName; *p; ++p)
            if (*p == L'.') *p = 0;
        ++count;
    } while (FindNextFileW(find.get(), &found));
    return count ? 0 : 1;
}

void FileWalker::SortByName() { Sort(PrecedesByName); }

void FileWalker::Sort(bool (*precedes)(const FileEntry* a, const FileEntry* b))
{
    if (count > 1) std::sort(entries, entries + count, precedes);
}

const wchar_t* FileWalker::EntryPath(int i)
{
    static std::wstring path;
    path = drive;
    path += directory;
    path += entries[i]->cFileName;
    return path.c_str();
}

const wchar_t* FileWalker::ShortName(int i)
{
    static wchar_t shortName[14];
    lstrcpynW(shortName, entries[i]->cAlternateFileName, 14);
    return shortName;
}

void FileWalker::SelectTime(int i, EntryTime which)
{
    FileEntry& e = *entries[i];
    if (which == EntryTime::Creation) e.ftLastWriteTime = e.ftCreationTime;
    else if (which == EntryTime::LastAccess) e.ftLastWriteTime = e.ftLastAccessTime;
}

FileEntry& FileWalker::Take(int i)
{
    current = *entries[i];
    return current;
}

void FileWalker::SetTarget(const wchar_t* path)
{
    wchar_t targetDrive[kPathMax], targetDir[kPathMax];
    FNSplitW(path, targetDrive, targetDir, nullptr, nullptr);
    FNMergeW(targetDirectory, targetDrive, targetDir, nullptr, nullptr);
    SetTargetName(path);
}

void FileWalker::SetTargetName(const wchar_t* path)
{
    wchar_t targetName[kPathMax], targetExtension[kPathMax];
    FNSplitW(path, nullptr, nullptr, targetName, targetExtension);
    FNMergeW(targetTemplate, nullptr, nullptr, targetName, targetExtension);
}

const wchar_t* FileWalker::TargetName(int i, bool useShortName)
{
    const FileEntry& e = *entries[i];
    const wchar_t* s = (useShortName && e.cAlternateFileName[0]) ? e.cAlternateFileName : e.cFileName;
    const wchar_t* t = targetTemplate;
    static std::wstring out;
    out = targetDirectory;
    while (*t) {
        if (*t == L'*') {
            wchar_t stop = t[1];
            while (*s && *s != stop) out += *s++;
            ++t;
            continue;
        }
        if (*t == L'?') {
            if (*s && *s != L'.') out += *s++;
            ++t;
            continue;
        }
        if (*s == L'.') {
            // The source's name is used up: the template's name goes on alone.
            while (*t && *t != L'.' && *t != L'?' && *t != L'*') out += *t++;
        } else if (*t == L'.') {
            while (*s && *s != L'.') ++s;
        }
        if (*t && *t != L'?' && *t != L'*') {
            out += *t++;
            if (*s) ++s;
        }
    }
    return out.c_str();
}
