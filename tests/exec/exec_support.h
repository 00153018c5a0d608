// Running lines that start our own test programs (built next to the test
// program) through ombc.exe, with their folder first on PATH.
#pragma once

#include "support/ombc_runner.h"
#include "support/temp_folder.h"

#include <windows.h>

#include <string>

// The folder of the test program and of the programs it starts.
inline std::wstring ProgramFolder()
{
    wchar_t self[MAX_PATH];
    DWORD n = GetModuleFileNameW(nullptr, self, MAX_PATH);
    std::wstring path(self, n);
    return path.substr(0, path.find_last_of(L"\\/"));
}

inline std::string Narrow(const std::wstring& text)
{
    std::string bytes;
    for (wchar_t c : text) bytes += char(c);
    return bytes;
}

// Typed lines in folder, after one that puts the programs on PATH; the output
// without the line ends' CRs.
inline std::wstring TypedWithPrograms(const TempFolder& folder, const std::string& lines)
{
    return TypedOutput("set PATH=" + Narrow(ProgramFolder()) + ";%PATH%\n" + lines, folder.Path());
}
