// How a file listing lays out one entry: the name column, the size, date,
// time and attribute fields and the description. dir builds its lines from
// these; the copy family and where print their entries the same way.
//
// ListingState holds the choices of the command running, for its duration:
// whether names are lowered or justified, the long or the short form, whole
// years, and the short-name column.
#pragma once

#include "files/file_walker.h"

#include <windows.h>

enum ListNameFlags : int {
    NameLower = 0x04,     // names in lower case
    NameJustified = 0x20, // the extension in its own column (short form)
};

struct ListingState {
    int nameFlags = 0;
    int longNames = 0;
    int fourDigitYear = 0;
    int showShortNames = 0;
    // The short name laid out in its column of 12, when showShortNames is set.
    wchar_t shortColumn[13] = {};
};

extern ListingState TheListing;

// The date pattern and separator of the regional settings, read once per listing.
struct DatePattern {
    wchar_t format[80] = {};
    wchar_t separator = L'-';
    void Read();
};

// name laid out for the name column into out (at least kPathMax + 13 units):
// justified to exactly 12 in the short form with NameJustified, else whole
// and padded to 12; lowered with NameLower.
void FormatListName(const wchar_t* name, wchar_t* out);
// The date of a file time in the local zone, by pattern, with a blank behind.
void FormatListDate(const FILETIME& time, const DatePattern& pattern, wchar_t* out, int size);
// Date (File date) and "hh:mm" (File time) of the entry's last-write field.
void WriteListDateTime(const FILETIME& time, const DatePattern& pattern);
// A blank and the eight flag characters R H S D A C E I, in File attribute.
void WriteAttributeFlags(DWORD attributes);
// " <JUNCTION>   ", " <DIR>        " or the size in a field of 14, in Number.
void WriteSizeField(const FileEntry& entry, bool showJunctions);
// One entry in the short or the long form, as TheListing chooses, up to and
// not including the blank before its description; shownName (a full path, for
// where) stands in place of the entry's name when given.
void WriteListLine(const FileEntry& entry, const DatePattern& pattern, const wchar_t* shownName = nullptr);
// The description cut to what is left of the screen row, in File description.
void WriteDescription(const wchar_t* description);
// "Volume in drive X is LABEL" and the serial number, in Highlighted text,
// and a blank line; false, printing nothing, when the volume will not tell.
bool WriteVolumeHeading(const wchar_t* path);
// value with thousands separators, right-aligned in a field of width.
void WriteCommaNumber(uint64_t value, int width);
