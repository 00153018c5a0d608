// CommandArgs: the one stage being run. Every handler reads its arguments
// here; none receives them as parameters. The tail parser and the word parser
// are always called in that order, again by any code that changes the text.
#pragma once

#include <cstdint>

class ParsedStage {
public:
    static constexpr int kMaxArgs = 256;
    static constexpr int kNormalisedSize = 8192;
    static constexpr int kSwitchesSize = 132;

    wchar_t Normalised[kNormalisedSize];
    wchar_t RawCopies[kNormalisedSize];
    wchar_t* Command = Empty();
    wchar_t* RawCommand = Empty();
    wchar_t* Args[kMaxArgs] = {};
    wchar_t* RawArgs[kMaxArgs] = {};
    int ArgCount = 0;
    int LeadingBlank = 0;
    wchar_t Switches[kSwitchesSize] = {};
    wchar_t FullPath[260] = {};
    uint16_t FileAttributes = 0;
    const wchar_t* Tail = Empty();
    const wchar_t* WholeLine = Empty();

    // text [blanks] first-word [one separator] tail: sets WholeLine and Tail.
    // The directory fix (cd\, cd.., chdir/) is applied to the text in place,
    // which must therefore sit in a line buffer of 4096 units.
    void ParseTail(wchar_t* text);
    // Fills Command, Args and Switches from text; text itself is not changed.
    void ParseWords(const wchar_t* text);
    // Both parsers on a text, as a fresh stage.
    void Parse(wchar_t* text);

    // True when any switch letter other than "-" was given.
    bool HasSwitches() const;

private:
    static wchar_t* Empty();
};

extern ParsedStage CommandArgs;

// Message 2 and true when the stage has switches.
bool RejectSwitches();
// Message 9 and true when the stage has positional arguments.
bool RejectArguments();

// Inserts a blank after cd/chdir when a backslash, slash or point follows, so
// that cd\ and cd.. parse as the command and its argument. The text must have
// room for one more unit.
void ApplyDirectoryFix(wchar_t* text, int capacity);
