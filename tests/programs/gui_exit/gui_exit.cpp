// A GUI program that ends at once, with the exit code given as its argument.
#include <windows.h>

#include <cwchar>

int WINAPI wWinMain(HINSTANCE, HINSTANCE, PWSTR arguments, int)
{
    return int(wcstol(arguments, nullptr, 10));
}
