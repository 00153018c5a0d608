#include "exec/run_handover.h"

namespace {

const wchar_t* const kRunVariables[] = {L"=hwnd", L"=open", L"=cmd", L"=run", L"=logg", L"=cpyr",
                                        L"=imgbase", L"=>>", L"=>", L"=<", L"=cp", L"=size"};

HANDLE OpenInherited(const std::wstring& name, DWORD access, DWORD disposition)
{
    SECURITY_ATTRIBUTES inherit{sizeof(inherit), nullptr, TRUE};
    HANDLE h = CreateFileW(name.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE, &inherit, disposition,
                           FILE_ATTRIBUTE_NORMAL, nullptr);
    return h == INVALID_HANDLE_VALUE ? nullptr : h;
}

} // namespace

std::wstring RunVariable(const wchar_t* name)
{
    DWORD size = GetEnvironmentVariableW(name, nullptr, 0);
    if (size == 0) return {};
    std::wstring value(size, L'\0');
    DWORD n = GetEnvironmentVariableW(name, value.data(), size);
    value.resize(n < size ? n : 0);
    return value;
}

void RemoveRunVariables(KeepCallWindow keep)
{
    for (const wchar_t* name : kRunVariables)
        if (keep == KeepCallWindow::No || lstrcmpW(name, L"=hwnd") != 0) SetEnvironmentVariableW(name, nullptr);
}

HANDLE InheritableStandard(DWORD which)
{
    HANDLE h = GetStdHandle(which);
    if (!h || h == INVALID_HANDLE_VALUE) return nullptr;
    SetHandleInformation(h, HANDLE_FLAG_INHERIT, HANDLE_FLAG_INHERIT);
    return h;
}

bool HandedFiles::Open()
{
    std::wstring replace = RunVariable(L"=>");
    std::wstring append = RunVariable(L"=>>");
    std::wstring input = RunVariable(L"=<");
    if (!replace.empty() || !append.empty()) {
        const std::wstring& name = replace.empty() ? append : replace;
        Output = OpenInherited(name, GENERIC_WRITE, replace.empty() ? OPEN_ALWAYS : CREATE_ALWAYS);
        if (!Output) {
            FailedName = name;
            return false;
        }
        LARGE_INTEGER zero{};
        SetFilePointerEx(Output, zero, nullptr, FILE_END);
    }
    if (!input.empty()) {
        Input = OpenInherited(input, GENERIC_READ, OPEN_EXISTING);
        if (!Input) {
            FailedName = input;
            return false;
        }
    }
    return true;
}

void HandedFiles::Close()
{
    if (Output) CloseHandle(Output);
    if (Input) CloseHandle(Input);
    Output = Input = nullptr;
}
