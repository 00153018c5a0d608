#include "exec/capture_list.h"

#include "app/toolkit/omdib.h"
#include "exec/launch_prepare.h"
#include "lang/text_stream.h"

#include <windows.h>

namespace {

struct ListCache {
    FILETIME written{};
    uint64_t size = ~uint64_t(0);
    std::vector<std::wstring> entries;
};

ListCache cache;

std::wstring ListPath() { return BesideShell(L"CAPTURE.LST"); }

// The entry a line names, or empty for a skipped line.
std::wstring EntryOf(const wchar_t* line)
{
    const wchar_t* text = SkipWhiteW(line);
    if (*text == 0 || *text == L';') return {};
    return text;
}

bool SamePath(const std::wstring& a, const std::wstring& b) { return lstrcmpiW(a.c_str(), b.c_str()) == 0; }

// Every line of the file as it stands; false when there is no file.
bool ReadLines(std::vector<std::wstring>& lines, int32_t& encoding)
{
    TextStream file;
    if (!file.Open(ListPath().c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, OPEN_EXISTING)) return false;
    file.KeepTabs = 1;
    file.LineCapacity = kLineMax;
    encoding = file.SniffEncoding();
    while (const wchar_t* line = file.ReadLine()) lines.push_back(line);
    return true;
}

// A new list file (or its temporary twin) holding lines, hidden.
bool WriteNewList(const std::wstring& path, const std::vector<std::wstring>& lines, int32_t encoding)
{
    TextStream file;
    if (!file.Create(path.c_str())) return false;
    file.Encoding = encoding;
    bool ok = encoding == CodePageText || file.WriteMark();
    for (const std::wstring& line : lines) ok = ok && file.Write((line + L"\r\n").c_str());
    file.Close();
    if (ok) SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_HIDDEN);
    else DeleteFileW(path.c_str());
    return ok;
}

// The list becomes lines; the new file is complete before the old one goes.
ListChange ReplaceList(const std::vector<std::wstring>& lines, int32_t encoding)
{
    std::wstring temporary = BesideShell(L"CAPTURE.$$$");
    // A twin left behind by an earlier failure is hidden, and a hidden file
    // cannot be created over.
    DeleteFileW(temporary.c_str());
    if (!WriteNewList(temporary, lines, encoding)) return ListChange::Failed;
    if (!MoveFileExW(temporary.c_str(), ListPath().c_str(), MOVEFILE_REPLACE_EXISTING)) {
        DeleteFileW(temporary.c_str());
        return ListChange::Failed;
    }
    return ListChange::Done;
}

} // namespace

std::vector<std::wstring> CaptureEntries()
{
    std::vector<std::wstring> lines, entries;
    int32_t encoding = CodePageText;
    ReadLines(lines, encoding);
    for (const std::wstring& line : lines) {
        std::wstring entry = EntryOf(line.c_str());
        if (!entry.empty()) entries.push_back(entry);
    }
    return entries;
}

bool InCaptureList(const wchar_t* program)
{
    WIN32_FILE_ATTRIBUTE_DATA data{};
    if (!GetFileAttributesExW(ListPath().c_str(), GetFileExInfoStandard, &data)) return false;
    uint64_t size = (uint64_t(data.nFileSizeHigh) << 32) | data.nFileSizeLow;
    if (size != cache.size || CompareFileTime(&data.ftLastWriteTime, &cache.written) != 0) {
        cache.entries = CaptureEntries();
        cache.size = size;
        cache.written = data.ftLastWriteTime;
    }
    for (const std::wstring& entry : cache.entries)
        if (SamePath(entry, program)) return true;
    return false;
}

ListChange AddCaptureEntry(const std::wstring& path)
{
    std::vector<std::wstring> lines;
    int32_t encoding = Utf16LE;
    ReadLines(lines, encoding);
    for (const std::wstring& line : lines)
        if (SamePath(EntryOf(line.c_str()), path)) return ListChange::AlreadyThere;
    // Written whole rather than appended: a list whose last line has no line
    // end (written by hand) must not run into the new entry.
    lines.push_back(path);
    return ReplaceList(lines, encoding);
}

ListChange RemoveCaptureEntry(const std::wstring& path)
{
    std::vector<std::wstring> lines, kept;
    int32_t encoding = CodePageText;
    if (!ReadLines(lines, encoding)) return ListChange::NoSuchEntry;
    for (const std::wstring& line : lines)
        if (!SamePath(EntryOf(line.c_str()), path)) kept.push_back(line);
    if (kept.size() == lines.size()) return ListChange::NoSuchEntry;
    if (kept.empty()) return DeleteFileW(ListPath().c_str()) ? ListChange::Done : ListChange::Failed;
    return ReplaceList(kept, encoding);
}
