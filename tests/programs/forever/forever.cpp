// Never ends by itself. "forever" writes a dot now and then and ends only
// when its output breaks; "forever quiet" writes one line and then sleeps.
#include <windows.h>

#include <cwchar>

int wmain(int argc, wchar_t** argv)
{
    HANDLE out = GetStdHandle(STD_OUTPUT_HANDLE);
    DWORD written = 0;
    WriteFile(out, "running\r\n", 9, &written, nullptr);
    bool quiet = argc > 1 && wcscmp(argv[1], L"quiet") == 0;
    for (;;) {
        Sleep(100);
        if (!quiet && !WriteFile(out, ".", 1, &written, nullptr)) return 7;
    }
}
