// Finding the file a command word names, and telling what kind of program a
// file holds. The search tries the word as a full path, then each folder of
// PATH, then the App Paths key, and at each place the program suffixes in
// their fixed order, so ".EXC" wins over ".EXE" and ".EXE" over ".BAT".
#pragma once

#include <string>

// The suffixes a search appends, in the order it tries them.
extern const wchar_t* const ProgramSuffixes[8];

// The extension behind the last backslash, with its dot; empty when none.
const wchar_t* ExtensionOf(const wchar_t* path);
// True when extension (with its dot) is one of ProgramSuffixes, in any case.
bool IsProgramSuffix(const wchar_t* extension);
// True for ".CMD", ".BAT" and ".WBT", in any case.
bool IsBatchSuffix(const wchar_t* extension);

// The file that the command word (argument 0) or the first argument
// (argument 1) of CommandArgs names, or empty. On a 32-bit shell under WOW64
// the search looks beneath the file-system redirection first.
std::wstring FindProgram(int argument);
// The same for a given word.
std::wstring FindProgramFor(const wchar_t* word);

// 0 a GUI program or a file that cannot be opened; 1 no program the system
// loads itself (DOS, or no header at all); 2 any other Windows program.
int ExecutableKind(const wchar_t* path);
// The kind as which shows it: "(64-bit, Console)", "(DOS)", ... or empty.
std::wstring ExecutableDescription(const wchar_t* path);

// The full path of the batch program that word names (a path with a batch
// extension, or a name to which one is added), or empty.
std::wstring FindBatchProgram(const wchar_t* word);
