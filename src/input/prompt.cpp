#include "input/prompt.h"

#include "app/globals.h"
#include "app/profile/profile.h"
#include "input/unix_mode.h"
#include "lang/builtins.h"
#include "lang/command_args.h"
#include "lang/shell_command.h"
#include "screen/screen_store.h"

#include <cwchar>
#include <string>

namespace {

constexpr const wchar_t* kDefaultPrompt = L"$e[1;56;60m$p$e[53m$g$e[0;57m";

const wchar_t* const kDayNames[] = {L"Sun", L"Mon", L"Tue", L"Wed", L"Thu", L"Fri", L"Sat"};
const wchar_t* const kMonthNames[] = {L"Jan", L"Feb", L"Mar", L"Apr", L"May", L"Jun",
                                      L"Jul", L"Aug", L"Sep", L"Oct", L"Nov", L"Dec"};

// "Wed Jan 02 1980": the date part of the C library's time text and the year.
std::wstring DateText()
{
    SYSTEMTIME now;
    GetLocalTime(&now);
    wchar_t text[32];
    std::swprintf(text, 32, L"%ls %ls %02u %u", kDayNames[now.wDayOfWeek % 7], kMonthNames[(now.wMonth + 11) % 12],
                  unsigned(now.wDay), unsigned(now.wYear));
    return text;
}

// " 14:03:59": the time part of the same text, with the blank in front of it.
std::wstring TimeText()
{
    SYSTEMTIME now;
    GetLocalTime(&now);
    wchar_t text[16];
    std::swprintf(text, 16, L" %02u:%02u:%02u", unsigned(now.wHour), unsigned(now.wMinute), unsigned(now.wSecond));
    return text;
}

std::wstring VersionText()
{
    DWORD version = GetVersion();
    wchar_t text[48];
    std::swprintf(text, 48, L"Windows Version %u.%u", unsigned(LOBYTE(LOWORD(version))),
                  unsigned(HIBYTE(LOWORD(version))));
    return text;
}

std::wstring DriveText()
{
    int drive = GetDisk();
    return drive < 0 ? std::wstring() : std::wstring(1, wchar_t(L'A' + drive));
}

std::wstring DirectoryText()
{
    wchar_t directory[kPathMax];
    DWORD n = GetCurrentDirectoryW(kPathMax, directory);
    if (n == 0 || n >= kPathMax) return {};
    if (!OsFlags.IsWin32s) GetFileNameCaseW(directory);
    return UnixDisplayW(directory);
}

// From the unit behind "$e": "[", digits and semicolons, and the final unit.
const wchar_t* TakeSequence(const wchar_t* p, std::wstring& sequence)
{
    sequence = L"\x1b";
    if (*p != L'[') return p;
    sequence += *p++;
    while ((*p >= L'0' && *p <= L'9') || *p == L';') sequence += *p++;
    if (*p) sequence += *p++;
    return p;
}

} // namespace

PromptState::PromptState() { LoadSetting(); }

void PromptState::LoadSetting() { ProfileReadString(L"Ombrel", L"Prompt", kDefaultPrompt, Template, kLineMax); }

void PromptState::SetTemplate(const wchar_t* text) { CopyCutW(Template, text, kLineMax); }

void PromptState::Print()
{
    if (TheScreen.CursorX != 0) TheScreen.NewLine();
    std::wstring pending;
    auto flush = [&] {
        if (!pending.empty()) TheScreen.Write(pending.c_str());
        pending.clear();
    };
    for (const wchar_t* p = Template; *p;) {
        if (*p != L'$') {
            pending += *p++;
            continue;
        }
        wchar_t code = *++p;
        if (!code) {
            pending += L'$';
            break;
        }
        ++p;
        switch (ToLowerUnit(code)) {
        case L'$': pending += L'$'; break;
        case L'_':
            flush();
            TheScreen.NewLine();
            break;
        case L'a': pending += L'&'; break;
        case L'b': pending += L'|'; break;
        case L'c': pending += L'('; break;
        case L'd': pending += DateText(); break;
        case L'e': {
            flush();
            std::wstring sequence;
            p = TakeSequence(p, sequence);
            TheScreen.WriteEscaped(sequence.c_str());
            break;
        }
        case L'f': pending += L')'; break;
        case L'g': pending += L'>'; break;
        case L'h':
            // Steps back over what stands there; nothing is erased.
            flush();
            TheScreen.Locate(TheScreen.CursorX > 0 ? TheScreen.CursorX - 1 : 0, TheScreen.CursorY);
            break;
        case L'i': pending += L'{'; break;
        case L'j': pending += L'}'; break;
        case L'l': pending += L'<'; break;
        case L'n': pending += DriveText(); break;
        case L'p': pending += DirectoryText(); break;
        case L'q': pending += L'='; break;
        case L's': pending += L' '; break;
        case L't': pending += TimeText(); break;
        case L'v': pending += VersionText(); break;
        case L'z': pending += std::to_wstring(TheShell.StatementCounter); break;
        default:
            pending += L'$';
            pending += code;
            break;
        }
    }
    flush();
}

// prompt [text]
void CmdPrompt()
{
    if (RejectSwitches()) return;
    const wchar_t* text = CommandArgs.Tail;
    if (*SkipWhiteW(text)) ThePrompt.SetTemplate(text);
    else ThePrompt.LoadSetting();
}
