// The settings store: one named profile with sections and keys, reached only
// through the platform's private-profile calls. Whether the name is a real
// INI file or a registry view made by IniFileMapping is invisible here.
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
    wchar_t ProgramsDir[260];
    wchar_t CommonProgramsDir[260];

    // Re-reads the settings argument from the given text (the process command
    // line without the program name); used by the constructor and by tests.
    void SelectStore(const wchar_t* arguments);
};

extern ProfileStore TheProfile;

// Limits read once at start-up; the screen store sizes itself by them.
extern int MaxWidth;
extern int MaxHeight;
extern int MaxScroll;

int ProfileReadString(const wchar_t* section, const wchar_t* key, const wchar_t* defaultText, wchar_t* buffer,
                      int size);
int ProfileReadInt(const wchar_t* section, const wchar_t* key, int defaultValue);
void ProfileWriteString(const wchar_t* section, const wchar_t* key, const wchar_t* text);
void ProfileWriteInt(const wchar_t* section, const wchar_t* key, int value);
int ProfileWriteQuoted(const wchar_t* section, const wchar_t* key, const wchar_t* text);
