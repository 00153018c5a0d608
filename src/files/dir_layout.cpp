#include "files/dir_layout.h"

#include "files/long_path.h"
#include "lang/short_date.h"
#include "screen/colours.h"
#include "screen/screen_geometry.h"
#include "screen/screen_store.h"

#include <algorithm>
#include <cwchar>

ListingState TheListing;

void DatePattern::Read() { ReadShortDateFormat(format, 80, separator); }

void FormatListName(const wchar_t* name, wchar_t* out)
{
    int n = 0;
    if (!TheListing.longNames && (TheListing.nameFlags & NameJustified)) {
        const wchar_t* lastDot = std::wcsrchr(name, L'.');
        const wchar_t* s = name;
        // "." and ".." keep their dots at the start of the column.
        while (*s == L'.' && (s[1] == 0 || s[1] == L'.')) out[n++] = *s++;
        if (n) lastDot = nullptr;
        while (n < 12) {
            if (!*s || (s == lastDot && n < 8)) out[n++] = L' ';
            else out[n++] = *s++;
        }
    } else {
        n = lstrlenW(lstrcpynW(out, name, kPathMax));
        while (n < 12) out[n++] = L' ';
    }
    out[n] = 0;
    if (TheListing.nameFlags & NameLower) CharLowerW(out);
}

void FormatListDate(const FILETIME& time, const DatePattern& pattern, wchar_t* out, int size)
{
    FILETIME local;
    SYSTEMTIME date{};
    if (!FileTimeToLocalFileTime(&time, &local) || !FileTimeToSystemTime(&local, &date)) date = SYSTEMTIME{};
    wchar_t format[84];
    lstrcpynW(format, pattern.format, 80);
    if (TheListing.fourDigitYear) {
        // A whole year wherever the pattern has one of any length.
        wchar_t* y = std::wcschr(format, L'y');
        if (!y) y = std::wcschr(format, L'Y');
        if (y) {
            wchar_t* end = y;
            while (*end == L'y' || *end == L'Y') ++end;
            std::wmemmove(y + 4, end, std::wcslen(end) + 1);
            std::wmemcpy(y, L"yyyy", 4);
        }
    }
    FormatShortDate(date, format, pattern.separator, DatePadded, out, size - 1);
    int n = lstrlenW(out);
    out[n] = L' ';
    out[n + 1] = 0;
}

void WriteListDateTime(const FILETIME& time, const DatePattern& pattern)
{
    wchar_t date[96];
    FormatListDate(time, pattern, date, 96);
    UseItem(Item::FileDate);
    TheScreen.Write(date);
    FILETIME local;
    SYSTEMTIME clock{};
    if (FileTimeToLocalFileTime(&time, &local)) FileTimeToSystemTime(&local, &clock);
    wchar_t text[16];
    std::swprintf(text, 16, L"%2u:%02u", unsigned(clock.wHour), unsigned(clock.wMinute));
    UseItem(Item::FileTime);
    TheScreen.Write(text);
}

void WriteAttributeFlags(DWORD attributes)
{
    struct Flag {
        DWORD bit;
        wchar_t letter;
    };
    static const Flag kFlags[] = {
        {FILE_ATTRIBUTE_READONLY, L'R'}, {FILE_ATTRIBUTE_HIDDEN, L'H'},     {FILE_ATTRIBUTE_SYSTEM, L'S'},
        {FILE_ATTRIBUTE_DIRECTORY, L'D'}, {FILE_ATTRIBUTE_ARCHIVE, L'A'},   {FILE_ATTRIBUTE_COMPRESSED, L'C'},
        {FILE_ATTRIBUTE_ENCRYPTED, L'E'},
    };
    wchar_t text[10] = L" ";
    int n = 1;
    for (const Flag& f : kFlags) text[n++] = (attributes & f.bit) ? f.letter : L'-';
    // Shown the other way round: "I" when the file is indexed.
    text[n++] = (attributes & FILE_ATTRIBUTE_NOT_CONTENT_INDEXED) ? L'-' : L'I';
    text[n] = 0;
    UseItem(Item::FileAttrib);
    TheScreen.Write(text);
}

void WriteCommaNumber(uint64_t value, int width)
{
    TheScreen.FieldWidth = width;
    TheScreen.CommaNext = 1;
    TheScreen.WriteUInt64(value);
}

void WriteSizeField(const FileEntry& entry, bool showJunctions)
{
    UseItem(Item::Number);
    if (showJunctions && (entry.dwFileAttributes & kReparseBit)) {
        TheScreen.Write(L" <JUNCTION>   ");
    } else if (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) {
        TheScreen.Write(L" <DIR>        ");
    } else {
        WriteCommaNumber((uint64_t(entry.nFileSizeHigh) << 32) | entry.nFileSizeLow, 14);
    }
}

void WriteListLine(const FileEntry& entry, const DatePattern& pattern, const wchar_t* shownName)
{
    wchar_t name[kPathMax + 16];
    FormatListName(entry.cFileName, name);
    if (shownName) lstrcpynW(name, shownName, kPathMax + 16);
    if (!TheListing.longNames) {
        UseItem(Item::FileName);
        TheScreen.Write(L" ");
        TheScreen.Write(name);
        WriteSizeField(entry, false);
        TheScreen.Write(L" ");
        WriteListDateTime(entry.ftLastWriteTime, pattern);
        WriteAttributeFlags(entry.dwFileAttributes);
    } else {
        UseItem(Item::FileDate);
        TheScreen.Write(L" ");
        WriteListDateTime(entry.ftLastWriteTime, pattern);
        WriteAttributeFlags(entry.dwFileAttributes);
        WriteSizeField(entry, true);
        UseItem(Item::FileName);
        TheScreen.Write(L" ");
        if (TheListing.showShortNames) {
            TheScreen.Write(TheListing.shortColumn);
            TheScreen.Write(L" ");
        }
        TheScreen.Write(name);
    }
    UseItem(Item::HighText);
}

void WriteDescription(const wchar_t* description)
{
    if (!description || !*description) return;
    int room = std::max(0, ScreenWidth - TheScreen.CursorX - 1);
    wchar_t text[128];
    lstrcpynW(text, description, std::min(room, 127) + 1);
    UseItem(Item::FileDesc);
    TheScreen.Write(text);
}

bool WriteVolumeHeading(const wchar_t* path)
{
    std::wstring root = VolumeRoot(path);
    wchar_t label[MAX_PATH + 1] = {};
    DWORD serial = 0;
    if (!GetVolumeInformationW(root.empty() ? nullptr : root.c_str(), label, MAX_PATH + 1, &serial, nullptr, nullptr,
                               nullptr, 0))
        return false;
    wchar_t drive[2] = {root.empty() ? wchar_t(L'A' + std::max(0, GetDisk())) : ToUpperUnit(root[0]), 0};
    UseItem(Item::HighText);
    TheScreen.Write(L"     Volume in drive ");
    TheScreen.Write(drive);
    if (label[0]) {
        TheScreen.Write(L" is ");
        TheScreen.Write(label);
    } else {
        TheScreen.Write(L" has no label");
    }
    TheScreen.NewLine();
    wchar_t number[16];
    std::swprintf(number, 16, L"%04X-%04X", unsigned(HIWORD(serial)), unsigned(LOWORD(serial)));
    TheScreen.Write(L"     Volume serial number is ");
    TheScreen.Write(number);
    TheScreen.NewLine();
    TheScreen.NewLine();
    return true;
}
