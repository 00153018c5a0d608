#include "lang/tilde.h"

#include "app/toolkit/omdib.h"
#include "lang/short_date.h"
#include "lang/variables.h"

#include <cwchar>
#include <memory>

namespace {

struct TildeModifiers {
    int32_t f = 0, d = 0, p = 0, n = 0, x = 0, s = 0, a = 0, t = 0, z = 0, dollar = 0;
    wchar_t dollarName[4096] = {};
    wchar_t workPath[4096] = {};

    bool Any() const { return f || d || p || n || x || s || a || t || z || dollar; }
};

// $name: the name runs to a colon; a blank, tab or the end before it makes
// the $ count for nothing. Returns the position behind what was read.
const wchar_t* ReadDollar(const wchar_t* p, TildeModifiers& m)
{
    const wchar_t* colon = p;
    while (*colon && *colon != L':' && !IsWhite(*colon)) ++colon;
    if (*colon != L':') return p;
    m.dollar = 1;
    int length = int(colon - p) < 4095 ? int(colon - p) : 4095;
    CopyCutW(m.dollarName, p, length + 1);
    return colon + 1;
}

// modifiers := { f | d | p | n | x | s | a | t | z | $name: }
const wchar_t* ReadModifiers(const wchar_t* p, TildeModifiers& m)
{
    for (;; ++p) {
        switch (*p) {
        case L'f': m.f = 1; break;
        case L'd': m.d = 1; break;
        case L'p': m.p = 1; break;
        case L'n': m.n = 1; break;
        case L'x': m.x = 1; break;
        case L's': m.s = 1; break;
        case L'a': m.a = 1; break;
        case L't': m.t = 1; break;
        case L'z': m.z = 1; break;
        case L'$': p = ReadDollar(p + 1, m) - 1; break;
        default: return p;
        }
    }
}

// The text without its surrounding quotes, a doubled quote made single.
void Unquote(const wchar_t* value, wchar_t* out, int size)
{
    CopyCutW(out, value, size);
    if (out[0] == L'"') ConvertStrW(out);
}

void FullPath(const wchar_t* path, wchar_t* out, int size)
{
    DWORD n = GetFullPathNameW(path, DWORD(size), out, nullptr);
    if (n == 0 || n >= DWORD(size)) out[0] = 0;
}

// Each directory of the $ variable with the file part of base; the first
// that exists is the work path.
void SearchDollarPath(const wchar_t* base, TildeModifiers& m)
{
    auto list = std::make_unique<wchar_t[]>(kValueMax);
    ReadVariable(m.dollarName, list.get(), kValueMax);
    wchar_t name[kPathMax], extension[kPathMax];
    FNSplitW(base, nullptr, nullptr, name, extension);
    auto candidate = std::make_unique<wchar_t[]>(kValueMax);
    m.workPath[0] = 0;
    for (const wchar_t* dir = list.get(); *dir;) {
        const wchar_t* end = dir;
        while (*end && *end != L';') ++end;
        if (end > dir) {
            ExpandOutput out(candidate.get(), kValueMax);
            out.Put(dir, end);
            if (end[-1] != L'\\' && end[-1] != L'/') out.Put(L'\\');
            out.Put(name);
            out.Put(extension);
            if (GetFileAttributesW(candidate.get()) != INVALID_FILE_ATTRIBUTES) {
                FullPath(candidate.get(), m.workPath, 4096);
                return;
            }
        }
        dir = *end ? end + 1 : end;
    }
}

void AppendAttributes(const WIN32_FIND_DATAW& found, ExpandOutput& out)
{
    static const struct {
        DWORD bit;
        wchar_t letter;
    } kLetters[] = {{FILE_ATTRIBUTE_READONLY, L'R'},   {FILE_ATTRIBUTE_HIDDEN, L'H'},
                    {FILE_ATTRIBUTE_SYSTEM, L'S'},     {FILE_ATTRIBUTE_DIRECTORY, L'D'},
                    {FILE_ATTRIBUTE_ARCHIVE, L'A'},    {FILE_ATTRIBUTE_COMPRESSED, L'C'},
                    {FILE_ATTRIBUTE_ENCRYPTED, L'E'}};
    DWORD attributes = found.dwFileAttributes;
    for (const auto& entry : kLetters) out.Put((attributes & entry.bit) ? entry.letter : L'-');
    out.Put((attributes & FILE_ATTRIBUTE_NOT_CONTENT_INDEXED) ? L'-' : L'I');
    out.Put(L' ');
}

void AppendTimeStamp(const WIN32_FIND_DATAW& found, ExpandOutput& out)
{
    FILETIME local;
    SYSTEMTIME stamp{};
    FileTimeToLocalFileTime(&found.ftLastWriteTime, &local);
    FileTimeToSystemTime(&local, &stamp);
    wchar_t text[96];
    FormatShortDate(stamp, DatePadded, text, 80);
    out.Put(text);
    std::swprintf(text, 96, L" %2d:%02d ", stamp.wHour, stamp.wMinute);
    out.Put(text);
}

void AppendSize(const WIN32_FIND_DATAW& found, ExpandOutput& out)
{
    wchar_t text[40];
    ui64tow_ex((uint64_t(found.nFileSizeHigh) << 32) | found.nFileSizeLow, text, 10);
    out.Put(StrCommaW(text));
    out.Put(L' ');
}

void AppendFileFacts(const TildeModifiers& m, ExpandOutput& out)
{
    if (!(m.a || m.t || m.z) || !m.workPath[0]) return;
    WIN32_FIND_DATAW found;
    HANDLE find = FindFirstFileW(m.workPath, &found);
    if (find == INVALID_HANDLE_VALUE) return;
    FindClose(find);
    if (m.a) AppendAttributes(found, out);
    if (m.t) AppendTimeStamp(found, out);
    if (m.z) AppendSize(found, out);
}

void ReducePath(TildeModifiers& m)
{
    // A path the system cannot shorten stays as it is.
    if (m.s) GetShortPathNameW(m.workPath, m.workPath, 4096);
    else if (m.f) m.d = m.p = m.n = m.x = 0;
    if (!(m.d || m.p || m.n || m.x)) return;
    wchar_t drive[kPathMax], directory[kPathMax], name[kPathMax], extension[kPathMax];
    FNSplitW(m.workPath, drive, directory, name, extension);
    FNMergeW(m.workPath, m.d ? drive : nullptr, m.p ? directory : nullptr, m.n ? name : nullptr,
             m.x ? extension : nullptr);
}

} // namespace

const wchar_t* ExpandTildeForm(const wchar_t* p, const TildeSelector& selector, ExpandOutput& out)
{
    auto base = std::make_unique<wchar_t[]>(kValueMax);
    if (selector.IsSelector(*p)) {
        const wchar_t* value = selector.Value(*p);
        if (value) {
            Unquote(value, base.get(), kValueMax);
            out.Put(base.get());
        }
        return p + 1;
    }
    auto m = std::make_unique<TildeModifiers>();
    p = ReadModifiers(p, *m);
    const wchar_t* value = nullptr;
    if (*p && selector.IsSelector(*p)) value = selector.Value(*p++);
    if (!m->Any()) return p;

    if (value) Unquote(value, base.get(), kValueMax);
    else CopyCutW(base.get(), L".", kValueMax);
    if (m->dollar) SearchDollarPath(base.get(), *m);
    else FullPath(base.get(), m->workPath, 4096);

    AppendFileFacts(*m, out);
    ReducePath(*m);
    if (m->f || m->s || m->d || m->p || m->n || m->x || m->dollar) out.Put(m->workPath);
    return p;
}
