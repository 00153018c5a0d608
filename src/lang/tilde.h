// The tilde forms %~[modifiers]selector: a parameter (or a for variable)
// without its quotes, or the file it names taken apart and put back
// together by the modifier letters f d p n x s a t z and $name:.
#pragma once

#include "lang/expand_output.h"

// Resolves the selector character of a tilde form (a parameter digit in a
// batch line, a loop letter in for) to its text as written, or null.
class TildeSelector {
public:
    virtual ~TildeSelector() = default;
    virtual bool IsSelector(wchar_t c) const = 0;
    virtual const wchar_t* Value(wchar_t c) const = 0;
};

// p stands behind "%~". Writes the form's result to out and returns the
// position behind the form.
const wchar_t* ExpandTildeForm(const wchar_t* p, const TildeSelector& selector, ExpandOutput& out);
