#include "lang/for_stream.h"

#include "app/errors.h"
#include "app/toolkit/omdib.h"

#include <climits>
#include <cwchar>

namespace {

constexpr int kTabStop = 4;

// An option word: its first letter exactly as given (lower case), the rest
// in any case. p moves behind it when it matches.
bool TakeOption(const wchar_t*& p, const wchar_t* word)
{
    if (*p != word[0]) return false;
    size_t n = std::wcslen(word);
    for (size_t i = 1; i < n; ++i)
        if (ToLowerUnit(p[i]) != word[i]) return false;
    p += n;
    return true;
}

bool AtWordEnd(const wchar_t* p) { return !*p || IsWhite(*p); }

// digits: a decimal number that fits 32 bits.
bool TakeNumber(const wchar_t*& p, int32_t& value)
{
    const wchar_t* start = p;
    int64_t n = 0;
    for (; *p >= L'0' && *p <= L'9'; ++p) {
        n = n * 10 + (*p - L'0');
        if (n > INT32_MAX) return false;
    }
    value = int32_t(n);
    return p != start;
}

wchar_t NextLetter(wchar_t letter)
{
    if (letter == L'Z') return L'a';
    if (letter == L'z') return L'A';
    return wchar_t(letter + 1);
}

} // namespace

bool ForFileStream::ParseOptions(const wchar_t* p)
{
    for (;;) {
        p = SkipWhiteW(p);
        if (!*p) return true;
        if (TakeOption(p, L"eol=")) {
            // A blank or tab behind the sign leaves the character as it was.
            if (!*p) EndOfLine = 0;
            else if (!IsWhite(*p)) EndOfLine = *p++;
        } else if (TakeOption(p, L"skip=")) {
            if (!TakeNumber(p, Skip)) return false;
        } else if (TakeOption(p, L"delims=")) {
            if (!TakeDelimiters(p)) return false;
        } else if (TakeOption(p, L"tokens=")) {
            if (!TakeTokens(p)) return false;
        } else if (TakeOption(p, L"usebackq")) {
            UseBackQuotes = 1;
        } else {
            return false;
        }
        if (!AtWordEnd(p)) return false;
    }
}

// chars up to the next blank; blanks that end the option text belong to it,
// so a blank can be a delimiter when it comes last.
bool ForFileStream::TakeDelimiters(const wchar_t*& p)
{
    const wchar_t* end = SkipAlphaW(p);
    if (!*SkipWhiteW(end)) end += std::wcslen(end);
    if (end - p > kMaxDelimiters) return false;
    DelimiterCount = 0;
    bool blank = false, tab = false;
    for (; p < end; ++p) {
        Delimiters[DelimiterCount++] = *p;
        blank = blank || *p == L' ';
        tab = tab || *p == L'\t';
    }
    // A blank brings the tab with it.
    if (blank && !tab) Delimiters[DelimiterCount++] = L'\t';
    return true;
}

// list := item { "," item } [ "*" ] | "*", item := N [ "-" M ]
bool ForFileStream::TakeTokens(const wchar_t*& p)
{
    TokenCount = 0;
    int32_t last = 0;
    auto add = [&](int32_t kind, int32_t number) {
        if (TokenCount >= kMaxTokens) return false;
        Tokens[TokenCount++] = ForToken{kind, number, -1, 0, 0};
        return true;
    };
    for (;;) {
        if (*p == L'*') {
            ++p;
            return last < INT32_MAX && add(RestToken, last + 1);
        }
        int32_t first = 0, final = 0;
        if (!TakeNumber(p, first) || first == 0) return false;
        final = first;
        if (*p == L'-') {
            ++p;
            if (!TakeNumber(p, final) || final < first) return false;
        }
        if (final - first >= kMaxTokens) return false;
        for (int32_t n = first; n <= final; ++n)
            if (!add(FieldToken, n)) return false;
        last = final;
        if (*p == L',') ++p;
        else if (*p != L'*') return true;
    }
}

void ForFileStream::AssignLetters(wchar_t first)
{
    wchar_t letter = first;
    for (int i = 0; i < TokenCount; ++i) {
        if (i > 0) letter = NextLetter(letter);
        if (i > 0 && letter == first) {
            for (; i < TokenCount; ++i) Tokens[i].Letter = 0;
            return;
        }
        Tokens[i].Letter = letter;
    }
}

const ForToken* ForFileStream::TokenOf(wchar_t letter) const
{
    for (int i = 0; i < TokenCount; ++i)
        if (Tokens[i].Letter == letter && letter) return &Tokens[i];
    return nullptr;
}

bool ForFileStream::OpenData(const wchar_t* path)
{
    ReportErrors = 1;
    if (!Open(path, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, OPEN_EXISTING)) return false;
    if (SniffEncoding() == NotText) {
        Close();
        ReportId(46);
        return false;
    }
    return true;
}

bool ForFileStream::IsDelimiter(wchar_t c) const
{
    return DelimiterCount > 0 && std::wmemchr(Delimiters, c, size_t(DelimiterCount)) != nullptr;
}

// Adjacent delimiters make empty fields; a field past the end is empty.
// True when any token has text.
bool ForFileStream::LocateTokens(const wchar_t* text)
{
    int length = int(std::wcslen(text));
    bool any = false;
    for (int i = 0; i < TokenCount; ++i) {
        ForToken& token = Tokens[i];
        int start = 0, field = 1;
        while (field < token.Number && start < length) {
            while (start < length && !IsDelimiter(text[start])) ++start;
            if (start < length) {
                ++start;
                ++field;
            }
        }
        token.Offset = start;
        token.Length = 0;
        if (field < token.Number) continue;
        int end = start;
        while (end < length && !IsDelimiter(text[end])) ++end;
        token.Length = end - start;
        if (token.Kind == RestToken && token.Length > 0) token.Length = length - start;
        any = any || token.Length > 0;
    }
    return any;
}

const wchar_t* ForFileStream::NextFields()
{
    for (;;) {
        // Skipping happens before every line, not only at the start.
        for (int i = 0; i < Skip; ++i)
            if (!ReadLine()) return nullptr;
        const wchar_t* line;
        do {
            line = ReadLine();
            if (!line) return nullptr;
            while (*line && IsDelimiter(*line)) ++line;
        } while (*line && *line == EndOfLine);
        if (LocateTokens(line)) return line;
    }
}

bool ForFileStream::ReadNarrowLine(std::wstring& line)
{
    int32_t capacity = LineCapacity, keepTabs = KeepTabs;
    LineCapacity = kLineMax;
    KeepTabs = 1;
    bool got = TextStream::ReadNarrowLine(raw_);
    LineCapacity = capacity;
    KeepTabs = keepTabs;
    if (!got) return false;
    if (raw_.find(L'\t') == std::wstring::npos) {
        line.swap(raw_);
        return true;
    }
    line.clear();
    for (wchar_t c : raw_) {
        if (c == L'\t') line.append(size_t(kTabStop - int(line.size()) % kTabStop), L' ');
        else line += c;
    }
    if (line.size() > size_t(kLineMax)) line.resize(size_t(kLineMax));
    return true;
}
