// Variable expansion. A statement typed at the prompt or taken from a group
// goes through ExpandLine as it is about to run; a batch line goes through
// ExpandBatchLine as a whole before it is split. Both copy a {...} group
// unexpanded (outside quotes), which is what lets a brace group see values
// that change while it runs. Output is cut silently at size - 1 units.
#pragma once

#include "lang/batch_parameters.h"

// %name% (environment, internal variables, colon forms); "^" protects the
// next unit; any other "%" stays.
void ExpandLine(const wchar_t* source, wchar_t* destination, int size);
// %0 to %9, %#, %*, %~ forms and %% from the batch, then %name% as above; a
// lone "%" vanishes. Inside braces only the batch forms are replaced.
void ExpandBatchLine(const BatchParameters& batch, const wchar_t* source, wchar_t* destination, int size);
