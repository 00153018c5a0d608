// The environment as a list of "name=value" strings, in the environment's own
// order, without the hidden ones whose name begins with "=". set lists it and
// the environment editor edits it.
#pragma once

#include <string>
#include <vector>

struct EnvironmentEntry {
    std::wstring Name;
    std::wstring Value;
};

std::vector<EnvironmentEntry> ListEnvironment();
// What the environment editor does with an edited entry: the value is set,
// and an empty value deletes the variable. Message 4 and false on failure.
bool ApplyEnvironmentEdit(const std::wstring& name, const std::wstring& value);
