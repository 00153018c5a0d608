#include "dialogs/trace_dialog.h"

#include "app/globals.h"
#include "app/help_link.h"
#include "dialogs/dialog_template.h"
#include "dialogs/environment_dialog.h"
#include "lang/batch_program.h"

#include <cstdint>
#include <string>

namespace {

constexpr int kHelpPage = 124;

DialogTemplate TraceLayout()
{
    DialogTemplate layout(L"Trace", WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_MINIMIZEBOX, 300, 206);
    layout.Add(DialogTemplate::ListBox, L"", TraceDialog::kLines,
               LBS_OWNERDRAWFIXED | LBS_HASSTRINGS | LBS_NOINTEGRALHEIGHT | LBS_NOTIFY | WS_VSCROLL | WS_HSCROLL |
                   WS_BORDER | WS_TABSTOP,
               7, 7, 286, 104);
    layout.Add(DialogTemplate::Static, L"Line:", -1, SS_LEFT, 7, 116, 24, 8);
    layout.Add(DialogTemplate::Static, L"", TraceDialog::kLineNumber, SS_LEFT, 32, 116, 40, 8);
    layout.Add(DialogTemplate::Static, L"Unprocessed command", -1, SS_LEFT, 7, 128, 286, 8);
    layout.Add(DialogTemplate::Edit, L"", TraceDialog::kSource, ES_READONLY | ES_AUTOHSCROLL | WS_BORDER | WS_TABSTOP,
               7, 138, 286, 12);
    layout.Add(DialogTemplate::Static, L"Processed command to be executed", -1, SS_LEFT, 7, 155, 286, 8);
    layout.Add(DialogTemplate::Edit, L"", TraceDialog::kProcessed,
               ES_READONLY | ES_AUTOHSCROLL | WS_BORDER | WS_TABSTOP, 7, 165, 286, 12);
    struct ButtonPlace {
        const wchar_t* Text;
        int Id;
        short X;
        short Width;
    };
    const ButtonPlace buttons[] = {
        {L"&Step", TraceDialog::kStep, 7, 50},         {L"&Run", TraceDialog::kRun, 62, 50},
        {L"Sto&p", TraceDialog::kStop, 117, 50},        {L"&Variables...", TraceDialog::kVariables, 172, 64},
        {L"&Help", TraceDialog::kHelp, 243, 50},
    };
    for (const ButtonPlace& button : buttons)
        layout.Add(DialogTemplate::Button, button.Text, button.Id,
                   (button.Id == TraceDialog::kStep ? BS_DEFPUSHBUTTON : BS_PUSHBUTTON) | WS_TABSTOP, button.X, 185,
                   button.Width, 14);
    return layout;
}

} // namespace

TraceDialog::~TraceDialog()
{
    if (window_) DestroyWindow(window_);
}

bool TraceDialog::Open(const std::wstring& title)
{
    Close();
    DialogTemplate layout = TraceLayout();
    window_ = CreateDialogIndirectParamW(AppInstance, layout.Get(), MainWindow, Procedure,
                                         reinterpret_cast<LPARAM>(this));
    if (!window_) return false;
    SetWindowTextW(window_, title.c_str());
    ShowWindow(window_, SW_SHOW);
    return true;
}

void TraceDialog::Close()
{
    if (!window_) return;
    HWND closing = window_;
    window_ = nullptr;
    highlight_ = -1;
    DestroyWindow(closing);
    if (MainWindow) SetFocus(MainWindow);
}

void TraceDialog::FillList(const std::vector<std::wstring>& lines)
{
    if (!window_) return;
    HWND list = GetDlgItem(window_, kLines);
    SendMessageW(list, WM_SETREDRAW, FALSE, 0);
    SendMessageW(list, LB_RESETCONTENT, 0, 0);
    for (const std::wstring& line : lines)
        SendMessageW(list, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(line.c_str()));
    SendMessageW(list, WM_SETREDRAW, TRUE, 0);
    InvalidateRect(list, nullptr, TRUE);
    highlight_ = -1;
}

void TraceDialog::Highlight(int index)
{
    if (!window_) return;
    highlight_ = index;
    // The selection keeps the current line in view; the drawing inverts it.
    SendDlgItemMessageW(window_, kLines, LB_SETCURSEL, WPARAM(index), 0);
    InvalidateRect(GetDlgItem(window_, kLines), nullptr, TRUE);
    if (index < 0) SetDlgItemTextW(window_, kLineNumber, L"");
    else SetDlgItemInt(window_, kLineNumber, UINT(index + 1), FALSE);
}

void TraceDialog::ShowStage(const wchar_t* expanded, const wchar_t* source)
{
    if (!window_) return;
    SetDlgItemTextW(window_, kProcessed, expanded);
    if (source) SetDlgItemTextW(window_, kSource, source);
}

void TraceDialog::EnableStepping(bool enable)
{
    if (!window_) return;
    HWND step = GetDlgItem(window_, kStep);
    EnableWindow(step, enable);
    EnableWindow(GetDlgItem(window_, kStop), enable);
    if (enable) {
        SetFocus(step);
        return;
    }
    // The keys of the waiting command go to the main window, or to a dialog
    // of its own on top of it.
    HWND top = MainWindow ? GetLastActivePopup(MainWindow) : nullptr;
    if (top == window_) top = MainWindow;
    if (top) SetFocus(top);
}

void TraceDialog::WaitForUser()
{
    if (!window_ || !IsWindow(window_)) {
        TraceStopRun();
        return;
    }
    MSG message;
    BOOL got = GetMessageW(&message, nullptr, 0, 0);
    if (got <= 0) {
        // The program is ending: leave the quit for the outer loop, and stop.
        if (got == 0) PostQuitMessage(int(message.wParam));
        TraceStopRun();
        return;
    }
    if (IsDialogMessageW(window_, &message)) return;
    TranslateMessage(&message);
    DispatchMessageW(&message);
}

INT_PTR CALLBACK TraceDialog::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    // The list is measured while it is created, before WM_INITDIALOG.
    if (message == WM_MEASUREITEM) {
        MeasureItem(window, *reinterpret_cast<MEASUREITEMSTRUCT*>(lParam));
        return TRUE;
    }
    if (message == WM_INITDIALOG) {
        SetWindowLongPtrW(window, DWLP_USER, lParam);
        return TRUE;
    }
    auto* dialog = reinterpret_cast<TraceDialog*>(GetWindowLongPtrW(window, DWLP_USER));
    if (!dialog) return FALSE;
    return dialog->OnMessage(message, wParam, lParam);
}

INT_PTR TraceDialog::OnMessage(UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_COMMAND:
        // Escape arrives as the command of id 2 with no control behind it;
        // 2 is also Run's id, and Escape must not run the program on.
        if (LOWORD(wParam) == IDCANCEL && lParam == 0) return TRUE;
        return OnCommand(LOWORD(wParam), HIWORD(wParam));
    case WM_DRAWITEM:
        DrawItem(*reinterpret_cast<const DRAWITEMSTRUCT*>(lParam));
        return TRUE;
    case WM_CLOSE:
        // Closing the window is the same as Stop.
        TraceStopRun();
        return TRUE;
    default:
        return FALSE;
    }
}

bool TraceDialog::OnCommand(int id, int code)
{
    switch (id) {
    case kStep:
        TraceGrantStep();
        return true;
    case kRun:
        TraceRunFreely();
        return true;
    case kStop:
        TraceStopRun();
        return true;
    case kVariables:
        ShowEnvironmentDialog(window_);
        return true;
    case kHelp:
        // The help link takes a context number in place of a keyword.
        HelpLink(HelpContext, nullptr, kHelpPage);
        return true;
    case kLines:
        // A click in the list must not move the current line.
        if (code == LBN_SELCHANGE) SendDlgItemMessageW(window_, kLines, LB_SETCURSEL, WPARAM(highlight_), 0);
        return true;
    default:
        return false;
    }
}

void TraceDialog::MeasureItem(HWND window, MEASUREITEMSTRUCT& item)
{
    HDC dc = GetDC(window);
    HGDIOBJ old = SelectObject(dc, reinterpret_cast<HGDIOBJ>(SendMessageW(window, WM_GETFONT, 0, 0)));
    TEXTMETRICW metrics{};
    GetTextMetricsW(dc, &metrics);
    SelectObject(dc, old);
    ReleaseDC(window, dc);
    item.itemHeight = UINT(metrics.tmHeight);
}

void TraceDialog::DrawItem(const DRAWITEMSTRUCT& item)
{
    if (item.CtlID != UINT(kLines) || int(item.itemID) < 0) return;
    HDC dc = item.hDC;
    RECT area = item.rcItem;
    FillRect(dc, &area, GetSysColorBrush(COLOR_WINDOW));
    LRESULT length = SendMessageW(item.hwndItem, LB_GETTEXTLEN, item.itemID, 0);
    if (length > 0) {
        std::wstring text(size_t(length) + 1, L'\0');
        SendMessageW(item.hwndItem, LB_GETTEXT, item.itemID, reinterpret_cast<LPARAM>(text.data()));
        SetBkMode(dc, TRANSPARENT);
        SetTextColor(dc, GetSysColor(COLOR_WINDOWTEXT));
        RECT textArea = area;
        textArea.left += 2;
        DrawTextW(dc, text.c_str(), int(length), &textArea, DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX | DT_EXPANDTABS);
    }
    if (int(item.itemID) == highlight_) InvertRect(dc, &area);
}
