// Bad input at the prompt: unbalanced brackets and quotes, stray "%", lines
// and names past every limit, groups nested beyond reason. Each gives the
// system's message or a clean result, and the shell carries on.
#include "lang_lines.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace lang_test;

namespace {

using Texts = std::vector<std::wstring>;

std::string Repeat(const std::string& text, int times)
{
    std::string out;
    for (int i = 0; i < times; ++i) out += text;
    return out;
}

TEST(BadInput, UnbalancedBracketsAndQuotes)
{
    // Given whole (typed, an open group would wait for more lines).
    struct Case {
        const wchar_t* line;
        Texts out;
    } cases[] = {
        {L"echo (a & echo b", {L"(a & echo b"}},
        {L"echo a) & echo b", {L"a)", L"b"}},
        {L"(echo open group", {L"open group"}},
        {L"{echo open brace&echo second", {L"open brace", L"second"}},
        {L"echo \"abc & echo d", {L"\"abc & echo d"}},
        {L"echo \"\"\"", {L"\"\"\""}},
        {L"echo ^", {L"echo is ON"}}, // the lone caret goes: echo has no text
        {L"echo last", {L"last"}},
    };
    for (const Case& c : cases) {
        auto result = RunOmbc(L"/C \"" + std::wstring(c.line) + L"\"");
        EXPECT_EQ(NonEmpty(Lines(result.Output)), c.out) << c.line;
    }
}

TEST(BadInput, StrayPercentSigns)
{
    auto lines = Typed("echo abc%\n"
                       "echo %\n"
                       "echo %%%\n"
                       "echo 50% of %OMBT_NONE%\n");
    EXPECT_EQ(lines, (Texts{L"abc%", L"%", L"%%%", L"50% of"}));
}

TEST(BadInput, ExpansionPastTheLineIsCut)
{
    // Five values of 1,000 units would make 5,005; the statement stops at
    // 4,095, so echo shows 4,090 of them.
    std::string value = Repeat("v", 1000);
    auto result = RunOmbc(L"", "set OMBT_L=" + value + "\necho %OMBT_L%%OMBT_L%%OMBT_L%%OMBT_L%%OMBT_L%\n");
    EXPECT_EQ(Unwrapped(result.Output), std::wstring(4090, L'v'));

    // A line of 4,095 units made of references, each worth 1,000.
    std::string line = "echo ";
    while (line.size() + 10 <= 4095) line += "%OMBT_L%";
    line += Repeat("w", int(4095 - line.size()));
    ASSERT_EQ(line.size(), 4095u);
    result = RunOmbc(L"", "set OMBT_L=" + value + "\n" + line + "\necho after\n");
    auto lines = Lines(result.Output);
    ASSERT_FALSE(lines.empty());
    EXPECT_EQ(lines.back(), L"after");
    EXPECT_EQ(Unwrapped(result.Output), std::wstring(4090, L'v') + L"after");
}

TEST(BadInput, VeryLongNames)
{
    // 10,000 units are cut to a line of 4,095: the reference never closes,
    // and an assignment loses its "=". (Separate runs: a long input and a
    // long output at once would fill both pipes of the runner.)
    std::wstring huge(10000, L'n');
    auto result = RunOmbc(L"/C \"echo [%" + huge + L"%]\"");
    EXPECT_EQ(Unwrapped(result.Output), L"[%" + std::wstring(4088, L'n'));
    result = RunOmbc(L"/C \"set " + huge + L"=x&echo after\"");
    EXPECT_EQ(NonEmpty(Lines(result.Output)), (Texts{L"Syntax Error"}));
    EXPECT_EQ(result.ExitCode, 0); // set keeps the level

    // A name of 4,000 units fits, and works both ways.
    std::string name = "OMBT_" + Repeat("k", 3995);
    auto lines = Typed("set " + name + "=long name\necho [%" + name + "%]\n");
    EXPECT_EQ(lines, (Texts{L"[long name]"}));
}

TEST(BadInput, DeepGroups)
{
    // 1,000 levels run; 10,000 are cut to a line of 4,095 brackets, which is
    // refused with a message instead of running out of stack.
    std::string deep = Repeat("(", 1000) + "echo deep" + Repeat(")", 1000);
    std::string braces = Repeat("{", 1000) + "echo braces" + Repeat("}", 1000);
    auto result = RunOmbc(L"", deep + "\n" + braces + "\n");
    EXPECT_EQ(NonEmpty(Lines(result.Output)), (Texts{L"deep", L"braces"}));
    std::wstring tooDeep = std::wstring(10000, L'(') + L"echo never" + std::wstring(10000, L')');
    result = RunOmbc(L"/C \"" + tooDeep + L"\"");
    EXPECT_EQ(NonEmpty(Lines(result.Output)), (Texts{L"Out of memory"}));
    EXPECT_EQ(result.ExitCode, 1);
}

} // namespace
