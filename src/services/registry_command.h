// RegistryCommand: what one of getreg, setreg, enumreg and findreg needs
// while it runs: the view it works in (/64), the keys that findreg walks,
// and the platform's key deletion for a view, found at run time.
#pragma once

#include "app/toolkit/handles.h"

#include <windows.h>

#include <memory>
#include <string>
#include <vector>

struct RegistryPath {
    HKEY Root = nullptr;
    std::wstring RootName;
    std::wstring SubKey;
};

class RegistryCommand {
public:
    RegistryCommand();
    ~RegistryCommand();
    RegistryCommand(const RegistryCommand&) = delete;
    RegistryCommand& operator=(const RegistryCommand&) = delete;

    // /32 and /64 only; message 2 and false for any other switch.
    bool ReadSwitches();
    // A root name and key path; message 60 and false when it names none.
    bool SplitPath(const wchar_t* text, RegistryPath& path) const;
    // The root of a name such as HKEY_CURRENT_USER, or null.
    static HKEY RootByName(const wchar_t* name);

    // Deletes a key in the chosen view; false when the platform refused.
    bool DeleteKey(const RegistryPath& path) const;

    int matchCount = 0;
    std::vector<RegistryPath> keyList;
    // Added to every access mask: 0, or KEY_WOW64_64KEY for the 64-bit view.
    REGSAM viewFlag = 0;

private:
    using DeleteKeyExFn = LONG(WINAPI*)(HKEY, LPCWSTR, REGSAM, DWORD);
    HMODULE advapi_ = nullptr;
    DeleteKeyExFn deleteKeyEx_ = nullptr;
    bool system64_ = false;
};

// The four roots by name, in the order findreg searches them.
struct RegistryRoot {
    const wchar_t* Name;
    HKEY Key;
};
extern const RegistryRoot kRegistryRoots[4];

// A big-endian number's bytes in the other order.
inline DWORD SwapBytes(DWORD value)
{
    return (value >> 24) | ((value >> 8) & 0xFF00) | ((value << 8) & 0xFF0000) | (value << 24);
}
