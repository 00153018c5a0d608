// The environment by name, case-blind, so that reading a variable costs one
// lookup however many there are. The process environment stays the truth
// that children inherit and set lists, in its own order: every change is
// written to it at once and then to the index. The index is built from the
// process environment when first asked. Hidden names (those beginning with
// "=") are not kept; they are read from the process each time.
//
// Every change of the shell's environment goes through WriteEnvironment, or
// the index no longer tells what a child would see.
#pragma once

#include <string>

// The value of name, or null when it is not set. Valid until the next change.
const std::wstring* FindEnvironment(const wchar_t* name);
// Sets name to value, or deletes it when value is null; false when the
// process refuses (GetLastError tells why), and then nothing changed.
bool WriteEnvironment(const wchar_t* name, const wchar_t* value);
