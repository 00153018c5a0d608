// The change-directory worker behind cd, cdd, pushd, popd and start-up. It
// keeps each drive's directory in the hidden "=X:" variable, as the
// operating system does, so "cd x:" and the full form of "x:foo" find it.
#pragma once

// Makes path full (at most 260 units), corrects its case and changes to it;
// the drive changes with it. False on failure, with the platform's error left
// for ReportErrno.
bool ChangeDirectory(const wchar_t* path);

// The current directory, full and in its correct case; empty on failure.
// 0 is the current drive, 1 is A: and so on.
bool CurrentDirectoryOf(int drive, wchar_t* buffer);
