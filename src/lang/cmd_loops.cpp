// while, until and do: an expression condition in brackets, tested before
// (while, until) or after (do) each turn of a body that runs as a statement
// of the caller. The condition text is fixed when the line was expanded; a
// bare variable name in it is read afresh by the evaluator at every test.
#include "app/errors.h"
#include "app/toolkit/omdib.h"
#include "lang/builtins.h"
#include "lang/command_args.h"
#include "lang/expr.h"
#include "lang/loop_turn.h"

#include <cwchar>
#include <memory>

namespace {

struct LoopState {
    int32_t invert = 0;
    wchar_t* condition = nullptr;
    wchar_t* body = nullptr;
};

// Letters in any case, with nothing required behind them.
bool TakeLetters(wchar_t*& p, const wchar_t* word)
{
    size_t n = std::wcslen(word);
    for (size_t i = 0; i < n; ++i)
        if (ToLowerUnit(p[i]) != word[i]) return false;
    p += n;
    return true;
}

// [not] [calc] "(": p moves onto the bracket; message 32 and false when it
// is missing.
bool TakeConditionStart(wchar_t*& p, LoopState& loop)
{
    p = SkipWhiteW(p);
    if (TakeLetters(p, L"not")) {
        loop.invert ^= 1;
        p = SkipWhiteW(p);
    }
    if (TakeLetters(p, L"calc")) p = SkipWhiteW(p);
    if (*p == L'(') return true;
    ReportId(32);
    return false;
}

// while|until [not] [calc] (expression) do statement
bool ParseTestFirst(wchar_t* p, LoopState& loop)
{
    if (!TakeConditionStart(p, loop)) return false;
    wchar_t* end = SkipGroupW(p);
    loop.condition = p + 1;
    if (*end) {
        end[-1] = 0;
        end = SkipWhiteW(end);
    }
    if (!TakeLetters(end, L"do")) {
        ReportId(100);
        return false;
    }
    loop.body = SkipWhiteW(end);
    if (*loop.body) return true;
    ReportId(32);
    return false;
}

// do group while|until [not] [calc] (expression)
bool ParseTestAfter(wchar_t* p, LoopState& loop)
{
    p = SkipWhiteW(p);
    if (*p != L'(' && *p != L'{') {
        ReportId(32);
        return false;
    }
    loop.body = p;
    wchar_t* keyword = SkipWhiteW(SkipGroupW(p));
    wchar_t* q = keyword;
    if (TakeLetters(q, L"until")) {
        loop.invert = 1;
    } else if (!TakeLetters(q, L"while")) {
        ReportId(115);
        return false;
    }
    *keyword = 0;
    if (!TakeConditionStart(q, loop)) return false;
    // Whatever stands behind the closer is ignored.
    SkipGroupW(q)[-1] = 0;
    loop.condition = q + 1;
    return true;
}

// 1 the condition holds, 0 it does not, -1 it failed (message shown).
int Test(const LoopState& loop)
{
    ExprValue value;
    int error = 0;
    if (!EvaluateExpression(error, loop.condition, value)) {
        ReportExpressionError(error);
        return -1;
    }
    bool truth = value.Type == ExprReal ? value.Real != 0 : uint32_t(uint64_t(value.Integer)) != 0;
    return truth != (loop.invert != 0) ? 1 : 0;
}

// Each turn runs on a fresh copy: running a statement cuts its text.
bool RunBody(const LoopState& loop)
{
    auto copy = std::make_unique<wchar_t[]>(kLineMax);
    CopyCutW(copy.get(), loop.body, kLineMax);
    return RunLoopTurn(copy.get());
}

// The tail, copied: the parsers cut it, and the body's statements reuse the
// buffers that CommandArgs points into.
std::unique_ptr<wchar_t[]> CopyTail()
{
    auto text = std::make_unique<wchar_t[]>(kLineMax);
    CopyCutW(text.get(), CommandArgs.Tail, kLineMax);
    return text;
}

void RunTestFirst(int32_t invert)
{
    auto text = CopyTail();
    LoopState loop;
    loop.invert = invert;
    if (!ParseTestFirst(text.get(), loop)) return;
    while (Test(loop) == 1)
        if (!RunBody(loop)) return;
}

} // namespace

void CmdWhile() { RunTestFirst(0); }

void CmdUntil() { RunTestFirst(1); }

void CmdDo()
{
    auto text = CopyTail();
    LoopState loop;
    if (!ParseTestAfter(text.get(), loop)) return;
    do {
        if (!RunBody(loop)) return;
    } while (Test(loop) == 1);
}
