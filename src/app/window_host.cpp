#include "app/window_host.h"

#include "app/globals.h"
#include "app/toolkit/omdib.h"
#include "screen/screen_store.h"

#include <string>

namespace {

void RaiseBreak()
{
    TheScreen.ShowBreak();
    TheScreen.BreakFlag = 1;
}

// Ctrl-S holds the output until the next character; Ctrl-C then also breaks.
void Suspend()
{
    MSG msg;
    while (GetMessageW(&msg, nullptr, 0, 0) > 0) {
        if (msg.message == WM_CHAR) {
            if (msg.wParam == 3) RaiseBreak();
            return;
        }
        if (msg.message == WM_KEYDOWN) TranslateMessage(&msg);
        DispatchMessageW(&msg);
    }
    PostQuitMessage(0);
}

} // namespace

void WindowHost::PollBreak()
{
    // Looking at the queue's status is far cheaper than removing nothing.
    if (!GetQueueStatus(QS_ALLINPUT)) return;
    MSG msg;
    while (PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE)) {
        if (msg.message == WM_QUIT) {
            PostQuitMessage(0);
            return;
        }
        if (msg.message == WM_CHAR) {
            if (msg.wParam == 3) RaiseBreak();
            else if (msg.wParam == 19) Suspend();
            continue; // typing ahead during output is not kept
        }
        TranslateMessage(&msg);
        DispatchMessageW(&msg);
    }
}

wchar_t WindowHost::ReadKey()
{
    MSG msg;
    for (;;) {
        BOOL got = GetMessageW(&msg, nullptr, 0, 0);
        if (got <= 0) {
            PostQuitMessage(0); // the outer loop must see the quit too
            return 3;
        }
        if (msg.message == WM_CHAR && msg.hwnd == MainWindow) return wchar_t(msg.wParam);
        TranslateMessage(&msg);
        DispatchMessageW(&msg);
    }
}

bool WindowHost::ReadLine(wchar_t* buffer, int size)
{
    std::wstring line;
    for (;;) {
        wchar_t key = ReadKey();
        if (key == 3) {
            RaiseBreak();
            buffer[0] = 0;
            return false;
        }
        if (key == L'\r') break;
        if (key == 8) {
            if (!line.empty()) {
                line.pop_back();
                TheScreen.Locate(TheScreen.CursorX - 1, TheScreen.CursorY);
                TheScreen.WriteCells(L" ");
                TheScreen.Locate(TheScreen.CursorX - 1, TheScreen.CursorY);
            }
        } else if (key >= 32 && int(line.size()) < size - 1) {
            line += key;
            wchar_t unit[2] = {key, 0};
            TheScreen.WriteCells(unit);
        }
        InvalidateRect(MainWindow, nullptr, FALSE);
    }
    TheScreen.LineFeed();
    CopyCutW(buffer, line.c_str(), size);
    return true;
}

void WindowHost::RequestExit() { SendMessageW(MainWindow, WM_CLOSE, 0, 0); }
