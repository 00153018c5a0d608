// calc: evaluates an expression and keeps the number in CALC, or shows it
// when the expression starts with "?". ErrorLevel stays as it was.
#include "app/toolkit/omdib.h"
#include "lang/builtins.h"
#include "lang/command_args.h"
#include "lang/expr.h"
#include "lang/expr_internal.h"
#include "screen/screen_store.h"

void CmdCalc()
{
    if (CommandArgs.ArgCount == 0) return;
    const wchar_t* text = SkipWhiteW(CommandArgs.Tail);
    bool show = *text == L'?';
    if (show) ++text;
    ExprValue value;
    int error;
    if (!EvaluateExpression(error, text, value)) {
        ReportExpressionError(error);
        return;
    }
    wchar_t number[64];
    FormatExprValue(value, number, 64);
    if (show) {
        TheScreen.Write(number);
        TheScreen.NewLine();
        return;
    }
    AssignExprVariable(L"CALC", number);
}
