// Running the evaluator in-process the way calc does: the value as calc
// shows it, or the message it reports, read back from the screen.
#pragma once

#include "lang/environment_index.h"
#include "app/errors.h"
#include "lang/expr.h"
#include "screen/screen_store.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <windows.h>

// The formatted result of text, or the message of its failure.
inline std::wstring Evaluated(const std::wstring& text)
{
    ExprValue value;
    int error = -1;
    int ok = EvaluateExpression(error, text.c_str(), value);
    if (ok) {
        wchar_t number[64];
        FormatExprValue(value, number, 64);
        return error == ExprOk ? std::wstring(number) : L"success with error word set";
    }
    TheScreen.ClearScreen();
    TheScreen.Locate(0, 0);
    TheScreen.BreakFlag = 0;
    ReportExpressionError(error);
    std::wstring message = TheScreen.RowText(0);
    TheScreen.BreakFlag = 0;
    TheErrors.ErrorFlag = 0;
    return message;
}

// The type of a successful result, or -1 on failure.
inline int EvaluatedType(const std::wstring& text)
{
    ExprValue value;
    int error;
    return EvaluateExpression(error, text.c_str(), value) ? value.Type : -1;
}

struct ExprCase {
    const wchar_t* Text;
    const wchar_t* Expected;
};

inline void ExpectAll(std::initializer_list<ExprCase> cases)
{
    for (const ExprCase& c : cases) EXPECT_EQ(Evaluated(c.Text), c.Expected) << "expression: " << c.Text;
}

// Variables that the expression tests read: a hexadecimal integer, a real
// (which a variable holds as text), a word, a negative number, an element.
inline void SetSampleVariables()
{
    WriteEnvironment(L"n", L"0x10");
    WriteEnvironment(L"t", L"1.5");
    WriteEnvironment(L"w", L"word");
    WriteEnvironment(L"m", L"-5");
    WriteEnvironment(L"arr.2", L"7");
}
