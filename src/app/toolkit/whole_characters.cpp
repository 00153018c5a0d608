#include "app/toolkit/whole_characters.h"

#include <cstdint>

size_t WholeCharacters(const char* bytes, size_t n, UINT codePage, const CPINFO& info)
{
    if (codePage == CP_UTF8) {
        size_t back = 0;
        while (back < 3 && back < n && (uint8_t(bytes[n - 1 - back]) & 0xC0) == 0x80) ++back;
        if (back < n) {
            uint8_t lead = uint8_t(bytes[n - 1 - back]);
            size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC0 ? 2 : 1;
            if (length > back + 1) return n - back - 1;
        }
        return n;
    }
    if (info.MaxCharSize <= 1) return n;
    bool lead[256] = {};
    for (int r = 0; r + 1 < MAX_LEADBYTES && info.LeadByte[r]; r += 2)
        for (int b = info.LeadByte[r]; b <= info.LeadByte[r + 1]; ++b) lead[b] = true;
    size_t i = 0;
    while (i < n) {
        if (!lead[uint8_t(bytes[i])]) ++i;
        else if (i + 1 >= n) return i;
        else i += 2;
    }
    return n;
}
