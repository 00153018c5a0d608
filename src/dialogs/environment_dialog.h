// The modal "Environment Variables" dialog of the trace window: the variables
// in a list, and an edit in which the selected one's value can be changed.
#pragma once

#include <windows.h>

void ShowEnvironmentDialog(HWND owner);
