// Variable expansion of statements and batch lines.
#pragma once

#include "lang/batch_parameters.h"

// Expands source into destination (size units, cut silently at size - 1).
void ExpandLine(const wchar_t* source, wchar_t* destination, int size);
// A batch line as a whole, with the running program's parameters.
void ExpandBatchLine(const BatchParameters& batch, const wchar_t* source, wchar_t* destination, int size);
