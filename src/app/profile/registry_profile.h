// A settings store kept directly under a per-user registry key: each section
// is a subkey of the root and each key a string value in it, the same layout
// the platform's IniFileMapping gives a "#USR:" mapping. Values read back the
// way the platform's INI reader returns them (blanks at the ends dropped, one
// pair of enclosing quotes removed), so the quoted writer round-trips here as
// it does in a file.
#pragma once

namespace RegistryProfile {

// root: key path under HKEY_CURRENT_USER. A null section lists the sections,
// a null key lists the section's keys, each list as zero-terminated names
// with an extra terminator; a list that does not fit is cut at size - 2.
int ReadString(const wchar_t* root, const wchar_t* section, const wchar_t* key, const wchar_t* defaultText,
               wchar_t* buffer, int size);
int ReadInt(const wchar_t* root, const wchar_t* section, const wchar_t* key, int defaultValue);
// A null text deletes the key, a null key the section, and all three null
// flush the root to disk. On failure the registry's error code is left in
// GetLastError.
bool WriteString(const wchar_t* root, const wchar_t* section, const wchar_t* key, const wchar_t* text);

} // namespace RegistryProfile
