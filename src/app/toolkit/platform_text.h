// The platform's own text for a platform error code.
#pragma once

#include <windows.h>

#include <string>

// FormatMessageW's text for the code, cut at its first line end; empty when
// the platform has no text for it.
std::wstring PlatformErrorText(DWORD code);
