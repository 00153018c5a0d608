// Prints its command line as it arrived, then each argument in brackets.
#include <windows.h>

#include <cstdio>

int wmain(int argc, wchar_t** argv)
{
    wprintf(L"line=%ls\n", GetCommandLineW());
    for (int i = 1; i < argc; ++i) wprintf(L"[%ls]\n", argv[i]);
    return 0;
}
