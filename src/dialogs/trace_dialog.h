// The modeless "Trace" window: the program's raw lines in an owner-drawn list
// with the current one inverted, the line number, the stage before and after
// expansion, and the buttons Step, Run, Stop, Variables and Help. It lives
// only while a traced line runs; its waits pump messages, so the rest of the
// program stays alive while the user decides.
#pragma once

#include "lang/trace.h"

#include <windows.h>

class TraceDialog : public TraceView {
public:
    enum : int {
        kProcessed = 101,
        kLines = 102,
        kLineNumber = 103,
        kSource = 104,
        kStep = 1,
        kRun = 2,
        kVariables = 3,
        kStop = 5,
        kHelp = 998,
    };

    TraceDialog() = default;
    TraceDialog(const TraceDialog&) = delete;
    TraceDialog& operator=(const TraceDialog&) = delete;
    ~TraceDialog() override;

    bool Open(const std::wstring& title) override;
    void Close() override;
    void FillList(const std::vector<std::wstring>& lines) override;
    void Highlight(int index) override;
    void ShowStage(const wchar_t* expanded, const wchar_t* source) override;
    void EnableStepping(bool enable) override;
    void WaitForUser() override;

    HWND Window() const { return window_; }
    int Highlighted() const { return highlight_; }

private:
    static INT_PTR CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    INT_PTR OnMessage(UINT message, WPARAM wParam, LPARAM lParam);
    bool OnCommand(int id, int code);
    static void MeasureItem(HWND window, MEASUREITEMSTRUCT& item);
    void DrawItem(const DRAWITEMSTRUCT& item);

    HWND window_ = nullptr;
    int highlight_ = -1;
};
