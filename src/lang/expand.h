// Variable expansion of a statement: %name% and the internal variables.
#pragma once

// Expands source into destination (size units, cut silently at size - 1).
void ExpandLine(const wchar_t* source, wchar_t* destination, int size);
