// A started program inherits exactly the variables the shell holds at that
// moment, in the order set lists them, however they were changed before it.
#include "exec_support.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace {

using Lines = std::vector<std::wstring>;

// The lines of output that begin with OMBQ_ (case-blind), split at each line
// that reads "--".
std::vector<Lines> Sections(const std::wstring& output)
{
    std::vector<Lines> sections(1);
    size_t start = 0;
    while (start < output.size()) {
        size_t end = output.find(L'\n', start);
        if (end == std::wstring::npos) end = output.size();
        std::wstring line = output.substr(start, end - start);
        start = end + 1;
        if (line == L"--") sections.emplace_back();
        else if (line.size() > 5 && _wcsnicmp(line.c_str(), L"OMBQ_", 5) == 0) sections.back().push_back(line);
    }
    return sections;
}

Lines Sorted(Lines lines)
{
    std::sort(lines.begin(), lines.end(), [](const std::wstring& a, const std::wstring& b) {
        return _wcsicmp(a.c_str(), b.c_str()) < 0;
    });
    return lines;
}

TEST(ChildEnvironment, SeesTheVariablesAsSetListsThem)
{
    TempFolder f;
    // Set, changed, deleted and made again, all in one line, at the prompt
    // and in a batch program, with a child started in the middle of a loop.
    const std::string changes = "set OMBQ_OLD=&set OMBQ_A=1&set OMBQ_B=2&set OMBQ_A=changed&set OMBQ_B=&"
                                "set OMBQ_C=3&set ombq_b=back";
    const std::string show = "say_env OMBQ_&echo --&set&echo --";
    f.WriteBytes(L"e.bat", "@echo off\r\nset OMBQ_OLD=old\r\n" + changes + "&" + show +
                               "\r\nfor %%i in (1,2) do (set OMBQ_I=%%i&set OMBQ_A=&say_env OMBQ_I)\r\n");
    std::wstring output = TypedWithPrograms(f, "set OMBQ_OLD=old\n" + changes + "&" + show + "\ne.bat\n");
    const Lines expected = Sorted({L"OMBQ_A=changed", L"OMBQ_C=3", L"ombq_b=back"});
    std::vector<Lines> sections = Sections(output);
    ASSERT_EQ(sections.size(), 5u) << output;
    for (size_t i : {0u, 2u}) {
        EXPECT_EQ(sections[i], sections[i + 1]) << output;
        EXPECT_EQ(Sorted(sections[i]), expected) << output;
    }
    EXPECT_EQ(sections[4], (Lines{L"OMBQ_I=1", L"OMBQ_I=2"}));
}

TEST(ChildEnvironment, ARefusedNameFailsAtItsOwnStatement)
{
    TempFolder f;
    OmbrelSetting noBanner(L"Copyright", 0);
    f.WriteBytes(L"r.bat", "@echo off\r\nset OMBQ_R=1\r\nset =bad&echo same line\r\necho never\r\n");
    std::wstring output = TypedWithPrograms(f, "r.bat\ny\nsay_env OMBQ_R\nset =x&say_env OMBQ_R\n");
    EXPECT_EQ(output, L"Out of environment space\n\nsame line\nTerminate Batch at line 3 (Y/N)? y\n"
                      L"OMBQ_R=1\nOut of environment space\n\nOMBQ_R=1\n");
}

} // namespace
