// The evaluator's operators: precedence, grouping, the integer and real
// arithmetic with its fall-back to reals, and the type rules.
#include "lang/environment_index.h"
#include "expr_test_support.h"

#include <gtest/gtest.h>

namespace {

TEST(ExprOperators, PrecedenceAndGrouping)
{
    ExpectAll({
        {L"1+2*3", L"7"},
        {L"(1+2)*3", L"9"},
        {L"2*3%4", L"2"},       // left to right at equal precedence
        {L"10-4-3", L"3"},
        {L"100/10/5", L"2"},
        {L"2*3+4*5", L"26"},
        {L"1<<2+1", L"8"},      // + binds tighter than <<
        {L"2+3<<1", L"10"},
        {L"1+1<3", L"1"},
        {L"3<2==0", L"1"},      // < binds tighter than ==
        {L"6&3==3", L"0"},      // == binds tighter than &
        {L"1|2^3&1", L"3"},     // & then ^ then |
        {L"5&3^1", L"0"},
        {L"0&&1||1", L"1"},
        {L"1||0&&0", L"1"},     // && binds tighter than ||
        {L"-2*3", L"-6"},       // unary minus binds tightest
        {L"!0+1", L"2"},
        {L"~0", L"-1"},
        {L"-~0", L"1"},
        {L"!!5", L"1"},
        {L"+5", L"5"},
        {L"- -5", L"5"},
        {L"2--3", L"5"},
        {L"2*-3", L"-6"},
        {L" 1 +\t2 ", L"3"},
        {L"9\\2", L"4"},        // the backslash divides too
        {L"((((7))))", L"7"},
    });
}

TEST(ExprOperators, FloorDivisionAndItsRemainder)
{
    ExpectAll({
        {L"-7/2", L"-4"},
        {L"-7%2", L"1"},
        {L"7/-2", L"-4"},
        {L"7%-2", L"-1"},
        {L"-7/-2", L"3"},
        {L"-7%-2", L"-1"},
        {L"7/2", L"3"},
        {L"7%2", L"1"},
        {L"6/3", L"2"},
        {L"-6%3", L"0"},
        {L"7.0/2", L"3.5"},
        {L"-7.0/2", L"-3.5"},
        // The smallest integer, made by a shift, divides without trapping.
        {L"(1<<63)/-1", L"-9223372036854775808"},
        {L"(1<<63)%-1", L"0"},
        {L"5/(1<<63)", L"-1"},
        {L"5%(1<<63)", L"-9223372036854775803"},
        {L"-5%(1<<63)", L"-5"},
        {L"(1<<63)/(1<<63)", L"1"},
    });
}

TEST(ExprOperators, IntegersWrapOrBecomeReal)
{
    ExpectAll({
        {L"9223372036854775807+0", L"9223372036854775807"},
        {L"9223372036854775807+1", L"9223372036854775808"},
        {L"4294967296*4294967296", L"0"},           // products wrap
        {L"9223372036854775807*2", L"-2"},
        {L"3-5", L"-2"},
        {L"-9223372036854775807-1", L"-9223372036854775808"},
        {L"1<<63", L"-9223372036854775808"},
        {L"1<<64", L"0"},
        {L"1<<-1", L"0"},                           // the count's low 32 bits are huge
        {L"1<<4294967298", L"4"},                   // only the low 32 bits count
        {L"-16>>2", L"-4"},                         // arithmetic shift keeps the sign
        {L"-1>>70", L"-1"},
        {L"16>>70", L"0"},
        {L"12&10", L"8"},
        {L"12|10", L"14"},
        {L"12^10", L"6"},
        {L"-(1<<63)", L"-9223372036854775808"},     // negation wraps
    });
    // Whether the result is still an integer decides what may follow it.
    EXPECT_EQ(Evaluated(L"(9223372036854775807+0)%2"), L"1");
    EXPECT_EQ(Evaluated(L"(9223372036854775807+1)%2"), L"Unexpected type");
    EXPECT_EQ(Evaluated(L"(5-3)%2"), L"0");
    EXPECT_EQ(Evaluated(L"(3-5)%2"), L"Unexpected type");
    EXPECT_EQ(Evaluated(L"int(3-5)%2"), L"0");
    // A sum with a negative left operand comes out real, as the limit wraps.
    EXPECT_EQ(Evaluated(L"-3+5"), L"2");
    EXPECT_EQ(EvaluatedType(L"-3+5"), ExprReal);
    EXPECT_EQ(EvaluatedType(L"3+5"), ExprInteger);
    EXPECT_EQ(EvaluatedType(L"-3*5"), ExprInteger);
}

TEST(ExprOperators, ComparisonsOfNumbersAndTexts)
{
    ExpectAll({
        {L"2<3", L"1"},
        {L"3<3", L"0"},
        {L"3<=3", L"1"},
        {L"4>=5", L"0"},
        {L"4>3", L"1"},
        {L"2==2.0", L"1"},
        {L"1!=1", L"0"},
        {L"1.5>1", L"1"},
        {L"\"a\"<\"b\"", L"1"},
        {L"\"B\"<\"a\"", L"1"},         // by code unit, case counts
        {L"\"a\"==\"A\"", L"0"},
        {L"\"abc\">=\"abd\"", L"0"},
        {L"\"1\"==1", L"1"},            // the number is formatted
        {L"1==\"01\"", L"0"},
        {L"\"0.5\"==0.5", L"1"},
        {L"\"1e+20\"==1e20", L"1"},
        {L"\"x\"\"\"<\"x#\"", L"1"},    // a doubled quote stands for one
        {L"\"x\"\"\"==\"x\"", L"0"},
        {L"\"\"==\"\"", L"1"},
    });
    EXPECT_EQ(EvaluatedType(L"1.5<2"), ExprInteger);
    // A text keeps 255 units; the rest of it is read and dropped.
    std::wstring kept(255, L'a');
    EXPECT_EQ(Evaluated(L"\"" + kept + L"bbb\"==\"" + kept + L"\""), L"1");
    EXPECT_EQ(Evaluated(L"\"" + kept + L"b\"==\"" + kept + L"c\""), L"1");
    EXPECT_EQ(Evaluated(L"\"" + kept + L"b\"==\"" + kept.substr(1) + L"\""), L"0");
}

TEST(ExprOperators, LogicalOperatorsEvaluateBothSides)
{
    ExpectAll({
        {L"1 && 0", L"0"},
        {L"2 && 3", L"1"},
        {L"0 || 0", L"0"},
        {L"0 || 0.5", L"1"},            // a real right side is tested against zero
        {L"1 && 0.0", L"0"},
        {L"1 || 1/0", L"Divide by zero"},
        {L"0 && 1/0", L"Divide by zero"},
        // A real on the left counts by its integer field, and stays as it was.
        {L"0.5 && 1", L"0.5"},
        {L"1.5 || 0", L"1.5"},
    });
    EXPECT_EQ(EvaluatedType(L"0.5 && 1"), ExprReal);
}

TEST(ExprOperators, UnaryOperatorsKeepOrChangeTheType)
{
    ExpectAll({
        {L"-1.5", L"-1.5"},
        {L"+1.5", L"1.5"},
        {L"!0.0", L"1"},
        {L"!2.5", L"0"},
        {L"~5", L"-6"},
    });
    EXPECT_EQ(EvaluatedType(L"!2.5"), ExprInteger);
    EXPECT_EQ(EvaluatedType(L"-2.5"), ExprReal);
}

TEST(ExprOperators, WrongTypesAreRefused)
{
    ExpectAll({
        {L"\"a\"+1", L"Unexpected type"},
        {L"1*\"a\"", L"Unexpected type"},
        {L"\"a\"/\"b\"", L"Unexpected type"},
        {L"\"a\"-1", L"Unexpected type"},
        {L"1.5%2", L"Unexpected type"},
        {L"2%1.5", L"Unexpected type"},
        {L"1.5<<1", L"Unexpected type"},
        {L"1>>1.5", L"Unexpected type"},
        {L"1.5&1", L"Unexpected type"},
        {L"1^1.5", L"Unexpected type"},
        {L"1.5|1", L"Unexpected type"},
        {L"\"a\"|1", L"Unexpected type"},
        {L"~1.5", L"Unexpected type"},
        {L"-\"a\"", L"Unexpected type"},
        {L"+\"a\"", L"Unexpected type"},
        {L"!\"a\"", L"Unexpected type"},
        {L"~\"a\"", L"Unexpected type"},
        {L"\"a\"&&1", L"Unexpected type"},
        {L"1||\"a\"", L"Unexpected type"},
    });
}

TEST(ExprOperators, NumberFormats)
{
    ExpectAll({
        {L"0x10", L"16"},
        {L"0X1f", L"31"},
        {L"010", L"8"},                 // a leading zero is octal
        {L"089", L"89"},                // ... unless a real goes on
        {L"1e3", L"1000"},
        {L"1.5e1", L"15"},
        {L"2.5E-1", L"0.25"},
        {L".5", L"0.5"},
        {L"5.", L"5"},
        {L"9223372036854775807", L"9223372036854775807"},
        {L"9223372036854775808", L"9223372036854775808"},
        {L"0x7fffffffffffffff", L"9223372036854775807"},
        {L"0777777777777777777777", L"9223372036854775807"},
        {L"01000000000000000000000", L"1e+21"}, // too big for octal: read as a decimal real
        {L"1e20", L"1e+20"},
        {L"0.0009765625", L"0.0009765625"},      // 2 to the -10: exact in binary
        {L"0.00000762939453125", L"7.62939453125e-06"},
        {L"0.1", L"0.1000000000000000056"},     // 19 significant digits show the binary value
        {L"1e400", L"Syntax Error"},
        {L"0x8000000000000000", L"Syntax Error"},
        {L"12abc", L"Syntax Error"},
    });
    EXPECT_EQ(EvaluatedType(L"089"), ExprReal);
    EXPECT_EQ(EvaluatedType(L"1e3"), ExprReal);
    EXPECT_EQ(EvaluatedType(L"0x10"), ExprInteger);
    EXPECT_EQ(EvaluatedType(L"9223372036854775807"), ExprInteger);
    EXPECT_EQ(EvaluatedType(L"9223372036854775808"), ExprReal);
}

TEST(ExprOperators, VariablesAreReadFromTheEnvironment)
{
    SetSampleVariables();
    WriteEnvironment(L"sin", L"3");
    WriteEnvironment(L"undefined_here", nullptr);
    ExpectAll({
        {L"n+1", L"17"},
        {L"N+1", L"17"},
        {L"m*2", L"-10"},
        {L"arr.2*2", L"14"},
        {L"sin*2", L"6"},               // without "(" a name is a variable
        {L"t+1", L"Unexpected type"},   // a real in a variable is a text
        {L"t==\"1.5\"", L"1"},
        {L"w==\"word\"", L"1"},
        {L"undefined_here==\"\"", L"1"},
        {L"undefined_here", L"Evaluates to a non-number"},
        {L"random", L"Evaluates to a non-number"},
    });
}

} // namespace
