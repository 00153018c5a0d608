// The operators of the expression evaluator: their precedence, the type
// rules, and the arithmetic. Integer arithmetic is 64 bits wide and wraps; a
// sum or difference that would leave the integers falls back to reals.
#include "lang/expr_internal.h"

#include <cmath>

#include <cwchar>

namespace {

// Indexed by token code; -1 for tokens that are no binary operator.
constexpr int kPrecedence[] = {
    -1, -1, -1, -1, -1, -1, -1, -1, // value ( ) , end unknown, two unused codes
    11, 11, 11,                     // * / %
    10, 10,                         // + -
    9,  9,                          // << >>
    8,  8,  8,  8,                  // < > <= >=
    7,  7,                          // == !=
    6,  5,  4,                      // & ^ |
    3,  2,                          // && ||
};

int64_t Wrap(uint64_t value) { return int64_t(value); }

// Division rounding towards minus infinity, with the remainder taking the
// sign of the divisor. Negating both operands keeps the quotient right, so
// only the remainder is negated back. The arithmetic wraps, which keeps the
// smallest integer correct as well.
void FloorDivide(int64_t dividend, int64_t divisor, int64_t* quotient, int64_t* remainder)
{
    bool negated = divisor < 0;
    if (negated) {
        dividend = Wrap(0 - uint64_t(dividend));
        divisor = Wrap(0 - uint64_t(divisor));
    }
    // After the negation a divisor of -1 is impossible, so the division
    // cannot overflow; the smallest integer as divisor stays negative here.
    int64_t q = dividend / divisor;
    int64_t r = dividend % divisor;
    if (r < 0) {
        r = Wrap(uint64_t(r) + uint64_t(divisor));
        q -= 1;
    }
    *quotient = q;
    *remainder = negated ? Wrap(0 - uint64_t(r)) : r;
}

// The shift count is the low 32 bits of the right operand. Counts of 64 and
// more shift every bit out: 0, or -1 for a negative value shifted right.
int64_t ShiftLeft(int64_t value, int64_t count)
{
    uint32_t bits = uint32_t(count);
    return bits >= 64 ? 0 : Wrap(uint64_t(value) << bits);
}

int64_t ShiftRight(int64_t value, int64_t count)
{
    uint32_t bits = uint32_t(count);
    if (bits >= 64) return value < 0 ? -1 : 0;
    return value >> bits; // arithmetic: a negative value keeps its sign
}

template <class T> bool Compares(int token, T left, T right)
{
    switch (token) {
    case TokLess: return left < right;
    case TokGreater: return left > right;
    case TokLessEqual: return left <= right;
    case TokGreaterEqual: return left >= right;
    case TokEqual: return left == right;
    default: return left != right;
    }
}

void FormatAsText(ExprValue& value)
{
    FormatExprValue(value, value.Text, kExprTextSize);
    value.Type = ExprText;
}

// A comparison: a number against a text is compared as its text, an integer
// against a real as a real, and texts by code unit. The result is 1 or 0.
void Compare(int token, ExprValue& left, ExprValue& right)
{
    if (left.Type == ExprText && right.Type != ExprText) FormatAsText(right);
    if (right.Type == ExprText && left.Type != ExprText) FormatAsText(left);
    bool result;
    if (left.Type == ExprText) {
        result = Compares(token, std::wcscmp(left.Text, right.Text), 0);
    } else if (left.Type == ExprReal || right.Type == ExprReal) {
        MakeReal(left);
        MakeReal(right);
        result = Compares(token, left.Real, right.Real);
    } else {
        result = Compares(token, left.Integer, right.Integer);
    }
    left.Integer = result ? 1 : 0;
    left.Type = ExprInteger;
}

// && and ||: the right side counts by its value, a real one tested against
// zero; the left side by its integer field only, whatever its type. The
// truth value goes into the integer field and the type stays, so a real on
// the left comes out unchanged.
void Logical(int token, ExprValue& left, const ExprValue& right)
{
    bool rightTrue = right.Type == ExprReal ? right.Real != 0 : right.Integer != 0;
    bool leftTrue = left.Integer != 0;
    left.Integer = (token == TokAnd ? leftTrue && rightTrue : leftTrue || rightTrue) ? 1 : 0;
}

// * / + - on reals; the right side is already real. A result past the
// largest real is a failure, as a math function's range error is.
int RealArithmetic(ExprCursor& cursor, int token, ExprValue& left, const ExprValue& right)
{
    switch (token) {
    case TokMultiply: left.Real *= right.Real; break;
    case TokDivide:
        if (right.Real == 0) return Fail(cursor, ExprDivideByZero);
        left.Real /= right.Real;
        break;
    case TokAdd: left.Real += right.Real; break;
    default: left.Real -= right.Real; break;
    }
    if (!std::isfinite(left.Real)) return Fail(cursor, ExprMathFailure);
    return 1;
}

// * / + - on integers. A sum above the largest integer and a negative
// difference become real. The test of the sum is made as the arithmetic
// wraps, so a sum with a negative left operand normally comes out real too.
int IntegerArithmetic(ExprCursor& cursor, int token, ExprValue& left, ExprValue& right)
{
    int64_t a = left.Integer;
    int64_t b = right.Integer;
    int64_t remainder;
    switch (token) {
    case TokMultiply: left.Integer = Wrap(uint64_t(a) * uint64_t(b)); return 1;
    case TokDivide:
        if (b == 0) return Fail(cursor, ExprDivideByZero);
        FloorDivide(a, b, &left.Integer, &remainder);
        return 1;
    case TokAdd:
        if (b <= Wrap(uint64_t(INT64_MAX) - uint64_t(a))) {
            left.Integer = Wrap(uint64_t(a) + uint64_t(b));
            return 1;
        }
        break;
    default:
        if (b <= a) {
            left.Integer = Wrap(uint64_t(a) - uint64_t(b));
            return 1;
        }
        break;
    }
    MakeReal(left);
    MakeReal(right);
    return RealArithmetic(cursor, token, left, right);
}

// % << >> & ^ |: integers only.
int IntegerOnly(ExprCursor& cursor, int token, ExprValue& left, const ExprValue& right)
{
    if (left.Type != ExprInteger || right.Type != ExprInteger) return Fail(cursor, ExprWrongType);
    int64_t a = left.Integer;
    int64_t b = right.Integer;
    int64_t quotient;
    switch (token) {
    case TokRemainder:
        if (b == 0) return Fail(cursor, ExprDivideByZero);
        FloorDivide(a, b, &quotient, &left.Integer);
        break;
    case TokShiftLeft: left.Integer = ShiftLeft(a, b); break;
    case TokShiftRight: left.Integer = ShiftRight(a, b); break;
    case TokBitAnd: left.Integer = a & b; break;
    case TokBitXor: left.Integer = a ^ b; break;
    default: left.Integer = a | b; break;
    }
    return 1;
}

} // namespace

int BinaryPrecedence(int token)
{
    if (token < 0 || token >= int(sizeof kPrecedence / sizeof kPrecedence[0])) return -1;
    return kPrecedence[token];
}

void MakeReal(ExprValue& value)
{
    if (value.Type != ExprInteger) return;
    value.Real = double(value.Integer);
    value.Type = ExprReal;
}

int ApplyUnary(ExprCursor& cursor, int token, ExprValue& value)
{
    if (value.Type == ExprText) return Fail(cursor, ExprWrongType);
    bool real = value.Type == ExprReal;
    switch (token) {
    case TokNegate:
        if (real) value.Real = -value.Real;
        else value.Integer = Wrap(0 - uint64_t(value.Integer));
        break;
    case TokNot:
        value.Integer = (real ? value.Real == 0 : value.Integer == 0) ? 1 : 0;
        value.Type = ExprInteger;
        break;
    case TokInvert:
        if (real) return Fail(cursor, ExprWrongType);
        value.Integer = ~value.Integer;
        break;
    default: break; // unary plus leaves the value as it is
    }
    return 1;
}

int ApplyBinary(ExprCursor& cursor, int token, ExprValue& left, ExprValue& right)
{
    switch (token) {
    case TokMultiply:
    case TokDivide:
    case TokAdd:
    case TokSubtract:
        if (left.Type == ExprText || right.Type == ExprText) return Fail(cursor, ExprWrongType);
        if (left.Type == ExprInteger && right.Type == ExprInteger) return IntegerArithmetic(cursor, token, left, right);
        MakeReal(left);
        MakeReal(right);
        return RealArithmetic(cursor, token, left, right);
    case TokLess:
    case TokGreater:
    case TokLessEqual:
    case TokGreaterEqual:
    case TokEqual:
    case TokNotEqual: Compare(token, left, right); return 1;
    case TokAnd:
    case TokOr:
        if (left.Type == ExprText || right.Type == ExprText) return Fail(cursor, ExprWrongType);
        Logical(token, left, right);
        return 1;
    default: return IntegerOnly(cursor, token, left, right);
    }
}
