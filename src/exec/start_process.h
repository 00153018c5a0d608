// Starting a process, for the shell and its helpers alike.
#pragma once

#include <windows.h>

// CreateProcessW, tried again while it fails with ERROR_INTERNAL_ERROR: the
// new process then died while the system was still starting it, before any
// of the program's own code ran. Wine does that now and then on a busy
// machine, when the process cannot join its console in time.
BOOL StartProcess(const wchar_t* application, wchar_t* commandLine, BOOL inherit, DWORD flags,
                  const wchar_t* directory, STARTUPINFOW* startup, PROCESS_INFORMATION* info);
