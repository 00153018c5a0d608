// The table of built-in commands and the dispatcher that looks a word up in it.
#pragma once

#include <span>

class BatchProgram;

using CommandHandler = void (*)();

enum CommandFlags : unsigned {
    NeedsBatch = 1,      // outside a batch program: message 91
    KeepsLevel = 2,      // ErrorLevel is left as the handler set it
    WaitsForUser = 4,    // the trace window's Step and Stop are dimmed meanwhile
    IgnoredAtPrompt = 8, // outside a batch program: quietly does nothing
};

struct CommandEntry {
    const wchar_t* Name;
    CommandHandler Handler;
    unsigned Flags;
};

// The table in its sorted order, for the dispatcher and its tests.
std::span<const CommandEntry> CommandTable();
// The row of a lower-case word, or null.
const CommandEntry* FindCommand(const wchar_t* word);
// The names that help and command completion offer, in their own order.
std::span<const wchar_t* const> HelpNames();
// The part of them that help and completion actually walk.
std::span<const wchar_t* const> OfferedHelpNames();

// Runs word as a built-in; false when it is none (the caller tries a program).
bool DispatchBuiltin(BatchProgram* batch, const wchar_t* word);
