// String commands on a whole text: strsize, upper, lower, strrev, strtrim,
// comma, parse, strfind, strrfind, strrep. Each leaves its result in the
// variable named after it.
#include "app/toolkit/omdib.h"
#include "lang/builtins.h"
#include "lang/command_args.h"
#include "lang/string_text.h"

#include <cwchar>

namespace {

void SetCased(const wchar_t* name, bool upper)
{
    std::wstring text = TailText();
    if (!text.empty()) {
        if (upper) CharUpperBuffW(text.data(), DWORD(text.size()));
        else CharLowerBuffW(text.data(), DWORD(text.size()));
    }
    SetResult(name, text);
}

std::wstring TrimBlanks(const std::wstring& text)
{
    size_t first = text.find_first_not_of(L" \t");
    if (first == std::wstring::npos) return {};
    return text.substr(first, text.find_last_not_of(L" \t") - first + 1);
}

std::wstring TrimEnd(const std::wstring& text)
{
    size_t last = text.find_last_not_of(L" \t");
    return last == std::wstring::npos ? std::wstring() : text.substr(0, last + 1);
}

// The 1-based character position of the first or last occurrence; 0 if none.
void SetFound(const wchar_t* name, bool last)
{
    if (CommandArgs.ArgCount == 0) {
        SetResult(name, L"0");
        return;
    }
    std::wstring needle = CommandArgs.Args[0];
    std::wstring text = BehindWord(TailText().c_str());
    size_t at = std::wstring::npos;
    if (!last) at = text.find(needle);
    else if (!needle.empty() && needle.size() <= text.size()) at = text.rfind(needle);
    int position = at == std::wstring::npos ? 0 : CharCountW(text.c_str(), int(at)) + 1;
    SetResult(name, std::to_wstring(position));
}

} // namespace

void CmdStrsize()
{
    std::wstring text = TailText();
    SetResult(L"STRSIZE", std::to_wstring(CharCountW(text.c_str(), int(text.size()))));
}

void CmdUpper() { SetCased(L"UPPER", true); }

void CmdLower() { SetCased(L"LOWER", false); }

void CmdStrrev()
{
    std::wstring text = TailText();
    std::vector<int> starts = CharacterStarts(text);
    std::wstring reversed;
    reversed.reserve(text.size());
    for (size_t i = starts.size() - 1; i > 0; --i)
        reversed.append(text, size_t(starts[i - 1]), size_t(starts[i] - starts[i - 1]));
    SetResult(L"STRREV", reversed);
}

void CmdStrtrim() { SetResult(L"STRTRIM", TrimBlanks(TailText())); }

void CmdComma()
{
    std::wstring text = TailText();
    const wchar_t* digits = SkipWhiteW(text.c_str());
    std::wstring number(digits, size_t(SkipNumW(digits) - digits));
    if (number.empty()) {
        SetResult(L"COMMA", number);
        return;
    }
    // Room for a separator behind every digit.
    std::vector<wchar_t> grouped(number.size() * 2 + 2);
    CopyCutW(grouped.data(), number.c_str(), int(grouped.size()));
    SetResult(L"COMMA", StrCommaW(grouped.data()));
}

void CmdParse()
{
    std::wstring text = SkipWhiteW(TailText().c_str());
    size_t at = text.find_first_of(L",'\".!:\\/");
    if (at == std::wstring::npos) {
        SetResult(L"PARSEA", TrimEnd(text));
        SetResult(L"PARSEB", L"");
        return;
    }
    SetResult(L"PARSEA", TrimEnd(text.substr(0, at)));
    SetResult(L"PARSEB", TrimEnd(SkipWhiteW(text.c_str() + at + 1)));
}

void CmdStrfind() { SetFound(L"STRFIND", false); }

void CmdStrrfind() { SetFound(L"STRRFIND", true); }

void CmdStrrep()
{
    if (CommandArgs.ArgCount < 2 || !CommandArgs.Args[0][0]) {
        SetResult(L"STRREP", L"");
        return;
    }
    std::wstring before = CommandArgs.Args[0];
    std::wstring after = CommandArgs.Args[1];
    std::wstring tail = TailText();
    std::wstring text = BehindWord(BehindWord(tail.c_str()));
    std::wstring result;
    size_t from = 0;
    for (size_t at; (at = text.find(before, from)) != std::wstring::npos && result.size() < size_t(kLineMax);
         from = at + before.size())
        result.append(text, from, at - from).append(after);
    if (from < text.size()) result.append(text, from, std::wstring::npos);
    if (result.size() > size_t(kLineMax - 1)) result.resize(size_t(kLineMax - 1));
    SetResult(L"STRREP", result);
}
