// TAB completion of the file or command name at the end of the line. The
// short style extends the name as far as all candidates agree and lists
// them; the cycling style puts each candidate in turn.
#pragma once

#include <windows.h>

#include <string>
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
struct TabCandidate {
    std::wstring Name;
    DWORD Attributes = 0;
};

constexpr DWORD kCommandMark = 8;

// The candidates of the last completion, in the order offered.
class CandidateList {
public:
    std::vector<TabCandidate> Items;
    int Longest = 0;

    void Clear();
    void Add(const wchar_t* name, DWORD attributes);
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
    void AddPathPrograms(const wchar_t* pattern);

    std::unordered_set<std::wstring> commandKeys_;
};

// TAB at the prompt (Ctrl-TAB lists the candidates and changes nothing).
void CompleteTab();
