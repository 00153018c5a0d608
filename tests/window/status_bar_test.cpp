// The status bar under a real (virtual) display: up beside the main window
// with the time on it, the percent figure moving while a command works and
// gone after, and an alarm set a little ahead ringing. The window's text
// repeats what its face shows, so the figures are read from there; the
// pixels show that the face is drawn, and a picture of the screen is kept.
#include "app/globals.h"
#include "app/main_window.h"
#include "app/run_line.h"
#include "app/window_host.h"
#include "bars/status_bar.h"
#include "input/editor.h"
#include "screen/screen_store.h"

#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

namespace {

std::wstring ProgramFolder()
{
    wchar_t self[MAX_PATH];
    GetModuleFileNameW(nullptr, self, MAX_PATH);
    std::wstring path = self;
    return path.substr(0, path.find_last_of(L"\\/") + 1);
}

std::wstring TextOf(HWND window)
{
    wchar_t text[128] = L"";
    GetWindowTextW(window, text, 128);
    return text;
}

// "h:mm" as the 12-hour clock shows it, some seconds ago.
std::wstring ClockAgo(int seconds)
{
    FILETIME file;
    GetSystemTimeAsFileTime(&file);
    ULARGE_INTEGER ticks{{file.dwLowDateTime, file.dwHighDateTime}};
    ticks.QuadPart -= uint64_t(seconds) * 10000000;
    file = {ticks.LowPart, ticks.HighPart};
    SYSTEMTIME utc, local;
    FileTimeToSystemTime(&file, &utc);
    SystemTimeToTzSpecificLocalTime(nullptr, &utc, &local);
    int hour = local.wHour % 12 == 0 ? 12 : local.wHour % 12;
    wchar_t text[16];
    wsprintfW(text, L" %d:%02d:", hour, local.wMinute);
    return text;
}

// Pixels of a colour in a window's client area, read back from the screen.
int PixelsOf(HWND window, COLORREF colour)
{
    RECT client;
    GetClientRect(window, &client);
    HDC dc = GetDC(window);
    int found = 0;
    for (int y = 0; y < client.bottom; ++y)
        for (int x = 0; x < client.right; ++x) found += GetPixel(dc, x, y) == colour;
    ReleaseDC(window, dc);
    return found;
}

// The screen as a bitmap file beside the test program's folder, for a person to look at.
void KeepScreenPicture(const wchar_t* name)
{
    int width = GetSystemMetrics(SM_CXSCREEN), height = GetSystemMetrics(SM_CYSCREEN);
    HDC screen = GetDC(nullptr);
    HDC memory = CreateCompatibleDC(screen);
    BITMAPINFO info{};
    info.bmiHeader = {sizeof(BITMAPINFOHEADER), width, height, 1, 24, BI_RGB, 0, 0, 0, 0, 0};
    void* bits = nullptr;
    HBITMAP bitmap = CreateDIBSection(memory, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    HGDIOBJ old = SelectObject(memory, bitmap);
    BitBlt(memory, 0, 0, width, height, screen, 0, 0, SRCCOPY);
    GdiFlush();
    DWORD size = DWORD((width * 3 + 3) / 4 * 4 * height);
    BITMAPFILEHEADER header{0x4D42, DWORD(sizeof(BITMAPFILEHEADER) + sizeof(BITMAPINFOHEADER) + size), 0, 0,
                            DWORD(sizeof(BITMAPFILEHEADER) + sizeof(BITMAPINFOHEADER))};
    std::wstring folder = ProgramFolder() + L"..\\artifacts";
    CreateDirectoryW(folder.c_str(), nullptr);
    HANDLE file = CreateFileW((folder + L"\\" + name).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    DWORD written;
    WriteFile(file, &header, sizeof(header), &written, nullptr);
    WriteFile(file, &info.bmiHeader, sizeof(info.bmiHeader), &written, nullptr);
    WriteFile(file, bits, size, &written, nullptr);
    CloseHandle(file);
    SelectObject(memory, old);
    DeleteObject(bitmap);
    DeleteDC(memory);
    ReleaseDC(nullptr, screen);
}

struct Child {
    PROCESS_INFORMATION info{};
    bool started = false;
    explicit Child(const std::wstring& arguments)
    {
        std::wstring line = L"\"" + ProgramFolder() + L"omb_rel.exe\" " + arguments;
        std::vector<wchar_t> writable(line.begin(), line.end());
        writable.push_back(0);
        STARTUPINFOW startup{};
        startup.cb = sizeof(startup);
        started = CreateProcessW(nullptr, writable.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                                 &info) != 0;
    }
    ~Child()
    {
        if (!started) return;
        TerminateProcess(info.hProcess, 99);
        CloseHandle(info.hProcess);
        CloseHandle(info.hThread);
    }
};

struct Search {
    DWORD process;
    const wchar_t* className;
    HWND found;
};

HWND WaitForWindow(const Child& child, const wchar_t* className)
{
    for (int i = 0; i < 300; ++i) {
        Search search{child.info.dwProcessId, className, nullptr};
        EnumWindows(
            [](HWND window, LPARAM data) -> BOOL {
                auto* s = reinterpret_cast<Search*>(data);
                DWORD owner = 0;
                GetWindowThreadProcessId(window, &owner);
                wchar_t name[32];
                if (owner != s->process || !GetClassNameW(window, name, 32) || std::wstring(name) != s->className ||
                    !IsWindowVisible(window))
                    return TRUE;
                s->found = window;
                return FALSE;
            },
            reinterpret_cast<LPARAM>(&search));
        if (search.found) return search.found;
        if (WaitForSingleObject(child.info.hProcess, 100) == WAIT_OBJECT_0) return nullptr;
    }
    return nullptr;
}

TEST(StatusBarWindow, UpBesideTheMainWindowShowingTheTimeAndRingingAnAlarm)
{
    // The alarm is set for the next minute, or the one after when this one is
    // nearly over: it must see the clock outside its minute once to be armed.
    SYSTEMTIME now;
    GetLocalTime(&now);
    int alarmAt = (now.wHour * 60 + now.wMinute + (now.wSecond < 50 ? 1 : 2)) % (24 * 60);
    TempFolder folder;
    std::string settings = "[StatusBar]\r\nDisplay=1\r\nAlarm1=1\r\nHour1=" + std::to_string(alarmAt / 60) +
                           "\r\nMinute1=" + std::to_string(alarmAt % 60) + "\r\n";
    folder.WriteBytes(L"s.ini", settings);
    Child child(L"INI=" + (folder / L"s.ini"));
    ASSERT_TRUE(child.started);
    HWND main = WaitForWindow(child, L"Ombrel");
    HWND status = WaitForWindow(child, L"OmbrelStatusBar");
    ASSERT_NE(main, nullptr);
    ASSERT_NE(status, nullptr);

    // The default place is the bottom right corner of the screen, clear of the main window.
    RECT statusPlace, mainPlace, overlap;
    GetWindowRect(status, &statusPlace);
    GetWindowRect(main, &mainPlace);
    EXPECT_EQ(statusPlace.right, GetSystemMetrics(SM_CXSCREEN));
    EXPECT_EQ(statusPlace.bottom, GetSystemMetrics(SM_CYSCREEN));
    EXPECT_FALSE(IntersectRect(&overlap, &statusPlace, &mainPlace));

    // The clock shows the time of day; the face is drawn in the digits' colour.
    Sleep(1500);
    std::wstring text = TextOf(status);
    EXPECT_TRUE(text.find(ClockAgo(0)) != std::wstring::npos || text.find(ClockAgo(2)) != std::wstring::npos)
        << std::string(text.begin(), text.end());
    EXPECT_EQ(text.rfind(L"Time ", 0), 0u);
    EXPECT_NE(text.find(L"K free"), std::wstring::npos);
    EXPECT_GT(PixelsOf(status, 0x8080), 100);
    KeepScreenPicture(L"status_bar.bmp");

    // The alarm rings on entering its minute, and the face names it.
    bool rang = false;
    for (int i = 0; i < 150 && !rang; ++i) {
        Sleep(1000);
        rang = TextOf(status).rfind(L"Alarm 1", 0) == 0;
    }
    EXPECT_TRUE(rang) << "alarm at " << alarmAt / 60 << ":" << alarmAt % 60;
    KeepScreenPicture(L"status_bar_alarm.bmp");

    // The system menu keeps it in front, and hides it; both are written at once.
    SendMessageW(main, WM_SYSCOMMAND, 212, 0);
    EXPECT_NE(GetWindowLongW(status, GWL_EXSTYLE) & WS_EX_TOPMOST, 0);
    SendMessageW(main, WM_SYSCOMMAND, 207, 0);
    EXPECT_FALSE(IsWindow(status));
    std::wstring stored = folder.ReadText(L"s.ini");
    EXPECT_NE(stored.find(L"Display=0"), std::wstring::npos);
    EXPECT_NE(stored.find(L"InFront=1"), std::wstring::npos);
}

// A main window destroyed by an earlier test leaves its quit message behind,
// and a poll that sees one stops dispatching.
void DropQuitMessages()
{
    MSG msg;
    while (PeekMessageW(&msg, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE)) {
    }
}

// The percent figure as the running command leaves it, sampled from a short
// timer that the command's own polling dispatches.
std::set<int> SeenFigures;

void CALLBACK SampleFigure(HWND, UINT, UINT_PTR, DWORD)
{
    if (TheStatusBar.Percent >= 0) SeenFigures.insert(TheStatusBar.Percent);
}

// copy drives the indicator with the bytes it has copied and polls at each
// block; its end paints the last figure, and the next second clears it.
TEST(StatusBarWindow, ThePercentFigureMovesWhileACopyWorksAndGoesAfter)
{
    DropQuitMessages();
    HINSTANCE instance = GetModuleHandleW(nullptr);
    WNDCLASSW known;
    bool registered = !GetClassInfoW(instance, L"Ombrel", &known);
    if (registered) {
        ASSERT_TRUE(RegisterWindowClasses(instance));
    }
    MainWindow = CreateMainWindow(instance);
    ASSERT_NE(MainWindow, nullptr);
    WindowHost host;
    ShellHost* savedHost = Host;
    host.Install();
    TheScreen.PollEnabled = 1;
    TheScreen.BreakFlag = 0;
    ShowWindow(MainWindow, SW_SHOWNORMAL);
    SetTimer(MainWindow, 300, 250, nullptr);
    TheStatusBar.Show();
    ASSERT_NE(TheStatusBar.Window, nullptr);

    // Many small files: the cost of each one keeps the copy going for a few seconds.
    TempFolder folder;
    CreateDirectoryW((folder / L"from").c_str(), nullptr);
    CreateDirectoryW((folder / L"to").c_str(), nullptr);
    const std::string block(4096, 'x');
    for (int i = 0; i < 300; ++i) folder.WriteBytes(L"from\\f" + std::to_wstring(i) + L".txt", block);
    SeenFigures.clear();
    UINT_PTR sampler = SetTimer(nullptr, 0, USER_TIMER_MINIMUM, SampleFigure);
    TheEditor.TypeLine((L"copy \"" + (folder / L"from\\*.txt") + L"\" \"" + (folder / L"to") + L"\" > nul").c_str(),
                       true);
    RunTopLevelLine();
    KillTimer(nullptr, sampler);
    EXPECT_TRUE(folder.Exists(L"to\\f299.txt"));
    // The figure moved through several values while the copy ran.
    EXPECT_GE(SeenFigures.size(), 2u);
    // The end painted the last figure.
    EXPECT_NE(TextOf(TheStatusBar.Window).find(L"100%"), std::wstring::npos);
    // The end painted the last figure; the next second clears it.
    DWORD until = GetTickCount() + 1500;
    while (GetTickCount() < until) {
        TheScreen.PollBreak();
        Sleep(10);
    }
    EXPECT_EQ(TextOf(TheStatusBar.Window).find(L'%'), std::wstring::npos);

    TheStatusBar.Hide();
    EXPECT_EQ(TheStatusBar.Window, nullptr);
    DestroyWindow(MainWindow);
    MainWindow = nullptr;
    Host = savedHost;
    DropQuitMessages();
    if (registered)
        for (const wchar_t* name : {L"Ombrel", L"OmbrelDialog", L"OmbrelShadowDialog"}) UnregisterClassW(name, instance);
}

} // namespace
