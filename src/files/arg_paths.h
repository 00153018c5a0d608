// The argument services of the file commands: a typed argument of the stage
// in CommandArgs turned into a full path. Argument numbers start at 1; number
// 0 stands for the current directory. Results live in one shared buffer that
// the next call overwrites; paths longer than 260 units are kept whole.
#pragma once

#include <windows.h>

// Every "/" of argument i to "\", one trailing backslash off (not behind a
// ":"), and the extension remembered for ArgRawPath. Returns the argument.
const wchar_t* ArgNormalised(int i);
// The platform's full path of argument i, its attributes remembered; a name
// typed with a trailing dot (NAME.) keeps it. Empty when the path is invalid.
const wchar_t* ArgRawPath(int i);
// ArgRawPath, with "*" behind a drive root and "\*" behind an existing
// directory, so the result is always a pattern to walk.
const wchar_t* ArgFullPath(int i);
// The full path when argument i is an existing directory, else null.
const wchar_t* ArgDirectory(int i);
// The attributes of the path ArgRawPath made last (INVALID_FILE_ATTRIBUTES
// when it does not exist).
DWORD ArgAttributes();
