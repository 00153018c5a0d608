// Malformed and hostile expressions: each ends in its message, never in a
// crash, and the first fault found is the one reported.
#include "lang/environment_index.h"
#include "expr_test_support.h"

#include <gtest/gtest.h>

namespace {

std::wstring Repeated(const std::wstring& piece, int count)
{
    std::wstring text;
    for (int i = 0; i < count; ++i) text += piece;
    return text;
}

TEST(ExprErrors, SyntaxFaults)
{
    ExpectAll({
        {L"", L"Syntax Error"},
        {L"   ", L"Syntax Error"},
        {L"1+", L"Syntax Error"},
        {L"1 2", L"Syntax Error"},
        {L"1 (2)", L"Syntax Error"},
        {L"=", L"Syntax Error"},
        {L"a=1", L"Syntax Error"},
        {L"1=2", L"Syntax Error"},
        {L"1)", L"Syntax Error"},
        {L"1,2", L"Syntax Error"},
        {L"()", L"Syntax Error"},
        {L"*2", L"Syntax Error"},
        {L"1 + * 2", L"Syntax Error"},
        {L"1 @ 2", L"Syntax Error"},
        {L"#", L"Syntax Error"},
        {L"1!2", L"Syntax Error"},
        {L"1~2", L"Syntax Error"},
        {L"\"a\" \"b\"", L"Syntax Error"},
        {L"(1+2", L"Right bracket missing"},
        {L"((1)", L"Right bracket missing"},
        {L"(1,2)", L"Right bracket missing"},
        {L"1/0", L"Divide by zero"},
        {L"1.0/0.0", L"Divide by zero"},
        {L"1.0/0", L"Divide by zero"},
        {L"1%0", L"Divide by zero"},
        {L"5/(2-2)", L"Divide by zero"},
        {L"\"a\"", L"Evaluates to a non-number"},
        {L"1<\"a\"", L"1"},
    });
}

TEST(ExprErrors, TheFirstFaultWins)
{
    WriteEnvironment(L"x", L"4");
    ExpectAll({
        {L"x/0 || 1", L"Divide by zero"},  // both sides always run
        {L"1/0 + \"a\"", L"Divide by zero"},
        {L"\"a\"+1/0", L"Divide by zero"},  // the right side is computed first
        {L"(1/0", L"Divide by zero"},
        {L"foo(1/0)", L"Unknown math function"},
        {L"sin(1/0", L"Divide by zero"},
    });
}

TEST(ExprErrors, HostileInputEndsInAMessage)
{
    // An expression of 3,999 characters is evaluated whole.
    std::wstring sum = L"1" + Repeated(L"+1", 1999);
    ASSERT_EQ(sum.size(), 3999u);
    EXPECT_EQ(Evaluated(sum), L"2000");
    EXPECT_EQ(Evaluated(Repeated(L"1+", 2000)), L"Syntax Error");
    EXPECT_EQ(Evaluated(Repeated(L"%", 4000)), L"Syntax Error");

    // Nesting stops at a fixed depth instead of exhausting the stack.
    struct Nesting {
        const wchar_t* Open;
        const wchar_t* Close;
        const wchar_t* FiftyDeep; // the value of 0 nested fifty times
    };
    const Nesting nestings[] = {
        {L"(", L")", L"0"}, {L"sin(", L")", L"0"}, {L"-", L"", L"0"}, {L"!", L"", L"0"}, {L"1+(", L")", L"50"},
    };
    for (const Nesting& n : nestings) {
        std::wstring deep = Repeated(n.Open, 10000) + L"0" + Repeated(n.Close, 10000);
        EXPECT_EQ(Evaluated(deep), L"Out of range") << "nesting of " << n.Open;
        std::wstring shallow = Repeated(n.Open, 50) + L"0" + Repeated(n.Close, 50);
        EXPECT_EQ(Evaluated(shallow), n.FiftyDeep) << "nesting of " << n.Open;
    }
    EXPECT_EQ(Evaluated(Repeated(L"(", 10000)), L"Out of range");

    // 500 digits are too many for an integer and too large for a real.
    EXPECT_EQ(Evaluated(Repeated(L"1", 500)), L"Syntax Error");
    EXPECT_EQ(Evaluated(L"0x" + Repeated(L"f", 500)), L"Syntax Error");
    EXPECT_EQ(Evaluated(Repeated(L"0", 500) + L"7"), L"7");

    EXPECT_EQ(Evaluated(L"nosuchfunction(1)"), L"Unknown math function");
    EXPECT_EQ(Evaluated(Repeated(L"a", 4000) + L"(1)"), L"Unknown math function");
    EXPECT_EQ(Evaluated(Repeated(L"a", 4000)), L"Evaluates to a non-number");
    EXPECT_EQ(Evaluated(L"\"never closed"), L"Evaluates to a non-number");
}

struct DeepCase {
    std::wstring Text;
    std::wstring Answer;
};

DWORD WINAPI EvaluateDeepCase(void* parameter)
{
    auto* deep = static_cast<DeepCase*>(parameter);
    deep->Answer = Evaluated(deep->Text);
    return 0;
}

// On a thread with a quarter of a megabyte of stack, ten thousand levels of
// every kind of nesting end in the message: the depth limit, not the length
// of the input, bounds the stack the evaluator takes.
TEST(ExprErrors, DeepNestingFitsInASmallStack)
{
    const wchar_t* openers[] = {L"(", L"-", L"sin(", L"pow(1,", L"1+(", L"1*-(", L"int(!"};
    for (const wchar_t* opener : openers) {
        DeepCase deep{Repeated(opener, 10000) + L"1", L""};
        HANDLE thread = CreateThread(nullptr, 256 * 1024, EvaluateDeepCase, &deep,
                                     STACK_SIZE_PARAM_IS_A_RESERVATION, nullptr);
        ASSERT_NE(thread, nullptr);
        WaitForSingleObject(thread, INFINITE);
        DWORD exitCode = 1;
        GetExitCodeThread(thread, &exitCode);
        CloseHandle(thread);
        EXPECT_EQ(exitCode, 0u) << "nesting of " << opener;
        EXPECT_EQ(deep.Answer, L"Out of range") << "nesting of " << opener;
    }
}

TEST(ExprErrors, EveryErrorWordHasItsMessage)
{
    struct WordCase {
        int Error;
        const wchar_t* Message;
    };
    const WordCase cases[] = {
        {ExprOutOfRange, L"Out of range"},
        {ExprMissingBracket, L"Right bracket missing"},
        {ExprSyntax, L"Syntax Error"},
        {ExprDivideByZero, L"Divide by zero"},
        {ExprWrongType, L"Unexpected type"},
        {ExprTextResult, L"Evaluates to a non-number"},
        {ExprUnknownFunction, L"Unknown math function"},
        {ExprArgumentCount, L"Invalid number of parameters for math function"},
        {ExprMathFailure, L"Floating point error"},
        {42, L"Syntax Error"}, // a word of no meaning is a syntax error
    };
    for (const WordCase& c : cases) {
        TheScreen.ClearScreen();
        TheScreen.Locate(0, 0);
        TheErrors.ErrorFlag = 0;
        ReportExpressionError(c.Error);
        EXPECT_EQ(TheScreen.RowText(0), c.Message);
        EXPECT_EQ(TheErrors.ErrorFlag, 1);
        TheScreen.BreakFlag = 0;
    }
    TheScreen.ClearScreen();
    TheScreen.Locate(0, 0);
    TheErrors.ErrorFlag = 0;
    ReportExpressionError(ExprOk);
    EXPECT_EQ(TheErrors.ErrorFlag, 0);
    EXPECT_EQ(TheScreen.CursorY, 0);
}

} // namespace
