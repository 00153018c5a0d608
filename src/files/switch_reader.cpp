#include "files/switch_reader.h"

#include "lang/command_args.h"

wchar_t SwitchReader::Next()
{
    // A stray ":" or "-" between switches belongs to none of them.
    while (*p_ == L':' || *p_ == L'-') ++p_;
    return *p_ ? *p_++ : 0;
}

bool SwitchReader::ReadAttributes(uint16_t& mustHave, uint16_t& mustNotHave)
{
    bool any = false;
    ReadLetters(L"dhsar", [&](wchar_t letter, bool negated) {
        (negated ? mustNotHave : mustHave) |= AttributeOfLetter(letter);
        any = true;
    });
    return any;
}

wchar_t SwitchReader::ReadOneLetter()
{
    SkipColon();
    return *p_ ? *p_++ : 0;
}

uint16_t AttributeOfLetter(wchar_t letter)
{
    switch (letter) {
    case L'r': return FILE_ATTRIBUTE_READONLY;
    case L'h': return FILE_ATTRIBUTE_HIDDEN;
    case L's': return FILE_ATTRIBUTE_SYSTEM;
    case L'd': return FILE_ATTRIBUTE_DIRECTORY;
    case L'a': return FILE_ATTRIBUTE_ARCHIVE;
    default: return 0;
    }
}

int CountSwitchLetters()
{
    int n = 0;
    for (const wchar_t* s = CommandArgs.Switches; *s; ++s)
        if (*s != L'-') ++n;
    return n;
}
