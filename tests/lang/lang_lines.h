// Running lines through ombc.exe and looking at what it printed, line by line.
#pragma once

#include "support/ombc_runner.h"

#include <string>
#include <vector>

namespace lang_test {

// The output of a run as lines without their CR LF; a final empty line (from
// the last CR LF) is not counted.
inline std::vector<std::wstring> Lines(const std::wstring& output)
{
    std::vector<std::wstring> lines;
    std::wstring text = JoinLines(output);
    size_t start = 0;
    while (start < text.size()) {
        size_t end = text.find(L'\n', start);
        if (end == std::wstring::npos) end = text.size();
        lines.push_back(text.substr(start, end - start));
        start = end + 1;
    }
    return lines;
}

// Lines typed at the prompt of ombc.exe (UTF-8, one per line), and what came out.
inline std::vector<std::wstring> Typed(const std::string& input, const std::wstring& arguments = L"")
{
    return Lines(RunOmbc(arguments, input).Output);
}

// The lines that are not empty: error reports are followed by a blank line.
inline std::vector<std::wstring> NonEmpty(const std::vector<std::wstring>& lines)
{
    std::vector<std::wstring> kept;
    for (const auto& line : lines)
        if (!line.empty()) kept.push_back(line);
    return kept;
}

// The whole output joined without line ends, for output that the screen wrapped.
inline std::wstring Unwrapped(const std::wstring& output)
{
    std::wstring text;
    for (wchar_t c : output)
        if (c != L'\r' && c != L'\n') text += c;
    return text;
}

} // namespace lang_test
