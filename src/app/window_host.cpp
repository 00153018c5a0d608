#include "app/window_host.h"

#include "app/event_pump.h"
#include "app/globals.h"
#include "app/main_window.h"
#include "input/editor.h"
#include "input/editor_links.h"
#include "screen/pager.h"
#include "screen/render_window.h"
#include "screen/screen_store.h"

#include <shellapi.h>

namespace {

constexpr WPARAM kCtrlC = 3;
constexpr WPARAM kCtrlS = 0x13;

void RaiseBreak()
{
    TheScreen.ShowBreak();
    TheScreen.BreakFlag = 1;
}

// Ctrl-S holds the output until the next character, which is used up; when
// it is Ctrl-C the command breaks as well.
void Suspend()
{
    MSG msg;
    BOOL got;
    while ((got = GetMessageW(&msg, nullptr, 0, 0)) > 0) {
        if (msg.message == WM_CHAR) {
            if (msg.wParam == kCtrlC) RaiseBreak();
            return;
        }
        if (msg.message == WM_KEYDOWN) TranslateMessage(&msg);
        DispatchMessageW(&msg);
    }
    // The loop that owns the queue must see the quit as well.
    if (got == 0) PostQuitMessage(int(msg.wParam));
}

// The clipboard for the editor's paste keys.
class WindowLinks : public EditorLinks {
public:
    bool ClipboardText(std::wstring& text) override
    {
        if (!OpenClipboard(MainWindow)) return false;
        bool found = false;
        if (HANDLE data = GetClipboardData(CF_UNICODETEXT)) {
            if (auto* units = static_cast<const wchar_t*>(GlobalLock(data))) {
                text.assign(units, size_t(lstrlenW(units) < kLineMax ? lstrlenW(units) : kLineMax - 1));
                found = true;
                GlobalUnlock(data);
            }
        }
        CloseClipboard();
        return found;
    }
};

WindowLinks windowLinks;

} // namespace

unsigned CurrentModifiers()
{
    unsigned modifiers = 0;
    if (GetKeyState(VK_CONTROL) < 0) modifiers |= ModCtrl;
    if (GetKeyState(VK_SHIFT) < 0) modifiers |= ModShift;
    return modifiers;
}

void WindowHost::Install()
{
    Host = this;
    Links = &windowLinks;
    TheScreen.PagePause = Pause;
}

void WindowHost::PollBreak()
{
    // Asking for the queue's state is far cheaper than a PeekMessageW that
    // finds nothing, and this runs at every line end.
    if (HIWORD(GetQueueStatus(QS_ALLINPUT)) == 0) return;
    MSG msg;
    while (PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE)) {
        if (msg.message == WM_QUIT) {
            PostQuitMessage(int(msg.wParam));
            return;
        }
        if (msg.message == WM_CHAR) {
            if (msg.wParam == kCtrlC) RaiseBreak();
            else if (msg.wParam == kCtrlS) Suspend();
            continue; // typing ahead during output is not kept
        }
        TranslateMessage(&msg);
        DispatchMessageW(&msg);
    }
}

InputEvent WindowHost::NextInput(InputWait wait)
{
    MSG msg;
    for (;;) {
        BOOL got = GetMessageW(&msg, nullptr, 0, 0);
        if (got <= 0) {
            if (got == 0) PostQuitMessage(int(msg.wParam));
            return {InputKind::End, 0, 0};
        }
        if (msg.message == WM_KEYDOWN) TranslateMessage(&msg);
        if (msg.message == WM_CHAR) return {InputKind::Char, unsigned(msg.wParam), CurrentModifiers()};
        // A line read edits with the keys itself; no other window code sees them.
        if (msg.message == WM_KEYDOWN && wait == InputWait::Line)
            return {InputKind::KeyDown, unsigned(msg.wParam), CurrentModifiers()};
        int height = ScreenHeight;
        DispatchMessageW(&msg);
        if (wait == InputWait::Page && ScreenHeight != height) return {InputKind::Resized, 0, 0};
    }
}

wchar_t WindowHost::ReadKey()
{
    InputEvent event = NextInput(InputWait::Key);
    return event.Kind == InputKind::Char ? wchar_t(event.Unit) : wchar_t(3);
}

bool WindowHost::ReadLine(wchar_t* buffer, int size) { return ReadTypedLine(buffer, size) != nullptr; }

void WindowHost::RequestExit() { SendMessageW(MainWindow, WM_CLOSE, 0, 0); }

void WindowHost::ShowCaret()
{
    ++caretCount_;
    SetCaretPos(TheScreen.CursorX * CellWidth(), TheScreen.CursorY * CellHeight());
    ::ShowCaret(MainWindow);
}

void WindowHost::HideCaret()
{
    --caretCount_;
    ::HideCaret(MainWindow);
}

void WindowHost::RebuildCaret()
{
    if (GetFocus() != MainWindow) return;
    // A thin bar inserts, a whole cell overwrites.
    int width = TheEditor.InsertMode ? CellWidth() / 4 : CellWidth();
    CreateCaret(MainWindow, nullptr, width > 0 ? width : 1, CellHeight());
    SetCaretPos(TheScreen.CursorX * CellWidth(), TheScreen.CursorY * CellHeight());
    for (int i = 0; i < caretCount_; ++i) ::ShowCaret(MainWindow);
}

void WindowHost::Refresh() { TheView.PaintChanges(); }

void WindowHost::AcceptDrops(bool accept)
{
    if (MainWindow) DragAcceptFiles(MainWindow, accept ? TRUE : FALSE);
}
