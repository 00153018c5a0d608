// Cutting lines into statements and statements into words, in process and
// end to end through ombc.exe.
#include "app/globals.h"
#include "app/toolkit/omdib.h"
#include "lang/command_args.h"
#include "lang/splitter.h"
#include "lang_lines.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

using namespace lang_test;

namespace {

// The statements of a line as the splitter hands them out, unexpanded.
std::vector<std::wstring> Statements(const wchar_t* line)
{
    auto splitter = std::make_unique<StatementSplitter>();
    std::vector<std::wstring> statements;
    if (!splitter->Start(line)) return statements;
    while (splitter->Next(false)) statements.push_back(splitter->Current);
    return statements;
}

void Parse(const wchar_t* text)
{
    static wchar_t stage[kLineMax];
    CopyCutW(stage, text, kLineMax);
    CommandArgs.Parse(stage);
}

std::vector<std::wstring> Arguments()
{
    std::vector<std::wstring> args;
    for (int i = 0; i < CommandArgs.ArgCount; ++i) args.push_back(CommandArgs.Args[i]);
    return args;
}

using Texts = std::vector<std::wstring>;

TEST(Splitter, SeparatorsEscapesQuotesAndGroups)
{
    EXPECT_EQ(Statements(L"echo a&echo b"), (Texts{L"echo a", L"echo b"}));
    EXPECT_EQ(Statements(L"echo a^&echo b"), (Texts{L"echo a^&echo b"}));
    EXPECT_EQ(Statements(L"echo \"a&b\"&x"), (Texts{L"echo \"a&b\"", L"x"}));
    EXPECT_EQ(Statements(L"echo (a&b)&x"), (Texts{L"echo (a&b)", L"x"}));
    EXPECT_EQ(Statements(L"if 1 {a&(b&c)}&x"), (Texts{L"if 1 {a&(b&c)}", L"x"}));
    // && is two separators with an empty statement between them.
    EXPECT_EQ(Statements(L"a&&b"), (Texts{L"a", L"", L"b"}));
    // A closing bracket means nothing to the splitter; an open one or an open
    // quote runs to the end of the line.
    EXPECT_EQ(Statements(L"a)&b"), (Texts{L"a)", L"b"}));
    EXPECT_EQ(Statements(L"echo (a&b"), (Texts{L"echo (a&b"}));
    EXPECT_EQ(Statements(L"echo \"a & b"), (Texts{L"echo \"a & b"}));
    // A "^" at the very end escapes nothing and does not run past the end.
    EXPECT_EQ(Statements(L"a^"), (Texts{L"a^"}));
    EXPECT_TRUE(Statements(L"").empty());

    wchar_t saved = CharSplit;
    CharSplit = L'~';
    EXPECT_EQ(Statements(L"a~b&c^~d"), (Texts{L"a", L"b", L"c^~d"}));
    CharSplit = saved;
}

TEST(Splitter, WordsSwitchesAndTail)
{
    Parse(L"dir/a/b");
    EXPECT_STREQ(CommandArgs.Command, L"dir");
    EXPECT_STREQ(CommandArgs.Switches, L"ab");
    EXPECT_EQ(CommandArgs.ArgCount, 0);

    // Every unquoted "/" starts a switch, wherever it stands.
    Parse(L"dir c:/X /-p \"q/r\"");
    EXPECT_EQ(Arguments(), (Texts{L"c:", L"q/r"}));
    EXPECT_STREQ(CommandArgs.Switches, L"x-p");
    EXPECT_FALSE(CommandArgs.HasSwitches() && std::wstring(CommandArgs.Switches) == L"-");

    Parse(L"  \"c:/my files/run\" a \"b \"\"c\"\"\" d");
    EXPECT_EQ(CommandArgs.LeadingBlank, 1);
    EXPECT_STREQ(CommandArgs.Command, L"c:\\my files\\run");
    EXPECT_STREQ(CommandArgs.RawCommand, L"\"c:/my files/run\"");
    EXPECT_EQ(Arguments(), (Texts{L"a", L"b \"c\"", L"d"}));
    EXPECT_STREQ(CommandArgs.RawArgs[1], L"\"b \"\"c\"\"\"");
    EXPECT_STREQ(CommandArgs.Tail, L"a \"b \"\"c\"\"\" d");

    // Tail keeps the spacing behind the one character that ended the word.
    Parse(L"echo  x  y");
    EXPECT_STREQ(CommandArgs.Tail, L" x  y");
    EXPECT_EQ(CommandArgs.LeadingBlank, 0);

    // Brackets are words of their own; a group's Tail starts inside it.
    Parse(L"(echo x)");
    EXPECT_STREQ(CommandArgs.Command, L"(");
    EXPECT_STREQ(CommandArgs.Tail, L"echo x)");
    Parse(L"if x==y(a)else(b)");
    EXPECT_EQ(Arguments(), (Texts{L"x==y", L"(", L"a", L")", L"else", L"(", L"b", L")"}));

    // An open quote is closed at the end of the text.
    Parse(L"echo \"abc");
    EXPECT_EQ(Arguments(), (Texts{L"abc"}));
    EXPECT_STREQ(CommandArgs.RawArgs[0], L"\"abc\"");

    Parse(L"x a /");
    EXPECT_STREQ(CommandArgs.Switches, L"/");
    Parse(L"x a^ b^/c");
    EXPECT_EQ(Arguments(), (Texts{L"a^", L"b^/c"}));
}

TEST(Splitter, DirectoryFix)
{
    Parse(L"cd..");
    EXPECT_STREQ(CommandArgs.Command, L"cd");
    EXPECT_EQ(Arguments(), (Texts{L".."}));
    EXPECT_STREQ(CommandArgs.Tail, L"..");
    Parse(L"CD\\windows");
    EXPECT_STREQ(CommandArgs.Command, L"CD");
    EXPECT_EQ(Arguments(), (Texts{L"\\windows"}));
    Parse(L"chdir/");
    EXPECT_STREQ(CommandArgs.Command, L"chdir");
    Parse(L"cd.exe x");
    EXPECT_STREQ(CommandArgs.Command, L"cd");
    Parse(L"echo.");
    EXPECT_STREQ(CommandArgs.Command, L"echo.");
    Parse(L"Clip.");
    EXPECT_STREQ(CommandArgs.Command, L"Clip.");
    Parse(L"cdx\\y");
    EXPECT_STREQ(CommandArgs.Command, L"cdx\\y");
}

TEST(Splitter, LimitsHoldWithoutOverrun)
{
    // 300 arguments: 256 are kept, the rest parsed and dropped.
    std::wstring many = L"x";
    for (int i = 0; i < 300; ++i) many += L" a" + std::to_wstring(i);
    Parse(many.c_str());
    ASSERT_EQ(CommandArgs.ArgCount, 256);
    EXPECT_STREQ(CommandArgs.Args[255], L"a255");

    // One switch group keeps 50 letters, all groups together 131.
    Parse((L"x /" + std::wstring(60, L'q') + L" /r").c_str());
    EXPECT_EQ(std::wstring(CommandArgs.Switches), std::wstring(50, L'q') + L"r");
    std::wstring groups = L"x";
    for (int i = 0; i < 5; ++i) groups += L" /" + std::wstring(40, wchar_t(L'a' + i));
    Parse(groups.c_str());
    EXPECT_EQ(lstrlenW(CommandArgs.Switches), 131);

    // A line of 4095 brackets doubles when blanks are put between them: the
    // normalised text stops at its own size.
    Parse(std::wstring(4095, L'(').c_str());
    EXPECT_STREQ(CommandArgs.Command, L"(");
    EXPECT_EQ(CommandArgs.ArgCount, 256);
}

TEST(Splitter, EndToEnd)
{
    auto lines = NonEmpty(Typed("echo a&echo b\n"
                                "echo a^&echo b\n"
                                "echo \"a&b\"\n"
                                "echo (a&b)\n"
                                "echo \"a & b\n"
                                "echo a&&echo c\n"
                                "tips x&&echo after error\n"
                                "echo a)&echo b2\n"));
    ASSERT_EQ(lines.size(), 12u);
    EXPECT_EQ(lines[0], L"a");
    EXPECT_EQ(lines[1], L"b");
    // One statement; the caret goes with the redirection scan.
    EXPECT_EQ(lines[2], L"a&echo b");
    EXPECT_EQ(lines[3], L"\"a&b\"");
    EXPECT_EQ(lines[4], L"(a&b)");
    EXPECT_EQ(lines[5], L"\"a & b");
    EXPECT_EQ(lines[6], L"a");
    EXPECT_EQ(lines[7], L"c");
    EXPECT_EQ(lines[8], L"Invalid parameter");
    EXPECT_EQ(lines[9], L"after error");
    EXPECT_EQ(lines[10], L"a)");
    EXPECT_EQ(lines[11], L"b2");
}

TEST(Splitter, CharSplitFromTheSettings)
{
    TempFolder folder;
    folder.WriteBytes(L"omb.ini", "[Ombrel]\r\nCharSplit=126\r\n");
    auto result = RunOmbc(L"INI=" + (folder / L"omb.ini") + L" /C \"echo a~echo b&echo c^~d\"");
    EXPECT_EQ(Lines(result.Output), (Texts{L"a", L"b", L"c~d"}));

    // An unprintable setting falls back to "&" alone.
    folder.WriteBytes(L"bad.ini", "[Ombrel]\r\nCharSplit=7\r\n");
    result = RunOmbc(L"INI=" + (folder / L"bad.ini") + L" /C \"echo a~b&echo c\"");
    EXPECT_EQ(Lines(result.Output), (Texts{L"a~b", L"c"}));
}

} // namespace
