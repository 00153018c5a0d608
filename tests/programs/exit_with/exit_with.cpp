// Prints "exiting N" and ends with exit code N (0 without an argument).
#include <cstdio>
#include <cwchar>

int wmain(int argc, wchar_t** argv)
{
    int code = argc > 1 ? int(wcstol(argv[1], nullptr, 10)) : 0;
    wprintf(L"exiting %d\n", code);
    return code;
}
