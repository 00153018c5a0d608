// Internal variables: names that expand to a value computed at the moment of
// asking (date, time, directories, screen, random numbers and so on). The
// environment is searched first, so a variable of the same name hides one.
#pragma once

// The value of an internal variable, compared case-blind, into buffer (size
// units, cut silently); an unknown name gives the empty text.
void ResolveInternalVariable(const wchar_t* name, wchar_t* buffer, int size);
