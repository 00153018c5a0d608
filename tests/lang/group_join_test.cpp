// Joining the lines of an open group, as the batch loader and the
// continuation prompt do.
#include "app/globals.h"
#include "lang/group_join.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace {

using Result = GroupJoiner::Result;

TEST(GroupJoin, LinesOfAGroupBecomeOneStatement)
{
    auto joiner = std::make_unique<GroupJoiner>();
    EXPECT_EQ(joiner->Add(L"if x (echo 0"), Result::Open);
    EXPECT_EQ(joiner->Add(L"  echo a"), Result::Open);
    EXPECT_EQ(joiner->Add(L"  ( echo b"), Result::Open);
    EXPECT_EQ(joiner->Add(L"  )"), Result::Open);
    EXPECT_EQ(joiner->Add(L") else (echo c)"), Result::Complete);
    EXPECT_STREQ(joiner->Text(), L"if x (echo 0&  echo a&  ( echo b  )) else (echo c)");

    // No separator right behind an opening bracket or brace.
    joiner->Clear();
    EXPECT_TRUE(joiner->Empty());
    EXPECT_EQ(joiner->Add(L"{"), Result::Open);
    EXPECT_EQ(joiner->Add(L"echo a"), Result::Open);
    EXPECT_EQ(joiner->Add(L"}"), Result::Complete);
    EXPECT_STREQ(joiner->Text(), L"{echo a}");

    // A bracket in quotes or behind "^" opens nothing.
    joiner->Clear();
    EXPECT_EQ(joiner->Add(L"echo \"(\" ^("), Result::Complete);
}

TEST(GroupJoin, TheSeparatorIsCharSplit)
{
    wchar_t saved = CharSplit;
    CharSplit = L'~';
    auto joiner = std::make_unique<GroupJoiner>();
    joiner->Add(L"(a");
    joiner->Add(L"b");
    EXPECT_EQ(joiner->Add(L")"), Result::Complete);
    CharSplit = saved;
    EXPECT_STREQ(joiner->Text(), L"(a~b)");
}

TEST(GroupJoin, TooLongLeavesTheTextAlone)
{
    auto joiner = std::make_unique<GroupJoiner>();
    std::wstring first = L"(" + std::wstring(4000, L'a');
    ASSERT_EQ(joiner->Add(first.c_str()), Result::Open);
    // 4001 + separator + 94 = 4096 units: one too many.
    EXPECT_EQ(joiner->Add(std::wstring(94, L'b').c_str()), Result::TooLong);
    EXPECT_EQ(std::wstring(joiner->Text()), first);
    // 4001 + separator + 93 = 4095 units fit exactly.
    EXPECT_EQ(joiner->Add(std::wstring(93, L'b').c_str()), Result::Open);
    EXPECT_EQ(lstrlenW(joiner->Text()), 4095);

    joiner->Clear();
    EXPECT_EQ(joiner->Add(std::wstring(4096, L'x').c_str()), Result::TooLong);
    EXPECT_TRUE(joiner->Empty());
}

TEST(GroupJoin, BlankLinesAndTheEchoMark)
{
    EXPECT_TRUE(IsBlankLine(L""));
    EXPECT_TRUE(IsBlankLine(L" \t "));
    EXPECT_FALSE(IsBlankLine(L" x"));

    const wchar_t* line = L"@echo off";
    EXPECT_TRUE(TakeEchoMark(line));
    EXPECT_STREQ(line, L"echo off");
    // Only the very first unit counts.
    const wchar_t* indented = L" @echo off";
    EXPECT_FALSE(TakeEchoMark(indented));
    EXPECT_STREQ(indented, L" @echo off");
}

} // namespace
