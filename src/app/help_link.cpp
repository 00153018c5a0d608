#include "app/help_link.h"

#include "app/globals.h"
#include "app/toolkit/omdib.h"

void HelpLink(HelpCommand command, const wchar_t* keyword)
{
    if (!MainWindow) return;
    wchar_t helpFile[kPathMax];
    DWORD n = GetModuleFileNameW(nullptr, helpFile, kPathMax);
    if (n == 0 || n >= kPathMax) return;
    wchar_t drive[kPathMax], directory[kPathMax], name[kPathMax], extension[kPathMax];
    FNSplitW(helpFile, drive, directory, name, extension);
    FNMergeW(helpFile, drive, directory, L"OMB_REL", L".HLP");
    if (GetFileAttributesW(helpFile) == INVALID_FILE_ATTRIBUTES && command != HelpCloseAll) return;
    WinHelpW(MainWindow, helpFile, UINT(command), reinterpret_cast<ULONG_PTR>(keyword));
}
