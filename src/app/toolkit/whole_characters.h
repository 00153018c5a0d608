// Where a piece of bytes read from a program may be cut: a character cut by
// the end of a read must wait for the rest before it is converted.
#pragma once

#include <windows.h>

#include <cstddef>

// The number of leading bytes that form whole characters in the code page
// (info from GetCPInfo; unused for UTF-8). Single-byte code pages never cut
// a character, so their text costs no walk.
size_t WholeCharacters(const char* bytes, size_t n, UINT codePage, const CPINFO& info);
