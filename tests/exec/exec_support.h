// Running lines that start our own test programs (built next to the test
// program) through ombc.exe, with their folder first on PATH.
#pragma once

#include "app/profile/profile.h"
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

// A setting of section "Ombrel" for the ombc.exe runs of one test (they all
// read the one settings store of the test's prefix); removed again after.
class OmbrelSetting {
public:
    OmbrelSetting(const wchar_t* key, int value) : key_(key) { ProfileWriteInt(L"Ombrel", key, value); }
    ~OmbrelSetting() { ProfileWriteString(L"Ombrel", key_, nullptr); }
    OmbrelSetting(const OmbrelSetting&) = delete;
    OmbrelSetting& operator=(const OmbrelSetting&) = delete;

private:
    const wchar_t* key_;
};

// The two capture routes of a console program: the console loader (the
// default) and the pipes.
constexpr int kCaptureRoutes[] = {1, 0};
