#include "input/unix_mode.h"

#include "app/profile/profile.h"
#include "app/toolkit/omdib.h"

#include <cstring>

UnixMode::UnixMode()
{
    Unix = ProfileReadInt(L"UnixMode", L"Unix", 0);
    Display = ProfileReadInt(L"UnixMode", L"Display", 0);
}

static bool BehindBlank(const wchar_t* start, const wchar_t* p) { return p > start && p[-1] == L' '; }

void ConvertUnixInput(wchar_t* line)
{
    if (!TheUnixMode.Unix) return;
    for (wchar_t* p = line; *p;) {
        if (*p == L'"') {
            p = SkipStrW(p + 1);
            continue;
        }
        if (*p == L'/') {
            *p = L'\\';
        } else if (*p == L'-' && BehindBlank(line, p)) {
            if (p[1] == L'-') std::memmove(p, p + 1, size_t(lstrlenW(p + 1) + 1) * sizeof(wchar_t));
            else *p = L'/';
        }
        ++p;
    }
}

const wchar_t* UnixDisplayW(const wchar_t* text)
{
    if (!TheUnixMode.Unix) return text;
    static wchar_t shown[kLineMax];
    int n = 0;
    auto put = [&](wchar_t unit) {
        if (n < kLineMax - 1) shown[n++] = unit;
    };
    bool quoted = false;
    for (const wchar_t* p = text; *p; ++p) {
        wchar_t unit = *p;
        if (unit == L'"') quoted = !quoted;
        else if (!quoted && unit == L'\\') unit = L'/';
        else if (!quoted && unit == L'/') unit = L'-';
        else if (!quoted && unit == L'-' && BehindBlank(text, p)) put(L'-');
        put(unit);
    }
    shown[n] = 0;
    return shown;
}
