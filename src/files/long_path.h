// Paths past the platform's 260-unit limit: a full path that long is handed
// to the find and attribute functions in its "\\?\" form, which has no limit.
#pragma once

#include <string>

// path itself, or its long form built in holder when path is too long.
const wchar_t* PlatformPath(const wchar_t* path, std::wstring& holder);

// The root of the volume path stands on: "X:\" for a drive, "\\server\share\"
// for a network path; empty for a relative path (the current volume).
std::wstring VolumeRoot(const wchar_t* path);
