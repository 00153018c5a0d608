#include "app/startup_environment.h"

#include "app/toolkit/omdib.h"
#include "lang/directories.h"
#include "lang/environment_index.h"

#include <windows.h>

namespace {

// ProgramW6432 exists only on a 64-bit system, where a 32-bit process sees
// the "(x86)" folders under the plain names.
void UseNativeProgramFolders()
{
    const wchar_t* const pairs[][2] = {
        {L"ProgramFiles", L"ProgramW6432"},
        {L"CommonProgramFiles", L"CommonProgramW6432"},
    };
    for (const auto& pair : pairs) {
        wchar_t value[kPathMax];
        DWORD n = GetEnvironmentVariableW(pair[1], value, kPathMax);
        if (n > 0 && n < kPathMax) WriteEnvironment(pair[0], value);
    }
}

} // namespace

void SettleStartupEnvironment()
{
    UseNativeProgramFolders();
    wchar_t current[kPathMax];
    if (CurrentDirectoryOf(0, current)) ChangeDirectory(current);
}
