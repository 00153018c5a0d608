// The expression evaluator behind calc, let and the expression conditions of
// if, while, until and do: a precedence-climbing parser that computes as it
// parses, over integers (64-bit), texts and reals.
#pragma once

#include <cstdint>

struct ExprValue {
    double Real = 0;          // valid when Type is 2
    int64_t Integer = 0;      // valid when Type is 0
    wchar_t Text[256];        // valid when Type is 1, up to its end mark
    int32_t Type = 0;         // 0 integer, 1 text, 2 real

    // Only the start of the text is cleared: an expression makes and drops
    // several values, and clearing all of the text each time cost more than
    // the arithmetic.
    ExprValue() { Text[0] = 0; }
    void Clear()
    {
        Real = 0;
        Integer = 0;
        Text[0] = 0;
        Type = 0;
    }
};

// The values of ExprValue::Type.
enum ExprType : int32_t {
    ExprInteger = 0,
    ExprText = 1,
    ExprReal = 2,
};

// The error words of the evaluator; ReportExpressionError turns them into
// messages.
enum ExprError : int {
    ExprOk = 0,
    ExprOutOfRange = 1,
    ExprMissingBracket = 2,
    ExprSyntax = 3,
    ExprDivideByZero = 4,
    ExprWrongType = 5,
    ExprTextResult = 6,
    ExprUnknownFunction = 7,
    ExprArgumentCount = 8,
    ExprMathFailure = 9,
};

// Evaluates text into result. error receives the first error word (0 none);
// returns 1 on success, 0 on failure.
int EvaluateExpression(int& error, const wchar_t* text, ExprValue& result);
// Prints the numbered message that belongs to an error word.
void ReportExpressionError(int error);
// A number result as text: integers in decimal, reals in their shortest form.
void FormatExprValue(const ExprValue& value, wchar_t* out, int size);
