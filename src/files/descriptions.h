// DescriptionStore: the in-memory image of one directory's descript.ion, the
// file that gives files a one-line description. Commands load it, change it
// and write it back once.
//
// File format: one entry a line, "name description", or "\"name with
// blanks\" description". The encoding found when loading is kept for
// writing back; a new file is UTF-16 little-endian with its mark, hidden.
// Names compare by their own rule: case folded, and one "." at the very end
// of a name ignored, so "NAME." and "name" are one entry.
#pragma once

#include "app/toolkit/omdib.h"

#include <windows.h>

#include <cstdint>
#include <string>
#include <vector>

struct DescriptionEntry {
    static constexpr int kDescriptionSize = 128;
    wchar_t name[kPathMax] = {};
    wchar_t description[kDescriptionSize] = {};
};

class DescriptionStore {
public:
    static constexpr int kGrowth = 1000;

    std::vector<DescriptionEntry> entries;
    DescriptionEntry found;
    std::wstring path;
    int32_t capacity = 0;
    int32_t loadFailed = 0;
    int32_t changed = 0;
    int32_t encoding = 2;

    int32_t Count() const { return int32_t(entries.size()); }

    // Reads the descript.ion of the directory that pathInDirectory (a file or
    // a pattern) stands in. A missing or unreadable file gives an empty store.
    int Load(const wchar_t* pathInDirectory);
    // Writes the store back when it changed: deletes the file when it is
    // empty. 0, or 1 when writing failed.
    int Save();
    // Adds or replaces fileName's description (its path part dropped). An
    // empty text does nothing: 1, as when there is no room.
    int Add(const wchar_t* fileName, const wchar_t* text);
    // 0, or 1 when the name has no entry.
    int Remove(const wchar_t* fileName);
    // The entry of fileName copied to found, or found zeroed.
    const DescriptionEntry& Lookup(const wchar_t* fileName);

private:
    void ParseLine(const wchar_t* line);
    // Room for one more entry, growing 1,000 at a time; false when full.
    bool MakeRoom();
    int IndexOf(const wchar_t* fileName) const;
    bool WriteFile(const std::wstring& temporary) const;
};

// Clears the attributes of the directory's descript.ion and deletes it.
void DeleteDescriptions(const wchar_t* pathInDirectory);
// The comparer of description names.
int CompareDescriptionNames(const wchar_t* a, const wchar_t* b);
