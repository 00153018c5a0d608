#include "lang/variables.h"

#include "app/errors.h"
#include "app/toolkit/omdib.h"
#include "lang/environment_index.h"
#include "lang/internal_vars.h"

#include <algorithm>
#include <cwchar>
#include <memory>

int ReadVariable(const wchar_t* name, wchar_t* buffer, int size)
{
    buffer[0] = 0;
    if (!*name) return 0;
    const std::wstring* value = FindEnvironment(name);
    if (!value) return 0;
    // Too long for the caller: keep what fits.
    CopyCutW(buffer, value->c_str(), size);
    return int(std::min(value->size(), size_t(size - 1)));
}

bool SetVariable(const wchar_t* name, const wchar_t* value)
{
    if (value && !*value) value = nullptr;
    if (WriteEnvironment(name, value)) return true;
    // Deleting what does not exist is no failure.
    if (!value && GetLastError() == ERROR_ENVVAR_NOT_FOUND) return true;
    ReportId(4);
    return false;
}

static bool AllDigits(const wchar_t* from, const wchar_t* to)
{
    if (from == to) return false;
    for (; from < to; ++from)
        if (*from < L'0' || *from > L'9') return false;
    return true;
}

// name := base { "." part }; a part of digits stands, any other part is the
// value of the variable it names (an empty part names none, so stays empty).
const wchar_t* ResolveSubscripts(const wchar_t* name, wchar_t* buffer, int size)
{
    const wchar_t* point = name;
    while (*point && *point != L'.') ++point;
    if (!*point) return CopyCutW(buffer, name, size);

    int n = 0;
    auto put = [&](const wchar_t* from, const wchar_t* to) {
        for (; from < to && n < size - 1; ++from) buffer[n++] = *from;
    };
    put(name, point);
    std::wstring partName;
    while (*point == L'.') {
        const wchar_t* part = point + 1;
        const wchar_t* end = part;
        while (*end && *end != L'.') ++end;
        put(point, part);
        if (!part[std::wcsspn(part, L".")]) break; // trailing points are kept as one
        if (AllDigits(part, end)) {
            put(part, end);
        } else {
            partName.assign(part, size_t(std::min(int(end - part), kValueMax - 1)));
            const std::wstring* value = partName.empty() ? nullptr : FindEnvironment(partName.c_str());
            if (value) put(value->c_str(), value->c_str() + std::min(value->size(), size_t(kValueMax - 1)));
        }
        point = end;
    }
    buffer[n] = 0;
    return buffer;
}

// Parses [+|-]digits at p into value; end receives the stop. False when no
// digit stands there.
static bool ReadDecimal(const wchar_t* p, int64_t& value, const wchar_t*& end)
{
    value = lstrtoi64W(p, &end, 10);
    return end != p;
}

static int64_t Clamp(int64_t value, int64_t low, int64_t high) { return std::max(low, std::min(value, high)); }

// ~start[,length]: negative start counts from the end, negative length stops
// that far before the end.
static bool ApplySubstring(wchar_t* value, const wchar_t* form)
{
    int64_t length = lstrlenW(value);
    int64_t start, count;
    const wchar_t* p;
    if (!ReadDecimal(form, start, p)) return false;
    if (start < 0) start = length + start;
    start = Clamp(start, 0, length);
    int64_t stop = length;
    if (*p == L',') {
        if (!ReadDecimal(p + 1, count, p)) return false;
        stop = count >= 0 ? start + count : length + count;
        stop = std::max(Clamp(stop, 0, length), start);
    }
    if (*p) return false;
    int64_t kept = stop - start;
    std::copy(value + start, value + stop, value);
    value[kept] = 0;
    return true;
}

// find=replace: every case-blind occurrence, left to right, no rescanning.
static bool ApplyReplacement(wchar_t* value, const wchar_t* form, const wchar_t* equals)
{
    int findLength = int(equals - form);
    if (findLength == 0) return false;
    auto find = std::make_unique<wchar_t[]>(size_t(findLength) + 1);
    CopyCutW(find.get(), form, findLength + 1);
    const wchar_t* replacement = equals + 1;
    wchar_t result[kValueMax];
    int n = 0;
    auto put = [&](wchar_t c) {
        if (n < kValueMax - 2) result[n++] = c;
    };
    const wchar_t* p = value;
    while (*p) {
        const wchar_t* hit = lstrstriW(p, find.get());
        if (!hit) hit = p + lstrlenW(p);
        for (; p < hit; ++p) put(*p);
        if (!*p) break;
        for (const wchar_t* r = replacement; *r; ++r) put(*r);
        p += findLength;
    }
    result[n] = 0;
    CopyCutW(value, result, kValueMax);
    return true;
}

bool ApplyColonForm(wchar_t* value, const wchar_t* form)
{
    for (const wchar_t* p = form; *p; ++p)
        if (*p == L'=') return ApplyReplacement(value, form, p);
    if (*form == L'~') return ApplySubstring(value, form + 1);
    return false;
}

// The environment under the resolved name, else an internal variable.
static void ValueOf(const wchar_t* name, wchar_t* buffer)
{
    wchar_t resolved[kValueMax];
    ResolveSubscripts(name, resolved, kValueMax);
    if (ReadVariable(resolved, buffer, kValueMax) == 0) ResolveInternalVariable(name, buffer, kValueMax);
}

const wchar_t* LookupVariable(const wchar_t* name, wchar_t* buffer)
{
    wchar_t resolved[kValueMax];
    ResolveSubscripts(name, resolved, kValueMax);
    // A whole name that is set wins, even when it holds a colon.
    if (ReadVariable(resolved, buffer, kValueMax) > 0) return buffer;

    const wchar_t* colon = nullptr;
    for (const wchar_t* p = name; *p; ++p)
        if (*p == L':') colon = p;
    if (!colon) {
        ResolveInternalVariable(name, buffer, kValueMax);
        return buffer;
    }
    wchar_t base[kValueMax];
    CopyCutW(base, name, int(std::min<ptrdiff_t>(colon - name + 1, kValueMax)));
    ValueOf(base, buffer);
    if (!buffer[0] || !ApplyColonForm(buffer, colon + 1)) return nullptr;
    return buffer;
}
