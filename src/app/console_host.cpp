#include "app/console_host.h"

#include "app/globals.h"
#include "app/run_line.h"
#include "app/toolkit/omdib.h"
#include "input/editor.h"
#include "lang/shell_command.h"

#include <windows.h>

namespace {

volatile LONG ctrlCPending = 0;

BOOL WINAPI OnConsoleControl(DWORD type)
{
    if (type != CTRL_C_EVENT && type != CTRL_BREAK_EVENT) return FALSE;
    InterlockedExchange(&ctrlCPending, 1);
    return TRUE;
}

} // namespace

void ConsoleHost::Install()
{
    input_ = GetStdHandle(STD_INPUT_HANDLE);
    output_ = GetStdHandle(STD_OUTPUT_HANDLE);
    DWORD mode;
    interactive_ = GetConsoleMode(input_, &mode) != 0;
    consoleOutput_ = GetConsoleMode(output_, &mode) != 0;
    SetConsoleCtrlHandler(OnConsoleControl, TRUE);
    Host = this;
    TheScreen.Observer = this;
}

void ConsoleHost::Emit(const std::wstring& line)
{
    std::wstring text = line + L"\r\n";
    DWORD written;
    if (consoleOutput_) {
        WriteConsoleW(output_, text.c_str(), DWORD(text.size()), &written, nullptr);
        return;
    }
    StringHolder holder;
    const char* utf8 = ToUtf8(holder, text.c_str());
    if (utf8) WriteFile(output_, utf8, DWORD(lstrlenA(utf8)), &written, nullptr);
}

void ConsoleHost::LineCompleted(int y)
{
    if (skipNextLine_) {
        skipNextLine_ = false;
        return;
    }
    Emit(TheScreen.RowText(y));
}

int ConsoleHost::Finish(int code)
{
    if (TheScreen.CursorX > 0 && !skipNextLine_) Emit(TheScreen.RowText(TheScreen.CursorY));
    return code;
}

void ConsoleHost::PollBreak()
{
    if (InterlockedExchange(&ctrlCPending, 0)) {
        TheScreen.ShowBreak();
        TheScreen.BreakFlag = 1;
    }
}

bool ConsoleHost::FillPending()
{
    if (inputEnded_) return false;
    char chunk[4096];
    DWORD got = 0;
    if (!ReadFile(input_, chunk, sizeof(chunk), &got, nullptr) || got == 0) {
        inputEnded_ = true;
        return false;
    }
    pending_.erase(0, pendingPos_);
    pendingPos_ = 0;
    pending_.append(chunk, got);
    return true;
}

// One line of raw bytes without its line end; false at the end of input.
bool ConsoleHost::ReadRawLine(std::string& line)
{
    line.clear();
    for (;;) {
        size_t end = pending_.find('\n', pendingPos_);
        if (end != std::string::npos) {
            line.assign(pending_, pendingPos_, end - pendingPos_);
            pendingPos_ = end + 1;
            break;
        }
        if (!FillPending()) {
            if (pendingPos_ >= pending_.size()) return false;
            line.assign(pending_, pendingPos_, std::string::npos);
            pendingPos_ = pending_.size();
            break;
        }
    }
    if (!line.empty() && line.back() == '\r') line.pop_back();
    return true;
}

bool ConsoleHost::ReadLine(wchar_t* buffer, int size)
{
    if (size <= 0) return false;
    buffer[0] = 0;
    if (interactive_) {
        // The console echoes what is typed: show the prompt row now, and keep
        // the store from writing it out a second time.
        if (TheScreen.CursorX > 0) {
            std::wstring row = TheScreen.RowText(TheScreen.CursorY);
            DWORD written;
            WriteConsoleW(output_, row.c_str(), DWORD(row.size()), &written, nullptr);
        }
        std::wstring line(size_t(kLineMax), L'\0');
        DWORD got = 0;
        if (!ReadConsoleW(input_, line.data(), DWORD(kLineMax - 1), &got, nullptr) || got == 0) return false;
        line.resize(got);
        while (!line.empty() && (line.back() == L'\n' || line.back() == L'\r')) line.pop_back();
        CopyCutW(buffer, line.c_str(), size);
        if (TheScreen.CursorX > 0) {
            skipNextLine_ = true;
            TheScreen.LineFeed();
        }
        return true;
    }
    std::string raw;
    if (!ReadRawLine(raw)) return false;
    StringHolder holder;
    const wchar_t* wide = FromUtf8(holder, raw.c_str());
    CopyCutW(buffer, wide ? wide : L"", size);
    return true;
}

wchar_t ConsoleHost::ReadKey()
{
    if (interactive_) {
        DWORD mode = 0;
        GetConsoleMode(input_, &mode);
        SetConsoleMode(input_, mode & ~DWORD(ENABLE_LINE_INPUT | ENABLE_ECHO_INPUT));
        wchar_t unit = 0;
        DWORD got = 0;
        BOOL ok = ReadConsoleW(input_, &unit, 1, &got, nullptr);
        SetConsoleMode(input_, mode);
        return (ok && got == 1) ? unit : 3;
    }
    // A line end of any form is one Enter.
    if (pendingPos_ >= pending_.size() && !FillPending()) return 3;
    unsigned char lead = static_cast<unsigned char>(pending_[pendingPos_]);
    if (lead == '\r' || lead == '\n') {
        ++pendingPos_;
        if (lead == '\r') {
            if (pendingPos_ >= pending_.size()) FillPending();
            if (pendingPos_ < pending_.size() && pending_[pendingPos_] == '\n') ++pendingPos_;
        }
        return L'\r';
    }
    size_t length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    while (pending_.size() - pendingPos_ < length && FillPending()) {
    }
    length = std::min(length, pending_.size() - pendingPos_);
    wchar_t units[4] = {};
    int n = MultiByteToWideChar(CP_UTF8, 0, pending_.data() + pendingPos_, int(length), units, 4);
    pendingPos_ += length;
    return n > 0 ? units[0] : L'?';
}

int ConsoleHost::RunInputLoop()
{
    wchar_t line[kLineMax];
    while (!exitRequested_ && ReadLine(line, kLineMax)) {
        TheEditor.TypeLine(line, true);
        RunTopLevelLine();
    }
    return ErrorLevel;
}
