// calc end to end through the console program: showing with "?", keeping
// the value in CALC, messages, and an ErrorLevel that calc leaves alone.
#include "support/ombc_runner.h"

#include <gtest/gtest.h>

#include <string>

namespace {

TEST(Calc, ShowsOrKeepsTheValue)
{
    OmbcResult shown = RunOmbc(L"/C \"calc ?1+2*3\"");
    EXPECT_EQ(JoinLines(shown.Output), L"7\n");
    EXPECT_EQ(shown.ExitCode, 0);

    // The value goes into CALC; a later expression reads it back. calc
    // alone does nothing, and a failing calc leaves CALC as it was.
    OmbcResult kept = RunOmbc(L"", "calc 6*7\r\ncalc ?CALC+1\r\ncalc\r\ncalc 1/0\r\ncalc ?CALC\r\n"
                                   "calc sqr(2)\r\ncalc ?CALC==\"1.414213562373095145\"\r\n");
    EXPECT_EQ(JoinLines(kept.Output), L"43\nDivide by zero\n\n42\n1\n");
}

TEST(Calc, MessagesOfBadExpressions)
{
    OmbcResult result = RunOmbc(L"", "calc ?\r\ncalc ?foo(1)\r\ncalc ?\"a\"+1\r\n"
                                     "calc ?pow(2)\r\ncalc ?sqr(-1)\r\ncalc ?nothing_defined\r\n");
    EXPECT_EQ(JoinLines(result.Output), L"Syntax Error\n\nUnknown math function\n\nUnexpected type\n\n"
                                        L"Invalid number of parameters for math function\n\n"
                                        L"Floating point error\n\nEvaluates to a non-number\n\n");
    // Typed, an open bracket asks for more lines; given whole, it is an error.
    EXPECT_EQ(JoinLines(RunOmbc(L"/C \"calc ?(1+2\"").Output), L"Right bracket missing\n\n");
}

TEST(Calc, LeavesErrorLevelAsItWas)
{
    // A batch program command at the prompt fails and sets ErrorLevel 1;
    // calc keeps it, and its own failures do not raise it.
    EXPECT_EQ(RunOmbc(L"", "cbadd\r\ncalc 1+1\r\n").ExitCode, 1);
    EXPECT_EQ(RunOmbc(L"", "cbadd\r\ncalc ?1+1\r\n").ExitCode, 1);
    EXPECT_EQ(RunOmbc(L"", "cbadd\r\nverify\r\n").ExitCode, 0);
    EXPECT_EQ(RunOmbc(L"/C \"calc 1/0\"").ExitCode, 0);
}

TEST(Calc, TakesALongLine)
{
    std::string sum = "1";
    for (int i = 1; i < 2000; ++i) sum += "+1";
    EXPECT_EQ(JoinLines(RunOmbc(L"", "calc ?" + sum + "\r\n").Output), L"2000\n");
    std::wstring deep(2000, L'(');
    EXPECT_EQ(JoinLines(RunOmbc(L"/C \"calc ?" + deep + L"1\"").Output), L"Out of range\n\n");
}

} // namespace
