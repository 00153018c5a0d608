#include "support/ombc_runner.h"

#include "app/toolkit/handles.h"
#include "app/toolkit/omdib.h"

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
    if (!CreateProcessW(nullptr, writable.data(), nullptr, nullptr, TRUE, CREATE_NO_WINDOW, nullptr,
                        folder.empty() ? nullptr : folder.c_str(), &startup, &process))
        return result;
    UniqueHandle processOwner(process.hProcess), threadOwner(process.hThread);
    outWriteOwner.reset();
    inReadOwner.reset();

    DWORD written;
    if (!input.empty()) WriteFile(inWrite, input.data(), DWORD(input.size()), &written, nullptr);
    inWriteOwner.reset();

    std::string bytes;
    char chunk[4096];
    DWORD got;
    while (ReadFile(outRead, chunk, sizeof(chunk), &got, nullptr) && got > 0) bytes.append(chunk, got);
    WaitForSingleObject(process.hProcess, INFINITE);
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

std::wstring JoinLines(const std::wstring& output)
{
    std::wstring text;
    for (wchar_t c : output)
        if (c != L'\r') text += c;
    return text;
}
