// What the shell's environment holds once start-up is over: the directory of
// the drive it started on, kept for when a command leaves that drive. (Wine
// sets the program-folder variables itself in every 64-bit process, so the
// start-up fix of those cannot be seen from here.)
#include "support/ombc_runner.h"
#include "support/temp_folder.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <string>

namespace {

TEST(StartupEnvironment, TheStartingDriveKeepsItsDirectory)
{
    TempFolder f;
    // Left for another drive and named by its letter alone, the drive is back where the shell started.
    OmbcResult result = RunOmbcIn(f.Path(), L"/C cdd c:\\ & cd t: & echo %=T:%");
    EXPECT_EQ(JoinLines(result.Output), L"Current directory is " + f.Path().substr(2) + L"\n\n" + f.Path() + L"\n");
}

} // namespace
