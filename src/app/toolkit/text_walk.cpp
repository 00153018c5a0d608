// Pointer walkers and quote removal. Brackets, quotes and the ^ escape are
// treated exactly as the statement splitter treats them, so a bracket that the
// splitter ignores is ignored here too.
#include "app/toolkit/omdib.h"

const wchar_t* SkipWhiteW(const wchar_t* p)
{
    while (IsWhite(*p)) ++p;
    return p;
}

const wchar_t* SkipAlphaW(const wchar_t* p)
{
    while (*p && !IsWhite(*p)) ++p;
    return p;
}

const wchar_t* SkipStrW(const wchar_t* p)
{
    while (*p) {
        if (*p == L'"') {
            if (p[1] != L'"') return p + 1;
            p += 2;
        } else {
            ++p;
        }
    }
    return p;
}

const wchar_t* SkipArgW(const wchar_t* p)
{
    p = SkipWhiteW(p);
    while (*p && !IsWhite(*p)) p = (*p == L'"') ? SkipStrW(p + 1) : p + 1;
    return SkipWhiteW(p);
}

// Walks a group from its opening bracket; tells whether it was closed.
static const wchar_t* WalkGroup(const wchar_t* p, bool* closed)
{
    int depth = 0;
    while (*p) {
        wchar_t c = *p;
        if (c == L'^') {
            p += p[1] ? 2 : 1;
            continue;
        }
        if (c == L'"') {
            p = SkipStrW(p + 1);
            continue;
        }
        ++p;
        if (c == L'(' || c == L'{') {
            ++depth;
        } else if ((c == L')' || c == L'}') && --depth == 0) {
            *closed = true;
            return p;
        }
    }
    *closed = false;
    return p;
}

const wchar_t* SkipGroupW(const wchar_t* p)
{
    bool closed;
    return WalkGroup(p, &closed);
}

const wchar_t* SkipNumW(const wchar_t* p)
{
    while (*p >= L'0' && *p <= L'9') ++p;
    return p;
}

int GetGroupW(const wchar_t* p)
{
    while (*p) {
        if (*p == L'^') {
            p += p[1] ? 2 : 1;
        } else if (*p == L'"') {
            p = SkipStrW(p + 1);
        } else if (*p == L'(' || *p == L'{') {
            bool closed;
            p = WalkGroup(p, &closed);
            if (!closed) return 1;
        } else {
            ++p;
        }
    }
    return 0;
}

wchar_t CharLastW(const wchar_t* p)
{
    if (!*p) return 0;
    while (p[1]) ++p;
    return *p;
}

wchar_t* ConvertStrExW(wchar_t* p, wchar_t quote)
{
    wchar_t* out = p;
    const wchar_t* in = p + 1;
    while (*in) {
        if (*in == quote) {
            if (in[1] != quote) break;
            ++in;
        }
        *out++ = *in++;
    }
    *out = 0;
    return p;
}

wchar_t* ConvertStrW(wchar_t* p) { return ConvertStrExW(p, L'"'); }

void lstrnsetW(wchar_t* buffer, wchar_t unit, int count)
{
    for (int i = 0; i < count; ++i) buffer[i] = unit;
}

wchar_t ToUpperUnit(wchar_t c)
{
    if (c < 128) return (c >= L'a' && c <= L'z') ? wchar_t(c - 32) : c;
    return wchar_t(LOWORD(reinterpret_cast<ULONG_PTR>(CharUpperW(reinterpret_cast<LPWSTR>(ULONG_PTR(c))))));
}

wchar_t ToLowerUnit(wchar_t c)
{
    if (c < 128) return (c >= L'A' && c <= L'Z') ? wchar_t(c + 32) : c;
    return wchar_t(LOWORD(reinterpret_cast<ULONG_PTR>(CharLowerW(reinterpret_cast<LPWSTR>(ULONG_PTR(c))))));
}

const wchar_t* lstrstriW(const wchar_t* text, const wchar_t* needle)
{
    if (!*needle) return text;
    for (; *text; ++text) {
        int i = 0;
        while (needle[i] && text[i] && ToUpperUnit(text[i]) == ToUpperUnit(needle[i])) ++i;
        if (!needle[i]) return text;
    }
    return nullptr;
}

wchar_t* lstpcpyW(wchar_t* destination, const wchar_t* source)
{
    while ((*destination = *source++) != 0) ++destination;
    return destination;
}

wchar_t* CopyCutW(wchar_t* destination, const wchar_t* source, int size)
{
    if (size <= 0) return destination;
    int i = 0;
    for (; i < size - 1 && source[i]; ++i) destination[i] = source[i];
    destination[i] = 0;
    return destination;
}
