// The evaluator's entry points: evaluating a whole text, turning an error
// word into its message, and writing a number result as text.
#include "lang/expr.h"

#include "app/errors.h"
#include "app/toolkit/omdib.h"
#include "lang/expr_internal.h"

#include <charconv>
#include <cmath>
#include <cstdint>

int EvaluateExpression(int& error, const wchar_t* text, ExprValue& result)
{
    ExprCursor cursor;
    cursor.Position = text;
    result.Clear();
    int ok = ParseExpression(cursor, -1, result);
    if (ok && cursor.Token != TokEnd) ok = Fail(cursor, ExprSyntax);
    if (ok && result.Type == ExprText) ok = Fail(cursor, ExprTextResult);
    error = cursor.Error;
    return ok;
}

void ReportExpressionError(int error)
{
    // Message numbers indexed by error word; any other word is a syntax error.
    constexpr int kMessages[] = {0, 49, 38, 32, 37, 36, 50, 16, 17, 18};
    constexpr int kSyntaxMessage = 32;
    if (error == ExprOk) return;
    bool known = error > 0 && error < int(sizeof kMessages / sizeof kMessages[0]);
    ReportId(known ? kMessages[error] : kSyntaxMessage);
}

// Reals get 19 significant digits without trailing zeros, and a whole real
// no point: 1.5, 3, 1.414213562373095145, 1e+20.
void FormatExprValue(const ExprValue& value, wchar_t* out, int size)
{
    wchar_t number[40];
    // A whole real of up to 15 digits reads the same as the integer, and a
    // counting loop writes one every turn: no digit generation for it.
    constexpr double kExactWhole = 1e15;
    bool whole = value.Type == ExprReal && value.Real > -kExactWhole && value.Real < kExactWhole &&
                 value.Real == double(int64_t(value.Real)) && !(value.Real == 0 && std::signbit(value.Real));
    if (whole) {
        i64tow_ex(int64_t(value.Real), number, 10);
    } else if (value.Type == ExprReal) {
        char digits[40];
        auto written = std::to_chars(digits, digits + sizeof digits, value.Real, std::chars_format::general, 19);
        int length = int(written.ptr - digits);
        for (int i = 0; i < length; ++i) number[i] = wchar_t(digits[i]);
        number[length] = 0;
    } else {
        i64tow_ex(value.Integer, number, 10);
    }
    CopyCutW(out, number, size);
}
