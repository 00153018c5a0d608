// What the phases of the expression evaluator share: the cursor over the
// text, the token codes, and the entry points of the tokeniser
// (expr_token.cpp), the parser (expr_parse.cpp), the operators
// (expr_operators.cpp), the function table (expr_functions.cpp) and the
// variable access (expr_variables.cpp).
//
// Every parsing function returns 1 on success and 0 on failure; a failure has
// stored its error word in the cursor, and the first one stored stays.
#pragma once

#include "lang/expr.h"

#include <string>

// Token codes. The binary operators are numbered so that their precedence
// can be looked up by code.
enum ExprToken : int {
    TokValue = 0,
    TokOpen = 1,
    TokClose = 2,
    TokComma = 3,
    TokEnd = 4,
    TokUnknown = 5, // also a lone "="
    TokMultiply = 8,
    TokDivide = 9, // "/" or "\"
    TokRemainder = 10,
    TokAdd = 11,
    TokSubtract = 12,
    TokShiftLeft = 13,
    TokShiftRight = 14,
    TokLess = 15,
    TokGreater = 16,
    TokLessEqual = 17,
    TokGreaterEqual = 18,
    TokEqual = 19,
    TokNotEqual = 20,
    TokBitAnd = 21,
    TokBitXor = 22,
    TokBitOr = 23,
    TokAnd = 24,
    TokOr = 25,
    TokNegate = 28,
    TokPlus = 29,
    TokNot = 30,
    TokInvert = 31,
};

// The precedence of a unary operator's operand: above every binary operator.
constexpr int kUnaryPrecedence = 12;

// Units of a text value, its terminator included.
constexpr int kExprTextSize = int(sizeof(ExprValue::Text) / sizeof(wchar_t));

struct ExprCursor {
    const wchar_t* Position = nullptr;
    int Token = TokEnd; // the last token read
    int Error = ExprOk;
    int Depth = 0; // nesting of ParseExpression calls
};

// Stores error unless an earlier one is stored; returns 0 for the caller to pass on.
int Fail(ExprCursor& cursor, int error);

// Reads the next token into cursor.Token; a value token also fills value.
int NextToken(ExprCursor& cursor, ExprValue& value);

// Parses and computes from the next token on, while the binary operators met
// bind tighter than minimum. Stops with the first token it does not take read.
int ParseExpression(ExprCursor& cursor, int minimum, ExprValue& result);

// Precedence of a binary operator token, or -1 for any other token.
int BinaryPrecedence(int token);
// Applies a unary operator token to value in place.
int ApplyUnary(ExprCursor& cursor, int token, ExprValue& value);
// Applies a binary operator token: left = left op right.
int ApplyBinary(ExprCursor& cursor, int token, ExprValue& left, ExprValue& right);
// Changes an integer value to real; the integer field is left as it was.
void MakeReal(ExprValue& value);

// Reads the arguments of the function name up to its ")" (the "(" is already
// read) and computes it into result.
int CallFunction(ExprCursor& cursor, const std::wstring& name, ExprValue& result);

// The math error word: the run-time library's errno. Cleared before a library
// call and tested after it, together with the result, since some runtimes
// answer a domain or range error with an infinity or NaN and no errno.
void ClearMathError();
bool MathErrorAfter(double result);

// The value of a variable named in an expression, empty when it is undefined.
std::wstring ReadExprVariable(const std::wstring& name);
// Sets a variable to a value that is not empty. On failure reports and answers false.
bool AssignExprVariable(const wchar_t* name, const wchar_t* value);
