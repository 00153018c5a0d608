// Helpers of the file-command tests: one line run by ombc.exe in a scratch
// folder, with answers to its questions on standard input.
#pragma once

#include "support/ombc_runner.h"
#include "support/temp_folder.h"

#include <windows.h>

#include <string>

// The screen text of "/C line" run in the folder.
inline std::wstring RunLine(const TempFolder& folder, const std::wstring& line, const std::string& answers = {})
{
    return JoinLines(RunOmbcIn(folder.Path(), L"/C \"" + line + L"\"", answers).Output);
}

// The ErrorLevel that "/C line" leaves.
inline int LevelOf(const TempFolder& folder, const std::wstring& line, const std::string& answers = {})
{
    return RunOmbcIn(folder.Path(), L"/C \"" + line + L"\"", answers).ExitCode;
}

inline DWORD AttributesOf(const TempFolder& folder, const std::wstring& name)
{
    return GetFileAttributesW((folder / name).c_str());
}

inline void MakeDirectory(const TempFolder& folder, const std::wstring& name)
{
    CreateDirectoryW((folder / name).c_str(), nullptr);
}
