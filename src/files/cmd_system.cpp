// ver (the shell's and the platform's versions) and mem (memory figures).
#include "app/banner.h"
#include "app/globals.h"
#include "files/dir_layout.h"
#include "lang/builtins.h"
#include "lang/command_args.h"
#include "screen/colours.h"
#include "screen/pager.h"
#include "screen/screen_store.h"

#include <windows.h>

#include <cwchar>

namespace {

void WriteMemoryLine(const wchar_t* label, uint64_t total, uint64_t available)
{
    UseItem(Item::Text);
    TheScreen.Write(label);
    UseItem(Item::Number);
    WriteCommaNumber(total, 18);
    UseItem(Item::Text);
    TheScreen.Write(L" total, ");
    UseItem(Item::Number);
    WriteCommaNumber(available, 18);
    UseItem(Item::Text);
    TheScreen.Write(L" free");
    TheScreen.NewLine();
}

} // namespace

void CmdVer()
{
    if (RejectSwitches() || RejectArguments()) return;
    OSVERSIONINFOW version = PlatformVersion();
    wchar_t text[96];
    std::swprintf(text, 96, L"Windows %lu.%lu (build %lu)", version.dwMajorVersion, version.dwMinorVersion,
                  version.dwBuildNumber);
    UseItem(Item::BoldText);
    TheScreen.Write(L"Ombrel");
    UseItem(Item::Text);
    TheScreen.Write(L" version ");
    UseItem(Item::HighText);
    TheScreen.Write(kShellVersion);
    UseItem(Item::Text);
    TheScreen.Write(L" on ");
    UseItem(Item::HighText);
    TheScreen.Write(text);
    TheScreen.NewLine();
}

void CmdMem()
{
    if (RejectSwitches() || RejectArguments()) return;
    MEMORYSTATUSEX status{};
    status.dwLength = sizeof(status);
    if (!GlobalMemoryStatusEx(&status)) return;
    ListingPager pager;
    WriteMemoryLine(L"Physical memory ", status.ullTotalPhys, status.ullAvailPhys);
    WriteMemoryLine(L"Page file       ", status.ullTotalPageFile, status.ullAvailPageFile);
    WriteMemoryLine(L"Address space   ", status.ullTotalVirtual, status.ullAvailVirtual);
    UseItem(Item::Text);
    TheScreen.Write(L"Memory in use   ");
    UseItem(Item::Number);
    WriteCommaNumber(status.dwMemoryLoad, 18);
    UseItem(Item::Text);
    TheScreen.Write(L" %");
    TheScreen.NewLine();
}
