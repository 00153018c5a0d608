// The modal "Environment Variables" dialog of the trace window: the variables
// in a list, and an edit in which the selected one's value can be changed.
#pragma once

#include <windows.h>

// Its controls: the list of "name=value", the value edit, and Set.
enum : int { kEnvironmentList = 201, kEnvironmentValue = 202, kEnvironmentSet = 203 };

void ShowEnvironmentDialog(HWND owner);
