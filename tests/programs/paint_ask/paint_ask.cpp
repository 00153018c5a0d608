// Paints on its console the way console programs do, then asks for a line:
// "plain", "red" in bright red through the console's colours, "moved" three
// columns further right by a cursor move, "!" behind it after a move up a
// line and back, then "name? " and a line read from its input, answered by
// "hello NAME". The exit code is the length of NAME.
#include <windows.h>

#include <cstdio>
#include <cstring>

int wmain()
{
    HANDLE out = GetStdHandle(STD_OUTPUT_HANDLE);
    std::printf("plain\n");
    std::fflush(stdout);
    CONSOLE_SCREEN_BUFFER_INFO info{};
    bool console = GetConsoleScreenBufferInfo(out, &info) != 0;
    if (console) SetConsoleTextAttribute(out, FOREGROUND_RED | FOREGROUND_INTENSITY);
    std::printf("red");
    std::fflush(stdout);
    if (console) {
        SetConsoleTextAttribute(out, info.wAttributes);
        GetConsoleScreenBufferInfo(out, &info);
        COORD place = info.dwCursorPosition;
        place.X = SHORT(place.X + 3);
        SetConsoleCursorPosition(out, place);
        std::printf("moved\n");
        std::fflush(stdout);
        // Back up a line to finish it, then down again where the text goes on.
        GetConsoleScreenBufferInfo(out, &info);
        COORD below = info.dwCursorPosition;
        SetConsoleCursorPosition(out, COORD{11, SHORT(below.Y - 1)});
        std::printf("!");
        std::fflush(stdout);
        SetConsoleCursorPosition(out, below);
    } else {
        std::printf("   moved!\n");
    }
    std::printf("name? ");
    std::fflush(stdout);
    char name[256] = {};
    if (!std::fgets(name, sizeof(name), stdin)) name[0] = 0;
    name[std::strcspn(name, "\r\n")] = 0;
    std::printf("hello %s\n", name);
    return int(std::strlen(name));
}
