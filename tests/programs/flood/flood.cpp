// Writes a lot: "flood N" writes N numbered text lines of 64 bytes,
// "flood noise N" writes N bytes of every byte value (zeros, control codes,
// escape sequences cut in half), "flood utf8 N" writes N numbered lines of
// UTF-8 text, "flood mb N" writes N megabytes of text
// lines; then "done" on a line of its own.
#include <windows.h>

#include <cstdio>
#include <cstring>
#include <cwchar>
#include <string>

namespace {

void Put(const char* bytes, size_t size)
{
    HANDLE out = GetStdHandle(STD_OUTPUT_HANDLE);
    DWORD written = 0;
    while (size > 0) {
        if (!WriteFile(out, bytes, DWORD(size), &written, nullptr) || written == 0) ExitProcess(2);
        bytes += written;
        size -= written;
    }
}

// count lines made by format from their numbers, written in blocks.
void Numbered(long count, const char* format)
{
    std::string block;
    char line[80];
    for (long i = 1; i <= count; ++i) {
        snprintf(line, sizeof(line), format, i);
        block += line;
        if (block.size() > 60000) {
            Put(block.data(), block.size());
            block.clear();
        }
    }
    Put(block.data(), block.size());
}

void Lines(long count) { Numbered(count, "%08ld abcdefghijklmnopqrstuvwxyz ABCDEFGHIJKLMNOPQRSTUVWXYZ 0123\r\n"); }

// Lines of 19 bytes with characters of two, three and four bytes, so that
// the reader's pieces end inside characters at changing places.
void Utf8Lines(long count) { Numbered(count, "%07ld \xC3\xBC\xE2\x82\xAC\xF0\x9F\x98\x80\r\n"); }

void Noise(long count)
{
    std::string block;
    unsigned state = 12345;
    for (long i = 0; i < count; ++i) {
        state = state * 1103515245u + 12345u;
        block += char(i < 256 ? i : int(state >> 16));
    }
    Put(block.data(), block.size());
}

} // namespace

int wmain(int argc, wchar_t** argv)
{
    if (argc > 2 && wcscmp(argv[1], L"noise") == 0) Noise(wcstol(argv[2], nullptr, 10));
    else if (argc > 2 && wcscmp(argv[1], L"utf8") == 0) Utf8Lines(wcstol(argv[2], nullptr, 10));
    else if (argc > 2 && wcscmp(argv[1], L"mb") == 0) Lines(wcstol(argv[2], nullptr, 10) * (1 << 20) / 64);
    else Lines(argc > 1 ? wcstol(argv[1], nullptr, 10) : 1000);
    Put("\r\ndone\r\n", 8);
    return 0;
}
