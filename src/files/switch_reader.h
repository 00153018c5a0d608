// Reading the switches of a file command. They arrive as one lowered string
// with the slashes dropped, the pieces run together (/o:n /b reads "o:nb"),
// and each command walks it letter by letter: a letter it does not know is
// message 2. A letter with a value takes an optional ":" first; a value of
// letters goes on as long as each is one of its set, or a "-" and one of them.
#pragma once

#include <windows.h>

#include <cstdint>
#include <cwchar>

class SwitchReader {
public:
    explicit SwitchReader(const wchar_t* switches) : p_(switches) {}

    // The next switch letter, 0 at the end.
    wchar_t Next();
    // A value of letters out of allowed behind the current switch; each is
    // handed to take with whether a "-" stood before it.
    template <class Take> void ReadLetters(const wchar_t* allowed, Take take);
    // Attribute letters d h s a r into the two masks; false when none came.
    bool ReadAttributes(uint16_t& mustHave, uint16_t& mustNotHave);
    // Exactly one value letter behind an optional ":", 0 at the end.
    wchar_t ReadOneLetter();

private:
    void SkipColon()
    {
        if (*p_ == L':') ++p_;
    }
    static bool In(const wchar_t* allowed, wchar_t c) { return c && std::wcschr(allowed, c) != nullptr; }

    const wchar_t* p_;
};

template <class Take> void SwitchReader::ReadLetters(const wchar_t* allowed, Take take)
{
    SkipColon();
    for (;;) {
        if (In(allowed, *p_)) {
            take(*p_++, false);
        } else if (*p_ == L'-' && In(allowed, p_[1])) {
            take(p_[1], true);
            p_ += 2;
        } else {
            return;
        }
    }
}

// The attribute bit of a letter d h s a r.
uint16_t AttributeOfLetter(wchar_t letter);
// How many switch letters the stage has, "-" signs not counted.
int CountSwitchLetters();
