// How the evaluator and calc reach variables: through the language's own
// variable rules (dotted names are arrays), but never the internal variables,
// which an expression must not see.
#include "lang/expr_internal.h"

#include "lang/variables.h"


std::wstring ReadExprVariable(const std::wstring& name)
{
    wchar_t resolved[kValueMax];
    ResolveSubscripts(name.c_str(), resolved, kValueMax);
    wchar_t value[kValueMax];
    int length = ReadVariable(resolved, value, kValueMax);
    return std::wstring(value, size_t(length));
}

bool AssignExprVariable(const wchar_t* name, const wchar_t* value) { return SetVariable(name, value); }
