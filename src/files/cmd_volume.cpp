// Commands about a drive: vol (label and serial number), label (set or show
// the label), disk (type, file system and sizes), diskfree and diskused (the
// free and used bytes into variables of their names).
#include "app/errors.h"
#include "app/toolkit/omdib.h"
#include "files/dir_layout.h"
#include "lang/builtins.h"
#include "lang/command_args.h"
#include "lang/variables.h"
#include "screen/colours.h"
#include "screen/screen_store.h"

#include <cwchar>
#include <string>

namespace {

// The root of the drive named by argument i ("C", "C:", "C:\..."), or of the
// current drive; empty after message 9 for anything else.
std::wstring DriveRoot(int i)
{
    if (i > CommandArgs.ArgCount) {
        wchar_t here[MAX_PATH];
        DWORD n = GetCurrentDirectoryW(MAX_PATH, here);
        if (n >= 2 && n < MAX_PATH && here[1] == L':') return std::wstring(here, 2) + L'\\';
        return L"\\";
    }
    const wchar_t* arg = CommandArgs.Args[i - 1];
    wchar_t letter = ToUpperUnit(arg[0]);
    bool plain = letter >= L'A' && letter <= L'Z' &&
                 (arg[1] == 0 || (arg[1] == L':' && (arg[2] == 0 || (arg[2] == L'\\' && arg[3] == 0))));
    if (!plain) {
        ReportId(9);
        return {};
    }
    return std::wstring(1, letter) + L":\\";
}

struct DriveSpace {
    uint64_t total = 0;
    uint64_t free = 0;
};

bool ReadSpace(const std::wstring& root, DriveSpace& space)
{
    ULARGE_INTEGER available, total, free;
    if (!GetDiskFreeSpaceExW(root.c_str(), &available, &total, &free)) {
        TheErrors.ReportPlatformError(GetLastError());
        return false;
    }
    space.total = total.QuadPart;
    space.free = free.QuadPart;
    return true;
}

// The one argument a drive command takes, as a root; empty after a message.
std::wstring OnlyDrive()
{
    if (RejectSwitches()) return {};
    if (CommandArgs.ArgCount > 1) {
        ReportId(1);
        return {};
    }
    return DriveRoot(1);
}

// The free or the used bytes of the drive of the one argument into variable.
void StoreDriveBytes(const wchar_t* variable, bool used)
{
    SetVariable(variable, L"");
    std::wstring root = OnlyDrive();
    DriveSpace space;
    if (root.empty() || !ReadSpace(root, space)) return;
    wchar_t text[32];
    SetVariable(variable, ui64tow_ex(used ? space.total - space.free : space.free, text, 10));
}

void WriteLabelled(const wchar_t* label, const wchar_t* value)
{
    UseItem(Item::Text);
    TheScreen.Write(label);
    UseItem(Item::HighText);
    TheScreen.Write(value);
    TheScreen.NewLine();
}

void WriteBytesLine(const wchar_t* label, uint64_t bytes)
{
    UseItem(Item::Text);
    TheScreen.Write(label);
    UseItem(Item::Number);
    WriteCommaNumber(bytes, 20);
    UseItem(Item::Text);
    TheScreen.Write(L" bytes");
    TheScreen.NewLine();
}

const wchar_t* DriveTypeName(UINT type)
{
    switch (type) {
    case DRIVE_REMOVABLE: return L"removable";
    case DRIVE_FIXED: return L"fixed";
    case DRIVE_REMOTE: return L"network";
    case DRIVE_CDROM: return L"CD-ROM";
    case DRIVE_RAMDISK: return L"RAM disk";
    default: return L"unknown";
    }
}

} // namespace

void CmdVol()
{
    std::wstring root = OnlyDrive();
    if (root.empty()) return;
    if (!WriteVolumeHeading(root.c_str())) TheErrors.ReportPlatformError(GetLastError());
}

// label [drive:] [text]: sets the label, or shows it when no text is given.
void CmdLabel()
{
    if (RejectSwitches()) return;
    int first = 1;
    std::wstring root;
    if (CommandArgs.ArgCount >= 1 && CommandArgs.Args[0][0] && CommandArgs.Args[0][1] == L':') {
        root = DriveRoot(1);
        if (root.empty()) return;
        first = 2;
    } else {
        root = DriveRoot(CommandArgs.ArgCount + 1);
    }
    if (first > CommandArgs.ArgCount) {
        if (!WriteVolumeHeading(root.c_str())) TheErrors.ReportPlatformError(GetLastError());
        return;
    }
    std::wstring text;
    for (int i = first; i <= CommandArgs.ArgCount; ++i) text += (text.empty() ? L"" : L" ") + std::wstring(CommandArgs.Args[i - 1]);
    if (!SetVolumeLabelW(root.c_str(), text.c_str())) TheErrors.ReportPlatformError(GetLastError());
}

void CmdDisk()
{
    std::wstring root = OnlyDrive();
    if (root.empty()) return;
    wchar_t label[MAX_PATH + 1] = {}, system[MAX_PATH + 1] = {};
    DWORD serial = 0, longest = 0, flags = 0;
    if (!GetVolumeInformationW(root.c_str(), label, MAX_PATH + 1, &serial, &longest, &flags, system, MAX_PATH + 1))
        return TheErrors.ReportPlatformError(GetLastError());
    DriveSpace space;
    if (!ReadSpace(root, space)) return;
    wchar_t number[16];
    std::swprintf(number, 16, L"%04X-%04X", unsigned(HIWORD(serial)), unsigned(LOWORD(serial)));
    WriteLabelled(L"Drive         ", root.c_str());
    WriteLabelled(L"Type          ", DriveTypeName(GetDriveTypeW(root.c_str())));
    WriteLabelled(L"Label         ", label[0] ? label : L"(none)");
    WriteLabelled(L"Serial number ", number);
    WriteLabelled(L"File system   ", system);
    WriteBytesLine(L"Total ", space.total);
    WriteBytesLine(L"Used  ", space.total - space.free);
    WriteBytesLine(L"Free  ", space.free);
}

void CmdDiskfree() { StoreDriveBytes(L"DISKFREE", false); }

void CmdDiskused() { StoreDriveBytes(L"DISKUSED", true); }
