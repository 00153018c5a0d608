// The tokeniser of the expression evaluator: numbers, quoted texts, operators
// and names. A name followed by "(" is a function call, which the tokeniser
// computes at once, so that to the parser every operand is one value token.
#include "lang/expr_internal.h"

#include "app/toolkit/omdib.h"

#include <cwchar>
#include <windows.h>

namespace {

bool IsDecimalDigit(wchar_t c) { return c >= L'0' && c <= L'9'; }

bool IsAsciiLetter(wchar_t c) { return (c >= L'a' && c <= L'z') || (c >= L'A' && c <= L'Z'); }

// Plain letters are answered here: the platform's class look-up costs more
// than the rest of reading a short name.
bool IsNameStart(wchar_t c) { return c < 0x80 ? IsAsciiLetter(c) : IsCharAlphaW(c) != FALSE; }

bool IsNameChar(wchar_t c)
{
    if (c < 0x80) return IsAsciiLetter(c) || IsDecimalDigit(c) || c == L'_' || c == L'.';
    return IsCharAlphaNumericW(c) != FALSE;
}

// lstrtoi64W answers the largest integer both for exactly that number and for
// any larger one, so the digits it read are compared with the largest
// integer written in the same radix, leading zeros aside.
bool IntegerOverflowed(const wchar_t* start, const wchar_t* end, int64_t value)
{
    if (value != INT64_MAX) return false;
    int radix = 10;
    const wchar_t* digits = start;
    if (digits[0] == L'0' && (digits[1] == L'x' || digits[1] == L'X')) {
        radix = 16;
        digits += 2;
    } else if (digits[0] == L'0') {
        radix = 8;
    }
    while (digits < end && *digits == L'0') ++digits;
    wchar_t largest[72];
    i64tow_ex(INT64_MAX, largest, radix);
    int length = int(std::wcslen(largest));
    return end - digits != length || CompareStringOrdinal(digits, length, largest, length, TRUE) != CSTR_EQUAL;
}

// digits [ "." digits ] [ ("e" | "E") [sign] digits ], with at least one
// mantissa digit: the decimal form that every C runtime's string-to-double
// reads. Nothing more is taken, so that words such as inf or nan stay names
// and 0x forms stay integers on every runtime. Returns the end of the form.
const wchar_t* ScanDecimalReal(const wchar_t* p)
{
    const wchar_t* start = p;
    int digits = 0;
    for (; IsDecimalDigit(*p); ++p) ++digits;
    if (*p == L'.') {
        for (++p; IsDecimalDigit(*p); ++p) ++digits;
    }
    if (digits == 0) return start;
    if (*p == L'e' || *p == L'E') {
        const wchar_t* exponent = p + 1;
        if (*exponent == L'+' || *exponent == L'-') ++exponent;
        if (IsDecimalDigit(*exponent)) {
            while (IsDecimalDigit(*exponent)) ++exponent;
            p = exponent;
        }
    }
    return p;
}

// Where an integer reading stops in front of one of these, the text goes on
// as a real (or, for 8 and 9 behind a leading 0, as a decimal).
bool ContinuesAsReal(wchar_t c) { return c && std::wcschr(L".eE89", c) != nullptr; }

// An integer in C notation (0x hexadecimal, a leading 0 octal), or a real
// where the integer reading overflows, reads nothing, or stops where a real
// goes on: so 089 is the real 89 and 1e3 the real 1000. Answers 0 (failure)
// or 1, and sets *isNumber to false, without failing, when the text is no
// number.
int ReadNumber(ExprCursor& cursor, const wchar_t* p, ExprValue& value, bool* isNumber)
{
    const wchar_t* integerEnd;
    int64_t integer = lstrtoi64W(p, &integerEnd, 0);
    bool integerRead = integerEnd != p;
    if (integerRead && !IntegerOverflowed(p, integerEnd, integer) && !ContinuesAsReal(*integerEnd)) {
        *isNumber = true;
        value.Clear();
        value.Integer = integer;
        cursor.Position = integerEnd;
        return 1;
    }
    // An integer that overflowed starts with a decimal digit, so the real
    // form always takes something when the integer form did.
    const wchar_t* realEnd = ScanDecimalReal(p);
    *isNumber = realEnd != p;
    if (!*isNumber) return 1;
    std::wstring digits(p, realEnd);
    ClearMathError();
    double real = std::wcstod(digits.c_str(), nullptr);
    if (MathErrorAfter(real)) return Fail(cursor, ExprSyntax);
    value.Clear();
    value.Real = real;
    value.Integer = integer; // what the integer reading left: && and || test it
    value.Type = ExprReal;
    cursor.Position = realEnd;
    return 1;
}

// '"' text '"', a doubled quote standing for one. The value keeps as much as
// it holds; the rest is read and dropped. An unclosed text ends the line.
void ReadText(ExprCursor& cursor, const wchar_t* p, ExprValue& value)
{
    value.Clear();
    value.Type = ExprText;
    int kept = 0;
    for (++p; *p; ++p) {
        if (*p == L'"') {
            if (p[1] != L'"') {
                ++p;
                break;
            }
            ++p;
        }
        if (kept < kExprTextSize - 1) value.Text[kept++] = *p;
    }
    value.Text[kept] = 0;
    cursor.Position = p;
}

// A variable's value: a whole integer in C notation is an integer, anything
// else (empty and undefined included) a text.
void ConvertVariable(const std::wstring& text, ExprValue& value)
{
    value.Clear();
    if (!text.empty()) {
        const wchar_t* end;
        value.Integer = lstrtoi64W(text.c_str(), &end, 0);
        if (!*end) return;
    }
    value.Type = ExprText;
    CopyCutW(value.Text, text.c_str(), kExprTextSize);
}

// name [ "(" arguments ")" ]: letters, digits, "_" and "."; with a "(" behind
// it a function call, otherwise a variable.
int ReadName(ExprCursor& cursor, const wchar_t* p, ExprValue& value)
{
    const wchar_t* start = p;
    while (IsNameChar(*p)) ++p;
    std::wstring name(start, p);
    const wchar_t* behind = SkipWhiteW(p);
    if (*behind == L'(') {
        cursor.Position = behind + 1;
        return CallFunction(cursor, name, value);
    }
    ConvertVariable(ReadExprVariable(name), value);
    cursor.Position = p;
    return 1;
}

struct OperatorSpelling {
    const wchar_t* Text;
    int Token;
};

// The two-unit spellings come first, so that the longest one wins. A lone
// "=" is none of them.
const OperatorSpelling kOperators[] = {
    {L"!=", TokNotEqual}, {L"&&", TokAnd},     {L"||", TokOr},          {L"==", TokEqual},
    {L"<<", TokShiftLeft}, {L"<=", TokLessEqual}, {L">>", TokShiftRight}, {L">=", TokGreaterEqual},
    {L"(", TokOpen},      {L")", TokClose},    {L",", TokComma},        {L"*", TokMultiply},
    {L"/", TokDivide},    {L"\\", TokDivide},  {L"%", TokRemainder},    {L"+", TokAdd},
    {L"-", TokSubtract},  {L"<", TokLess},     {L">", TokGreater},      {L"&", TokBitAnd},
    {L"^", TokBitXor},    {L"|", TokBitOr},    {L"!", TokNot},          {L"~", TokInvert},
};

// The operator at p; cursor.Position moves behind it.
int ReadOperator(ExprCursor& cursor, const wchar_t* p)
{
    for (const OperatorSpelling& spelling : kOperators) {
        const wchar_t* text = spelling.Text;
        if (p[0] != text[0]) continue;
        if (!text[1]) {
            cursor.Position = p + 1;
            return spelling.Token;
        }
        if (p[1] == text[1]) {
            cursor.Position = p + 2;
            return spelling.Token;
        }
    }
    cursor.Position = p + 1;
    return TokUnknown;
}

} // namespace

int NextToken(ExprCursor& cursor, ExprValue& value)
{
    const wchar_t* p = SkipWhiteW(cursor.Position);
    cursor.Position = p;
    if (!*p) {
        cursor.Token = TokEnd;
        return 1;
    }
    // Signs are operators, never part of a number.
    if (*p != L'+' && *p != L'-') {
        bool isNumber;
        if (!ReadNumber(cursor, p, value, &isNumber)) return 0;
        if (isNumber) {
            cursor.Token = TokValue;
            return 1;
        }
    }
    if (*p == L'"') {
        ReadText(cursor, p, value);
        cursor.Token = TokValue;
        return 1;
    }
    if (IsNameStart(*p)) {
        if (!ReadName(cursor, p, value)) return 0;
        cursor.Token = TokValue; // the arguments of a function moved it on
        return 1;
    }
    cursor.Token = ReadOperator(cursor, p);
    return 1;
}
