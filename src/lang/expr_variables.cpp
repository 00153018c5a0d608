// How the evaluator and calc reach variables: through the language's own
// variable rules (dotted names are arrays), but never the internal variables,
// which an expression must not see.
#include "lang/expr_internal.h"

#include "lang/environment_index.h"
#include "lang/variables.h"

#include <memory>


std::wstring ReadExprVariable(const std::wstring& name)
{
    // A plain name is its own resolved name: only arrays need the buffer.
    std::unique_ptr<wchar_t[]> resolved;
    const wchar_t* lookup = name.c_str();
    if (name.find(L'.') != std::wstring::npos || name.size() >= size_t(kValueMax)) {
        resolved = std::make_unique_for_overwrite<wchar_t[]>(kValueMax);
        lookup = ResolveSubscripts(lookup, resolved.get(), kValueMax);
    }
    const std::wstring* value = *lookup ? FindEnvironment(lookup) : nullptr;
    return value ? value->substr(0, size_t(kValueMax - 1)) : std::wstring();
}

bool AssignExprVariable(const wchar_t* name, const wchar_t* value) { return SetVariable(name, value); }
