#include "exec/pipe_route.h"

#include "app/errors.h"
#include "app/event_pump.h"
#include "app/host.h"
#include "app/toolkit/handles.h"
#include "app/toolkit/omdib.h"
#include "app/toolkit/whole_characters.h"
#include "app/window_host.h"
#include "exec/launch_prepare.h"
#include "exec/process_wait.h"
#include "exec/run_handover.h"
#include "exec/start_process.h"
#include "exec/system_call_server.h"
#include "input/editor.h"
#include "lang/shell_command.h"
#include "screen/colours.h"
#include "screen/screen_store.h"

#include <cstring>
#include <cwchar>
#include <memory>
#include <string>
#include <utility>

namespace {

constexpr DWORD kOutputPipeSize = 1 << 20;
constexpr DWORD kInputPipeSize = 1 << 16;
// The screen takes the program's output in pieces of at most this many
// bytes, each converted and written on its own.
constexpr DWORD kReadLimit = 0x1FFE;
// One system call takes several pieces at once: a read from a full pipe
// costs about the same whatever its size, so small reads would cap the route
// far below what the screen can take.
constexpr DWORD kReadSize = 4 * kReadLimit;
// The bytes of a character cut by the end of a read wait at the front of the
// buffer for the rest; no code page has longer characters.
constexpr DWORD kCarryMax = 4;
// How long one turn may read before the messages get theirs, so typing,
// painting and Ctrl-C stay prompt while a program writes without a pause.
constexpr ULONGLONG kReadShareMilliseconds = 50;
// Once the program has ended, what is left in the pipe is read; the bound is
// for the program's own children, which may hold the pipe and go on writing.
constexpr int kReadsAtTheEnd = int(2 * kOutputPipeSize / kReadSize);
constexpr DWORD kTickMilliseconds = 250;
// After Ctrl-C a program gets this long to end once its pipes are closed.
constexpr ULONGLONG kBreakGraceMilliseconds = 20 * kTickMilliseconds;

class PipeRun {
public:
    explicit PipeRun(RunState& state) : state_(state) {}
    PipeRun(const PipeRun&) = delete;
    PipeRun& operator=(const PipeRun&) = delete;
    ~PipeRun();

    bool CreatePipes();
    void ClosePipes();
    bool Start(const wchar_t* program, const wchar_t* commandLine);
    void Wait();
    void Finish();

private:
    void Drain(bool atTheEnd);
    bool TakeRead(DWORD& got);
    void ShowRead(DWORD got);
    void Show(DWORD got);
    bool PumpMessages();
    void SendTypedLine();
    void OnBreak();
    void WaitAfterBreak();

    RunState& state_;
    UniqueHandle readEvent_;
    PROCESS_INFORMATION info_{};
    OVERLAPPED overlapped_{};
    bool pending_ = false;
    bool readOpen_ = false;
    bool quit_ = false;
    // The buffers live for the run, so a read costs no allocation.
    std::unique_ptr<char[]> read_ = std::make_unique<char[]>(kReadSize);
    std::unique_ptr<char[]> bytes_ = std::make_unique<char[]>(kCarryMax + kReadLimit);
    std::unique_ptr<wchar_t[]> text_ = std::make_unique<wchar_t[]>(kCarryMax + kReadLimit + 1);
    DWORD carried_ = 0;
    UINT codePage_ = CP_ACP;
    CPINFO pageInfo_{};
    std::wstring echo_;
};

std::wstring UniquePipeName()
{
    static unsigned counter = 0;
    wchar_t pid[16], number[16], tick[24];
    ui64tow_ex(GetCurrentProcessId(), pid, 10);
    ui64tow_ex(++counter, number, 10);
    ui64tow_ex(GetTickCount64(), tick, 16);
    return std::wstring(L"\\\\.\\pipe\\ombrel-") + pid + L"-" + number + L"-" + tick;
}

// The server end of the output pipe, under a name that no other pipe has. A
// name can still be taken: process numbers come back, and the children of an
// ended shell may hold its pipe; then the next number is tried.
HANDLE CreateOutputPipe(std::wstring& name)
{
    constexpr int kNameAttempts = 8;
    for (int attempt = 0; attempt < kNameAttempts; ++attempt) {
        name = UniquePipeName();
        HANDLE server = CreateNamedPipeW(name.c_str(), PIPE_ACCESS_INBOUND | FILE_FLAG_OVERLAPPED |
                                                           FILE_FLAG_FIRST_PIPE_INSTANCE,
                                         PIPE_TYPE_BYTE | PIPE_READMODE_BYTE | PIPE_WAIT, 1, 0, kOutputPipeSize, 0,
                                         nullptr);
        DWORD error = GetLastError();
        if (server != INVALID_HANDLE_VALUE || (error != ERROR_ACCESS_DENIED && error != ERROR_PIPE_BUSY))
            return server;
    }
    return INVALID_HANDLE_VALUE;
}

UINT ActivePage() { return CodePageOf(ActiveCodePage); }

// Binary output carries zero units, which would end the text early.
size_t DropZeros(wchar_t* text, size_t n)
{
    size_t kept = 0;
    for (size_t i = 0; i < n; ++i)
        if (text[i]) text[kept++] = text[i];
    return kept;
}

} // namespace

PipeRun::~PipeRun()
{
    ClosePipes();
    if (info_.hThread) CloseHandle(info_.hThread);
    if (info_.hProcess) CloseHandle(info_.hProcess);
}

void PipeRun::ClosePipes()
{
    PipeSet& pipes = state_.Pipes;
    if (pending_) {
        CancelIo(pipes.ReadFromChild);
        DWORD got = 0;
        GetOverlappedResult(pipes.ReadFromChild, &overlapped_, &got, TRUE);
        pending_ = false;
    }
    for (HANDLE* h : {&pipes.ReadFromChild, &pipes.ChildWrites, &pipes.WriteToChild, &pipes.ChildReads})
        if (*h) {
            CloseHandle(*h);
            *h = nullptr;
        }
    readOpen_ = false;
}

bool PipeRun::CreatePipes()
{
    SECURITY_ATTRIBUTES inherit{sizeof(inherit), nullptr, TRUE};
    PipeSet& pipes = state_.Pipes;
    readEvent_.reset(CreateEventW(nullptr, TRUE, FALSE, nullptr));
    // The shell's ends are made without inheritance; only the child's ends
    // pass to the program.
    std::wstring name;
    HANDLE server = CreateOutputPipe(name);
    if (!readEvent_ || server == INVALID_HANDLE_VALUE) return false;
    pipes.ReadFromChild = server;
    HANDLE client = CreateFileW(name.c_str(), GENERIC_WRITE, 0, &inherit, OPEN_EXISTING, 0, nullptr);
    if (client == INVALID_HANDLE_VALUE) return false;
    pipes.ChildWrites = client;
    if (!CreatePipe(&pipes.ChildReads, &pipes.WriteToChild, &inherit, kInputPipeSize)) return false;
    if (!SetHandleInformation(pipes.WriteToChild, HANDLE_FLAG_INHERIT, 0)) return false;
    overlapped_.hEvent = readEvent_.get();
    readOpen_ = true;
    return true;
}

bool PipeRun::Start(const wchar_t* program, const wchar_t* commandLine)
{
    HandedFiles files;
    if (!TakeHandOver(files)) return false;
    STARTUPINFOW& startup = state_.Startup;
    startup.hStdInput = files.Input ? files.Input : state_.Pipes.ChildReads;
    startup.hStdOutput = files.Output ? files.Output : state_.Pipes.ChildWrites;
    startup.hStdError = state_.Pipes.ChildWrites;
    startup.dwFlags |= STARTF_USESTDHANDLES | STARTF_USESHOWWINDOW;
    startup.wShowWindow = SW_HIDE;
    std::wstring line = commandLine;
    if (!StartProcess(program, line.data(), TRUE, CREATE_NEW_PROCESS_GROUP, nullptr, &startup, &info_)) {
        ReportId(8);
        ErrorLevel = 1;
        return false;
    }
    CloseHandle(state_.Pipes.ChildReads);
    CloseHandle(state_.Pipes.ChildWrites);
    state_.Pipes.ChildReads = state_.Pipes.ChildWrites = nullptr;
    // Without a typist the program's input ends at once, so a program that
    // reads never waits for lines that cannot come.
    if (!Host->TypesToPrograms()) {
        CloseHandle(state_.Pipes.WriteToChild);
        state_.Pipes.WriteToChild = nullptr;
    }
    return true;
}

// A finished read's byte count; false when none has finished.
bool PipeRun::TakeRead(DWORD& got)
{
    HANDLE pipe = state_.Pipes.ReadFromChild;
    got = 0;
    if (!pending_) {
        if (!ReadFile(pipe, read_.get(), kReadSize, nullptr, &overlapped_) &&
            GetLastError() != ERROR_IO_PENDING) {
            readOpen_ = false; // every writer has gone
            return false;
        }
        pending_ = true;
    }
    if (!GetOverlappedResult(pipe, &overlapped_, &got, FALSE)) {
        if (GetLastError() == ERROR_IO_INCOMPLETE) return false;
        pending_ = false;
        readOpen_ = false;
        return false;
    }
    pending_ = false;
    return true;
}

// Reads what the pipe holds now and shows it. A turn reads for a bounded
// time only; at the end it reads until the pipe is empty.
void PipeRun::Drain(bool atTheEnd)
{
    if (!readOpen_) return;
    Host->HideCaret();
    // The writer would ask the host for Ctrl-C at every line end, a trip to
    // the system per line; the wait asks once per turn instead.
    int polling = std::exchange(TheScreen.PollEnabled, 0);
    codePage_ = ActivePage();
    if (codePage_ == CP_UTF8 || !GetCPInfo(codePage_, &pageInfo_)) pageInfo_.MaxCharSize = 1;
    ULONGLONG start = GetTickCount64();
    bool shown = false;
    DWORD got = 0;
    for (int reads = 1; readOpen_ && TakeRead(got); ++reads) {
        ShowRead(got);
        shown = true;
        if (atTheEnd ? reads >= kReadsAtTheEnd : GetTickCount64() - start >= kReadShareMilliseconds) break;
    }
    if (shown) {
        // A line half typed moves below the output.
        TheScreen.EditX = TheScreen.CursorX;
        TheScreen.EditY = TheScreen.CursorY;
        if (TheEditor.Line[0]) TheEditor.RedrawLine();
    }
    TheScreen.PollEnabled = polling;
    Host->ShowCaret();
}

// The pieces of one read, in order.
void PipeRun::ShowRead(DWORD got)
{
    for (DWORD done = 0; done < got; done += kReadLimit) {
        DWORD piece = got - done < kReadLimit ? got - done : kReadLimit;
        std::memcpy(bytes_.get() + carried_, read_.get() + done, piece);
        Show(piece);
    }
}

// Shows one piece of bytes, behind any carried from the last.
void PipeRun::Show(DWORD got)
{
    size_t count = size_t(carried_) + got;
    if (count == 0) return;
    char* bytes = bytes_.get();
    size_t whole = WholeCharacters(bytes, count, codePage_, pageInfo_);
    // Never more than a character's bytes wait; anything longer is no character.
    if (count - whole > kCarryMax - 1) whole = count;
    if (whole == 0) {
        carried_ = DWORD(count);
        return;
    }
    wchar_t* text = text_.get();
    int converted = MultiByteToWideChar(codePage_, 0, bytes, int(whole), text, int(whole));
    size_t units = converted > 0 ? size_t(converted) : 0;
    carried_ = DWORD(count - whole);
    std::memmove(bytes, bytes + whole, carried_);
    // The program's own echo of a line typed to it is shown once, by the editor.
    size_t skip = 0;
    if (!echo_.empty() && units >= echo_.size() && std::wmemcmp(text, echo_.data(), echo_.size()) == 0) {
        skip = echo_.size();
        if (units >= skip + 2 && text[skip] == L'\r' && text[skip + 1] == L'\n') skip += 2;
        else if (units >= skip + 1 && text[skip] == L'\n') skip += 1;
    }
    echo_.clear();
    units = DropZeros(text + skip, units - skip);
    text[skip + units] = 0;
    TheScreen.ConsoleWrite(text + skip, 0, 0);
}

void PipeRun::SendTypedLine()
{
    HANDLE pipe = state_.Pipes.WriteToChild;
    std::wstring line = TheEditor.Line;
    bool ended = TheEditor.EndOfInput != 0;
    if (ended) TheScreen.WriteCells(L"^Z");
    TheEditor.EndScreenLine();
    TheEditor.EndOfInput = 0;
    if (pipe) {
        std::wstring sent = ended ? line : line + L"\r\n";
        UINT codePage = ActivePage();
        int bytes = WideCharToMultiByte(codePage, 0, sent.c_str(), int(sent.size()), nullptr, 0, nullptr, nullptr);
        std::string narrow(size_t(bytes > 0 ? bytes : 0), '\0');
        if (bytes > 0)
            WideCharToMultiByte(codePage, 0, sent.c_str(), int(sent.size()), narrow.data(), bytes, nullptr, nullptr);
        DWORD written = 0;
        if (!narrow.empty()) WriteFile(pipe, narrow.data(), DWORD(narrow.size()), &written, nullptr);
        echo_ = line;
    }
    // Ctrl-Z ends the program's input.
    if (ended && pipe) {
        CloseHandle(pipe);
        state_.Pipes.WriteToChild = nullptr;
    }
    TheEditor.ResetLine();
}

// Keys edit the line being typed for the program; Enter sends it. False once
// the program is ending.
bool PipeRun::PumpMessages()
{
    MSG msg;
    while (PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE)) {
        if (msg.message == WM_QUIT) {
            PostQuitMessage(int(msg.wParam));
            quit_ = true;
            return false;
        }
        if (msg.message == WM_KEYDOWN) {
            TranslateMessage(&msg);
            TheEditor.ReadEditorKey(int(msg.wParam), CurrentModifiers());
            continue;
        }
        if (msg.message == WM_CHAR) {
            if (msg.wParam == 3) {
                TheScreen.ShowBreak();
                TheScreen.BreakFlag = 1;
                return true;
            }
            if (TheEditor.ReadEditorChar(wchar_t(msg.wParam), CurrentModifiers())) SendTypedLine();
            continue;
        }
        if (msg.message == WM_KEYUP) continue;
        TranslateMessage(&msg);
        DispatchMessageW(&msg);
    }
    return true;
}

void PipeRun::Wait()
{
    // A program that talks to the shell's window is answered while it runs.
    ServedProgram served(info_.dwProcessId);
    Host->Refresh();
    Host->ShowCaret();
    TheEditor.ResetLine();
    // A request served meanwhile may run another program on pipes of its own.
    int outerMode = std::exchange(InputMode, 1);
    while (!quit_) {
        // The read comes first, so what the program wrote is shown before
        // its end is noticed.
        HANDLE handles[2] = {readEvent_.get(), info_.hProcess};
        HANDLE* waited = pending_ ? handles : handles + 1;
        DWORD count = pending_ ? 2 : 1;
        // A turn that stopped at its share of reading left more waiting: look
        // at the messages and go on at once. Otherwise the wait ends when data
        // arrives, the program ends or a message comes; the tick is only for
        // a Ctrl-C that arrives by no message.
        DWORD timeout = (readOpen_ && !pending_) ? 0 : kTickMilliseconds;
        MsgWaitForMultipleObjectsEx(count, waited, timeout, QS_ALLINPUT, MWMO_INPUTAVAILABLE);
        Drain(false);
        if (!PumpMessages()) break;
        if (!TheScreen.BreakFlag) Host->PollBreak();
        if (TheScreen.BreakFlag) {
            OnBreak();
            break;
        }
        if (WaitForSingleObject(info_.hProcess, 0) != WAIT_TIMEOUT) {
            // Every byte the program wrote is in the pipe by now.
            Drain(true);
            break;
        }
    }
    InputMode = outerMode;
    Host->HideCaret();
}

// The program is asked to close its window, and its pipes go: a program that
// writes or reads then fails and ends. The shell waits a little for it.
void PipeRun::OnBreak()
{
    DWORD processId = info_.dwProcessId;
    EnumWindows(
        [](HWND window, LPARAM id) -> BOOL {
            DWORD owner = 0;
            GetWindowThreadProcessId(window, &owner);
            if (owner == DWORD(id)) PostMessageW(window, WM_CLOSE, 0, 0);
            return TRUE;
        },
        LPARAM(processId));
    ClosePipes();
    WaitAfterBreak();
}

void PipeRun::WaitAfterBreak()
{
    ULONGLONG start = GetTickCount64();
    while (GetTickCount64() - start <= kBreakGraceMilliseconds) {
        DWORD woke = MsgWaitForMultipleObjects(1, &info_.hProcess, FALSE, kTickMilliseconds, QS_ALLINPUT);
        if (woke == WAIT_OBJECT_0 || woke == WAIT_FAILED) return;
        MSG msg;
        while (PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE)) {
            if (msg.message == WM_QUIT) {
                PostQuitMessage(int(msg.wParam));
                return;
            }
            TranslateMessage(&msg);
            DispatchMessageW(&msg);
        }
    }
}

void PipeRun::Finish()
{
    ClosePipes();
    TheScreen.Paging = 0;
    Host->Refresh();
    DWORD code = 0;
    if (!GetExitCodeProcess(info_.hProcess, &code) && !GetExitCodeThread(info_.hThread, &code)) code = 0;
    if (code == STILL_ACTIVE) {
        TheScreen.BreakFlag = 0;
        if (TheScreen.CursorX != 0) TheScreen.NewLine();
        UseItem(Item::Error);
        TheScreen.Write(L"Process still active");
        TheScreen.NewLine();
    }
    ErrorLevel = int32_t(code);
}

void RunOnPipes(RunState& state, const wchar_t* program, const wchar_t* commandLine, const LaunchOptions& options)
{
    PipeRun run(state);
    if (!run.CreatePipes()) {
        // Without pipes the program still runs, in a console of its own.
        run.ClosePipes();
        ProcessStart start{state.Helper, commandLine, program, SW_SHOWNORMAL, false, options.SeparateVdm};
        start.MayBackground = state.Mode != 1;
        StartAndWait(state, start);
        return;
    }
    if (!run.Start(program, commandLine)) return;
    run.Wait();
    run.Finish();
}
