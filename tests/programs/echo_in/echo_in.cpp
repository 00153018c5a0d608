// Reads standard input line by line and prints "got: " and each line, then
// "lines: N" at the end of the input. "echo_in once" reads one line, prints
// it back as it came, as programs that echo their input do, then "done".
#include <cstdio>
#include <cstring>
#include <cwchar>

int wmain(int argc, wchar_t** argv)
{
    char line[4096];
    if (argc > 1 && wcscmp(argv[1], L"once") == 0) {
        if (!fgets(line, sizeof(line), stdin)) return 0;
        fputs(line, stdout);
        fflush(stdout);
        puts("done");
        return 1;
    }
    int count = 0;
    while (fgets(line, sizeof(line), stdin)) {
        line[strcspn(line, "\r\n")] = 0;
        printf("got: %s\n", line);
        fflush(stdout);
        ++count;
    }
    printf("lines: %d\n", count);
    return count;
}
