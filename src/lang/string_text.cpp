#include "lang/string_text.h"

#include "app/toolkit/omdib.h"
#include "lang/command_args.h"
#include "lang/variables.h"

#include <algorithm>

std::wstring TailText()
{
    std::wstring text = CommandArgs.Tail;
    if (text.size() > size_t(kLineMax - 1)) text.resize(size_t(kLineMax - 1));
    return text;
}

const wchar_t* BehindWord(const wchar_t* text)
{
    const wchar_t* p = SkipWhiteW(text);
    while (*p && !IsWhite(*p)) p = *p == L'"' ? SkipStrW(p + 1) : p + 1;
    return *p ? p + 1 : p;
}

int64_t LeadingNumber(const wchar_t* text)
{
    const wchar_t* end;
    return lstrtoi64W(SkipWhiteW(text), &end, 0);
}

std::vector<int> CharacterStarts(const std::wstring& text)
{
    std::vector<int> starts;
    int length = int(text.size());
    for (int i = 0; i < length;) {
        starts.push_back(i);
        int width;
        int next = IndexNextW(text.c_str(), i, &width);
        i = next > i ? next : i + 1;
    }
    starts.push_back(length);
    return starts;
}

std::wstring Characters(const std::wstring& text, const std::vector<int>& starts, int64_t first, int64_t count)
{
    int64_t characters = int64_t(starts.size()) - 1;
    // Positions outside the text contribute nothing. Bounds far beyond any
    // text keep the sums below from overflowing.
    constexpr int64_t kFar = int64_t(1) << 40;
    first = std::clamp(first, -kFar, kFar);
    count = std::min(count, kFar);
    if (count <= 0 || first >= characters || (first < 0 && count <= -first)) return {};
    int64_t from = first < 0 ? 0 : first;
    int64_t to = count >= characters - first ? characters : first + count;
    return text.substr(size_t(starts[size_t(from)]), size_t(starts[size_t(to)] - starts[size_t(from)]));
}

void SetResult(const wchar_t* name, const std::wstring& value)
{
    SetVariable(name, value.substr(0, size_t(kLineMax - 1)).c_str());
}
