// The error reporter. A command fails by reporting and returning: the message
// is printed at once past any redirection, and BreakFlag makes everything
// after it stop by itself, exactly as Ctrl-C would.
#pragma once

#include <windows.h>

class ErrorReporter {
public:
    // Set by every report; cleared by statement execution before each statement.
    int ErrorFlag = 0;
    // The last message, cut to 127 units.
    wchar_t text[128] = {};
    // 1 once the text screen exists. A report made before (the history loader
    // may run out of memory that early) is stored and flagged only.
    int ScreenUp = 0;

    void ReportText(const wchar_t* message);
    // A message of the string table by number; a missing number does nothing.
    void ReportId(int id);
    // The last platform error as its run-time error text.
    void ReportErrno();
    // A failing platform call, in the platform's own words for its code.
    void ReportPlatformError(DWORD code);
    const wchar_t* ErrorText() const { return text; }
};

extern ErrorReporter TheErrors;
// Above 0 while a modal script dialog runs: reports are flagged, not printed.
extern int ReportMuted;

inline void ReportId(int id) { TheErrors.ReportId(id); }
inline void ReportText(const wchar_t* message) { TheErrors.ReportText(message); }
