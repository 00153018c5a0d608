// Reads standard input line by line and prints "got: " and each line, then
// "lines: N" at the end of the input.
#include <cstdio>
#include <cstring>

int wmain()
{
    char line[4096];
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
