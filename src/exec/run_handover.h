// The hand-over of a run: the files that the "=" variables name, opened for
// the program to inherit as its standard handles. oms32.exe does this for a
// program it stands in front of; the pipe route does it itself, so that a
// captured program costs one process start, not two.
#pragma once

#include <windows.h>

#include <string>

// The value of a run variable, or empty.
std::wstring RunVariable(const wchar_t* name);
// Removes the run variables, so that the program never sees them. A program
// started on the shell's pipes keeps "=hwnd": that is how it finds the window
// to send its requests to.
enum class KeepCallWindow { No, Yes };
void RemoveRunVariables(KeepCallWindow keep = KeepCallWindow::No);

// A standard handle of this process made inheritable, for a program that
// runs on it; null when there is none.
HANDLE InheritableStandard(DWORD which);

class HandedFiles {
public:
    HandedFiles() = default;
    HandedFiles(const HandedFiles&) = delete;
    HandedFiles& operator=(const HandedFiles&) = delete;
    ~HandedFiles() { Close(); }

    // Opens "=>" (replaced), "=>>" (appended to) and "=<" as inheritable
    // handles; false, with the name in FailedName, when one cannot be opened.
    bool Open();
    void Close();

    HANDLE Output = nullptr; // null: the output is not redirected
    HANDLE Input = nullptr;  // null: the input is not redirected
    std::wstring FailedName;
};
