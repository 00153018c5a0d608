// 64-bit number conversions and thousands separators.
#include "app/toolkit/omdib.h"

#include <climits>

static int DigitValue(wchar_t c)
{
    if (c >= L'0' && c <= L'9') return c - L'0';
    if (c >= L'a' && c <= L'z') return c - L'a' + 10;
    if (c >= L'A' && c <= L'Z') return c - L'A' + 10;
    return 99;
}

// [white] [+|-] [0x|0] digits, in the manner of strtoll: base 0 picks the base
// from the prefix, and a value out of range is held at the nearest limit.
int64_t lstrtoi64W(const wchar_t* text, const wchar_t** end, int base)
{
    const wchar_t* p = SkipWhiteW(text);
    bool negative = false;
    if (*p == L'+' || *p == L'-') negative = *p++ == L'-';
    if ((base == 0 || base == 16) && p[0] == L'0' && (p[1] == L'x' || p[1] == L'X') && DigitValue(p[2]) < 16) {
        p += 2;
        base = 16;
    } else if (base == 0) {
        base = (p[0] == L'0') ? 8 : 10;
    }
    const wchar_t* digits = p;
    uint64_t value = 0;
    bool overflow = false;
    // One division here instead of one a digit.
    const uint64_t largestBeforeDigit = UINT64_MAX / uint64_t(base);
    for (int d; (d = DigitValue(*p)) < base; ++p) {
        uint64_t shifted = value * uint64_t(base);
        if (value > largestBeforeDigit || shifted > UINT64_MAX - uint64_t(d)) overflow = true;
        else value = shifted + uint64_t(d);
    }
    if (end) *end = (p == digits) ? text : p;
    uint64_t limit = negative ? uint64_t(INT64_MAX) + 1 : uint64_t(INT64_MAX);
    if (overflow || value > limit) return negative ? INT64_MIN : INT64_MAX;
    return negative ? int64_t(0 - value) : int64_t(value);
}

template <class Char> static uint64_t UnsignedDecimal(const Char* p, bool* negative)
{
    while (*p == ' ' || *p == '\t') ++p;
    *negative = false;
    if (*p == '+' || *p == '-') *negative = *p++ == '-';
    uint64_t value = 0;
    for (; *p >= '0' && *p <= '9'; ++p) value = value * 10 + uint64_t(*p - '0');
    return value;
}

int64_t wtoi64_ex(const wchar_t* text)
{
    bool negative;
    uint64_t v = UnsignedDecimal(text, &negative);
    return negative ? int64_t(0 - v) : int64_t(v);
}

uint64_t wtoui64_ex(const wchar_t* text)
{
    bool negative;
    uint64_t v = UnsignedDecimal(text, &negative);
    return negative ? 0 - v : v;
}

int64_t atoi64_ex(const char* text)
{
    bool negative;
    uint64_t v = UnsignedDecimal(text, &negative);
    return negative ? int64_t(0 - v) : int64_t(v);
}

uint64_t atoui64_ex(const char* text)
{
    bool negative;
    uint64_t v = UnsignedDecimal(text, &negative);
    return negative ? 0 - v : v;
}

wchar_t* ui64tow_ex(uint64_t value, wchar_t* buffer, int radix)
{
    if (radix < 2 || radix > 36) radix = 10;
    wchar_t digits[72];
    int n = 0;
    // Decimal is nearly every call; a constant divisor is a multiplication.
    if (radix == 10) {
        do {
            digits[n++] = wchar_t(L'0' + int(value % 10));
            value /= 10;
        } while (value);
    } else {
        do {
            int d = int(value % uint64_t(radix));
            digits[n++] = wchar_t(d < 10 ? L'0' + d : L'a' + d - 10);
            value /= uint64_t(radix);
        } while (value);
    }
    for (int i = 0; i < n; ++i) buffer[i] = digits[n - 1 - i];
    buffer[n] = 0;
    return buffer;
}

wchar_t* i64tow_ex(int64_t value, wchar_t* buffer, int radix)
{
    if (value < 0) {
        buffer[0] = L'-';
        ui64tow_ex(0 - uint64_t(value), buffer + 1, radix);
    } else {
        ui64tow_ex(uint64_t(value), buffer, radix);
    }
    return buffer;
}

wchar_t* StrCommaW(wchar_t* text)
{
    wchar_t* digits = text;
    if (*digits == L'-' || *digits == L'+') ++digits;
    int n = 0;
    while (digits[n] >= L'0' && digits[n] <= L'9') ++n;
    if (n <= 3) return text;
    int commas = (n - 1) / 3;
    int tail = 0;
    while (digits[n + tail]) ++tail;
    // Move from the end so the text can be widened in place.
    for (int i = tail; i >= 0; --i) digits[n + commas + i] = digits[n + i];
    int out = n + commas - 1;
    for (int in = n - 1, group = 0; in >= 0; --in) {
        digits[out--] = digits[in];
        if (++group == 3 && in > 0) {
            digits[out--] = L',';
            group = 0;
        }
    }
    return text;
}
