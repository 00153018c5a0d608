// The environment by name, case-blind, so that reading or changing a variable
// costs one lookup however many there are. The index is the shell's truth;
// the process environment, which children inherit and set lists, follows it
// lazily: changes wait until SyncEnvironment, which every place that lets
// someone else read the process environment calls first (a program start, a
// system call that expands or searches with variables, setlocal's copy, the
// end of each typed line). After a sync the process environment holds exactly
// what writing each change through at once would have made of it, in the same
// order. The index is built from the process environment when first asked.
// Hidden names (those beginning with "=") are not kept; they are read from
// and written to the process each time.
//
// Every change of the shell's environment goes through WriteEnvironment, or
// the index no longer tells what a child would see.
#pragma once

#include <string>

// The value of name, or null when it is not set. Valid until the next change.
const std::wstring* FindEnvironment(const wchar_t* name);
// Sets name to value, or deletes it when value is null; false when the
// process would refuse it (GetLastError tells why), and then nothing changed.
// Deleting a name that is not set is no failure.
bool WriteEnvironment(const wchar_t* name, const wchar_t* value);
// Writes the changes made since the last call to the process environment.
void SyncEnvironment();
