// CaptureSettings: the program-execution switches of section "Ombrel", read
// once at start-up so that a launch costs no settings reads. A command that
// changes one of them writes the store and the record together.
#pragma once

struct CaptureSettings {
    int Capture = 1;   // capture console programs at all
    int Emulator = 1;  // console programs run under the console loader
    int Copyright = 1; // the loader shows its banner
    int Logging = 0;   // the loader keeps a log
    int VDM = 0;
    int WOW64 = 0;     // 1 by default on a 64-bit system
    int UnicodeRedirection = 0;
    int RecycleBin = 0;
    int DriveIcon = 0;
    int DriveHiddenAttrib = 0;
    // Beside them, from program launch: console programs may open a console,
    // and a GUI program gives the prompt back at once.
    int Console = 1;
    int GUIStart = 1;

    // Reads every key, with its default, from the settings store.
    void Load();
};

extern CaptureSettings TheCaptureSettings;
