#include "app/help_link.h"

#include "app/globals.h"
#include "app/toolkit/omdib.h"

namespace {

// The viewer's keyword request, laid out as the viewer expects it.
struct KeywordLink {
    int cbStruct;
    BOOL fReserved;
    const wchar_t* pszKeywords;
    const wchar_t* pszUrl;
    const wchar_t* pszMsgText;
    const wchar_t* pszMsgTitle;
    const wchar_t* pszWindow;
    BOOL fIndexOnFail;
};

using HtmlHelpFn = HWND(WINAPI*)(HWND, const wchar_t*, UINT, DWORD_PTR);

// The viewer lives in a library that is loaded on first use only.
HtmlHelpFn Viewer()
{
    static HtmlHelpFn viewer = [] {
        HMODULE library = LoadLibraryW(L"hhctrl.ocx");
        return library ? reinterpret_cast<HtmlHelpFn>(reinterpret_cast<void*>(GetProcAddress(library, "HtmlHelpW")))
                       : nullptr;
    }();
    return viewer;
}

bool HelpFile(wchar_t* path)
{
    DWORD n = GetModuleFileNameW(nullptr, path, kPathMax);
    if (n == 0 || n >= kPathMax) return false;
    wchar_t drive[kPathMax], directory[kPathMax], name[kPathMax], extension[kPathMax];
    FNSplitW(path, drive, directory, name, extension);
    FNMergeW(path, drive, directory, L"OMB_REL", L".CHM");
    return GetFileAttributesW(path) != INVALID_FILE_ATTRIBUTES;
}

} // namespace

void HelpLink(HelpCommand command, const wchar_t* keyword, uint32_t context)
{
    if (!MainWindow) return;
    HtmlHelpFn viewer = Viewer();
    if (!viewer) return;
    if (command == HelpCloseAll) {
        viewer(nullptr, nullptr, HelpCloseAll, 0);
        return;
    }
    wchar_t file[kPathMax];
    if (!HelpFile(file)) return;
    KeywordLink link{sizeof(KeywordLink), FALSE, keyword, nullptr, nullptr, nullptr, nullptr, TRUE};
    DWORD_PTR data = command == HelpKeyword   ? reinterpret_cast<DWORD_PTR>(&link)
                     : command == HelpContext ? DWORD_PTR(context)
                                              : 0;
    viewer(MainWindow, file, UINT(command), data);
}
