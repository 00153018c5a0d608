// How the evaluator and calc reach variables: plain environment access, kept
// apart so that the language's own variable store can take its place.
#include "lang/expr_internal.h"

#include "app/errors.h"

#include <windows.h>

std::wstring ReadExprVariable(const std::wstring& name)
{
    std::wstring value(64, L'\0');
    for (;;) {
        DWORD length = GetEnvironmentVariableW(name.c_str(), value.data(), DWORD(value.size()));
        if (length < value.size()) {
            value.resize(length);
            return value;
        }
        value.resize(length); // too small: length is the size needed, terminator included
    }
}

bool AssignExprVariable(const wchar_t* name, const wchar_t* value)
{
    if (SetEnvironmentVariableW(name, value)) return true;
    ReportId(4);
    return false;
}
