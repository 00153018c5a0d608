// Text and path toolkit: the walking, quoting, character, number, path and
// code-page primitives that every parser in the shell is built from.
//
// All text is zero-terminated UTF-16. The walkers take a pointer into a text
// and return a pointer into the same text; none of them writes, allocates or
// reads past the terminator. Only the StringHolder conversions allocate.
#pragma once

#include <windows.h>

#include <cstdint>


// Fixed buffer sizes shared by the whole program: a path, and a command line
// (4095 units of text and the terminator; longer text is cut silently).
constexpr int kPathMax = 260;
constexpr int kLineMax = 4096;

inline bool IsWhite(wchar_t c) { return c == L' ' || c == L'\t'; }

// --- Pointer walking -------------------------------------------------------
const wchar_t* SkipWhiteW(const wchar_t* p);
const wchar_t* SkipAlphaW(const wchar_t* p);
const wchar_t* SkipStrW(const wchar_t* p);
const wchar_t* SkipArgW(const wchar_t* p);
const wchar_t* SkipGroupW(const wchar_t* p);
const wchar_t* SkipNumW(const wchar_t* p);
int GetGroupW(const wchar_t* p);
wchar_t CharLastW(const wchar_t* p);

// Writable-text forms of the walkers, for parsers that cut the text in place.
inline wchar_t* SkipWhiteW(wchar_t* p) { return const_cast<wchar_t*>(SkipWhiteW(static_cast<const wchar_t*>(p))); }
inline wchar_t* SkipAlphaW(wchar_t* p) { return const_cast<wchar_t*>(SkipAlphaW(static_cast<const wchar_t*>(p))); }
inline wchar_t* SkipStrW(wchar_t* p) { return const_cast<wchar_t*>(SkipStrW(static_cast<const wchar_t*>(p))); }
inline wchar_t* SkipArgW(wchar_t* p) { return const_cast<wchar_t*>(SkipArgW(static_cast<const wchar_t*>(p))); }
inline wchar_t* SkipGroupW(wchar_t* p) { return const_cast<wchar_t*>(SkipGroupW(static_cast<const wchar_t*>(p))); }
inline wchar_t* SkipNumW(wchar_t* p) { return const_cast<wchar_t*>(SkipNumW(static_cast<const wchar_t*>(p))); }

// --- Quotes ----------------------------------------------------------------
// p is at the opening quote; the text is rewritten in place without the
// enclosing quotes and with each doubled quote reduced to one.
wchar_t* ConvertStrW(wchar_t* p);
wchar_t* ConvertStrExW(wchar_t* p, wchar_t quote);

// --- Characters inside a buffer ----------------------------------------------
// A character is one unit, a surrogate pair, or a base with the combining
// marks behind it: exactly what one cell of the text screen holds.
bool IsCombiningMark(wchar_t unit);
int IndexNextW(const wchar_t* text, int index, int* width);
int IndexPrevW(const wchar_t* text, int index, int* width);
int CharCountW(const wchar_t* text, int units);
const wchar_t* _CharNextW(const wchar_t* text, int maxUnits, int* units);
const wchar_t* _CharPrevW(const wchar_t* start, const wchar_t* end);

// --- Filling, searching, copying ------------------------------------------------
void lstrnsetW(wchar_t* buffer, wchar_t unit, int count);
const wchar_t* lstrstriW(const wchar_t* text, const wchar_t* needle);
wchar_t* lstpcpyW(wchar_t* destination, const wchar_t* source);
// Copies at most size - 1 units and always terminates; the cut is silent.
wchar_t* CopyCutW(wchar_t* destination, const wchar_t* source, int size);
wchar_t ToUpperUnit(wchar_t c);
wchar_t ToLowerUnit(wchar_t c);

// --- Numbers (all 64 bits wide) ----------------------------------------------------
int64_t lstrtoi64W(const wchar_t* text, const wchar_t** end, int base);
int64_t wtoi64_ex(const wchar_t* text);
uint64_t wtoui64_ex(const wchar_t* text);
int64_t atoi64_ex(const char* text);
uint64_t atoui64_ex(const char* text);
wchar_t* i64tow_ex(int64_t value, wchar_t* buffer, int radix);
wchar_t* ui64tow_ex(uint64_t value, wchar_t* buffer, int radix);
wchar_t* StrCommaW(wchar_t* text);

// --- Paths ---------------------------------------------------------------------
void FNSplitW(const wchar_t* path, wchar_t* drive, wchar_t* directory, wchar_t* name, wchar_t* extension);
void FNMergeW(wchar_t* path, const wchar_t* drive, const wchar_t* directory, const wchar_t* name,
              const wchar_t* extension);
int GetDisk();
void SetDisk(int drive);
int GetCurDirW(int drive, wchar_t* buffer);
void GetFileNameCaseW(wchar_t* path);

// --- Code pages --------------------------------------------------------------------
// 0 Windows default, 1 OEM default, 2 Macintosh default, else a code page number.
extern int ActiveCodePage;
UINT CodePageOf(int activeCodePage);

// One per stack frame for any conversion: owns both buffers and frees them on
// leaving, so no conversion leaks on an early return.
struct StringHolder {
    char* narrow = nullptr;
    wchar_t* wide = nullptr;
    int converted = 0;
    int required = 0;

    StringHolder() = default;
    StringHolder(const StringHolder&) = delete;
    StringHolder& operator=(const StringHolder&) = delete;
    ~StringHolder() { Reset(); }
    void Reset();
};

char* ToNarrow(StringHolder& holder, const wchar_t* wideText);
char* ToUtf8(StringHolder& holder, const wchar_t* wideText);
wchar_t* ToWide(StringHolder& holder, const char* narrowText);
wchar_t* FromUtf8(StringHolder& holder, const char* utf8Text);
wchar_t* CopyWide(StringHolder& holder, const wchar_t* wideText);
int ToNarrowInto(const wchar_t* wideText, char* buffer, int bufferSize);
int ToWideInto(const char* narrowText, wchar_t* buffer, int bufferSize);
void SwapBytes(wchar_t* text, int count);

