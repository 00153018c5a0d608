// The evaluator's math functions: every row of the function table, the
// types of their arguments and results, and the faults of a call.
#include "expr_test_support.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

struct RealCase {
    const wchar_t* Text;
    double Expected;
};

TEST(ExprFunctions, RealFunctionsGiveTheirMathematicalValues)
{
    const RealCase cases[] = {
        {L"sin(1)", 0.8414709848078965},  {L"cos(1)", 0.5403023058681398},   {L"tan(1)", 1.5574077246549023},
        {L"asin(0.5)", 0.5235987755982989}, {L"acos(0.5)", 1.0471975511965979}, {L"atan(1)", 0.7853981633974483},
        {L"sinh(1)", 1.1752011936438014}, {L"cosh(1)", 1.5430806348152437},  {L"tanh(1)", 0.7615941559557649},
        {L"exp(1)", 2.718281828459045},   {L"ln(10)", 2.302585092994046},    {L"log(2)", 0.3010299956639812},
        {L"sqr(2)", 1.4142135623730951},  {L"pow(2,0.5)", 1.4142135623730951}, {L"pow(2,-2)", 0.25},
    };
    for (const RealCase& c : cases) {
        ExprValue value;
        int error;
        ASSERT_EQ(EvaluateExpression(error, c.Text, value), 1) << "expression: " << c.Text;
        EXPECT_EQ(value.Type, ExprReal) << "expression: " << c.Text;
        EXPECT_NEAR(value.Real, c.Expected, 1e-15 * std::fabs(c.Expected)) << "expression: " << c.Text;
    }
}

TEST(ExprFunctions, ExactValuesPrintAsWholeNumbers)
{
    ExpectAll({
        {L"sin(0)", L"0"},
        {L"cos(0)", L"1"},
        {L"tan(0)", L"0"},
        {L"asin(0)", L"0"},
        {L"acos(1)", L"0"},
        {L"atan(0)", L"0"},
        {L"sinh(0)", L"0"},
        {L"cosh(0)", L"1"},
        {L"tanh(0)", L"0"},
        {L"exp(0)", L"1"},
        {L"ln(1)", L"0"},
        {L"log(1)", L"0"},
        {L"sqr(16)", L"4"},
        {L"pow(2,10)", L"1024"},
        {L"acos(-1)", L"3.141592653589793116"},   // 19 significant digits
        {L"SIN(0)+Pow(2,3)", L"8"},              // names are case-blind
        {L"sqr(sqr(16))", L"2"},
        {L"sin (0)", L"0"},                      // blanks may stand before "("
        {L"pow(1+1, 2*2)", L"16"},
    });
    // Integer arguments are converted where a real is wanted.
    EXPECT_EQ(EvaluatedType(L"pow(2,3)"), ExprReal);
    EXPECT_EQ(Evaluated(L"pow(2,3)%2"), L"Unexpected type");
}

TEST(ExprFunctions, AnyTypeFunctionsKeepOrSetTheType)
{
    ExpectAll({
        {L"abs(-5)", L"5"},
        {L"abs(5)", L"5"},
        {L"abs(-2.5)", L"2.5"},
        {L"abs(1<<63)", L"-9223372036854775808"},  // wraps like negation
        {L"sgn(-3)", L"-1"},
        {L"sgn(0)", L"1"},
        {L"sgn(7)", L"1"},
        {L"sgn(-0.5)", L"-1"},
        {L"sgn(2.5)", L"1"},
        {L"sgn(0.0)", L"1"},
        {L"real(3)", L"3"},
        {L"real(1)/2", L"0.5"},
        {L"int(3.7)", L"3"},
        {L"int(-3.7)", L"-3"},
        {L"int(2147483647.9)", L"2147483647"},
        {L"int(2147483648.0)", L"-2147483648"},     // low 32 bits, sign-extended
        {L"int(4294967297.5)", L"1"},
        {L"int(-4294967297.5)", L"-1"},
        {L"int(1e30)", L"0"},                       // a multiple of 2 to the 32
        {L"int(4294967297)", L"4294967297"},        // an integer stays as it is
        {L"int(7/2)", L"3"},
    });
    EXPECT_EQ(EvaluatedType(L"abs(-5)"), ExprInteger);
    EXPECT_EQ(EvaluatedType(L"abs(-5.0)"), ExprReal);
    EXPECT_EQ(Evaluated(L"sgn(-3)%2"), L"1");
    EXPECT_EQ(Evaluated(L"sgn(0.0)%2"), L"Unexpected type");
    EXPECT_EQ(Evaluated(L"real(4)%2"), L"Unexpected type");
    EXPECT_EQ(Evaluated(L"int(4.5)%2"), L"0");
}

TEST(ExprFunctions, CallFaultsHaveTheirMessages)
{
    ExpectAll({
        {L"pow(2)", L"Invalid number of parameters for math function"},
        {L"pow(1,2,3)", L"Invalid number of parameters for math function"},
        {L"sin(1,2)", L"Invalid number of parameters for math function"},
        {L"sin()", L"Syntax Error"},
        {L"pow(1 2)", L"Syntax Error"},
        {L"sin(1", L"Syntax Error"},
        {L"pow(1", L"Syntax Error"},
        {L"foo(1)", L"Unknown math function"},
        {L"sin.x(1)", L"Unknown math function"},
        {L"sin(\"a\")", L"Evaluates to a non-number"},
        {L"abs(\"a\")", L"Evaluates to a non-number"},
        {L"pow(2,\"a\")", L"Evaluates to a non-number"},
        {L"ln(0)", L"Floating point error"},
        {L"ln(-1)", L"Floating point error"},
        {L"log(0)", L"Floating point error"},
        {L"sqr(-1)", L"Floating point error"},
        {L"acos(2)", L"Floating point error"},
        {L"asin(-2)", L"Floating point error"},
        {L"exp(1000)", L"Floating point error"},
        {L"cosh(1000)", L"Floating point error"},
        {L"pow(0,-1)", L"Floating point error"},
        {L"pow(-8,0.5)", L"Floating point error"},
        {L"int(real(1e300)*1e300)", L"Floating point error"},
        {L"abs(1e300*1e300)", L"Floating point error"},
    });
}

} // namespace
