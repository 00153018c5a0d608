#include "lang/command_args.h"

#include "app/errors.h"
#include "app/toolkit/omdib.h"

#include <cstring>
#include <cwchar>
#include <initializer_list>
#include <utility>

ParsedStage CommandArgs;

wchar_t* ParsedStage::Empty()
{
    static wchar_t empty[1] = {0};
    return empty;
}

static bool StartsWithWordI(const wchar_t* text, const wchar_t* word)
{
    for (; *word; ++word, ++text)
        if (ToLowerUnit(*text) != *word) return false;
    return true;
}

void ApplyDirectoryFix(wchar_t* text, int capacity)
{
    // Every word this looks for begins with c or e; most statements do not.
    wchar_t first = ToLowerUnit(*text);
    if (first != L'c' && first != L'e') return;
    if (StartsWithWordI(text, L"echo.") || StartsWithWordI(text, L"clip.")) return;
    for (const wchar_t* word : {L"cd", L"chdir"}) {
        int n = int(std::wcslen(word));
        if (!StartsWithWordI(text, word)) continue;
        wchar_t next = text[n];
        if (next != L'\\' && next != L'/' && next != L'.') continue;
        int length = int(std::wcslen(text));
        if (length + 1 >= capacity) return;
        std::memmove(text + n + 1, text + n, size_t(length - n + 1) * sizeof(wchar_t));
        text[n] = L' ';
        return;
    }
}

void ParsedStage::ParseTail(wchar_t* text)
{
    ApplyDirectoryFix(text, 4096);
    WholeLine = text;
    const wchar_t* p = SkipWhiteW(text);
    if (*p == L'"') p = SkipStrW(p + 1);
    else if (*p != L'(' && *p != L'{') p = SkipAlphaW(p);
    if (*p) ++p;
    Tail = p;
}

// Copies text into Normalised with blanks around quoted strings, brackets and
// before each "/", so that every word and switch stands on its own.
static void Normalise(const wchar_t* in, wchar_t* out, int size)
{
    int n = 0;
    auto put = [&](wchar_t c) {
        if (n < size - 1) out[n++] = c;
    };
    auto behindBlank = [&] { return n == 0 || IsWhite(out[n - 1]); };
    while (*in) {
        wchar_t c = *in;
        if (c == L'"') {
            if (!behindBlank()) put(L' ');
            put(*in++);
            // Copy up to the closing quote; a string left open is closed here.
            for (;;) {
                if (!*in) {
                    put(L'"');
                    break;
                }
                if (*in == L'"' && in[1] == L'"') {
                    put(*in++);
                    put(*in++);
                } else if (*in == L'"') {
                    put(*in++);
                    break;
                } else {
                    put(*in++);
                }
            }
            if (*in && !IsWhite(*in)) put(L' ');
        } else if (c == L'^') {
            put(c);
            ++in;
            if (*in) put(*in++);
        } else if (c == L'(' || c == L')' || c == L'{' || c == L'}') {
            if (!behindBlank()) put(L' ');
            put(c);
            ++in;
            if (*in && !IsWhite(*in)) put(L' ');
        } else if (c == L'/') {
            if (!behindBlank()) put(L' ');
            put(c);
            ++in;
        } else {
            put(c);
            ++in;
        }
    }
    out[n] = 0;
}

void ParsedStage::ParseWords(const wchar_t* text)
{
    LeadingBlank = IsWhite(*text) ? 1 : 0;
    Normalise(text, Normalised, kNormalisedSize);
    ApplyDirectoryFix(Normalised, kNormalisedSize);

    wchar_t* raw = RawCopies;
    wchar_t* rawEnd = RawCopies + kNormalisedSize - 1;
    auto keepRaw = [&](const wchar_t* from, const wchar_t* to) {
        wchar_t* start = raw;
        while (from < to && raw < rawEnd) *raw++ = *from++;
        *raw = 0;
        if (raw < rawEnd) ++raw;
        return start;
    };
    // Cuts a word at end; a quoted word loses its quotes.
    auto cutWord = [](wchar_t* start, wchar_t* end, bool quoted) {
        if (*end) *end++ = 0;
        if (quoted) start = ConvertStrW(start);
        return std::pair<wchar_t*, wchar_t*>(start, end);
    };

    wchar_t* p = SkipWhiteW(Normalised);
    bool quoted = *p == L'"';
    wchar_t* end = quoted ? SkipStrW(p + 1) : SkipAlphaW(p);
    RawCommand = keepRaw(p, end);
    auto [command, rest] = cutWord(p, end, quoted);
    if (quoted)
        for (wchar_t* q = command; *q; ++q)
            if (*q == L'/') *q = L'\\';
    Command = command;

    Switches[0] = 0;
    ArgCount = 0;
    int switchCount = 0;
    p = rest;
    while (*(p = SkipWhiteW(p))) {
        if (*p == L'/') {
            ++p;
            if (!*p) {
                if (switchCount < kSwitchesSize - 1) Switches[switchCount++] = L'/';
            }
            for (int letters = 0; *p && !IsWhite(*p); ++p)
                if (letters++ < 50 && switchCount < kSwitchesSize - 1)
                    Switches[switchCount++] = ToLowerUnit(*p);
            Switches[switchCount] = 0;
            continue;
        }
        quoted = *p == L'"';
        end = quoted ? SkipStrW(p + 1) : SkipAlphaW(p + 1);
        if (ArgCount < kMaxArgs) {
            RawArgs[ArgCount] = keepRaw(p, end);
            auto [arg, after] = cutWord(p, end, quoted);
            Args[ArgCount++] = arg;
            p = after;
        } else {
            p = end;
        }
    }
}

void ParsedStage::Parse(wchar_t* text)
{
    ParseTail(text);
    ParseWords(text);
}

bool ParsedStage::HasSwitches() const
{
    for (const wchar_t* s = Switches; *s; ++s)
        if (*s != L'-') return true;
    return false;
}

bool RejectSwitches()
{
    if (!CommandArgs.Switches[0]) return false;
    ReportId(2);
    return true;
}

bool RejectArguments()
{
    if (CommandArgs.ArgCount == 0) return false;
    ReportId(9);
    return true;
}
