#include "app/startup_args.h"

#include "app/globals.h"
#include "app/profile/profile.h"
#include "app/toolkit/omdib.h"

static bool StartsWithI(const wchar_t* text, const wchar_t* prefix)
{
    for (; *prefix; ++prefix, ++text)
        if (ToUpperUnit(*text) != *prefix) return false;
    return true;
}

// A whole command passed as one quoted argument, as other programs pass it
// (ombc /C "echo a b"), loses its first and last quote, as with the system's
// own command processor; the quoted name of an existing file keeps them,
// since they are what protects its blanks.
static void UnwrapQuotedCommand(std::wstring& command)
{
    if (command.size() < 2 || command.front() != L'"' || command.back() != L'"') return;
    std::wstring inner = command.substr(1, command.size() - 2);
    bool plainName = inner.find(L'"') == std::wstring::npos;
    if (plainName && GetFileAttributesW(inner.c_str()) != INVALID_FILE_ATTRIBUTES) return;
    command = inner;
}

StartupArgs ParseStartupArgs(const wchar_t* arguments)
{
    StartupArgs args;
    const wchar_t* p = arguments;
    // "/x" in lower case with text behind it: the whole text is a directory.
    if (p[0] == L'/' && p[1] == L'x' && IsWhite(p[2]) && *SkipWhiteW(p + 2)) {
        args.Directory = SkipWhiteW(p + 2);
        return args;
    }
    p = SkipWhiteW(p);
    // The settings argument was already read by the settings store.
    if (StartsWithI(p, L"USE=") || StartsWithI(p, L"INI=")) p = SkipWhiteW(SkipAlphaW(p));
    else if (*p == L'"' && (StartsWithI(p + 1, L"USE=") || StartsWithI(p + 1, L"INI=")))
        p = SkipWhiteW(SkipStrW(p + 1));

    while (*p == L'/') {
        for (++p; *p && !IsWhite(*p); ++p) {
            wchar_t letter = ToUpperUnit(*p);
            if (letter == L'C') args.RunAndClose = true;
            else if ((letter == L'U' || letter == L'A') && !args.Redirection) args.Redirection = letter;
        }
        p = SkipWhiteW(p);
    }
    args.Command = p;
    UnwrapQuotedCommand(args.Command);
    return args;
}

void ApplyRedirectionChoice(const StartupArgs& args)
{
    if (!args.Redirection) return;
    UnicodeRedirection = args.Redirection == L'U' ? 1 : 0;
    ProfileWriteInt(L"Ombrel", L"UnicodeRedirection", UnicodeRedirection);
}
