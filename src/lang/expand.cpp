#include "lang/expand.h"

#include "app/toolkit/omdib.h"

void ExpandLine(const wchar_t* source, wchar_t* destination, int size) { CopyCutW(destination, source, size); }

void ExpandBatchLine(const BatchParameters&, const wchar_t* source, wchar_t* destination, int size)
{
    CopyCutW(destination, source, size);
}
