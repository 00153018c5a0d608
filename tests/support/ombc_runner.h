// Runs ombc.exe (next to the test program) as a child process and collects
// what it printed, so tests can drive the language end to end.
#pragma once

#include <string>

struct OmbcResult {
    std::wstring Output; // standard output, decoded from UTF-8, CR LF kept
    int ExitCode = -1;
};

// arguments: the command line after the program name. input: bytes fed to
// standard input (closed afterwards, so every wait ends).
OmbcResult RunOmbc(const std::wstring& arguments, const std::string& input = {});

// The same, in a given working folder.
OmbcResult RunOmbcIn(const std::wstring& folder, const std::wstring& arguments, const std::string& input = {});

// Lines of an output, without their CR LF.
std::wstring JoinLines(const std::wstring& output);

// Lines typed into ombc.exe (in folder, when given); the output as JoinLines
// gives it.
std::wstring TypedOutput(const std::string& input, const std::wstring& folder = L"");
