// Leaves its console's input raw, without line editing or echo, as a
// full-screen program does when it is ended before it could set things back.
// Exits with 0, or 1 when its input is no console.
#include <windows.h>

int wmain()
{
    HANDLE in = GetStdHandle(STD_INPUT_HANDLE);
    DWORD mode = 0;
    if (!GetConsoleMode(in, &mode)) return 1;
    SetConsoleMode(in, mode & ~DWORD(ENABLE_LINE_INPUT | ENABLE_ECHO_INPUT));
    return 0;
}
