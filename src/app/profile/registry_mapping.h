// The registry side of a settings store: the platform's IniFileMapping entry
// that turns a profile name into a view of a per-user key, and the finding of
// that per-user key, which the store then reads and writes directly.
#pragma once

// USE=name: turns '/' into '\' in name (which stays the store's name), makes
// the mapping of its last component to HKEY_CURRENT_USER\Software\<component
// without extension>, and sets root to the per-user key that holds the store.
// Without the rights for the mapping root is still that key, so the settings
// land where the mapping would have put them. root is left empty when an
// existing mapping points anywhere but the current user's registry: then
// the platform's profile calls serve the name. root holds 260 units.
void MapStoreToRegistry(wchar_t* name, wchar_t* root);

// The per-user key that the mapping of mappingName names; fallbackRoot when
// there is no mapping; empty when the mapping is not a per-user one.
void FindMappedRoot(const wchar_t* mappingName, const wchar_t* fallbackRoot, wchar_t* root);

// Creates the per-user key and closes it again, so a mapping's target exists.
void CreateUserKey(const wchar_t* path);

// Whether text starts with prefix, ignoring case.
bool HasPrefixI(const wchar_t* text, const wchar_t* prefix);
