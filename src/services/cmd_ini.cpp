// getini and setini: keys of a profile file, the program's own settings
// store when no file is named.
#include "app/errors.h"
#include "app/profile/profile.h"
#include "app/toolkit/omdib.h"
#include "lang/builtins.h"
#include "lang/command_args.h"
#include "services/result_list.h"

#include <string>
#include <vector>

namespace {

// The file argument as a full path; a bare name means the current folder,
// not the system folder where the platform would look for it.
std::wstring FileArgument(int index)
{
    if (CommandArgs.ArgCount <= index) return {};
    wchar_t full[kPathMax];
    DWORD length = GetFullPathNameW(CommandArgs.Args[index], kPathMax, full, nullptr);
    if (length == 0 || length >= DWORD(kPathMax)) return CommandArgs.Args[index];
    return full;
}

int ReadText(const std::wstring& file, const wchar_t* section, const wchar_t* key, wchar_t* buffer, int size)
{
    if (file.empty()) return ProfileReadString(section, key, L"", buffer, size);
    return int(GetPrivateProfileStringW(section, key, L"", buffer, DWORD(size), file.c_str()));
}

void WriteText(const std::wstring& file, const wchar_t* section, const wchar_t* key, const wchar_t* text)
{
    if (file.empty()) {
        ProfileWriteString(section, key, text);
        return;
    }
    // The platform writes a read-only file when run with full rights; it is
    // the user's to protect, so it is left alone.
    DWORD attributes = GetFileAttributesW(file.c_str());
    if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY)) return;
    WritePrivateProfileStringW(section, key, text, file.c_str());
}

} // namespace

void CmdGetini()
{
    if (CommandArgs.ArgCount < 2 || CommandArgs.ArgCount > 3) {
        ReportId(1);
        return;
    }
    std::wstring file = FileArgument(2);
    const wchar_t* section = CommandArgs.Args[0];
    const wchar_t* key = CommandArgs.Args[1];
    std::vector<wchar_t> buffer(kLineMax + 2, 0);
    if (key[0]) {
        ReadText(file, section, key, buffer.data(), kLineMax);
        SetResultVariable(L"GETINI", buffer.data());
        return;
    }
    ReadText(file, section, nullptr, buffer.data(), kLineMax);
    NameList names;
    for (const wchar_t* name = buffer.data(); *name; name += lstrlenW(name) + 1) names.Add(name);
    SetResultVariable(L"GETINI", names.Text());
}

void CmdSetini()
{
    if (CommandArgs.ArgCount < 2 || CommandArgs.ArgCount > 3) {
        ReportId(60);
        return;
    }
    std::wstring file = FileArgument(2);
    const wchar_t* section = CommandArgs.Args[0];
    std::wstring entry = CommandArgs.Args[1];
    if (entry.empty()) {
        WriteText(file, section, nullptr, nullptr);
        return;
    }
    size_t equals = entry.find(L'=');
    std::wstring key = entry.substr(0, equals);
    std::wstring value = equals == std::wstring::npos ? std::wstring() : entry.substr(equals + 1);
    WriteText(file, section, key.c_str(), value.empty() ? nullptr : value.c_str());
}
