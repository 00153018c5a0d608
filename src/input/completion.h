// TAB completion of the file or command name at the end of the line. The
// short style extends the name as far as all candidates agree and lists
// them; the cycling style puts each candidate in turn.
#pragma once

#include <windows.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

// Copies of the settings, read when the program starts.
struct TabSettings {
    TabSettings();
    // 1 short style, 0 cycling style.
    int ShortTabs = 1;
    // In the short style, list the candidates when more than one remains.
    int AutoDir = 1;
    // Completed text follows Caps Lock: upper case when on, lower when off.
    int MapTabs = 0;
    // Hidden and system files are candidates.
    int IncHidden = 0;
};

extern TabSettings TheTabSettings;

// One candidate: a directory entry, or a command (attribute kCommandMark).
// The name stays valid until the list changes.
struct TabCandidate {
    std::wstring_view Name;
    DWORD Attributes = 0;
};

constexpr DWORD kCommandMark = 8;

// The candidates of the last completion, in the order offered. The names
// stand end to end in one buffer, each followed by its upper-cased sort key,
// so a folder of a hundred thousand entries costs no allocation per entry
// and sorting compares plain keys.
class CandidateList {
public:
    int Longest = 0;

    void Clear();
    size_t size() const { return entries_.size(); }
    bool empty() const { return entries_.empty(); }
    TabCandidate operator[](size_t i) const
    {
        const Entry& entry = entries_[i];
        return {std::wstring_view(text_.data() + entry.Offset, entry.Length), entry.Attributes};
    }
    void Add(std::wstring_view name, DWORD attributes);
    // A command, its name cut at the first dot; a second one of the same
    // name, whatever its case, is dropped.
    void AddCommand(const wchar_t* name);
    // Commands, then directories, then files; by name, case-blind.
    void Sort();
    // The matching directory entries.
    void AddFiles(const wchar_t* pattern, DWORD mask);
    // Built-in names, programs on PATH and, for the line's first word,
    // registered applications, that begin with the pattern.
    void AddCommands(const wchar_t* pattern, bool firstColumn);

private:
    struct Entry {
        uint32_t Offset; // of the name in text_; the key follows its terminator
        uint32_t Length;
        DWORD Attributes;
    };

    void AddPathPrograms(const wchar_t* pattern);

    std::vector<wchar_t> text_;
    std::vector<Entry> entries_;
    std::unordered_set<std::wstring> commandKeys_;
};

// TAB at the prompt (Ctrl-TAB lists the candidates and changes nothing).
void CompleteTab();
