// Interim evaluator: whole decimal numbers only, until the full grammar lands.
#include "lang/expr.h"

#include "app/errors.h"
#include "app/toolkit/omdib.h"

int EvaluateExpression(int& error, const wchar_t* text, ExprValue& result)
{
    const wchar_t* end;
    result = ExprValue{};
    result.Integer = lstrtoi64W(text, &end, 10);
    if (*SkipWhiteW(end) || end == text) {
        error = 3;
        return 0;
    }
    error = 0;
    return 1;
}

void ReportExpressionError(int error)
{
    if (error) ReportId(32);
}

void FormatExprValue(const ExprValue& value, wchar_t* out, int size)
{
    wchar_t number[40];
    i64tow_ex(value.Integer, number, 10);
    CopyCutW(out, number, size);
}
