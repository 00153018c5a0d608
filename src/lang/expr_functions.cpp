// The function table of the expression evaluator and the reading of a
// function's arguments. Names are compared case-blind.
#include "lang/expr_internal.h"

#include <cerrno>
#include <cmath>
#include <windows.h>

namespace {

using RealFunction = double (*)(double, double);
using AnyFunction = void (*)(ExprValue&);

// A row computes either from reals (Real, the second argument 0 for one
// argument) or from a value of any number type, which keeps its type (Any).
struct MathFunction {
    const wchar_t* Name;
    int Arguments;
    RealFunction Real;
    AnyFunction Any;
};

void AbsoluteValue(ExprValue& value)
{
    if (value.Type == ExprReal) value.Real = std::fabs(value.Real);
    else if (value.Integer < 0) value.Integer = int64_t(0 - uint64_t(value.Integer));
}

// 1 or -1 of the same type; zero counts as positive.
void Sign(ExprValue& value)
{
    if (value.Type == ExprReal) value.Real = value.Real < 0 ? -1.0 : 1.0;
    else value.Integer = value.Integer < 0 ? -1 : 1;
}

// A real is truncated towards zero and only its low 32 bits are kept,
// sign-extended. The remainder by 2 to the 32 is exact for every finite
// double, so no conversion ever overflows; an infinity or NaN is a math
// error.
void Truncate(ExprValue& value)
{
    if (value.Type != ExprReal) return;
    if (!std::isfinite(value.Real)) {
        errno = EDOM;
        return;
    }
    double low = std::fmod(std::trunc(value.Real), 4294967296.0);
    value.Integer = int64_t(int32_t(uint32_t(int64_t(low))));
    value.Type = ExprInteger;
}

const MathFunction kFunctions[] = {
    {L"abs", 1, nullptr, AbsoluteValue},
    {L"acos", 1, [](double x, double) { return std::acos(x); }, nullptr},
    {L"asin", 1, [](double x, double) { return std::asin(x); }, nullptr},
    {L"atan", 1, [](double x, double) { return std::atan(x); }, nullptr},
    {L"cos", 1, [](double x, double) { return std::cos(x); }, nullptr},
    {L"cosh", 1, [](double x, double) { return std::cosh(x); }, nullptr},
    {L"exp", 1, [](double x, double) { return std::exp(x); }, nullptr},
    {L"int", 1, nullptr, Truncate},
    {L"ln", 1, [](double x, double) { return std::log(x); }, nullptr},
    {L"log", 1, [](double x, double) { return std::log10(x); }, nullptr},
    {L"pow", 2, [](double x, double y) { return std::pow(x, y); }, nullptr},
    {L"real", 1, nullptr, MakeReal},
    {L"sgn", 1, nullptr, Sign},
    {L"sin", 1, [](double x, double) { return std::sin(x); }, nullptr},
    {L"sinh", 1, [](double x, double) { return std::sinh(x); }, nullptr},
    {L"sqr", 1, [](double x, double) { return std::sqrt(x); }, nullptr},
    {L"tan", 1, [](double x, double) { return std::tan(x); }, nullptr},
    {L"tanh", 1, [](double x, double) { return std::tanh(x); }, nullptr},
};

const MathFunction* FindFunction(const std::wstring& name)
{
    int length = int(name.size());
    for (const MathFunction& function : kFunctions)
        if (CompareStringOrdinal(function.Name, -1, name.c_str(), length, TRUE) == CSTR_EQUAL) return &function;
    return nullptr;
}

// argument { "," argument } ")": exactly as many as the function takes. A
// ")" too early or a "," too many is the wrong count; anything else there is
// a syntax error.
int ReadArguments(ExprCursor& cursor, const MathFunction& function, ExprValue* const* arguments)
{
    for (int i = 0; i < function.Arguments; ++i) {
        ExprValue& argument = *arguments[i];
        if (!ParseExpression(cursor, -1, argument)) return 0;
        if (argument.Type == ExprText) return Fail(cursor, ExprTextResult);
        if (function.Real) MakeReal(argument);
        bool last = i + 1 == function.Arguments;
        int wanted = last ? TokClose : TokComma;
        int wrongCount = last ? TokComma : TokClose;
        if (cursor.Token == wanted) continue;
        return Fail(cursor, cursor.Token == wrongCount ? ExprArgumentCount : ExprSyntax);
    }
    return 1;
}

} // namespace

void ClearMathError() { errno = 0; }

bool MathErrorAfter(double result) { return errno != 0 || !std::isfinite(result); }

int CallFunction(ExprCursor& cursor, const std::wstring& name, ExprValue& result)
{
    const MathFunction* function = FindFunction(name);
    if (!function) return Fail(cursor, ExprUnknownFunction);
    ExprValue second;
    ExprValue* const arguments[] = {&result, &second};
    if (!ReadArguments(cursor, *function, arguments)) return 0;
    ClearMathError();
    if (function->Real) {
        result.Real = function->Real(result.Real, second.Real);
    } else {
        function->Any(result);
    }
    double check = result.Type == ExprReal ? result.Real : 0.0;
    if (MathErrorAfter(check)) return Fail(cursor, ExprMathFailure);
    return 1;
}
