// Conversions between wide text, the active code page and UTF-8.
#include "app/toolkit/omdib.h"

#include <cstdlib>

int ActiveCodePage = 1;

UINT CodePageOf(int activeCodePage)
{
    switch (activeCodePage) {
    case 0: return CP_ACP;
    case 1: return CP_OEMCP;
    case 2: return CP_MACCP;
    default: return UINT(activeCodePage);
    }
}

// MB_PRECOMPOSED where the code page takes it. UTF-7, UTF-8, the ISO-2022 and
// ISCII families and Symbol refuse every flag, and a conversion given one
// fails outright, so after "chcp 65001" no text would convert at all.
static DWORD PrecomposedFor(UINT codePage)
{
    bool refusesFlags = codePage == 42 || (codePage >= 50220 && codePage <= 50229) ||
                        (codePage >= 57002 && codePage <= 57011) || codePage == CP_UTF7 || codePage == CP_UTF8;
    return refusesFlags ? 0 : MB_PRECOMPOSED;
}

void StringHolder::Reset()
{
    std::free(narrow);
    std::free(wide);
    narrow = nullptr;
    wide = nullptr;
    converted = 0;
    required = 0;
}

static char* Narrow(StringHolder& holder, const wchar_t* text, UINT codePage)
{
    std::free(holder.narrow);
    holder.narrow = nullptr;
    if (!text) return nullptr;
    int size = WideCharToMultiByte(codePage, 0, text, -1, nullptr, 0, nullptr, nullptr);
    holder.required = size;
    if (size <= 0) size = 1;
    holder.narrow = static_cast<char*>(std::malloc(size_t(size)));
    if (!holder.narrow) return nullptr;
    int n = WideCharToMultiByte(codePage, 0, text, -1, holder.narrow, size, nullptr, nullptr);
    holder.converted = n > 0 ? n : 0;
    holder.narrow[n > 0 ? n - 1 : 0] = 0;
    holder.narrow[size - 1] = 0;
    return holder.narrow;
}

static wchar_t* Wide(StringHolder& holder, const char* text, UINT codePage, DWORD flags)
{
    std::free(holder.wide);
    holder.wide = nullptr;
    if (!text) return nullptr;
    int size = MultiByteToWideChar(codePage, flags, text, -1, nullptr, 0);
    holder.required = size;
    if (size <= 0) size = 1;
    holder.wide = static_cast<wchar_t*>(std::malloc(size_t(size) * sizeof(wchar_t)));
    if (!holder.wide) return nullptr;
    int n = MultiByteToWideChar(codePage, flags, text, -1, holder.wide, size);
    holder.converted = n > 0 ? n : 0;
    holder.wide[n > 0 ? n - 1 : 0] = 0;
    holder.wide[size - 1] = 0;
    return holder.wide;
}

char* ToNarrow(StringHolder& holder, const wchar_t* wideText)
{
    return Narrow(holder, wideText, CodePageOf(ActiveCodePage));
}

char* ToUtf8(StringHolder& holder, const wchar_t* wideText) { return Narrow(holder, wideText, CP_UTF8); }

wchar_t* ToWide(StringHolder& holder, const char* narrowText)
{
    UINT codePage = CodePageOf(ActiveCodePage);
    return Wide(holder, narrowText, codePage, PrecomposedFor(codePage));
}

wchar_t* FromUtf8(StringHolder& holder, const char* utf8Text) { return Wide(holder, utf8Text, CP_UTF8, 0); }

wchar_t* CopyWide(StringHolder& holder, const wchar_t* wideText)
{
    std::free(holder.wide);
    holder.wide = nullptr;
    if (!wideText) return nullptr;
    size_t n = size_t(lstrlenW(wideText)) + 1;
    holder.wide = static_cast<wchar_t*>(std::malloc(n * sizeof(wchar_t)));
    if (!holder.wide) return nullptr;
    for (size_t i = 0; i < n; ++i) holder.wide[i] = wideText[i];
    holder.converted = holder.required = int(n);
    return holder.wide;
}

// The text's own length is the count, held to what fits: a text too long for
// the buffer is cut there, as every fixed buffer cuts, and not lost whole.
int ToNarrowInto(const wchar_t* wideText, char* buffer, int bufferSize)
{
    if (bufferSize <= 0) return 0;
    UINT codePage = CodePageOf(ActiveCodePage);
    int room = bufferSize - 1;
    int units = lstrlenW(wideText);
    if (units > room) units = room; // every unit takes at least one byte
    for (int size; units > 0 && (size = WideCharToMultiByte(codePage, 0, wideText, units, nullptr, 0, nullptr,
                                                              nullptr)) > room;)
        units -= (size - room + 2) / 3; // no unit takes more than three bytes
    int n = units > 0 ? WideCharToMultiByte(codePage, 0, wideText, units, buffer, room, nullptr, nullptr) : 0;
    buffer[n] = 0;
    return n;
}

int ToWideInto(const char* narrowText, wchar_t* buffer, int bufferSize)
{
    if (bufferSize <= 0) return 0;
    int room = bufferSize - 1;
    int bytes = lstrlenA(narrowText);
    if (bytes > room) bytes = room; // no byte gives more than one unit
    UINT codePage = CodePageOf(ActiveCodePage);
    int n = bytes > 0 ? MultiByteToWideChar(codePage, PrecomposedFor(codePage), narrowText, bytes, buffer, room) : 0;
    buffer[n] = 0;
    return n;
}

void SwapBytes(wchar_t* text, int count)
{
    for (int i = 0; i < count; ++i) text[i] = wchar_t(((text[i] & 0xFF) << 8) | ((text[i] >> 8) & 0xFF));
}
