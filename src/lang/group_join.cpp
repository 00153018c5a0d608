#include "lang/group_join.h"

#include "app/globals.h"

#include <cwchar>

bool IsBlankLine(const wchar_t* line) { return *SkipWhiteW(line) == 0; }

bool TakeEchoMark(const wchar_t*& text)
{
    if (*text != L'@') return false;
    ++text;
    return true;
}

void GroupJoiner::Clear()
{
    text_[0] = 0;
    length_ = 0;
}

GroupJoiner::Result GroupJoiner::Add(const wchar_t* line)
{
    wchar_t first = *SkipWhiteW(line);
    wchar_t last = length_ ? text_[length_ - 1] : 0;
    bool separate = length_ > 0 && first != L')' && first != L'}' && last != L'(' && last != L'{';
    int units = int(std::wcslen(line));
    int added = units + (separate ? 1 : 0);
    if (length_ + added > kLineMax - 1) return Result::TooLong;
    if (separate) text_[length_++] = CharSplit;
    std::wmemcpy(text_ + length_, line, size_t(units) + 1);
    length_ += units;
    return GetGroupW(text_) ? Result::Open : Result::Complete;
}
