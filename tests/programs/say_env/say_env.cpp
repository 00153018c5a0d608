// Prints the strings of its environment that begin with the text of its
// argument (case-blind), one a line, in the order the block holds them.
#include <windows.h>

#include <cstdio>
#include <algorithm>
#include <cwchar>

int wmain(int argc, wchar_t** argv)
{
    const wchar_t* prefix = argc > 1 ? argv[1] : L"";
    size_t length = wcslen(prefix);
    wchar_t* block = GetEnvironmentStringsW();
    if (!block) return 1;
    for (const wchar_t* p = block; *p; p += wcslen(p) + 1)
        if (*p != L'=' && CompareStringW(LOCALE_INVARIANT, NORM_IGNORECASE, p, int(std::min(length, wcslen(p))),
                                         prefix, int(length)) == CSTR_EQUAL)
            wprintf(L"%ls\n", p);
    FreeEnvironmentStringsW(block);
    return 0;
}
