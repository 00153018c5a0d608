// Finding and starting what a word names when it is no built-in command.
#pragma once

#include <string>

class BatchProgram;

// Looks for the program that CommandArgs names. A batch program found while
// allowBatch is set comes back as its full path, for the caller to run.
// Until program launch exists, a word that names no batch program is message
// 5, with ErrorLevel 1, since no program ran to give an exit code.
std::wstring RunProgram(BatchProgram* batch, bool allowBatch);

// The full path of the batch program that word names (a path with a batch
// extension, or a name to which one is added), or empty.
std::wstring FindBatchProgram(const wchar_t* word);
