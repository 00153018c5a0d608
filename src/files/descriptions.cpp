#include "files/descriptions.h"

#include "files/file_walker.h"
#include "files/long_path.h"
#include "lang/text_stream.h"

#include <algorithm>
#include <new>

namespace {

constexpr int kLineBuffer = 1024;
constexpr int kWorkSize = 520;

// The descript.ion beside pathInDirectory; empty without a backslash.
std::wstring DescriptionFile(const wchar_t* pathInDirectory)
{
    if (!pathInDirectory) return {};
    std::wstring file(pathInDirectory);
    if (file.find_last_of(L'\\') == std::wstring::npos) return {};
    SetPathTail(file, L"descript.ion");
    return file;
}

const wchar_t* NameOnly(const wchar_t* fileName)
{
    const wchar_t* name = fileName;
    for (const wchar_t* p = fileName; *p; ++p)
        if (*p == L'\\' || *p == L'/' || *p == L':') name = p + 1;
    return name;
}

wchar_t FoldLower(wchar_t c)
{
    if (c < 0x80) return (c >= L'A' && c <= L'Z') ? wchar_t(c + 32) : c;
    return wchar_t(reinterpret_cast<ULONG_PTR>(CharLowerW(reinterpret_cast<LPWSTR>(ULONG_PTR(c)))));
}

// The length of a name without one dot at its very end.
int ComparedLength(const wchar_t* name)
{
    int n = lstrlenW(name);
    return (n > 0 && name[n - 1] == L'.') ? n - 1 : n;
}

bool HasBlank(const wchar_t* text)
{
    for (; *text; ++text)
        if (IsWhite(*text)) return true;
    return false;
}

} // namespace

int CompareDescriptionNames(const wchar_t* a, const wchar_t* b)
{
    int la = ComparedLength(a), lb = ComparedLength(b);
    for (int i = 0;; ++i) {
        wchar_t x = i < la ? FoldLower(a[i]) : 0;
        wchar_t y = i < lb ? FoldLower(b[i]) : 0;
        if (x != y || !x) return int(x) - int(y);
    }
}

void DescriptionStore::ParseLine(const wchar_t* line)
{
    const wchar_t* p = SkipWhiteW(line);
    if (!*p) return;
    wchar_t work[kWorkSize];
    CopyCutW(work, p, kWorkSize);
    wchar_t* description;
    if (work[0] == L'"') {
        wchar_t* end = SkipStrW(work + 1);
        description = *end ? end + 1 : end;
        *end = 0;
        ConvertStrW(work);
    } else {
        wchar_t* end = work;
        while (*end && !IsWhite(*end)) ++end;
        description = *end ? end + 1 : end;
        *end = 0;
    }
    if (lstrcmpW(work, L".") == 0 || !work[0]) return;
    if (!MakeRoom()) return;
    DescriptionEntry entry;
    CopyCutW(entry.name, work, kPathMax);
    CopyCutW(entry.description, description, DescriptionEntry::kDescriptionSize);
    entries.push_back(entry);
}

int DescriptionStore::Load(const wchar_t* pathInDirectory)
{
    entries.clear();
    loadFailed = 0;
    changed = 0;
    path = DescriptionFile(pathInDirectory);
    if (path.empty()) return 0;
    std::wstring holder;
    TextStream file;
    if (!file.Open(PlatformPath(path.c_str(), holder), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE,
                   OPEN_EXISTING))
        return 0;
    file.LineCapacity = kLineBuffer;
    file.KeepTabs = 1;
    encoding = file.SniffEncoding();
    // Binary bytes are read as code-page text: whatever comes out is kept.
    if (encoding == NotText) file.Encoding = encoding = CodePageText;
    while (const wchar_t* line = file.ReadLine()) ParseLine(line);
    std::sort(entries.begin(), entries.end(), [](const DescriptionEntry& a, const DescriptionEntry& b) {
        return CompareDescriptionNames(a.name, b.name) < 0;
    });
    return 0;
}

bool DescriptionStore::WriteFile(const std::wstring& temporary) const
{
    TextStream out;
    if (!out.Create(temporary.c_str())) return false;
    out.Encoding = encoding;
    bool ok = out.WriteMark();
    for (const DescriptionEntry& e : entries) {
        std::wstring line;
        if (HasBlank(e.name)) line = std::wstring(L"\"") + e.name + L"\" ";
        else line = std::wstring(e.name) + L" ";
        line += e.description;
        line += L"\r\n";
        ok = ok && out.Write(line.c_str(), int(line.size()));
    }
    return ok;
}

int DescriptionStore::Save()
{
    if (!changed || loadFailed) return loadFailed;
    std::wstring holder;
    const wchar_t* target = PlatformPath(path.c_str(), holder);
    if (entries.empty()) {
        SetFileAttributesW(target, FILE_ATTRIBUTE_NORMAL);
        DeleteFileW(target);
        changed = 0;
        return 0;
    }
    // Written beside the old file and then put in its place, so a failed
    // write leaves the old descriptions as they were.
    std::wstring temporary = path + L".$$$";
    std::wstring temporaryHolder;
    const wchar_t* written = PlatformPath(temporary.c_str(), temporaryHolder);
    if (!WriteFile(written)) {
        DeleteFileW(written);
        return 1;
    }
    SetFileAttributesW(target, FILE_ATTRIBUTE_NORMAL);
    if (!MoveFileExW(written, target, MOVEFILE_REPLACE_EXISTING)) {
        DeleteFileW(written);
        return 1;
    }
    SetFileAttributesW(target, FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_ARCHIVE);
    changed = 0;
    return 0;
}

bool DescriptionStore::MakeRoom()
{
    if (Count() < capacity) return true;
    try {
        entries.reserve(size_t(capacity) + kGrowth);
    } catch (const std::bad_alloc&) {
        return false; // growth stops where it stands
    }
    capacity += kGrowth;
    return true;
}

int DescriptionStore::IndexOf(const wchar_t* fileName) const
{
    const wchar_t* name = NameOnly(fileName);
    for (size_t i = 0; i < entries.size(); ++i)
        if (CompareDescriptionNames(entries[i].name, name) == 0) return int(i);
    return -1;
}

int DescriptionStore::Add(const wchar_t* fileName, const wchar_t* text)
{
    if (!text || !*text) return 1;
    int i = IndexOf(fileName);
    if (i < 0) {
        if (!MakeRoom()) return 1;
        entries.emplace_back();
        i = Count() - 1;
        CopyCutW(entries.back().name, NameOnly(fileName), kPathMax);
    }
    CopyCutW(entries[size_t(i)].description, text, DescriptionEntry::kDescriptionSize);
    changed = 1;
    return 0;
}

int DescriptionStore::Remove(const wchar_t* fileName)
{
    int i = IndexOf(fileName);
    if (i < 0) return 1;
    entries.erase(entries.begin() + i);
    changed = 1;
    return 0;
}

const DescriptionEntry& DescriptionStore::Lookup(const wchar_t* fileName)
{
    int i = entries.empty() ? -1 : IndexOf(fileName);
    found = i < 0 ? DescriptionEntry{} : entries[size_t(i)];
    return found;
}

void DeleteDescriptions(const wchar_t* pathInDirectory)
{
    std::wstring file = DescriptionFile(pathInDirectory);
    if (file.empty()) return;
    std::wstring holder;
    const wchar_t* target = PlatformPath(file.c_str(), holder);
    SetFileAttributesW(target, FILE_ATTRIBUTE_NORMAL);
    DeleteFileW(target);
}
