#include "app/main_window.h"

#include "app/globals.h"
#include "app/help_link.h"
#include "app/profile/profile.h"
#include "app/run_line.h"
#include "app/toolkit/omdib.h"
#include "app/window_host.h"
#include "app/window_mouse.h"
#include "bars/status_bar.h"
#include "exec/system_call_server.h"
#include "input/editor.h"
#include "input/editor_links.h"
#include "input/history.h"
#include "lang/shell_command.h"
#include "screen/render_window.h"
#include "screen/screen_store.h"

#include <shellapi.h>

#include <cwchar>
#include <vector>

int SystemMenuBase = 0;
HBRUSH FaceBrush = nullptr;
HBRUSH NullBrush = nullptr;

namespace {

constexpr UINT_PTR kTickTimer = 300;
constexpr UINT_PTR kPaintTimer = 301;
constexpr UINT kPaintInterval = 40;
constexpr DWORD kMainStyle = 0x2CF0000;
constexpr DWORD kFrameStyle = 0xEF0000;
constexpr int kDialogExtra = 30;

struct InstanceSearch {
    int highest = 0;
};

BOOL CALLBACK NoteInstance(HWND window, LPARAM data)
{
    wchar_t className[32];
    if (!GetClassNameW(window, className, 32) || std::wcscmp(className, L"Ombrel") != 0) return TRUE;
    wchar_t title[128];
    GetWindowTextW(window, title, 128);
    const wchar_t* colon = std::wcschr(title, L':');
    int number = colon ? int(wtoi64_ex(colon + 1)) : 1;
    auto* search = reinterpret_cast<InstanceSearch*>(data);
    if (number > search->highest) search->highest = number;
    return TRUE;
}

// The text area paints itself from the store; the update region only says
// that the window must be drawn again. The edit line is drawn first, since a
// size change took its picture off the screen.
void OnPaint(HWND window)
{
    PAINTSTRUCT paint;
    BeginPaint(window, &paint);
    EndPaint(window, &paint);
    TheEditor.RedrawLine();
    TheView.PaintAll();
}

// A line that wrapped at the old width would leave a stale copy behind at the
// new one, so its picture goes before the screen changes size.
void OnSize(WPARAM kind, LPARAM size)
{
    if (kind == SIZE_MINIMIZED) return;
    TheEditor.BlankLine();
    TheView.Resize(LOWORD(size), HIWORD(size));
}

void OnTimer(HWND window, WPARAM id)
{
    if (id == kPaintTimer) {
        // Output has stopped: the quick timer is only for a screen in motion.
        if (!TheView.PaintChanges()) KillTimer(window, kPaintTimer);
        return;
    }
    // Any other timer counts; the status bar's second is every fourth tick.
    ++TickCount;
    if (TickCount % 4 == 0) TheStatusBar.Refresh();
    // Output that keeps coming is drawn at the quick timer's pace until it stops.
    if (TheView.PaintChanges()) SetTimer(window, kPaintTimer, kPaintInterval, nullptr);
}

// Keys that scroll, copy and paste: they reach the editor even while a
// command runs, and must not start anything.
bool IsViewKey(WPARAM key)
{
    return key == VK_CONTROL || key == VK_INSERT || key == VK_SHIFT || key == VK_PRIOR || key == VK_NEXT;
}

void OnKeyDown(WPARAM key)
{
    if (IsViewKey(key)) {
        TheEditor.EditorKey(int(key), CurrentModifiers());
        return;
    }
    if (CommandRunning) return;
    Links->MoveView(ViewMove::Bottom);
    if (key == VK_TAB) Links->CompleteTab();
    else TheEditor.EditorKey(int(key), CurrentModifiers());
}

void OnChar(WPARAM unit)
{
    Links->MoveView(ViewMove::Bottom);
    // Enter is the one key that starts a command, and never a second one.
    if (!CommandRunning && TheEditor.EditorChar(wchar_t(unit), CurrentModifiers())) RunTopLevelLine();
}

void OnDropFiles(HDROP drop)
{
    UINT count = DragQueryFileW(drop, 0xFFFFFFFF, nullptr, 0);
    std::vector<DroppedFile> files;
    for (UINT i = 0; i < count; ++i) {
        wchar_t name[kPathMax];
        if (!DragQueryFileW(drop, i, name, kPathMax)) continue;
        DWORD attributes = GetFileAttributesW(name);
        files.push_back({name, attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY)});
    }
    TheEditor.DropFiles(files, (GetKeyState(VK_CAPITAL) & 1) != 0);
    DragFinish(drop);
}

// The first popup of menu resource 1, entry by entry: separators, items
// with their ids, submenus by their handles.
void ExtendSystemMenu(HMENU systemMenu, HINSTANCE instance)
{
    HMENU extension = GetSubMenu(LoadMenuW(instance, MAKEINTRESOURCEW(1)), 0);
    for (int i = 0, count = GetMenuItemCount(extension); i < count; ++i) {
        wchar_t text[64] = L"";
        MENUITEMINFOW item{};
        item.cbSize = sizeof(item);
        item.fMask = MIIM_FTYPE | MIIM_ID | MIIM_SUBMENU | MIIM_STRING;
        item.dwTypeData = text;
        item.cch = 64;
        if (!GetMenuItemInfoW(extension, UINT(i), TRUE, &item)) continue;
        if (item.fType & MFT_SEPARATOR) AppendMenuW(systemMenu, MF_SEPARATOR, 0, nullptr);
        else if (item.hSubMenu) AppendMenuW(systemMenu, MF_POPUP, reinterpret_cast<UINT_PTR>(item.hSubMenu), text);
        else AppendMenuW(systemMenu, MF_STRING, item.wID, text);
    }
}

bool OnSysCommand(WPARAM id)
{
    switch (id) {
    case 207: TheStatusBar.Toggle(); return true;
    case 212: TheStatusBar.ToggleInFront(); return true;
    default: return false;
    }
}

} // namespace

int CellWidth() { return TheScreen.FontWidth; }
int CellHeight() { return TheScreen.FontHeight; }

bool RegisterWindowClasses(HINSTANCE instance)
{
    WNDCLASSW main{};
    main.style = CS_VREDRAW | CS_HREDRAW;
    main.lpfnWndProc = MainWindowProc;
    main.hInstance = instance;
    main.hIcon = LoadIconW(instance, MAKEINTRESOURCEW(1));
    main.hCursor = LoadCursorW(nullptr, MAKEINTRESOURCEW(32512));
    main.hbrBackground = static_cast<HBRUSH>(GetStockObject(NULL_BRUSH));
    main.lpszClassName = L"Ombrel";
    if (!RegisterClassW(&main)) return false;

    WNDCLASSW dialog{};
    dialog.style = CS_DBLCLKS;
    dialog.lpfnWndProc = DefDlgProcW;
    dialog.cbWndExtra = kDialogExtra;
    dialog.hInstance = instance;
    dialog.hIcon = LoadIconW(instance, MAKEINTRESOURCEW(2));
    dialog.hCursor = main.hCursor;
    dialog.lpszClassName = L"OmbrelDialog";
    RegisterClassW(&dialog);

    WNDCLASSW shadow = dialog;
    shadow.style = CS_DBLCLKS | CS_DROPSHADOW;
    shadow.hIcon = nullptr;
    shadow.lpszClassName = L"OmbrelShadowDialog";
    if (!RegisterClassW(&shadow)) {
        shadow.style = CS_DBLCLKS;
        RegisterClassW(&shadow);
    }
    FaceBrush = GetSysColorBrush(COLOR_3DFACE);
    NullBrush = static_cast<HBRUSH>(GetStockObject(NULL_BRUSH));
    return true;
}

HWND CreateMainWindow(HINSTANCE instance)
{
    int x = ProfileReadInt(L"Ombrel", L"XOrigin", 40);
    int y = ProfileReadInt(L"Ombrel", L"YOrigin", 40);
    ScreenWidth = ProfileReadInt(L"Ombrel", L"ScreenWidth", 80);
    ScreenHeight = ProfileReadInt(L"Ombrel", L"ScreenHeight", 24);
    if (ScreenWidth < 60 || ScreenWidth > MaxWidth) ScreenWidth = 80 > MaxWidth ? MaxWidth : 80;
    if (ScreenHeight < 5 || ScreenHeight > MaxHeight) ScreenHeight = 24 > MaxHeight ? MaxHeight : 24;

    InstanceSearch search;
    EnumWindows(NoteInstance, reinterpret_cast<LPARAM>(&search));
    int n = search.highest;
    if (n > 0) {
        x += n * (GetSystemMetrics(SM_CYCAPTION) + GetSystemMetrics(SM_CXFRAME) - 2 * GetSystemMetrics(SM_CXBORDER) + 1);
        y += n * (GetSystemMetrics(SM_CYCAPTION) + GetSystemMetrics(SM_CYFRAME) - 2 * GetSystemMetrics(SM_CYBORDER) + 1);
    }
    if (x < 0 || x > GetSystemMetrics(SM_CXFULLSCREEN)) x = 0;
    if (y < 0 || y > GetSystemMetrics(SM_CYFULLSCREEN)) y = 0;

    TheView.MakeFont();
    SIZE size = TheView.WindowSize(ScreenWidth, ScreenHeight, kFrameStyle);

    wchar_t title[32] = L"Ombrel\u00AE";
    if (n > 0) {
        wchar_t number[16];
        i64tow_ex(n + 1, number, 10);
        lstrcatW(title, L":");
        lstrcatW(title, number);
    }
    HWND window = CreateWindowExW(0, L"Ombrel", title, kMainStyle, x, y, size.cx, size.cy, nullptr, nullptr,
                                  instance, nullptr);
    if (!window) return nullptr;
    TheView.Attach(window);
    HMENU systemMenu = GetSystemMenu(window, FALSE);
    SystemMenuBase = GetMenuItemCount(systemMenu) + 1;
    EnableMenuItem(systemMenu, 6, MF_BYPOSITION | MF_GRAYED);
    ExtendSystemMenu(systemMenu, instance);
    if (TheStatusBar.InFront) CheckMenuItem(systemMenu, 212, MF_BYCOMMAND | MF_CHECKED);
    return window;
}

void SaveSession()
{
    wchar_t title[64];
    GetWindowTextW(MainWindow, title, 64);
    if (!IsZoomed(MainWindow) && !IsIconic(MainWindow) && !std::wcschr(title, L':')) {
        RECT place;
        GetWindowRect(MainWindow, &place);
        ProfileWriteInt(L"Ombrel", L"XOrigin", place.left);
        ProfileWriteInt(L"Ombrel", L"YOrigin", place.top);
        ProfileWriteInt(L"Ombrel", L"ScreenWidth", ScreenWidth);
        ProfileWriteInt(L"Ombrel", L"ScreenHeight", ScreenHeight);
    }
    ProfileWriteInt(L"Ombrel", L"Line", TheShell.StatementCounter);
    TheHistory.HistorySave();
}

LRESULT CALLBACK MainWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_CLOSE:
        // Closing while a command runs would pull the stack from under it.
        if (CommandRunning) return 0;
        HelpLink(HelpCloseAll);
        SaveSession();
        break;
    case WM_DESTROY:
        KillTimer(window, kTickTimer);
        KillTimer(window, kPaintTimer);
        TheView.Detach();
        PostQuitMessage(0);
        return 0;
    case WM_ENDSESSION:
        if (wParam) SaveSession();
        return 0;
    case WM_TIMER: OnTimer(window, wParam); return 0;
    case WM_SYSCOMMAND:
        if (OnSysCommand(wParam)) return 0;
        break;
    case WM_SIZE: OnSize(wParam, lParam); return 0;
    case WM_SIZING:
        TheView.SnapToCells(*reinterpret_cast<RECT*>(lParam), wParam, kFrameStyle);
        return TRUE;
    case WM_GETMINMAXINFO:
        TheView.TrackLimits(*reinterpret_cast<MINMAXINFO*>(lParam), kFrameStyle);
        return 0;
    case WM_KEYDOWN: OnKeyDown(wParam); return 0;
    case WM_CHAR: OnChar(wParam); return 0;
    case WM_SETFOCUS: Host->RebuildCaret(); return 0;
    case WM_KILLFOCUS: DestroyCaret(); return 0;
    case WM_DROPFILES: OnDropFiles(reinterpret_cast<HDROP>(wParam)); return 0;
    case WM_PAINT: OnPaint(window); return 0;
    case WM_COPYDATA: ServeCopyData(window, wParam, lParam); return 1;
    default:
        if (OnMouseMessage(window, message, wParam, lParam)) return 0;
        break;
    }
    return DefWindowProcW(window, message, wParam, lParam);
}
