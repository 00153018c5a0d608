// The real Trace window under a virtual display, in-process: a small batch
// program is traced while the test presses the window's buttons, and looks at
// the list, the highlighted line and the two edits at every wait.
#include "lang/environment_index.h"
#include "app/globals.h"
#include "app/host.h"
#include "app/main_window.h"
#include "app/run_line.h"
#include "app/toolkit/omdib.h"
#include "dialogs/environment_dialog.h"
#include "dialogs/trace_dialog.h"
#include "input/editor.h"
#include "lang/shell_command.h"

#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <deque>
#include <string>
#include <vector>

namespace {

struct Snapshot {
    std::wstring Title;
    int Count = 0;
    int Highlighted = -1;
    int Selected = -1;
    std::wstring Number;
    std::wstring Source;
    std::wstring Processed;
    bool StepEnabled = false;
};

std::wstring ItemText(HWND dialog, int id)
{
    wchar_t text[kLineMax];
    GetDlgItemTextW(dialog, id, text, kLineMax);
    return text;
}

// How the test presses a button: a click on it, a command posted to the
// window, or closing the window.
// Escape stands before another press and is answered within the same wait.
enum class Press { Click, Command, Close, Escape };

struct Action {
    Press How;
    int Id;
};

// The real dialog; at each new wait the test records what it shows, then
// presses the next button. Posted presses go through the dialog's own wait.
class PressingDialog : public TraceDialog {
public:
    std::deque<Action> Actions;
    std::vector<Snapshot> Seen;
    HWND LastWindow = nullptr;

    void WaitForUser() override
    {
        HWND window = Window();
        if (pending_ && ++pendingWaits_ < 1000) {
            TraceDialog::WaitForUser();
            return;
        }
        if (pending_ || Actions.empty()) {
            ADD_FAILURE() << "the press did not reach the dialog";
            TraceStopRun();
            return;
        }
        LastWindow = window;
        Seen.push_back(Take(window));
        Action action = Actions.front();
        Actions.pop_front();
        if (action.How == Press::Escape && !Actions.empty()) {
            int before = TheShell.TracePermitted;
            SendMessageW(window, WM_COMMAND, MAKEWPARAM(IDCANCEL, 0), 0);
            EscapeChangedNothing = EscapeChangedNothing && TheShell.TracePermitted == before && IsWindow(window);
            action = Actions.front();
            Actions.pop_front();
        }
        if (action.How == Press::Click) {
            SendMessageW(GetDlgItem(window, action.Id), BM_CLICK, 0, 0);
            return;
        }
        if (action.How == Press::Command)
            PostMessageW(window, WM_COMMAND, MAKEWPARAM(action.Id, BN_CLICKED),
                         reinterpret_cast<LPARAM>(GetDlgItem(window, action.Id)));
        else PostMessageW(window, WM_CLOSE, 0, 0);
        pending_ = true;
        pendingWaits_ = 0;
        permitted_ = TheShell.TracePermitted;
        TraceDialog::WaitForUser();
        if (TheShell.TracePermitted != permitted_) pending_ = false;
    }
    // A new stage is shown only after the last press took effect.
    void ShowStage(const wchar_t* expanded, const wchar_t* source) override
    {
        pending_ = false;
        TraceDialog::ShowStage(expanded, source);
    }

private:
    Snapshot Take(HWND window) const
    {
        Snapshot shot;
        wchar_t title[kPathMax + 16];
        GetWindowTextW(window, title, kPathMax + 16);
        shot.Title = title;
        shot.Count = int(SendDlgItemMessageW(window, kLines, LB_GETCOUNT, 0, 0));
        shot.Highlighted = Highlighted();
        shot.Selected = int(SendDlgItemMessageW(window, kLines, LB_GETCURSEL, 0, 0));
        shot.Number = ItemText(window, kLineNumber);
        shot.Source = ItemText(window, kSource);
        shot.Processed = SkipWhiteW(ItemText(window, kProcessed).c_str());
        shot.StepEnabled = IsWindowEnabled(GetDlgItem(window, kStep)) != 0;
        return shot;
    }

public:
    bool EscapeChangedNothing = true;

private:
    bool pending_ = false;
    int pendingWaits_ = 0;
    int permitted_ = 0;
};

// Answers pause, noting whether Step could be pressed meanwhile.
class PauseHost : public ShellHost {
public:
    const PressingDialog* Dialog = nullptr;
    std::vector<bool> StepEnabledAtKey;
    void PollBreak() override {}
    wchar_t ReadKey() override
    {
        StepEnabledAtKey.push_back(IsWindowEnabled(GetDlgItem(Dialog->Window(), TraceDialog::kStep)) != 0);
        return L'x';
    }
    bool ReadLine(wchar_t*, int) override { return false; }
    void RequestExit() override {}
    bool Interactive() const override { return false; }
};

// Plays the user of the Environment Variables dialog once it is up: picks
// OMBT_VAR, notes the value shown, sets a new one, and closes the dialog.
struct VariablesVisit {
    int Listed = 0;
    std::wstring Shown;
    bool Done = false;
};
VariablesVisit visit;

void CALLBACK EditVariable(HWND, UINT, UINT_PTR timer, DWORD)
{
    HWND box = FindWindowW(nullptr, L"Environment Variables");
    if (!box || visit.Done) return;
    KillTimer(nullptr, timer);
    visit.Done = true;
    HWND list = GetDlgItem(box, kEnvironmentList);
    visit.Listed = int(SendMessageW(list, LB_GETCOUNT, 0, 0));
    LRESULT at = SendMessageW(list, LB_FINDSTRING, WPARAM(-1), reinterpret_cast<LPARAM>(L"OMBT_VAR="));
    SendMessageW(list, LB_SETCURSEL, WPARAM(at), 0);
    SendMessageW(box, WM_COMMAND, MAKEWPARAM(kEnvironmentList, LBN_SELCHANGE), reinterpret_cast<LPARAM>(list));
    visit.Shown = ItemText(box, kEnvironmentValue);
    SetDlgItemTextW(box, kEnvironmentValue, L"changed");
    SendMessageW(GetDlgItem(box, kEnvironmentSet), BM_CLICK, 0, 0);
    SendMessageW(GetDlgItem(box, IDCANCEL), BM_CLICK, 0, 0);
}

std::string Narrow(const std::wstring& text) { return std::string(text.begin(), text.end()); }

TEST(TraceWindow, StepsRunsAndStopsThroughItsButtons)
{
    TempFolder folder;
    HINSTANCE instance = GetModuleHandleW(nullptr);
    AppInstance = instance;
    // Other tests of this program register the classes too: leave them as found.
    WNDCLASSW found{};
    bool registered = GetClassInfoW(instance, L"Ombrel", &found) != 0;
    if (!registered) {
        ASSERT_TRUE(RegisterWindowClasses(instance));
    }
    MainWindow = CreateMainWindow(instance);
    ASSERT_NE(MainWindow, nullptr);
    PressingDialog dialog;
    PauseHost host;
    host.Dialog = &dialog;
    ShellHost* savedHost = Host;
    TraceView* savedViewer = TraceViewer;
    Host = &host;
    TraceViewer = &dialog;

    folder.WriteBytes(L"t.bat", "@echo off\r\necho a& echo b\r\necho c > \"" + Narrow(folder / L"c.txt") + "\"\r\n");
    dialog.Actions = {{Press::Escape, 0},
                      {Press::Click, TraceDialog::kStep},
                      {Press::Command, TraceDialog::kStep},
                      {Press::Click, TraceDialog::kStep},
                      {Press::Command, TraceDialog::kRun}};
    TheEditor.TypeLine((L"trace \"" + (folder / L"t.bat") + L"\"").c_str(), true);
    RunTopLevelLine();

    ASSERT_EQ(dialog.Seen.size(), 4u);
    const std::vector<int> highlighted = {0, 1, 1, 2};
    const std::vector<std::wstring> sources = {L"@echo off", L"echo a& echo b", L"echo a& echo b",
                                               L"echo c > \"" + (folder / L"c.txt") + L"\""};
    const std::vector<std::wstring> processed = {L"echo off", L"echo a", L"echo b", L"echo c"};
    for (size_t i = 0; i < dialog.Seen.size(); ++i) {
        const Snapshot& shot = dialog.Seen[i];
        EXPECT_EQ(shot.Title, L"Trace - " + (folder / L"t.bat")) << i;
        EXPECT_EQ(shot.Count, 3) << i;
        EXPECT_EQ(shot.Highlighted, highlighted[i]) << i;
        EXPECT_EQ(shot.Selected, highlighted[i]) << i;
        EXPECT_EQ(shot.Number, std::to_wstring(highlighted[i] + 1)) << i;
        EXPECT_EQ(shot.Source, sources[i]) << i;
        EXPECT_EQ(shot.Processed.substr(0, processed[i].size()), processed[i]) << i;
        EXPECT_TRUE(shot.StepEnabled) << i;
    }
    // Escape neither ran nor stopped anything.
    EXPECT_TRUE(dialog.EscapeChangedNothing);
    // Run closed the window and let the rest run.
    EXPECT_FALSE(IsWindow(dialog.LastWindow));
    EXPECT_EQ(dialog.Window(), nullptr);
    EXPECT_TRUE(folder.Exists(L"c.txt"));
    EXPECT_EQ(TheShell.TraceActive, 0);

    // Step is dimmed while pause waits; closing the window stops the program.
    folder.WriteBytes(L"p.bat", "@echo off\r\npause\r\nset OMBT_AFTER=ran\r\n");
    WriteEnvironment(L"OMBT_AFTER", nullptr);
    dialog.Seen.clear();
    dialog.Actions = {{Press::Click, TraceDialog::kStep}, {Press::Click, TraceDialog::kStep}, {Press::Close, 0}};
    TheEditor.TypeLine((L"trace \"" + (folder / L"p.bat") + L"\"").c_str(), true);
    RunTopLevelLine();
    EXPECT_EQ(host.StepEnabledAtKey, std::vector<bool>{false});
    ASSERT_EQ(dialog.Seen.size(), 3u);
    EXPECT_TRUE(dialog.Seen[2].StepEnabled);
    EXPECT_EQ(FindEnvironment(L"OMBT_AFTER"), nullptr);
    EXPECT_EQ(TheShell.Terminate, 2);
    EXPECT_FALSE(IsWindow(dialog.LastWindow));

    // Stop does the same; Variables opens the environment, and a value set
    // there is the program's from then on.
    WriteEnvironment(L"OMBT_VAR", L"before");
    SetTimer(nullptr, 0, 50, EditVariable);
    dialog.Seen.clear();
    dialog.Actions = {{Press::Click, TraceDialog::kStep},
                      {Press::Click, TraceDialog::kVariables},
                      {Press::Click, TraceDialog::kStop}};
    TheEditor.TypeLine((L"trace \"" + (folder / L"t.bat") + L"\"").c_str(), true);
    DeleteFileW((folder / L"c.txt").c_str());
    RunTopLevelLine();
    EXPECT_EQ(dialog.Seen.size(), 3u);
    EXPECT_TRUE(visit.Done);
    EXPECT_GT(visit.Listed, 1);
    EXPECT_EQ(visit.Shown, L"before");
    const std::wstring* value = FindEnvironment(L"OMBT_VAR");
    ASSERT_NE(value, nullptr);
    EXPECT_EQ(*value, L"changed");
    EXPECT_FALSE(folder.Exists(L"c.txt"));
    EXPECT_EQ(TheShell.Terminate, 2);
    EXPECT_FALSE(IsWindow(dialog.LastWindow));

    Host = savedHost;
    TraceViewer = savedViewer;
    DestroyWindow(MainWindow);
    MainWindow = nullptr;
    if (!registered) UnregisterClassW(L"Ombrel", instance);
}

} // namespace
