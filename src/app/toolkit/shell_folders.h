// The path of a shell folder (CSIDL_ number), looked up in SHELL32 by name at
// run time, so that a system without the functions gives an empty path.
#pragma once

#include <windows.h>

// Fills path (MAX_PATH units) and returns true, or leaves it empty. With
// loadShell false, SHELL32 is only used when already loaded.
bool ShellFolderPath(int folder, wchar_t* path, bool loadShell);
