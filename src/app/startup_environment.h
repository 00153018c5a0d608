// The last start-up step before the shell is handed to the user: the
// environment that children and scripts see from the first command on.
#pragma once

// On a 64-bit system children see the 64-bit program folders, and the current
// directory goes through the cd worker once, so that its drive's "=X:"
// variable exists before any command leaves that drive.
void SettleStartupEnvironment();
