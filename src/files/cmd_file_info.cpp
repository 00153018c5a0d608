// Commands that put one fact about a file into a variable named after them:
// readln (a line of the file), filesize, filedate, filetime and filetype.
// A missing file is message 3 and leaves the variable deleted.
#include "app/errors.h"
#include "app/toolkit/omdib.h"
#include "files/arg_paths.h"
#include "files/long_path.h"
#include "lang/builtins.h"
#include "lang/command_args.h"
#include "lang/shell_command.h"
#include "lang/short_date.h"
#include "lang/text_stream.h"
#include "lang/variables.h"

#include <cwchar>
#include <string>

namespace {

// The first argument as an existing file's full path and its attribute data;
// false after the message for a wrong count, a switch or a missing file.
bool NamedFile(const wchar_t* variable, int maxArguments, std::wstring& path, WIN32_FILE_ATTRIBUTE_DATA& data)
{
    SetVariable(variable, L"");
    if (RejectSwitches()) return false;
    if (CommandArgs.ArgCount < 1 || CommandArgs.ArgCount > maxArguments) {
        ReportId(1);
        return false;
    }
    path = ArgRawPath(1);
    std::wstring holder;
    if (path.empty() || !GetFileAttributesExW(PlatformPath(path.c_str(), holder), GetFileExInfoStandard, &data)) {
        ReportId(3);
        return false;
    }
    return true;
}

SYSTEMTIME LocalTime(const FILETIME& time)
{
    FILETIME local;
    SYSTEMTIME clock{};
    if (FileTimeToLocalFileTime(&time, &local)) FileTimeToSystemTime(&local, &clock);
    return clock;
}

// What a file is: a directory, a program for the console, the window system
// or DOS, text, or anything else.
const wchar_t* KindOfFile(const std::wstring& path, DWORD attributes)
{
    if (attributes & FILE_ATTRIBUTE_DIRECTORY) return L"DIRECTORY";
    std::wstring holder;
    TextStream file;
    if (!file.Open(PlatformPath(path.c_str(), holder), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE,
                   OPEN_EXISTING))
        return L"UNKNOWN";
    IMAGE_DOS_HEADER dos{};
    if (file.ReadRaw(&dos, sizeof(dos)) == int(sizeof(dos)) && dos.e_magic == IMAGE_DOS_SIGNATURE) {
        IMAGE_NT_HEADERS32 nt{};
        if (dos.e_lfanew <= 0 || !file.Seek(dos.e_lfanew) || file.ReadRaw(&nt, sizeof(nt)) != int(sizeof(nt)) ||
            nt.Signature != IMAGE_NT_SIGNATURE)
            return L"DOS";
        // The subsystem stands at the same place in 32- and 64-bit headers.
        return nt.OptionalHeader.Subsystem == IMAGE_SUBSYSTEM_WINDOWS_CUI ? L"CONSOLE" : L"WINDOWS";
    }
    return file.SniffEncoding() == NotText ? L"BINARY" : L"TEXT";
}

} // namespace

void CmdFilesize()
{
    std::wstring path;
    WIN32_FILE_ATTRIBUTE_DATA data;
    if (!NamedFile(L"FILESIZE", 1, path, data)) return;
    wchar_t text[32];
    ui64tow_ex((uint64_t(data.nFileSizeHigh) << 32) | data.nFileSizeLow, text, 10);
    SetVariable(L"FILESIZE", text);
}

void CmdFiledate()
{
    std::wstring path;
    WIN32_FILE_ATTRIBUTE_DATA data;
    if (!NamedFile(L"FILEDATE", 1, path, data)) return;
    wchar_t text[80];
    FormatShortDate(LocalTime(data.ftLastWriteTime), 0, text, 80);
    SetVariable(L"FILEDATE", text);
}

void CmdFiletime()
{
    std::wstring path;
    WIN32_FILE_ATTRIBUTE_DATA data;
    if (!NamedFile(L"FILETIME", 1, path, data)) return;
    SYSTEMTIME clock = LocalTime(data.ftLastWriteTime);
    wchar_t text[16];
    std::swprintf(text, 16, L"%02u:%02u:%02u", unsigned(clock.wHour), unsigned(clock.wMinute),
                  unsigned(clock.wSecond));
    SetVariable(L"FILETIME", text);
}

void CmdFiletype()
{
    std::wstring path;
    WIN32_FILE_ATTRIBUTE_DATA data;
    if (!NamedFile(L"FILETYPE", 1, path, data)) return;
    SetVariable(L"FILETYPE", KindOfFile(path, data.dwFileAttributes));
}

// readln file [line]: the line (from 1, the first by default) into READLN.
// Past the last line READLN is deleted and ErrorLevel is 1, without a message.
void CmdReadln()
{
    std::wstring path;
    WIN32_FILE_ATTRIBUTE_DATA data;
    ErrorLevel = 1;
    if (!NamedFile(L"READLN", 2, path, data)) return;
    int64_t wanted = 1;
    if (CommandArgs.ArgCount == 2) {
        const wchar_t* end = nullptr;
        wanted = lstrtoi64W(CommandArgs.Args[1], &end, 10);
        if (*end || wanted < 1) return ReportId(9);
    }
    if (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) return ReportId(3);
    std::wstring holder;
    TextStream file;
    if (!file.Open(PlatformPath(path.c_str(), holder), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE,
                   OPEN_EXISTING))
        return TheErrors.ReportPlatformError(GetLastError());
    file.LineCapacity = kLineMax - 1;
    if (file.SniffEncoding() == NotText) file.Encoding = CodePageText;
    for (int64_t n = 1;; ++n) {
        const wchar_t* line = file.ReadLine();
        if (!line) return;
        if (n == wanted) {
            SetVariable(L"READLN", line);
            ErrorLevel = 0;
            return;
        }
    }
}
