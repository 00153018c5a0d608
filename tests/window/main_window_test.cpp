// The window program under a real (virtual) display: it starts, is titled,
// closes when idle, and refuses to close while a command runs.
#include "app/banner.h"
#include "app/globals.h"
#include "app/host.h"
#include "app/main_window.h"
#include "app/run_line.h"
#include "input/editor.h"

#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <vector>

namespace {

std::wstring ProgramPath()
{
    wchar_t self[MAX_PATH];
    GetModuleFileNameW(nullptr, self, MAX_PATH);
    std::wstring path = self;
    return path.substr(0, path.find_last_of(L"\\/") + 1) + L"omb_rel.exe";
}

struct Child {
    PROCESS_INFORMATION info{};
    bool started = false;
    ~Child()
    {
        if (!started) return;
        if (WaitForSingleObject(info.hProcess, 0) == WAIT_TIMEOUT) TerminateProcess(info.hProcess, 99);
        CloseHandle(info.hProcess);
        CloseHandle(info.hThread);
    }
    bool EndsWithin(DWORD ms) const { return WaitForSingleObject(info.hProcess, ms) == WAIT_OBJECT_0; }
    // Start-up runs with CommandRunning set, when a close is refused; so ask
    // again, as a user would, until the program ends.
    bool ClosesWithin(HWND window, DWORD ms) const
    {
        for (DWORD waited = 0; waited < ms; waited += 250) {
            PostMessageW(window, WM_CLOSE, 0, 0);
            if (EndsWithin(250)) return true;
        }
        return false;
    }
};

void Start(Child& child, const std::wstring& arguments)
{
    std::wstring line = L"\"" + ProgramPath() + L"\" " + arguments;
    std::vector<wchar_t> writable(line.begin(), line.end());
    writable.push_back(0);
    STARTUPINFOW startup{};
    startup.cb = sizeof(startup);
    child.started = CreateProcessW(nullptr, writable.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                                   &startup, &child.info) != 0;
}

struct WindowSearch {
    DWORD process;
    HWND found;
};

BOOL CALLBACK MatchProcess(HWND window, LPARAM data)
{
    auto* search = reinterpret_cast<WindowSearch*>(data);
    DWORD owner = 0;
    GetWindowThreadProcessId(window, &owner);
    wchar_t className[32];
    if (owner == search->process && GetClassNameW(window, className, 32) && std::wstring(className) == L"Ombrel") {
        search->found = window;
        return FALSE;
    }
    return TRUE;
}

HWND WaitForMainWindow(const Child& child)
{
    for (int i = 0; i < 300; ++i) {
        WindowSearch search{child.info.dwProcessId, nullptr};
        EnumWindows(MatchProcess, reinterpret_cast<LPARAM>(&search));
        if (search.found && IsWindowVisible(search.found)) return search.found;
        if (WaitForSingleObject(child.info.hProcess, 100) == WAIT_OBJECT_0) return nullptr;
    }
    return nullptr;
}

TEST(MainWindow, StartsTitledAndClosesWhenIdle)
{
    TempFolder folder;
    Child child;
    Start(child, L"INI=" + (folder / L"w.ini"));
    ASSERT_TRUE(child.started);
    HWND window = WaitForMainWindow(child);
    ASSERT_NE(window, nullptr);
    wchar_t title[64];
    GetWindowTextW(window, title, 64);
    EXPECT_STREQ(title, L"Ombrel\u00AE");

    // A second instance numbers itself.
    Child second;
    Start(second, L"INI=" + (folder / L"w.ini"));
    HWND secondWindow = WaitForMainWindow(second);
    ASSERT_NE(secondWindow, nullptr);
    GetWindowTextW(secondWindow, title, 64);
    EXPECT_STREQ(title, L"Ombrel\u00AE:2");
    EXPECT_TRUE(second.ClosesWithin(secondWindow, 20000));
    ASSERT_TRUE(child.ClosesWithin(window, 20000));
    // Only the first instance saved its place.
    std::wstring settings = folder.ReadText(L"w.ini");
    EXPECT_NE(settings.find(L"XOrigin="), std::wstring::npos);
    EXPECT_NE(settings.find(L"Line="), std::wstring::npos);
}

TEST(MainWindow, ExitGivenWithSlashCEndsTheProgram)
{
    TempFolder folder;
    Child child;
    Start(child, L"INI=" + (folder / L"w.ini") + L" /C exit");
    ASSERT_TRUE(child.started);
    ASSERT_TRUE(child.EndsWithin(30000));
    DWORD code = 0;
    GetExitCodeProcess(child.info.hProcess, &code);
    EXPECT_EQ(code, 1u);

    // Without /C, exit typed as the command closes the window the same way.
    Child plain;
    Start(plain, L"INI=" + (folder / L"w.ini") + L" exit");
    ASSERT_TRUE(plain.EndsWithin(30000));
}

bool CloseGreyed(HWND window)
{
    return (GetMenuState(GetSystemMenu(window, FALSE), 6, MF_BYPOSITION) & MF_GRAYED) != 0;
}

TEST(MainWindow, CloseIsGreyedUntilTheBannerIsOut)
{
    HINSTANCE instance = GetModuleHandleW(nullptr);
    WNDCLASSW known;
    bool registered = !GetClassInfoW(instance, L"Ombrel", &known);
    if (registered) {
        ASSERT_TRUE(RegisterWindowClasses(instance));
    }
    MainWindow = CreateMainWindow(instance);
    ASSERT_NE(MainWindow, nullptr);
    EXPECT_TRUE(CloseGreyed(MainWindow));
    // Without a STARTUP.BAT no line runs before the prompt, so the banner is
    // what gives the user the Close item.
    PrintBanner();
    EXPECT_FALSE(CloseGreyed(MainWindow));

    DestroyWindow(MainWindow);
    MainWindow = nullptr;
    MSG msg;
    while (PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&msg);
    if (registered)
        for (const wchar_t* name : {L"Ombrel", L"OmbrelDialog", L"OmbrelShadowDialog"}) UnregisterClassW(name, instance);
}

// Plays the user who clicks Close while a command is printing.
class ClosingHost : public ShellHost {
public:
    HWND window = nullptr;
    int attempts = 0;
    bool closeGreyed = false;
    void PollBreak() override
    {
        ++attempts;
        closeGreyed = CloseGreyed(window);
        SendMessageW(window, WM_CLOSE, 0, 0);
    }
    wchar_t ReadKey() override { return 3; }
    bool ReadLine(wchar_t*, int) override { return false; }
    void RequestExit() override { SendMessageW(window, WM_CLOSE, 0, 0); }
    bool Interactive() const override { return false; }
};

TEST(MainWindow, RefusesToCloseWhileACommandRuns)
{
    TempFolder folder;
    HINSTANCE instance = GetModuleHandleW(nullptr);
    ASSERT_TRUE(RegisterWindowClasses(instance));
    MainWindow = CreateMainWindow(instance);
    ASSERT_NE(MainWindow, nullptr);
    ClosingHost host;
    host.window = MainWindow;
    ShellHost* saved = Host;
    Host = &host;

    TheEditor.TypeLine(L"echo one & echo two", true);
    RunTopLevelLine();
    EXPECT_GE(host.attempts, 2);
    EXPECT_TRUE(host.closeGreyed);
    ASSERT_TRUE(IsWindow(MainWindow));
    EXPECT_EQ(CommandRunning, 0);
    EXPECT_FALSE(CloseGreyed(MainWindow));

    // exit inside a line: CommandRunning drops first, so the close is obeyed.
    TheEditor.TypeLine(L"exit", true);
    RunTopLevelLine();
    EXPECT_FALSE(IsWindow(MainWindow));
    Host = saved;
    MainWindow = nullptr;
}

} // namespace
