#include "exec/start_process.h"

namespace {

constexpr int kStartAttempts = 3;

} // namespace

BOOL StartProcess(const wchar_t* application, wchar_t* commandLine, BOOL inherit, DWORD flags,
                  const wchar_t* directory, STARTUPINFOW* startup, PROCESS_INFORMATION* info)
{
    for (int attempt = 1;; ++attempt) {
        if (CreateProcessW(application, commandLine, nullptr, nullptr, inherit, flags, nullptr, directory, startup,
                           info))
            return TRUE;
        if (GetLastError() != ERROR_INTERNAL_ERROR || attempt == kStartAttempts) return FALSE;
    }
}
