#include "lang/internal_vars.h"

#include "app/toolkit/omdib.h"
#include "app/toolkit/shell_folders.h"
#include "lang/environment_index.h"
#include "lang/random.h"
#include "lang/shell_command.h"
#include "lang/short_date.h"
#include "screen/screen_store.h"

#include <shlobj.h>

#include <cwchar>

namespace {

// This build has no licence gate (the start-up gate lets every copy run), so
// every copy counts as registered.
constexpr int kLicenceState = 1;

struct Output {
    wchar_t* buffer;
    int size;

    void Text(const wchar_t* text) const { CopyCutW(buffer, text, size); }
    void Number(int64_t value) const
    {
        wchar_t text[32];
        Text(i64tow_ex(value, text, 10));
    }
};

SYSTEMTIME Now()
{
    SYSTEMTIME now;
    GetLocalTime(&now);
    return now;
}

void ExecutablePath(wchar_t* path)
{
    DWORD n = GetModuleFileNameW(nullptr, path, kPathMax);
    if (n == 0 || n >= kPathMax) path[0] = 0;
}

void CurrentDirectory(wchar_t* path)
{
    DWORD n = GetCurrentDirectoryW(kPathMax, path);
    if (n == 0 || n >= kPathMax) path[0] = 0;
}

void CommandLineValue(const Output& out)
{
    wchar_t text[kLineMax];
    ExecutablePath(text);
    const wchar_t* arguments = SkipArgW(GetCommandLineW());
    if (*arguments) {
        lstrcatW(text, L" ");
        CopyCutW(text + lstrlenW(text), arguments, kLineMax - lstrlenW(text));
    }
    out.Text(text);
}

void ExecutableDirectory(const Output& out)
{
    wchar_t path[kPathMax];
    ExecutablePath(path);
    wchar_t* slash = nullptr;
    for (wchar_t* p = path; *p; ++p)
        if (*p == L'\\') slash = p;
    if (slash) *slash = 0;
    out.Text(path);
}

void DateValue(const Output& out, unsigned options)
{
    wchar_t text[80];
    FormatShortDate(Now(), options, text, 80);
    out.Text(text);
}

void TimeValue(const Output& out)
{
    SYSTEMTIME now = Now();
    wchar_t text[32];
    std::swprintf(text, 32, L"%d:%02d:%02d", now.wHour, now.wMinute, now.wSecond);
    out.Text(text);
}

void DateFormatValue(const Output& out)
{
    wchar_t format[80];
    GetProfileStringW(L"intl", L"sShortDate", L"dd-mm-yyyy", format, 80);
    out.Text(format);
}

void OperatingSystemValue(const Output& out)
{
    DWORD version = GetVersion();
    bool sixteenBitLine = (version & 0x80000000u) != 0;
    if (!sixteenBitLine) out.Text(L"WinNT");
    else if (LOBYTE(LOWORD(version)) < 4) out.Text(L"Win32s");
    else out.Text(L"OTHER");
}

void WindowsVersionValue(const Output& out)
{
    DWORD version = GetVersion();
    wchar_t text[32];
    std::swprintf(text, 32, L"%d.%d", int(LOBYTE(LOWORD(version))), int(HIBYTE(LOWORD(version))));
    out.Text(text);
}

// Special folders through SHELL32, looked up when asked: a system without
// the functions gives the empty text.
void SpecialFolderValue(const Output& out, int folder)
{
    wchar_t path[MAX_PATH];
    SyncEnvironment(); // the folders may be written with variables
    ShellFolderPath(folder, path, true);
    out.Text(path);
}

void RandomNumberValue(const Output& out) { out.Number(int64_t(NextRandom()) * 65535 / 32768); }

using Producer = void (*)(const Output&);

struct InternalVariable {
    const wchar_t* Name;
    Producer Produce;
};

// In the order in which names are compared.
const InternalVariable kInternals[] = {
    {L"errorlevel", [](const Output& o) { o.Number(ErrorLevel); }},
    {L"cmdextversion", [](const Output& o) { o.Text(L"2"); }},
    {L"cmdcmdline", CommandLineValue},
    {L"date_today", [](const Output& o) { DateValue(o, 0); }},
    {L"date", [](const Output& o) { DateValue(o, DateWithWeekday); }},
    {L"date_year", [](const Output& o) { o.Number(Now().wYear); }},
    {L"date_month", [](const Output& o) { o.Number(Now().wMonth); }},
    {L"date_day", [](const Output& o) { o.Number(Now().wDay); }},
    {L"date_dayofweek", [](const Output& o) { o.Number(Now().wDayOfWeek); }},
    {L"date_format", DateFormatValue},
    {L"time_today", TimeValue},
    {L"time", TimeValue},
    {L"time_hour", [](const Output& o) { o.Number(Now().wHour); }},
    {L"time_minute", [](const Output& o) { o.Number(Now().wMinute); }},
    {L"time_second", [](const Output& o) { o.Number(Now().wSecond); }},
    {L"ombrel_path", ExecutableDirectory},
    {L"ombrel_filename",
     [](const Output& o) {
         wchar_t path[kPathMax];
         ExecutablePath(path);
         o.Text(path);
     }},
    {L"random_number", RandomNumberValue},
    {L"random", [](const Output& o) { o.Number(NextRandom()); }},
    {L"screen_width", [](const Output& o) { o.Number(ScreenWidth); }},
    {L"screen_height", [](const Output& o) { o.Number(ScreenHeight); }},
    {L"where_x", [](const Output& o) { o.Number(TheScreen.CursorX); }},
    {L"where_y", [](const Output& o) { o.Number(TheScreen.CursorY); }},
    {L"disk_drive",
     [](const Output& o) {
         wchar_t path[kPathMax];
         CurrentDirectory(path);
         wchar_t letter[2] = {path[0], 0};
         o.Text(letter);
     }},
    {L"disk_path",
     [](const Output& o) {
         wchar_t path[kPathMax];
         CurrentDirectory(path);
         o.Text(path);
     }},
    {L"cd",
     [](const Output& o) {
         wchar_t path[kPathMax];
         CurrentDirectory(path);
         o.Text(path);
     }},
    {L"ombrel_registered", [](const Output& o) { o.Number(kLicenceState); }},
    {L"operating_system", OperatingSystemValue},
    {L"ombrel_version", [](const Output& o) { o.Text(L"8.2"); }},
    {L"windows_version", WindowsVersionValue},
    {L"my_documents", [](const Output& o) { SpecialFolderValue(o, CSIDL_PERSONAL); }},
    {L"my_music", [](const Output& o) { SpecialFolderValue(o, CSIDL_MYMUSIC); }},
    {L"my_pictures", [](const Output& o) { SpecialFolderValue(o, CSIDL_MYPICTURES); }},
    {L"my_videos", [](const Output& o) { SpecialFolderValue(o, CSIDL_MYVIDEO); }},
    {L"my_recent_documents", [](const Output& o) { SpecialFolderValue(o, CSIDL_RECENT); }},
    {L"my_favorites", [](const Output& o) { SpecialFolderValue(o, CSIDL_FAVORITES); }},
    {L"sendto_path", [](const Output& o) { SpecialFolderValue(o, CSIDL_SENDTO); }},
    {L"startup_path", [](const Output& o) { SpecialFolderValue(o, CSIDL_STARTUP); }},
    {L"startmenu_path", [](const Output& o) { SpecialFolderValue(o, CSIDL_STARTMENU); }},
    {L"desktop_path", [](const Output& o) { SpecialFolderValue(o, CSIDL_DESKTOPDIRECTORY); }},
};

} // namespace

void ResolveInternalVariable(const wchar_t* name, wchar_t* buffer, int size)
{
    Output out{buffer, size};
    out.Text(L"");
    for (const InternalVariable& variable : kInternals)
        if (lstrcmpiW(name, variable.Name) == 0) {
            variable.Produce(out);
            return;
        }
}
