// Running as the system shell in place of the desktop: the program then
// starts Task Manager and the user's start-up programs itself.
#pragma once

// 1 when this first instance is the system shell.
extern int ShellMode;

// Reads the Winlogon Shell value; in shell mode starts TASKMAN.EXE.
void CheckShellMode();
// The run= and load= entries of the system profile's [Windows] section.
void RunStartupPrograms();
