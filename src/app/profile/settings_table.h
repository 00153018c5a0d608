// Every fixed setting of the shell with the value that a missing key gives,
// so a part that reads a setting names it once and cannot disagree with
// another part about its default. Keys made from numbers (History 0 to 255,
// Keys F1 to F47, rgbNN, button entries) and WOW64, whose default depends on
// the system, stay with the parts that own them.
#pragma once

struct SettingDefault {
    const wchar_t* Section;
    const wchar_t* Key;
    int Number;         // default of an integer setting
    const wchar_t* Text; // default of a text setting; null for an integer one
};

// The entry of a setting, or null when the table does not hold it.
const SettingDefault* FindSetting(const wchar_t* section, const wchar_t* key);

// Read through the store with the table's default (0 and empty for a setting
// the table does not hold).
int SettingInt(const wchar_t* section, const wchar_t* key);
int SettingString(const wchar_t* section, const wchar_t* key, wchar_t* buffer, int size);
