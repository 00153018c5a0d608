// if: one condition, then the statement it chooses, run as a statement of its
// own with the batch program of the if. The condition is read straight from
// Tail, cutting the text as it goes; the chosen statement is what is left.
#include "app/errors.h"
#include "app/toolkit/omdib.h"
#include "lang/builtins.h"
#include "lang/command_args.h"
#include "lang/environment_index.h"
#include "lang/expr.h"
#include "lang/shell_command.h"
#include "lang/variables.h"
#include "screen/screen_store.h"

#include <cwchar>
#include <memory>
#include <string>

namespace {

enum class Operator { None, Equal, Equ, Neq, Lss, Leq, Gtr, Geq };

struct Condition {
    bool invert = false;
    bool ignoreCase = false;
    bool truth = false;
    bool failed = false; // a message was given; nothing runs
    wchar_t* rest = nullptr;
};

// Case-blind test for a prefix that includes its blank.
bool TakePrefix(wchar_t*& p, const wchar_t* prefix)
{
    size_t n = std::wcslen(prefix);
    for (size_t i = 0; i < n; ++i)
        if (ToLowerUnit(p[i]) != prefix[i]) return false;
    p += n;
    return true;
}

// The next word (quoted strings kept whole), cut off; p moves behind it.
wchar_t* TakeWord(wchar_t*& p)
{
    p = SkipWhiteW(p);
    wchar_t* word = p;
    while (*p && !IsWhite(*p)) p = (*p == L'"') ? SkipStrW(p + 1) : p + 1;
    if (*p) *p++ = 0;
    p = SkipWhiteW(p);
    return word;
}

// A word's leading decimal number; false when it has none.
bool LeadingNumber(const wchar_t* word, int64_t* value)
{
    if (*word < L'0' || *word > L'9') return false;
    *value = wtoi64_ex(word);
    return true;
}

bool FileExists(wchar_t* name)
{
    if (*name == L'"') name = ConvertStrW(name);
    if (!*name) return false;
    WIN32_FIND_DATAW found;
    HANDLE h = FindFirstFileW(name, &found);
    if (h != INVALID_HANDLE_VALUE) {
        FindClose(h);
        return true;
    }
    return GetFileAttributesW(name) != INVALID_FILE_ATTRIBUTES;
}

bool WindowExists(wchar_t* text, bool byClass, Condition& c)
{
    if (*text != L'"') {
        ReportId(32);
        c.failed = true;
        return false;
    }
    const wchar_t* name = ConvertStrW(text);
    return (byClass ? FindWindowW(name, nullptr) : FindWindowW(nullptr, name)) != nullptr;
}

bool VariableDefined(const wchar_t* name)
{
    if (!*name) return false;
    wchar_t resolved[kValueMax];
    ResolveSubscripts(name, resolved, kValueMax);
    return *resolved && FindEnvironment(resolved) != nullptr;
}

// "(" expression ")" rest: an integer is true when its low 32 bits are not 0.
void ExpressionForm(wchar_t* p, Condition& c)
{
    wchar_t* end = SkipGroupW(p);
    if (*end) {
        end[-1] = 0;
        c.rest = SkipWhiteW(end);
    } else {
        c.rest = end;
    }
    ExprValue value;
    int error = 0;
    if (!EvaluateExpression(error, p + 1, value)) {
        ReportExpressionError(error);
        c.failed = true;
        return;
    }
    c.truth = value.Type == 2 ? value.Real != 0 : uint32_t(uint64_t(value.Integer)) != 0;
}

// Whether text begins with word, compared as lstrstriW compares.
bool StartsWithI(const wchar_t* text, const wchar_t* word)
{
    for (; *word; ++text, ++word)
        if (!*text || ToUpperUnit(*text) != ToUpperUnit(*word)) return false;
    return true;
}

// Finds the operator: "==" anywhere first, then the word operators.
wchar_t* FindOperator(wchar_t* p, Operator& op, size_t& length)
{
    if (wchar_t* at = std::wcsstr(p, L"==")) {
        op = Operator::Equal;
        length = 2;
        return at;
    }
    static const struct {
        const wchar_t* text;
        Operator op;
    } words[] = {{L" equ ", Operator::Equ}, {L" neq ", Operator::Neq}, {L" lss ", Operator::Lss},
                 {L" leq ", Operator::Leq}, {L" gtr ", Operator::Gtr}, {L" geq ", Operator::Geq}};
    // The first word of the list that stands anywhere wins, at its first
    // place; every word begins with a blank, so only blanks are tried.
    constexpr size_t kWords = sizeof words / sizeof words[0];
    wchar_t* first[kWords] = {};
    for (wchar_t* at = p; *at; ++at) {
        if (*at != L' ') continue;
        for (size_t k = 0; k < kWords; ++k)
            if (!first[k] && StartsWithI(at, words[k].text)) first[k] = at;
    }
    for (size_t k = 0; k < kWords; ++k)
        if (first[k]) {
            op = words[k].op;
            length = 5;
            return first[k];
        }
    op = Operator::None;
    return nullptr;
}

// An operand loses its quotes, or if it has none, its trailing blanks.
wchar_t* Operand(wchar_t* text)
{
    if (*text == L'"') return ConvertStrW(text);
    size_t n = std::wcslen(text);
    while (n > 0 && text[n - 1] == L' ') text[--n] = 0;
    return text;
}

bool WholeNumber(const wchar_t* text, int64_t* value)
{
    const wchar_t* end;
    *value = lstrtoi64W(text, &end, 0);
    return *text && *end == 0 && end != text;
}

void ComparisonForm(wchar_t* p, Condition& c)
{
    Operator op;
    size_t length = 0;
    wchar_t* at = FindOperator(p, op, length);
    if (!at) {
        ReportId(32);
        c.failed = true;
        return;
    }
    *at = 0;
    wchar_t* right = SkipWhiteW(at + length);
    wchar_t* after = right;
    while (*after && !IsWhite(*after)) after = (*after == L'"') ? SkipStrW(after + 1) : after + 1;
    if (*after) *after++ = 0;
    c.rest = SkipWhiteW(after);
    // Emptiness is judged as written: "" is an operand, the empty text.
    wchar_t* left = SkipWhiteW(p);
    if (!*left || !*right) {
        ReportId(32);
        c.failed = true;
        return;
    }
    left = Operand(left);
    right = Operand(right);
    int64_t a, b, difference;
    if (op != Operator::Equal && WholeNumber(left, &a) && WholeNumber(right, &b))
        difference = int64_t(uint64_t(a) - uint64_t(b));
    else
        difference = c.ignoreCase ? lstrcmpiW(left, right) : std::wcscmp(left, right);
    switch (op) {
    case Operator::Equal:
    case Operator::Equ: c.truth = difference == 0; break;
    case Operator::Neq: c.truth = difference != 0; break;
    case Operator::Lss: c.truth = difference < 0; break;
    case Operator::Leq: c.truth = difference <= 0; break;
    case Operator::Gtr: c.truth = difference > 0; break;
    case Operator::Geq: c.truth = difference >= 0; break;
    case Operator::None: break;
    }
}

void ReadCondition(wchar_t* p, Condition& c)
{
    p = SkipWhiteW(p);
    if (TakePrefix(p, L"/i ")) c.ignoreCase = true;
    if (TakePrefix(p, L"not ")) c.invert = true;
    int64_t number = 0;
    if (TakePrefix(p, L"exist ")) {
        c.truth = FileExists(TakeWord(p));
    } else if (TakePrefix(p, L"existwindow ")) {
        c.truth = WindowExists(TakeWord(p), false, c);
    } else if (TakePrefix(p, L"existclass ")) {
        c.truth = WindowExists(TakeWord(p), true, c);
    } else if (TakePrefix(p, L"defined ")) {
        c.truth = VariableDefined(TakeWord(p));
    } else if (TakePrefix(p, L"cmdextversion ")) {
        c.truth = LeadingNumber(TakeWord(p), &number) && number < 3;
    } else if (TakePrefix(p, L"errorlevel ")) {
        c.truth = LeadingNumber(TakeWord(p), &number) && number <= ErrorLevel;
    } else if (TakePrefix(p, L"calc")) {
        p = SkipWhiteW(p);
        if (*p != L'(') {
            ReportId(32);
            c.failed = true;
            return;
        }
        ExpressionForm(p, c);
        return;
    } else if (*p == L'(') {
        ExpressionForm(p, c);
        return;
    } else {
        ComparisonForm(p, c);
        return;
    }
    c.rest = p;
}

// The statement to run, or null.
wchar_t* ChooseStatement(Condition& c)
{
    if (c.failed) return nullptr;
    if (!*c.rest) {
        ReportId(32);
        return nullptr;
    }
    bool truth = c.truth != c.invert;
    wchar_t* rest = c.rest;
    if (*rest == L'(' || *rest == L'{') {
        wchar_t* behind = SkipWhiteW(SkipGroupW(rest));
        bool hasElse = TakePrefix(behind, L"else");
        if (!hasElse) return truth ? rest : nullptr;
        if (truth) {
            behind[-4] = 0;
            return rest;
        }
        behind = SkipWhiteW(behind);
        if (!*behind) {
            ReportId(32);
            return nullptr;
        }
        return behind;
    }
    return truth ? rest : nullptr;
}

} // namespace

void CmdIf()
{
    // Room behind the text: parsing the chosen statement may widen it.
    auto text = std::make_unique_for_overwrite<wchar_t[]>(2 * kLineMax);
    CopyCutW(text.get(), CommandArgs.Tail, kLineMax);
    Condition condition;
    ReadCondition(text.get(), condition);
    wchar_t* statement = ChooseStatement(condition);
    if (!statement) return;
    if (*statement == L'@') ++statement;
    TheScreen.Attr = TheScreen.ResetAttr;
    CommandArgs.Parse(statement);
    TheShell.ExecuteStatement(TheShell.Batch, L"");
    // The chosen statement settled ErrorLevel its own way.
    TheShell.KeepErrorLevel = 1;
}
