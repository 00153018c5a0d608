// capture: switches console capture on and off and keeps CAPTURE.LST, the
// programs that run without it.
//
//   capture            lists the entries
//   capture on|off     sets the Capture setting
//   capture PATH       adds a console program
//   capture /d PATH    removes it
#include "app/errors.h"
#include "app/profile/profile.h"
#include "exec/capture_list.h"
#include "exec/capture_settings.h"
#include "exec/program_search.h"
#include "files/arg_paths.h"
#include "lang/builtins.h"
#include "lang/command_args.h"
#include "screen/colours.h"
#include "screen/pager.h"
#include "screen/screen_store.h"

#include <windows.h>

namespace {

constexpr int kConsoleKind = 2;

void WriteItem(Item item, const wchar_t* text)
{
    UseItem(item);
    TheScreen.Write(text);
}

void ListEntries()
{
    ListingPager pager;
    WriteItem(Item::HighText, L"     No-Capture List");
    TheScreen.NewLine();
    TheScreen.NewLine();
    std::vector<std::wstring> entries = CaptureEntries();
    for (const std::wstring& entry : entries) {
        if (TheScreen.BreakFlag) return;
        WriteItem(Item::FileName, (L" " + entry).c_str());
        TheScreen.NewLine();
    }
    if (!entries.empty()) TheScreen.NewLine();
    UseItem(Item::Number);
    TheScreen.FieldWidth = 6;
    TheScreen.CommaNext = 1;
    TheScreen.WriteInt(int32_t(entries.size()));
    WriteItem(Item::HighText, L" program(s) found");
    TheScreen.NewLine();
}

void SetCapture(bool on)
{
    if (!ProfileWriteInt(L"Ombrel", L"Capture", on ? 1 : 0)) {
        TheErrors.ReportPlatformError(GetLastError());
        return;
    }
    TheCaptureSettings.Capture = on ? 1 : 0;
    WriteItem(Item::HighText, L"Capture is ");
    WriteItem(Item::Number, on ? L"ON" : L"OFF");
    TheScreen.NewLine();
}

void AddEntry(const wchar_t* path)
{
    DWORD attributes = GetFileAttributesW(path);
    if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_DIRECTORY)) {
        ReportId(3);
        return;
    }
    if (ExecutableKind(path) != kConsoleKind) {
        ReportId(6);
        return;
    }
    if (AddCaptureEntry(path) == ListChange::Failed) TheErrors.ReportPlatformError(GetLastError());
}

void RemoveEntry(const wchar_t* path)
{
    ListChange change = RemoveCaptureEntry(path);
    if (change == ListChange::NoSuchEntry) ReportId(12);
    else if (change == ListChange::Failed) TheErrors.ReportPlatformError(GetLastError());
}

} // namespace

void CmdCapture()
{
    bool remove = false;
    for (const wchar_t* p = CommandArgs.Switches; *p; ++p) {
        if (*p == L'-') continue;
        if (*p != L'd') {
            ReportId(2);
            return;
        }
        remove = true;
    }
    if (CommandArgs.ArgCount > 1) {
        ReportId(9);
        return;
    }
    if (CommandArgs.ArgCount == 0) {
        ListEntries();
        return;
    }
    const wchar_t* word = CommandArgs.Args[0];
    if (lstrcmpiW(word, L"on") == 0 || lstrcmpiW(word, L"off") == 0) {
        SetCapture(lstrcmpiW(word, L"on") == 0);
        return;
    }
    const wchar_t* path = ArgFullPath(1);
    if (!path || !*path) {
        ReportId(3);
        return;
    }
    if (remove) RemoveEntry(path);
    else AddEntry(path);
}
