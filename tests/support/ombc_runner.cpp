#include "support/ombc_runner.h"

#include "app/toolkit/handles.h"
#include "app/toolkit/omdib.h"
#include "exec/start_process.h"

#include <windows.h>

#include <vector>

static std::wstring OmbcPath()
{
    wchar_t self[MAX_PATH];
    GetModuleFileNameW(nullptr, self, MAX_PATH);
    std::wstring path = self;
    return path.substr(0, path.find_last_of(L"\\/") + 1) + L"ombc.exe";
}

OmbcResult RunOmbcIn(const std::wstring& folder, const std::wstring& arguments, const std::string& input)
{
    OmbcResult result;
    SECURITY_ATTRIBUTES inherit{sizeof(inherit), nullptr, TRUE};
    HANDLE outRead, outWrite, inRead, inWrite;
    if (!CreatePipe(&outRead, &outWrite, &inherit, 0)) return result;
    if (!CreatePipe(&inRead, &inWrite, &inherit, 0)) return result;
    UniqueHandle outReadOwner(outRead), outWriteOwner(outWrite), inReadOwner(inRead), inWriteOwner(inWrite);
    SetHandleInformation(outRead, HANDLE_FLAG_INHERIT, 0);
    SetHandleInformation(inWrite, HANDLE_FLAG_INHERIT, 0);

    STARTUPINFOW startup{};
    startup.cb = sizeof(startup);
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = inRead;
    startup.hStdOutput = outWrite;
    startup.hStdError = outWrite;
    std::wstring commandLine = L"\"" + OmbcPath() + L"\" " + arguments;
    std::vector<wchar_t> writable(commandLine.begin(), commandLine.end());
    writable.push_back(0);
    PROCESS_INFORMATION process{};
    if (!StartProcess(nullptr, writable.data(), TRUE, CREATE_NO_WINDOW, folder.empty() ? nullptr : folder.c_str(),
                      &startup, &process))
        return result;
    UniqueHandle processOwner(process.hProcess), threadOwner(process.hThread);
    outWriteOwner.reset();
    inReadOwner.reset();

    // Input goes in from a thread of its own, so that a long input and a long
    // output cannot block each other in the two pipes.
    struct Feed {
        HANDLE pipe;
        const std::string* bytes;
    } feed{inWriteOwner.release(), &input};
    HANDLE writer = CreateThread(
        nullptr, 0,
        [](void* data) -> DWORD {
            auto* f = static_cast<Feed*>(data);
            DWORD written;
            if (!f->bytes->empty()) WriteFile(f->pipe, f->bytes->data(), DWORD(f->bytes->size()), &written, nullptr);
            CloseHandle(f->pipe);
            return 0;
        },
        &feed, 0, nullptr);
    UniqueHandle writerOwner(writer);

    std::string bytes;
    char chunk[4096];
    DWORD got;
    while (ReadFile(outRead, chunk, sizeof(chunk), &got, nullptr) && got > 0) bytes.append(chunk, got);
    WaitForSingleObject(process.hProcess, INFINITE);
    if (writer) WaitForSingleObject(writer, INFINITE);
    DWORD code = 0;
    GetExitCodeProcess(process.hProcess, &code);
    result.ExitCode = int(code);
    StringHolder holder;
    const wchar_t* wide = FromUtf8(holder, bytes.c_str());
    result.Output = wide ? wide : L"";
    return result;
}

OmbcResult RunOmbc(const std::wstring& arguments, const std::string& input)
{
    return RunOmbcIn(L"", arguments, input);
}

std::wstring TypedOutput(const std::string& input, const std::wstring& folder)
{
    return JoinLines(RunOmbcIn(folder, L"", input).Output);
}

std::wstring JoinLines(const std::wstring& output)
{
    std::wstring text;
    for (wchar_t c : output)
        if (c != L'\r') text += c;
    return text;
}
