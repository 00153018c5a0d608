// oms32.exe stands in front of a console program that the shell starts. The
// shell tells it everything in environment variables whose names begin
// with "=": "=run" the program, "=cmd" its whole command line, "=>" or "=>>"
// a file for its standard output (replaced or appended to), "=<" a file for
// its standard input. Whatever is not redirected stays on the handles this
// helper got (the shell's pipes, or a console). The helper waits for the
// program and ends with its exit code.
#include <windows.h>

#include <string>

namespace {

// The exit code when the program cannot be started at all; the shell turns
// it into its own message.
constexpr DWORD kCannotStart = 0x4F4D5338;

const wchar_t* const kRunVariables[] = {L"=hwnd", L"=open", L"=cmd", L"=run", L"=logg",
                                        L"=cpyr", L"=imgbase", L"=>>", L"=>", L"=<"};

std::wstring Variable(const wchar_t* name)
{
    DWORD size = GetEnvironmentVariableW(name, nullptr, 0);
    if (size == 0) return {};
    std::wstring value(size, L'\0');
    DWORD n = GetEnvironmentVariableW(name, value.data(), size);
    value.resize(n < size ? n : 0);
    return value;
}

class OwnedHandle {
public:
    OwnedHandle() = default;
    explicit OwnedHandle(HANDLE h) : handle_(h == INVALID_HANDLE_VALUE ? nullptr : h) {}
    OwnedHandle(const OwnedHandle&) = delete;
    OwnedHandle& operator=(const OwnedHandle&) = delete;
    OwnedHandle& operator=(OwnedHandle&& other) noexcept
    {
        if (this != &other) {
            if (handle_) CloseHandle(handle_);
            handle_ = other.handle_;
            other.handle_ = nullptr;
        }
        return *this;
    }
    ~OwnedHandle()
    {
        if (handle_) CloseHandle(handle_);
    }
    HANDLE get() const { return handle_; }
    explicit operator bool() const { return handle_ != nullptr; }

private:
    HANDLE handle_ = nullptr;
};

HANDLE OpenInherited(const std::wstring& name, DWORD access, DWORD disposition)
{
    SECURITY_ATTRIBUTES inherit{sizeof(inherit), nullptr, TRUE};
    return CreateFileW(name.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE, &inherit, disposition,
                       FILE_ATTRIBUTE_NORMAL, nullptr);
}

// The standard handle as the program gets it: our own, made inheritable.
HANDLE InheritableStandard(DWORD which)
{
    HANDLE h = GetStdHandle(which);
    if (h && h != INVALID_HANDLE_VALUE) SetHandleInformation(h, HANDLE_FLAG_INHERIT, HANDLE_FLAG_INHERIT);
    return h;
}

void Complain(const std::wstring& text)
{
    std::wstring line = L"oms32: " + text + L"\r\n";
    HANDLE error = GetStdHandle(STD_ERROR_HANDLE);
    DWORD written = 0, mode = 0;
    if (GetConsoleMode(error, &mode)) {
        WriteConsoleW(error, line.c_str(), DWORD(line.size()), &written, nullptr);
        return;
    }
    int bytes = WideCharToMultiByte(CP_ACP, 0, line.c_str(), int(line.size()), nullptr, 0, nullptr, nullptr);
    std::string narrow(size_t(bytes > 0 ? bytes : 0), '\0');
    if (bytes > 0) WideCharToMultiByte(CP_ACP, 0, line.c_str(), int(line.size()), narrow.data(), bytes, nullptr, nullptr);
    WriteFile(error, narrow.data(), DWORD(narrow.size()), &written, nullptr);
}

} // namespace

int wmain()
{
    std::wstring program = Variable(L"=run");
    std::wstring commandLine = Variable(L"=cmd");
    std::wstring replace = Variable(L"=>");
    std::wstring append = Variable(L"=>>");
    std::wstring input = Variable(L"=<");
    // The program and anything it starts must not see the shell's messages.
    for (const wchar_t* name : kRunVariables) SetEnvironmentVariableW(name, nullptr);
    if (program.empty()) {
        Complain(L"no program to run");
        return int(kCannotStart);
    }

    OwnedHandle output, source;
    if (!replace.empty()) output = OwnedHandle(OpenInherited(replace, GENERIC_WRITE, CREATE_ALWAYS));
    else if (!append.empty()) output = OwnedHandle(OpenInherited(append, GENERIC_WRITE, OPEN_ALWAYS));
    if (!replace.empty() || !append.empty()) {
        if (!output) {
            Complain(L"cannot open " + (replace.empty() ? append : replace));
            return int(kCannotStart);
        }
        LARGE_INTEGER zero{};
        SetFilePointerEx(output.get(), zero, nullptr, FILE_END);
    }
    if (!input.empty()) {
        source = OwnedHandle(OpenInherited(input, GENERIC_READ, OPEN_EXISTING));
        if (!source) {
            Complain(L"cannot open " + input);
            return int(kCannotStart);
        }
    }

    STARTUPINFOW startup{};
    startup.cb = sizeof(startup);
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = source ? source.get() : InheritableStandard(STD_INPUT_HANDLE);
    startup.hStdOutput = output ? output.get() : InheritableStandard(STD_OUTPUT_HANDLE);
    startup.hStdError = InheritableStandard(STD_ERROR_HANDLE);
    if (commandLine.empty()) commandLine = L"\"" + program + L"\"";
    PROCESS_INFORMATION info{};
    if (!CreateProcessW(program.c_str(), commandLine.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup,
                        &info))
        return int(kCannotStart);
    CloseHandle(info.hThread);
    OwnedHandle process(info.hProcess);
    // Our copies of the files close now, so the program's handles are the last.
    output = OwnedHandle();
    source = OwnedHandle();
    WaitForSingleObject(process.get(), INFINITE);
    DWORD code = 0;
    if (!GetExitCodeProcess(process.get(), &code)) code = 1;
    return int(code);
}
