// String commands that take a part of a text: strsplit, substr, strpad,
// strfold, charnext and charprev. Positions count characters from 1.
#include "app/toolkit/omdib.h"
#include "lang/builtins.h"
#include "lang/command_args.h"
#include "lang/string_text.h"

#include <algorithm>
#include <cwchar>

namespace {

bool HasPrefixI(const wchar_t* text, const wchar_t* prefix)
{
    for (; *prefix; ++text, ++prefix)
        if (ToLowerUnit(*text) != *prefix) return false;
    return true;
}

// The character beside a caret position: position 0 stands before the
// first character, position n behind the nth.
void SetCharacterBeside(const wchar_t* name, bool after)
{
    std::wstring tail = TailText();
    if (CommandArgs.ArgCount < 2) {
        SetResult(name, L"");
        return;
    }
    int64_t position = LeadingNumber(tail.c_str());
    std::wstring text = BehindWord(tail.c_str());
    std::vector<int> starts = CharacterStarts(text);
    int64_t index = after ? position : position - 1;
    SetResult(name, index < 0 ? std::wstring() : Characters(text, starts, index, 1));
}

} // namespace

void CmdStrsplit()
{
    std::wstring tail = TailText();
    int64_t split = LeadingNumber(tail.c_str());
    std::wstring text = BehindWord(tail.c_str());
    if (split == 0) {
        SetResult(L"STRSPLITA", L"");
        SetResult(L"STRSPLITB", L"");
        return;
    }
    std::vector<int> starts = CharacterStarts(text);
    int64_t characters = int64_t(starts.size()) - 1;
    int64_t at = split > 0 ? split - 1 : characters + split;
    at = std::clamp<int64_t>(at, 0, characters);
    SetResult(L"STRSPLITA", text.substr(0, size_t(starts[size_t(at)])));
    SetResult(L"STRSPLITB", text.substr(size_t(starts[size_t(at)])));
}

void CmdSubstr()
{
    std::wstring tail = TailText();
    int64_t start = LeadingNumber(tail.c_str());
    const wchar_t* second = BehindWord(tail.c_str());
    int64_t count = LeadingNumber(second);
    if (count <= 0 || start == 0) {
        SetResult(L"SUBSTR", L"");
        return;
    }
    std::wstring text = BehindWord(second);
    std::vector<int> starts = CharacterStarts(text);
    int64_t characters = int64_t(starts.size()) - 1;
    int64_t first = start > 0 ? start - 1 : characters + start;
    SetResult(L"SUBSTR", Characters(text, starts, first, count));
}

void CmdStrpad()
{
    std::wstring tail = TailText();
    const wchar_t* kind = SkipWhiteW(tail.c_str());
    int how; // 0 left, 1 right, 2 centre
    if (HasPrefixI(kind, L"left")) how = 0;
    else if (HasPrefixI(kind, L"right")) how = 1;
    else if (HasPrefixI(kind, L"center") || HasPrefixI(kind, L"centre")) how = 2;
    else return;
    const wchar_t* widthWord = BehindWord(kind);
    int64_t width = std::clamp<int64_t>(LeadingNumber(widthWord), 0, kLineMax - 1);
    std::wstring text = BehindWord(widthWord);
    int64_t length = CharCountW(text.c_str(), int(text.size()));
    if (length >= width) {
        SetResult(L"STRPAD", text);
        return;
    }
    size_t surplus = size_t(width - length);
    size_t front = how == 0 ? 0 : how == 1 ? surplus : surplus / 2;
    SetResult(L"STRPAD", std::wstring(front, L' ') + text + std::wstring(surplus - front, L' '));
}

void CmdStrfold()
{
    if (CommandArgs.ArgCount < 2) {
        SetResult(L"STRFOLD", L"");
        return;
    }
    std::wstring tail = TailText();
    const wchar_t* kind = SkipWhiteW(tail.c_str());
    DWORD flags;
    if (HasPrefixI(kind, L"digits")) flags = MAP_FOLDDIGITS;
    else if (HasPrefixI(kind, L"ligatures")) flags = MAP_EXPAND_LIGATURES;
    else if (HasPrefixI(kind, L"kd") || HasPrefixI(kind, L"kc")) flags = 0;
    else if (HasPrefixI(kind, L"d")) flags = MAP_COMPOSITE;
    else if (HasPrefixI(kind, L"c")) flags = MAP_PRECOMPOSED;
    else return;
    std::wstring text = BehindWord(kind);
    // Expansion may triple a text; the result is cut to a work buffer.
    std::vector<wchar_t> folded(text.size() * 4 + 16);
    int units = text.empty() ? 0 : FoldStringW(flags, text.c_str(), int(text.size()), folded.data(), int(folded.size()));
    if (units <= 0) return;
    SetResult(L"STRFOLD", std::wstring(folded.data(), size_t(units)));
}

void CmdCharnext() { SetCharacterBeside(L"CHARNEXT", true); }

void CmdCharprev() { SetCharacterBeside(L"CHARPREV", false); }
