#include "app/console_host.h"

#include "app/event_pump.h"
#include "app/globals.h"
#include "app/run_line.h"
#include "app/toolkit/omdib.h"
#include "input/editor.h"
#include "input/input_links.h"
#include "lang/batch_program.h"
#include "lang/shell_command.h"
#include "screen/colours.h"

#include <windows.h>

namespace {

volatile LONG ctrlCPending = 0;
constexpr wchar_t kCtrlCUnit = 3;
constexpr wchar_t kCtrlZUnit = 0x1A;

// Typed lines go into the history, so `history` lists them.
InputLinks consoleLinks;

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
    inputType_ = GetFileType(input_);
    SetConsoleCtrlHandler(OnConsoleControl, TRUE);
    Host = this;
    Links = &consoleLinks;
    TheScreen.Observer = this;
    TraceViewer = &traceView_;
}

// A question to the console waits until its host has started, which takes
// longer than a short /C run: each is asked only once something needs it.
bool ConsoleHost::IsConsole(void* handle, signed char& known)
{
    DWORD mode;
    if (known < 0) known = GetFileType(handle) == FILE_TYPE_CHAR && GetConsoleMode(handle, &mode) ? 1 : 0;
    return known == 1;
}

void ConsoleHost::Emit(const std::wstring& line)
{
    std::wstring text = line + L"\r\n";
    DWORD written;
    if (IsConsole(output_, consoleOutput_)) {
        WriteConsoleW(output_, text.c_str(), DWORD(text.size()), &written, nullptr);
        return;
    }
    StringHolder holder;
    const char* utf8 = ToUtf8(holder, text.c_str());
    if (utf8) WriteFile(output_, utf8, DWORD(lstrlenA(utf8)), &written, nullptr);
}

// At a console a program gets the console itself, as under any console
// shell: its colours, cursor moves and line input work as they should, and
// nothing stands between it and the console. Lines piped in as the shell's
// own commands are not the program's to read, so then it is captured.
bool ConsoleHost::LendsConsole() const
{
    return IsConsole(output_, consoleOutput_) && (!inputIsCommands_ || Interactive());
}

// A program may leave the console raw or its output in another mode, as a
// full-screen program ended halfway does: the shell takes back the modes it
// lent, so its own line input still works.
void ConsoleHost::LendConsole()
{
    inputModeKept_ = Interactive() && GetConsoleMode(input_, &lentInputMode_);
    outputModeKept_ = GetConsoleMode(output_, &lentOutputMode_) != 0;
    if (TheScreen.CursorX == 0) return;
    std::wstring row = TheScreen.RowText(TheScreen.CursorY);
    DWORD written;
    WriteConsoleW(output_, row.c_str(), DWORD(row.size()), &written, nullptr);
    // The console shows the row now; the store moves on without sending it.
    skipNextLine_ = true;
    TheScreen.LineFeed();
}

void ConsoleHost::TakeConsoleBack()
{
    DWORD mode;
    if (inputModeKept_ && GetConsoleMode(input_, &mode) && mode != lentInputMode_)
        SetConsoleMode(input_, lentInputMode_);
    if (outputModeKept_ && GetConsoleMode(output_, &mode) && mode != lentOutputMode_)
        SetConsoleMode(output_, lentOutputMode_);
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
    if (InterlockedExchange(&ctrlCPending, 0) || TakeTypedBreak()) {
        TheScreen.ShowBreak();
        TheScreen.BreakFlag = 1;
    }
}

// Without a console, Ctrl-C can only come as a unit of the input. It breaks a
// running command when it is the next thing to be read, as a key pressed at
// the console would; anything typed ahead of it keeps its turn.
bool ConsoleHost::TakeTypedBreak()
{
    if (Interactive()) return false;
    if (typedPos_ < typed_.size()) {
        if (typed_[typedPos_] != kCtrlCUnit) return false;
        ++typedPos_;
        return true;
    }
    if (pendingPos_ >= pending_.size() && !(MoreInputWaiting() && FillPending())) return false;
    if (pending_[pendingPos_] != char(kCtrlCUnit)) return false;
    ++pendingPos_;
    return true;
}

// Whether reading the input now would not wait: a file never waits, a pipe
// tells what it holds.
bool ConsoleHost::MoreInputWaiting() const
{
    if (inputEnded_) return false;
    if (inputType_ == FILE_TYPE_DISK) return true;
    DWORD available = 0;
    return inputType_ == FILE_TYPE_PIPE && PeekNamedPipe(input_, nullptr, 0, nullptr, &available, nullptr) &&
           available > 0;
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

bool ConsoleHost::ReadConsoleLine(std::wstring& line)
{
    // The console echoes what is typed: show the prompt row now, and keep the
    // store from writing it out a second time.
    if (TheScreen.CursorX > 0) {
        std::wstring row = TheScreen.RowText(TheScreen.CursorY);
        DWORD written;
        WriteConsoleW(output_, row.c_str(), DWORD(row.size()), &written, nullptr);
    }
    line.assign(size_t(kLineMax), L'\0');
    DWORD got = 0;
    if (!ReadConsoleW(input_, line.data(), DWORD(kLineMax - 1), &got, nullptr) || got == 0) return false;
    line.resize(got);
    while (!line.empty() && (line.back() == L'\n' || line.back() == L'\r')) line.pop_back();
    return true;
}

bool ConsoleHost::ReadConsoleKey(wchar_t& unit)
{
    DWORD mode = 0;
    GetConsoleMode(input_, &mode);
    SetConsoleMode(input_, mode & ~DWORD(ENABLE_LINE_INPUT | ENABLE_ECHO_INPUT));
    DWORD got = 0;
    BOOL ok = ReadConsoleW(input_, &unit, 1, &got, nullptr);
    SetConsoleMode(input_, mode);
    return ok && got == 1;
}

bool ConsoleHost::FillTyped()
{
    std::wstring line;
    if (Interactive()) {
        if (!ReadConsoleLine(line)) return false;
    } else {
        std::string raw;
        if (!ReadRawLine(raw)) return false;
        StringHolder holder;
        const wchar_t* wide = FromUtf8(holder, raw.c_str());
        line = wide ? wide : L"";
    }
    typed_ = line + L'\r';
    typedPos_ = 0;
    return true;
}

void ConsoleHost::EndTypedLine()
{
    // The terminal has ended the line on its side; the store follows, without
    // sending out again a row that the console already shows.
    if (TheScreen.CursorX == 0) return;
    if (Interactive()) skipNextLine_ = true;
    TheScreen.LineFeed();
}

bool ConsoleHost::NextUnit(InputWait wait, wchar_t& unit)
{
    while (typedPos_ >= typed_.size()) {
        if (Interactive() && wait == InputWait::Key) return ReadConsoleKey(unit);
        if (inputEnded_ || !FillTyped()) {
            inputEnded_ = true;
            return false;
        }
    }
    unit = typed_[typedPos_++];
    // A key wait shows its own line end (ReadKeyEcho); a line has none.
    if (unit == L'\r' && wait == InputWait::Line) EndTypedLine();
    return true;
}

InputEvent ConsoleHost::NextInput(InputWait wait)
{
    wchar_t unit;
    return {InputKind::Char, NextUnit(wait, unit) ? unit : 3u, 0};
}

// At a console a key waits when its input holds an event. Piped or file input
// is typed ahead: whatever is there is a key waiting, unless the lines are
// the shell's own commands.
wchar_t ConsoleHost::PeekKey()
{
    if (typedPos_ < typed_.size()) return typed_[typedPos_];
    if (inputEnded_ || (!Interactive() && inputIsCommands_)) return kCtrlZUnit;
    if (Interactive()) {
        // Only a key press with a character counts; releases, mouse and focus
        // events are taken away, so that a read never waits behind them.
        INPUT_RECORD events[16];
        DWORD count = 0;
        if (!PeekConsoleInputW(input_, events, 16, &count) || count == 0) return 0;
        bool typed = false;
        for (DWORD i = 0; i < count; ++i)
            typed = typed || (events[i].EventType == KEY_EVENT && events[i].Event.KeyEvent.bKeyDown &&
                              events[i].Event.KeyEvent.uChar.UnicodeChar != 0);
        if (!typed) {
            ReadConsoleInputW(input_, events, count, &count);
            return 0;
        }
        wchar_t unit;
        if (!ReadConsoleKey(unit)) return 0;
        typed_.assign(1, unit);
        typedPos_ = 0;
        return unit;
    }
    // A pipe that has no writer any more reads its end at once.
    DWORD available = 0;
    bool waiting = pendingPos_ < pending_.size() || inputType_ == FILE_TYPE_DISK ||
                   (inputType_ == FILE_TYPE_PIPE &&
                    (!PeekNamedPipe(input_, nullptr, 0, nullptr, &available, nullptr) || available > 0));
    if (!waiting) return 0;
    if (!FillTyped()) {
        inputEnded_ = true;
        return kCtrlZUnit;
    }
    return typed_[typedPos_];
}

wchar_t ConsoleHost::ReadKey() { return wchar_t(NextInput(InputWait::Key).Unit); }

bool ConsoleHost::ReadLine(wchar_t* buffer, int size) { return ReadTypedLine(buffer, size) != nullptr; }

int ConsoleHost::RunInputLoop()
{
    wchar_t unit;
    while (!exitRequested_ && NextUnit(InputWait::Line, unit)) {
        // A tab is typed as a blank, as when pasting: TAB itself completes.
        if (TheEditor.EditorChar(unit == L'\t' ? L' ' : unit)) RunTopLevelLine();
    }
    return ErrorLevel;
}

namespace {

// One line of trace output; it goes to the screen even while a statement's
// output is redirected or dropped.
void TraceLine(const std::wstring& text)
{
    uint16_t colour = TheScreen.Attr;
    if (TheScreen.CursorX != 0) TheScreen.LineFeed();
    UseItem(Item::Text);
    TheScreen.WriteCells(text.c_str());
    TheScreen.LineFeed();
    TheScreen.Attr = colour;
}

} // namespace

bool ConsoleTraceView::Open(const std::wstring& title)
{
    TraceLine(title);
    return true;
}

void ConsoleTraceView::FillList(const std::vector<std::wstring>& lines) { lines_ = lines; }

void ConsoleTraceView::Highlight(int index)
{
    if (index < 0 || index >= int(lines_.size())) return;
    TraceLine(std::to_wstring(index + 1) + L": " + lines_[size_t(index)]);
}

void ConsoleTraceView::ShowStage(const wchar_t* expanded, const wchar_t*)
{
    TraceLine(std::wstring(L"> ") + SkipWhiteW(expanded));
}

void ConsoleTraceView::WaitForUser()
{
    switch (Host->ReadKey()) {
    case L's':
    case L'S':
    case L'\r':
        TraceGrantStep();
        break;
    case L'r':
    case L'R':
        TraceRunFreely();
        break;
    case L'p':
    case L'P':
    case 3:
        TraceStopRun();
        break;
    default:
        break;
    }
}
