// Results of the registry and INI commands: a variable named after the
// command, and the comma-joined lists of names they build.
#pragma once

#include <string>

// Sets the variable; empty text deletes it. Message 4 when the environment
// refuses.
void SetResultVariable(const wchar_t* name, const std::wstring& text);

// Names joined by commas in a 4096-unit buffer; a name that would pass that
// size is left out.
class NameList {
public:
    void Add(const wchar_t* name);
    const std::wstring& Text() const { return text_; }

private:
    std::wstring text_;
};
