#include "console_child.h"

#include "exec/start_process.h"

#include <vector>

namespace {

using CreatePseudoConsoleFn = HRESULT(WINAPI*)(COORD, HANDLE, HANDLE, DWORD, void**);
using ClosePseudoConsoleFn = void(WINAPI*)(void*);

// The attribute that hands a pseudo console to a new process.
constexpr DWORD_PTR kPseudoConsoleAttribute = 0x00020016;
constexpr DWORD kReadChunk = 1 << 16;
// The reading thread gets this long to see the end of the output.
constexpr DWORD kReaderGrace = 3000;
// How a program stopped after Ctrl-C ends, as one that took it would.
constexpr UINT kControlCExit = 0xC000013A;

// Looked up at run time: older systems have no pseudo console.
void* KernelFunction(const char* name)
{
    return reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"kernel32.dll"), name));
}

void ClosePseudo(void* console)
{
    auto close = reinterpret_cast<ClosePseudoConsoleFn>(KernelFunction("ClosePseudoConsole"));
    if (close) close(console);
}

class AttributeList {
public:
    explicit AttributeList(void* console)
    {
        SIZE_T size = 0;
        InitializeProcThreadAttributeList(nullptr, 1, 0, &size);
        memory_.resize(size);
        auto* list = reinterpret_cast<LPPROC_THREAD_ATTRIBUTE_LIST>(memory_.data());
        ready_ = InitializeProcThreadAttributeList(list, 1, 0, &size) &&
                 UpdateProcThreadAttribute(list, 0, kPseudoConsoleAttribute, console, sizeof(console), nullptr,
                                           nullptr);
    }
    ~AttributeList()
    {
        if (ready_) DeleteProcThreadAttributeList(List());
    }
    AttributeList(const AttributeList&) = delete;
    AttributeList& operator=(const AttributeList&) = delete;

    bool Ready() const { return ready_; }
    LPPROC_THREAD_ATTRIBUTE_LIST List() { return reinterpret_cast<LPPROC_THREAD_ATTRIBUTE_LIST>(memory_.data()); }

private:
    std::vector<unsigned char> memory_;
    bool ready_ = false;
};

void CloseOwned(HANDLE& h)
{
    if (h) CloseHandle(h);
    h = nullptr;
}

} // namespace

ConsoleChild::ConsoleChild()
{
    InitializeCriticalSection(&lock_);
    outputEvent_ = CreateEventW(nullptr, FALSE, FALSE, nullptr);
}

ConsoleChild::~ConsoleChild()
{
    Finish();
    CloseOwned(process_);
    CloseOwned(job_);
    CloseOwned(outputEvent_);
    DeleteCriticalSection(&lock_);
}

bool ConsoleChild::Start(const std::wstring& helper, int width, int height, bool pipesOnly)
{
    if (!pipesOnly && StartInPseudoConsole(helper, width, height)) return StartReader();
    return StartOnPipes(helper) && StartReader();
}

bool ConsoleChild::StartInPseudoConsole(const std::wstring& helper, int width, int height)
{
    auto create = reinterpret_cast<CreatePseudoConsoleFn>(KernelFunction("CreatePseudoConsole"));
    if (!create) return false;
    HANDLE consoleReads = nullptr, consoleWrites = nullptr;
    if (!CreatePipe(&consoleReads, &inputWrite_, nullptr, 0)) return false;
    if (!CreatePipe(&outputRead_, &consoleWrites, nullptr, 0)) {
        CloseHandle(consoleReads);
        CloseOwned(inputWrite_);
        return false;
    }
    COORD size{SHORT(width), SHORT(height)};
    HRESULT made = create(size, consoleReads, consoleWrites, 0, &console_);
    // The pseudo console holds its own copies of its ends.
    CloseHandle(consoleReads);
    CloseHandle(consoleWrites);
    AttributeList attributes(console_);
    STARTUPINFOEXW startup{};
    startup.StartupInfo.cb = sizeof(startup);
    startup.lpAttributeList = attributes.List();
    if (FAILED(made) || !attributes.Ready() ||
        !StartHelper(helper, startup.StartupInfo, false, EXTENDED_STARTUPINFO_PRESENT)) {
        if (SUCCEEDED(made)) ClosePseudo(console_);
        console_ = nullptr;
        CloseOwned(inputWrite_);
        CloseOwned(outputRead_);
        return false;
    }
    return true;
}

bool ConsoleChild::StartOnPipes(const std::wstring& helper)
{
    SECURITY_ATTRIBUTES inherit{sizeof(inherit), nullptr, TRUE};
    HANDLE childReads = nullptr, childWrites = nullptr;
    if (!CreatePipe(&childReads, &inputWrite_, &inherit, 0)) return false;
    if (!CreatePipe(&outputRead_, &childWrites, &inherit, 0)) {
        CloseHandle(childReads);
        CloseOwned(inputWrite_);
        return false;
    }
    // Only the child's ends pass to it.
    SetHandleInformation(inputWrite_, HANDLE_FLAG_INHERIT, 0);
    SetHandleInformation(outputRead_, HANDLE_FLAG_INHERIT, 0);
    STARTUPINFOW startup{};
    startup.cb = sizeof(startup);
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = childReads;
    startup.hStdOutput = childWrites;
    startup.hStdError = childWrites;
    bool started = StartHelper(helper, startup, true, CREATE_NO_WINDOW);
    CloseHandle(childReads);
    CloseHandle(childWrites);
    if (!started) {
        CloseOwned(inputWrite_);
        CloseOwned(outputRead_);
    }
    return started;
}

bool ConsoleChild::StartHelper(const std::wstring& helper, STARTUPINFOW& startup, bool inherit, DWORD flags)
{
    std::wstring line = L"\"" + helper + L"\"";
    PROCESS_INFORMATION info{};
    if (!StartProcess(helper.c_str(), line.data(), inherit ? TRUE : FALSE, flags | CREATE_SUSPENDED, nullptr, &startup,
                      &info))
        return false;
    // The helper and everything it starts live in a job, so that a program
    // that does not end on Ctrl-C can be stopped, and none outlives the loader.
    job_ = CreateJobObjectW(nullptr, nullptr);
    JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits{};
    limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
    if (job_ && !(SetInformationJobObject(job_, JobObjectExtendedLimitInformation, &limits, sizeof(limits)) &&
                  AssignProcessToJobObject(job_, info.hProcess)))
        CloseOwned(job_);
    ResumeThread(info.hThread);
    CloseHandle(info.hThread);
    process_ = info.hProcess;
    processId_ = info.dwProcessId;
    return true;
}

bool ConsoleChild::StartReader()
{
    reader_ = CreateThread(nullptr, 0, ReadOutput, this, 0, nullptr);
    return reader_ != nullptr;
}

DWORD WINAPI ConsoleChild::ReadOutput(void* self)
{
    auto* child = static_cast<ConsoleChild*>(self);
    std::vector<char> chunk(kReadChunk);
    DWORD got = 0;
    while (ReadFile(child->outputRead_, chunk.data(), kReadChunk, &got, nullptr) && got > 0) {
        EnterCriticalSection(&child->lock_);
        child->output_.append(chunk.data(), got);
        LeaveCriticalSection(&child->lock_);
        SetEvent(child->outputEvent_);
    }
    EnterCriticalSection(&child->lock_);
    child->readerDone_ = true;
    LeaveCriticalSection(&child->lock_);
    SetEvent(child->outputEvent_);
    return 0;
}

std::string ConsoleChild::TakeOutput()
{
    std::string taken;
    EnterCriticalSection(&lock_);
    taken.swap(output_);
    LeaveCriticalSection(&lock_);
    return taken;
}

bool ConsoleChild::OutputEnded()
{
    EnterCriticalSection(&lock_);
    bool ended = readerDone_ && output_.empty();
    LeaveCriticalSection(&lock_);
    return ended;
}

bool ConsoleChild::Feed(const std::string& bytes)
{
    DWORD written = 0;
    return inputWrite_ && WriteFile(inputWrite_, bytes.data(), DWORD(bytes.size()), &written, nullptr);
}

void ConsoleChild::EndInput()
{
    // A console ends a read at Ctrl-Z and Enter; a pipe when its writer goes.
    if (console_) Feed("\x1a\r");
    else CloseOwned(inputWrite_);
}

void ConsoleChild::Break()
{
    // The program shares the console of oms32.exe (the pseudo console, or a
    // hidden one): join it for a moment and raise Ctrl-C there, not heeding
    // it here.
    FreeConsole();
    if (!AttachConsole(processId_)) return;
    SetConsoleCtrlHandler(nullptr, TRUE);
    GenerateConsoleCtrlEvent(CTRL_C_EVENT, 0);
    FreeConsole();
}

void ConsoleChild::Stop()
{
    if (job_) TerminateJobObject(job_, kControlCExit);
}

void ConsoleChild::Finish()
{
    // Closing the pseudo console flushes what it still holds and ends the
    // output; the pipes end when the program's last writer has gone.
    if (console_) {
        ClosePseudo(console_);
        console_ = nullptr;
    }
    CloseOwned(inputWrite_);
    if (reader_) {
        // A program's own children may hold the output open: reading stops.
        if (WaitForSingleObject(reader_, kReaderGrace) == WAIT_TIMEOUT) {
            CancelSynchronousIo(reader_);
            WaitForSingleObject(reader_, kReaderGrace);
        }
        CloseOwned(reader_);
    }
    CloseOwned(outputRead_);
}

DWORD ConsoleChild::ExitCode() const
{
    DWORD code = 1;
    if (!process_ || !GetExitCodeProcess(process_, &code)) return 1;
    return code;
}
