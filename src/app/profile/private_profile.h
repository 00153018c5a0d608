// The platform's private-profile calls on a named INI file, with one guard:
// a write to a file that cannot be written is refused before the platform
// sees it, so the file stays as it was and the platform's own error is left
// in GetLastError for the caller to show.
#pragma once

namespace PrivateProfile {

int ReadString(const wchar_t* file, const wchar_t* section, const wchar_t* key, const wchar_t* defaultText,
               wchar_t* buffer, int size);
int ReadInt(const wchar_t* file, const wchar_t* section, const wchar_t* key, int defaultValue);
// Null text, key, or all three: delete the key, delete the section, flush.
bool WriteString(const wchar_t* file, const wchar_t* section, const wchar_t* key, const wchar_t* text);

} // namespace PrivateProfile
