// The settings store: one named profile with sections and keys. The name
// (OMB_REL.INI unless the command line starts with USE= or INI=) is either a
// real INI file, served by the platform's private-profile calls, or a view of
// a per-user registry key, which the store reads and writes directly.
//
// Every setting is written at the moment it changes; nothing is saved at exit
// except what SaveSession writes.
#pragma once

#include <windows.h>

class ProfileStore {
public:
    // Reads the settings argument (USE=/INI=) from the process command line.
    ProfileStore();

    wchar_t IniFileName[260];
    // Filled by FindProgramFolders, which their users call first: the look-up
    // costs a fifth of a start under some platforms, so it waits until asked.
    wchar_t ProgramsDir[260];
    wchar_t CommonProgramsDir[260];
    // Key under HKEY_CURRENT_USER that holds the store when it is a registry
    // view; empty when IniFileName is served by the platform's profile calls.
    wchar_t RegistryRoot[260];

    // Re-reads the settings argument from the given text (the process command
    // line without the program name); used by the constructor and by tests.
    void SelectStore(const wchar_t* arguments);

    // Fills ProgramsDir and CommonProgramsDir once; empty when unknown.
    void FindProgramFolders();

private:
    void ReadLimits();
    bool programFoldersFound_ = false;
};

extern ProfileStore TheProfile;

// Limits read once at start-up; the screen store sizes itself by them.
extern int MaxWidth;
extern int MaxHeight;
extern int MaxScroll;

// A null key lists the section's keys (a null section the sections), as
// zero-terminated names with an extra terminator. Returns the units read.
int ProfileReadString(const wchar_t* section, const wchar_t* key, const wchar_t* defaultText, wchar_t* buffer,
                      int size);
int ProfileReadInt(const wchar_t* section, const wchar_t* key, int defaultValue);
// A null text deletes the key, a null key the section, all three null flush.
// False when the store refused: the platform's reason is in GetLastError, and
// the store is as it was.
bool ProfileWriteString(const wchar_t* section, const wchar_t* key, const wchar_t* text);
bool ProfileWriteInt(const wchar_t* section, const wchar_t* key, int value);
// Encloses the text in double quotes, so blanks at its ends and quotes in it
// survive the reader. Returns the write's result; 0 when out of memory.
int ProfileWriteQuoted(const wchar_t* section, const wchar_t* key, const wchar_t* text);
