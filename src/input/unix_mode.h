// Unix mode: the user types "/" between folders and "-" in front of a switch,
// and paths and commands are shown back that way. Two conversions, one for
// each direction; text in quotes is never touched.
#pragma once

class UnixMode {
public:
    // Reads both switches from section UnixMode.
    UnixMode();

    // Convert typed lines, and show paths in the Unix form.
    int Unix = 0;
    // Echo each converted line before it runs.
    int Display = 0;
};

extern UnixMode TheUnixMode;

// In place, when Unix is on: "/" becomes "\"; a "-" behind a blank becomes
// "/", except that "--" stays as a literal "-".
void ConvertUnixInput(wchar_t* line);
// The Unix display form of a path or command ("\" to "/", "/" to "-", a "-"
// behind a blank doubled), or the text itself when Unix is off. The result
// lives in a static buffer that the next call overwrites.
const wchar_t* UnixDisplayW(const wchar_t* text);
