// The parser of the expression evaluator: precedence climbing that computes
// as it goes, so no tree is ever built.
#include "lang/expr_internal.h"

namespace {

// Every recursion of the evaluator (brackets, unary operators, function
// arguments, tighter operators on the right) passes through
// ParseExpression, and each level holds a value of some 540 bytes on the
// stack, with another for a function's second argument. A fixed limit on the
// nesting keeps a hostile line such as ten thousand "(" from running out of
// stack: it fails with "Out of range" instead, at a few hundred kilobytes.
// No expression a person writes comes near it: a bracket costs one level,
// an operand in brackets behind an operator two.
constexpr int kMaxDepth = 200;

// Counts one level of ParseExpression for as long as it runs.
class DepthGuard {
public:
    explicit DepthGuard(ExprCursor& cursor) : cursor_(cursor) { ++cursor_.Depth; }
    ~DepthGuard() { --cursor_.Depth; }
    DepthGuard(const DepthGuard&) = delete;
    DepthGuard& operator=(const DepthGuard&) = delete;

private:
    ExprCursor& cursor_;
};

int AsUnary(int token)
{
    if (token == TokSubtract) return TokNegate;
    if (token == TokAdd) return TokPlus;
    return token;
}

bool IsUnary(int token) { return token >= TokNegate && token <= TokInvert; }

// operand: value | "(" expression ")" | unary-operator operand. Leaves the
// token behind the operand read; scratch receives it when it is a value.
int ParseOperand(ExprCursor& cursor, ExprValue& result, ExprValue& scratch)
{
    if (!NextToken(cursor, result)) return 0;
    int token = AsUnary(cursor.Token);
    if (token == TokOpen) {
        if (!ParseExpression(cursor, -1, result)) return 0;
        if (cursor.Token != TokClose) return Fail(cursor, ExprMissingBracket);
        return NextToken(cursor, scratch);
    }
    if (IsUnary(token)) {
        // The operand's own parse stops at the first binary operator, all of
        // which bind less tightly, so the token behind is already read.
        if (!ParseExpression(cursor, kUnaryPrecedence, result)) return 0;
        return ApplyUnary(cursor, token, result);
    }
    if (token != TokValue) return Fail(cursor, ExprSyntax);
    return NextToken(cursor, scratch);
}

bool EndsExpression(int token) { return token == TokEnd || token == TokClose || token == TokComma; }

} // namespace

int Fail(ExprCursor& cursor, int error)
{
    if (cursor.Error == ExprOk) cursor.Error = error;
    return 0;
}

// expression: operand { binary-operator expression-of-higher-precedence }.
// An operator of a precedence not above minimum ends this level, so equal
// precedences group to the left. Both sides of && and || are always
// evaluated.
int ParseExpression(ExprCursor& cursor, int minimum, ExprValue& result)
{
    DepthGuard depth(cursor);
    if (cursor.Depth > kMaxDepth) return Fail(cursor, ExprOutOfRange);
    ExprValue scratch;
    if (!ParseOperand(cursor, result, scratch)) return 0;
    for (;;) {
        int token = cursor.Token;
        int precedence = BinaryPrecedence(token);
        if (precedence < 0) return EndsExpression(token) ? 1 : Fail(cursor, ExprSyntax);
        if (precedence <= minimum) return 1;
        if ((token == TokAnd || token == TokOr) && result.Type == ExprText) return Fail(cursor, ExprWrongType);
        if (!ParseExpression(cursor, precedence, scratch)) return 0;
        if (!ApplyBinary(cursor, token, result, scratch)) return 0;
    }
}
