#include "input/history_window.h"

#include "app/globals.h"
#include "app/profile/profile.h"
#include "app/run_line.h"
#include "dialogs/dialog_template.h"
#include "input/editor.h"
#include "input/history.h"

HWND HistoryListWindow = nullptr;
int ListInFront = 0;

namespace {

constexpr const wchar_t* kSection = L"HistoryList";
constexpr int kList = 100;
constexpr UINT kKeepInFront = 212;
constexpr UINT kSnapTop = 213;
constexpr UINT kSnapBottom = 214;
constexpr UINT kSnapLeft = 215;
constexpr UINT kSnapRight = 216;
constexpr UINT kClear = 220;

HWND List() { return GetDlgItem(HistoryListWindow, kList); }

void SelectLast()
{
    LRESULT rows = SendMessageW(List(), LB_GETCOUNT, 0, 0);
    if (rows > 0) SendMessageW(List(), LB_SETCURSEL, WPARAM(rows - 1), 0);
}

void FillList()
{
    SendMessageW(List(), LB_RESETCONTENT, 0, 0);
    for (int i = 0; i < TheHistory.Count(); ++i)
        if (const wchar_t* entry = TheHistory.Entry(i)) SendMessageW(List(), LB_ADDSTRING, 0, LPARAM(entry));
    SelectLast();
}

void PlaceInFront()
{
    SetWindowPos(HistoryListWindow, ListInFront ? HWND_TOPMOST : HWND_NOTOPMOST, 0, 0, 0, 0,
                 SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    CheckMenuItem(GetSystemMenu(HistoryListWindow, FALSE), kKeepInFront, ListInFront ? MF_CHECKED : MF_UNCHECKED);
}

void AddMenuItems()
{
    HMENU menu = GetSystemMenu(HistoryListWindow, FALSE);
    HMENU place = CreatePopupMenu();
    AppendMenuW(place, MF_STRING, kSnapTop, L"&Top");
    AppendMenuW(place, MF_STRING, kSnapBottom, L"&Bottom");
    AppendMenuW(place, MF_STRING, kSnapLeft, L"&Left");
    AppendMenuW(place, MF_STRING, kSnapRight, L"&Right");
    AppendMenuW(menu, MF_SEPARATOR, 0, nullptr);
    AppendMenuW(menu, MF_STRING, kClear, L"C&lear");
    AppendMenuW(menu, MF_POPUP, UINT_PTR(place), L"&Position");
    AppendMenuW(menu, MF_STRING, kKeepInFront, L"&Keep in front");
}

// The saved place and size; a corner off the screen counts as 0.
void RestorePlace()
{
    int x = ProfileReadInt(kSection, L"XOrigin", 0);
    int y = ProfileReadInt(kSection, L"YOrigin", 0);
    int width = ProfileReadInt(kSection, L"Width", 100);
    int height = ProfileReadInt(kSection, L"Height", 200);
    if (x < 0 || x >= GetSystemMetrics(SM_CXSCREEN)) x = 0;
    if (y < 0 || y >= GetSystemMetrics(SM_CYSCREEN)) y = 0;
    SetWindowPos(HistoryListWindow, nullptr, x, y, width, height, SWP_NOZORDER | SWP_NOACTIVATE);
}

void SavePlace()
{
    if (IsZoomed(HistoryListWindow) || IsIconic(HistoryListWindow)) return;
    RECT place;
    GetWindowRect(HistoryListWindow, &place);
    ProfileWriteInt(kSection, L"XOrigin", place.left);
    ProfileWriteInt(kSection, L"YOrigin", place.top);
    ProfileWriteInt(kSection, L"Width", place.right - place.left);
    ProfileWriteInt(kSection, L"Height", place.bottom - place.top);
}

void Snap(UINT edge)
{
    RECT work, place;
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0);
    GetWindowRect(HistoryListWindow, &place);
    int x = place.left, y = place.top;
    if (edge == kSnapTop) y = work.top;
    if (edge == kSnapBottom) y = work.bottom - (place.bottom - place.top);
    if (edge == kSnapLeft) x = work.left;
    if (edge == kSnapRight) x = work.right - (place.right - place.left);
    SetWindowPos(HistoryListWindow, nullptr, x, y, 0, 0, SWP_NOZORDER | SWP_NOSIZE);
}

void RunSelectedRow()
{
    if (CommandRunning) return;
    LRESULT row = SendMessageW(List(), LB_GETCURSEL, 0, 0);
    if (row < 0 || SendMessageW(List(), LB_GETTEXTLEN, WPARAM(row), 0) >= kLineMax) return;
    wchar_t text[kLineMax];
    SendMessageW(List(), LB_GETTEXT, WPARAM(row), LPARAM(text));
    SetActiveWindow(MainWindow);
    SetFocus(MainWindow);
    TheEditor.TypeLine(text, true);
    if (OpenGroup.Empty()) RunTopLevelLine();
}

// The previous row, cyclically, that starts with the letter.
void SearchBackwards(wchar_t letter)
{
    int rows = int(SendMessageW(List(), LB_GETCOUNT, 0, 0));
    if (rows <= 0) return;
    int start = int(SendMessageW(List(), LB_GETCURSEL, 0, 0));
    if (start < 0) start = rows;
    wchar_t wanted = ToUpperUnit(letter);
    for (int step = 1; step <= rows; ++step) {
        int row = ((start - step) % rows + rows) % rows;
        const wchar_t* entry = TheHistory.Entry(row);
        if (entry && ToUpperUnit(entry[0]) == wanted) {
            SendMessageW(List(), LB_SETCURSEL, WPARAM(row), 0);
            return;
        }
    }
}

INT_PTR OnKey(WPARAM wParam)
{
    int key = LOWORD(wParam);
    if (key == VK_RETURN) {
        RunSelectedRow();
        return -2;
    }
    if (key == VK_ESCAPE && GetKeyState(VK_SHIFT) < 0) {
        SetActiveWindow(MainWindow);
        SetFocus(MainWindow);
        return -2;
    }
    return -1;
}

WNDPROC listProcedure = nullptr;

// The list's own search by typed letter runs forwards; this one replaces it.
LRESULT CALLBACK ListProcedure(HWND list, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_CHAR && wParam > L' ') {
        SearchBackwards(wchar_t(wParam));
        return 0;
    }
    return CallWindowProcW(listProcedure, list, message, wParam, lParam);
}

void Close()
{
    ProfileWriteInt(kSection, L"Display", 0);
    DestroyWindow(HistoryListWindow);
    HistoryListWindow = nullptr;
}

INT_PTR OnSystemCommand(WPARAM command)
{
    if (command == kClear) TheHistory.HistoryClear();
    else if (command == kKeepInFront) {
        ListInFront = !ListInFront;
        ProfileWriteInt(kSection, L"InFront", ListInFront);
        PlaceInFront();
    } else if (command >= kSnapTop && command <= kSnapRight) Snap(UINT(command));
    else if ((command & 0xFFF0) == SC_CLOSE) Close();
    else return FALSE;
    return TRUE;
}

INT_PTR CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_INITDIALOG: return TRUE;
    case WM_VKEYTOITEM: return OnKey(wParam);
    case WM_COMMAND:
        if (LOWORD(wParam) == kList && HIWORD(wParam) == LBN_DBLCLK) RunSelectedRow();
        if (LOWORD(wParam) == IDCANCEL) Close();
        return TRUE;
    case WM_SYSCOMMAND: return OnSystemCommand(wParam);
    case WM_CLOSE: Close(); return TRUE;
    case WM_SIZE:
        MoveWindow(GetDlgItem(window, kList), 0, 0, LOWORD(lParam), HIWORD(lParam), TRUE);
        if (HistoryListWindow) SavePlace();
        return TRUE;
    case WM_MOVE:
        if (HistoryListWindow) SavePlace();
        return TRUE;
    default: return FALSE;
    }
}

} // namespace

void OpenHistoryWindow()
{
    // The console program has no window to keep it beside.
    if (!MainWindow) return;
    ProfileWriteInt(kSection, L"Display", 1);
    if (HistoryListWindow) {
        SetWindowPos(HistoryListWindow, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE);
        return;
    }
    DialogTemplate layout(L"History", WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_THICKFRAME, 100, 150);
    layout.Add(DialogTemplate::ListBox, L"", kList,
               LBS_NOTIFY | LBS_NOINTEGRALHEIGHT | LBS_WANTKEYBOARDINPUT | WS_VSCROLL | WS_HSCROLL | WS_TABSTOP, 0, 0,
               100, 150);
    HWND window = CreateDialogIndirectParamW(AppInstance, layout.Get(), nullptr, Procedure, 0);
    if (!window) return;
    HistoryListWindow = window;
    AddMenuItems();
    listProcedure = reinterpret_cast<WNDPROC>(
        SetWindowLongPtrW(List(), GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(ListProcedure)));
    ListInFront = ProfileReadInt(kSection, L"InFront", 0) != 0;
    RestorePlace();
    RECT client;
    GetClientRect(window, &client);
    MoveWindow(List(), 0, 0, client.right, client.bottom, TRUE);
    FillList();
    EnableWindow(List(), !CommandRunning);
    PlaceInFront();
    ShowWindow(window, SW_SHOWNOACTIVATE);
    if (MainWindow) SetForegroundWindow(MainWindow);
}

void RestoreHistoryWindow()
{
    if (ProfileReadInt(kSection, L"Display", 0)) OpenHistoryWindow();
}

void HistoryWindowToFront()
{
    if (!HistoryListWindow) return;
    SetActiveWindow(HistoryListWindow);
    SetFocus(List());
}

void EnableHistoryWindow(bool enable)
{
    if (HistoryListWindow) EnableWindow(List(), enable);
}

void HistoryWindowAppend(const wchar_t* text)
{
    if (!HistoryListWindow) return;
    SendMessageW(List(), LB_ADDSTRING, 0, LPARAM(text));
    SelectLast();
}

void HistoryWindowDropFirst()
{
    if (HistoryListWindow) SendMessageW(List(), LB_DELETESTRING, 0, 0);
}

void HistoryWindowClearRows()
{
    if (HistoryListWindow) SendMessageW(List(), LB_RESETCONTENT, 0, 0);
}
