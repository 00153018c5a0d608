#include "app/errors.h"

#include "app/globals.h"
#include "app/toolkit/omdib.h"
#include "app/toolkit/platform_text.h"
#include "screen/colours.h"
#include "screen/screen_store.h"

int ReportMuted = 0;

void ErrorReporter::ReportText(const wchar_t* message)
{
    ErrorFlag = 1;
    CopyCutW(text, message, 128);
    if (!ScreenUp) return;
    if (ReportMuted == 0) {
        // Raw line feeds only: a report may come from any depth, and must not
        // pump messages or stop at a full page.
        if (TheScreen.CursorX != 0) TheScreen.LineFeed();
        UseItem(Item::Error);
        TheScreen.WriteCells(message);
        TheScreen.LineFeed();
        TheScreen.LineFeed();
    }
    TheScreen.BreakFlag = 1;
}

void ErrorReporter::ReportId(int id)
{
    wchar_t message[128];
    if (LoadStringW(GetModuleHandleW(nullptr), UINT(id), message, 128) <= 0) return;
    ReportText(message);
}

namespace {

// The run-time library's text for a platform error code.
const wchar_t* RuntimeErrorText(DWORD platformCode)
{
    static const wchar_t* const texts[] = {L"Error 0",
                                           L"Invalid function number",
                                           L"No such file or directory",
                                           L"Path not found",
                                           L"Too many open files",
                                           L"Permission denied",
                                           L"Bad file number",
                                           L"Memory arena trashed",
                                           L"Not enough memory",
                                           L"Invalid memory block address",
                                           L"Invalid environment",
                                           L"Invalid format",
                                           L"Invalid access code",
                                           L"Invalid data",
                                           L"Bad address",
                                           L"No such device",
                                           L"Attempted to remove current directory",
                                           L"Not same device",
                                           L"No more files",
                                           L"Invalid argument",
                                           L"Arg list too big",
                                           L"Exec format error",
                                           L"Cross-device link",
                                           L"Too many open files",
                                           L"No child processes",
                                           L"Inappropriate I/O control operation",
                                           L"Executable file in use",
                                           L"File too large",
                                           L"No space left on device",
                                           L"Illegal seek",
                                           L"Read-only file system",
                                           L"Too many links",
                                           L"Broken pipe",
                                           L"Math argument",
                                           L"Result too large",
                                           L"File already exists",
                                           L"Possible deadlock",
                                           L"Operation not permitted",
                                           L"No such process",
                                           L"Interrupted function call",
                                           L"Input/output error",
                                           L"No such device or address",
                                           L"Resource temporarily unavailable",
                                           L"Block device required",
                                           L"Resource busy",
                                           L"Not a directory",
                                           L"Is a directory",
                                           L"",
                                           L"Filename too long"};
    int number;
    switch (platformCode & 0xFFFF) {
    case 0: number = 0; break;
    case 2: case 3: case 18: case 53: number = 2; break;
    case 4: number = 4; break;
    case 5: case 12: case 15: case 16: case 32: case 33: number = 5; break;
    case 6: number = 6; break;
    case 7: case 8: case 9: number = 8; break;
    case 10: number = 20; break;
    case 11: number = 21; break;
    case 17: number = 17; break;
    case 19: number = 30; break;
    case 80: case 183: number = 35; break;
    case 112: number = 28; break;
    case 206: number = 48; break;
    default: number = 19; break; // includes codes past the table, which count as code 1
    }
    return texts[number];
}

} // namespace

void ErrorReporter::ReportErrno() { ReportText(RuntimeErrorText(GetLastError())); }

void ErrorReporter::ReportPlatformError(DWORD code)
{
    std::wstring message = PlatformErrorText(code);
    ReportText(message.empty() ? RuntimeErrorText(code) : message.c_str());
}
