#include "dialogs/environment_dialog.h"

#include "app/globals.h"
#include "app/toolkit/omdib.h"
#include "dialogs/dialog_template.h"
#include "lang/environment_list.h"

#include <memory>
#include <string>
#include <vector>

namespace {

constexpr int kList = kEnvironmentList;
constexpr int kValue = kEnvironmentValue;
constexpr int kSet = kEnvironmentSet;

struct EnvironmentDialog {
    HWND Window = nullptr;
    std::vector<EnvironmentEntry> Entries;

    // Lists the variables again, keeping the one named selected.
    void Fill(const std::wstring& selected)
    {
        Entries = ListEnvironment();
        HWND list = GetDlgItem(Window, kList);
        SendMessageW(list, LB_RESETCONTENT, 0, 0);
        int selection = LB_ERR;
        for (const EnvironmentEntry& entry : Entries) {
            std::wstring shown = entry.Name + L"=" + entry.Value;
            LRESULT at = SendMessageW(list, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(shown.c_str()));
            if (entry.Name == selected) selection = int(at);
        }
        SendMessageW(list, LB_SETCURSEL, WPARAM(selection), 0);
    }

    // The list is unsorted, so its indices are those of Entries.
    const EnvironmentEntry* Selected() const
    {
        LRESULT at = SendDlgItemMessageW(Window, kList, LB_GETCURSEL, 0, 0);
        if (at < 0 || size_t(at) >= Entries.size()) return nullptr;
        return &Entries[size_t(at)];
    }

    void ShowSelectedValue()
    {
        const EnvironmentEntry* entry = Selected();
        SetDlgItemTextW(Window, kValue, entry ? entry->Value.c_str() : L"");
    }

    void ApplyValue()
    {
        const EnvironmentEntry* entry = Selected();
        if (!entry) return;
        auto value = std::make_unique<wchar_t[]>(kLineMax);
        GetDlgItemTextW(Window, kValue, value.get(), kLineMax);
        std::wstring name = entry->Name;
        if (ApplyEnvironmentEdit(name, value.get())) Fill(name);
    }

    INT_PTR OnCommand(int id, int code)
    {
        if (id == kList && code == LBN_SELCHANGE) ShowSelectedValue();
        else if (id == kSet) ApplyValue();
        else if (id == IDCANCEL) EndDialog(Window, 0);
        else return FALSE;
        return TRUE;
    }
};

INT_PTR CALLBACK EnvironmentProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_INITDIALOG) {
        auto* dialog = reinterpret_cast<EnvironmentDialog*>(lParam);
        SetWindowLongPtrW(window, DWLP_USER, lParam);
        dialog->Window = window;
        dialog->Fill(L"");
        return TRUE;
    }
    auto* dialog = reinterpret_cast<EnvironmentDialog*>(GetWindowLongPtrW(window, DWLP_USER));
    if (!dialog) return FALSE;
    if (message == WM_COMMAND) return dialog->OnCommand(LOWORD(wParam), HIWORD(wParam));
    if (message == WM_CLOSE) {
        EndDialog(window, 0);
        return TRUE;
    }
    return FALSE;
}

} // namespace

void ShowEnvironmentDialog(HWND owner)
{
    DialogTemplate layout(L"Environment Variables", WS_POPUP | WS_CAPTION | WS_SYSMENU | DS_MODALFRAME, 260, 190);
    layout.Add(DialogTemplate::ListBox, L"", kList,
               LBS_NOTIFY | LBS_NOINTEGRALHEIGHT | WS_VSCROLL | WS_HSCROLL | WS_BORDER | WS_TABSTOP, 7, 7, 246, 130);
    layout.Add(DialogTemplate::Static, L"&Value:", -1, SS_LEFT, 7, 144, 40, 8);
    layout.Add(DialogTemplate::Edit, L"", kValue, ES_AUTOHSCROLL | WS_BORDER | WS_TABSTOP, 7, 154, 246, 12);
    layout.Add(DialogTemplate::Button, L"&Set", kSet, BS_DEFPUSHBUTTON | WS_TABSTOP, 146, 171, 50, 14);
    layout.Add(DialogTemplate::Button, L"Close", IDCANCEL, BS_PUSHBUTTON | WS_TABSTOP, 203, 171, 50, 14);
    EnvironmentDialog dialog;
    DialogBoxIndirectParamW(AppInstance, layout.Get(), owner, EnvironmentProcedure,
                            reinterpret_cast<LPARAM>(&dialog));
}
