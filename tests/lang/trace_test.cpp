// Tracing batch programs in-process: the real interpreter and stepper, with a
// view that plays the user (step, run, stop) and records what it was shown at
// every wait. Also the console program's own trace view, end to end.
#include "app/host.h"
#include "app/run_line.h"
#include "app/toolkit/omdib.h"
#include "input/editor.h"
#include "input/unix_mode.h"
#include "lang/batch_program.h"
#include "lang/shell_command.h"
#include "lang/trace.h"
#include "screen/screen_store.h"

#include "lang_lines.h"
#include "support/ombc_runner.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <deque>
#include <string>
#include <vector>

namespace {

// What the view showed when the stepper waited for the user.
struct WaitPicture {
    std::wstring Stage;
    std::wstring Source;
    int Highlight = -1;
    std::vector<std::wstring> List;
    bool Stepping = false;
    size_t OutputLines = 0;
};

class FakeView : public TraceView {
public:
    // 's' step, 'r' run, 'p' stop; with no choice left the user closes the window.
    std::deque<char> Choices;
    std::vector<WaitPicture> Waits;
    std::wstring Title;
    int Opens = 0;
    int Closes = 0;
    bool Stepping = false;
    bool IsOpen = false;
    const std::vector<std::wstring>* Output = nullptr;

    bool Open(const std::wstring& title) override
    {
        Title = title;
        ++Opens;
        IsOpen = true;
        return true;
    }
    void Close() override
    {
        ++Closes;
        IsOpen = false;
    }
    void FillList(const std::vector<std::wstring>& lines) override
    {
        list_ = lines;
        highlight_ = -1;
    }
    void Highlight(int index) override { highlight_ = index; }
    void ShowStage(const wchar_t* expanded, const wchar_t* source) override
    {
        stage_ = expanded;
        if (source) source_ = source;
    }
    void EnableStepping(bool enable) override { Stepping = enable; }
    void WaitForUser() override
    {
        EXPECT_TRUE(IsOpen);
        Waits.push_back({stage_, source_, highlight_, list_, Stepping, Output->size()});
        char choice = 'p';
        if (!Choices.empty()) {
            choice = Choices.front();
            Choices.pop_front();
        }
        if (choice == 's') TraceGrantStep();
        else if (choice == 'r') TraceRunFreely();
        else TraceStopRun();
    }

private:
    std::vector<std::wstring> list_;
    std::wstring stage_;
    std::wstring source_;
    int highlight_ = -1;
};

// Keys for pause and the break question; notes whether the trace buttons
// were usable while the command waited.
class KeyHost : public ShellHost {
public:
    std::deque<wchar_t> Keys;
    std::vector<bool> SteppingAtKey;
    const FakeView* View = nullptr;

    void PollBreak() override {}
    wchar_t ReadKey() override
    {
        SteppingAtKey.push_back(View->Stepping);
        if (Keys.empty()) return 3;
        wchar_t key = Keys.front();
        Keys.pop_front();
        return key;
    }
    bool ReadLine(wchar_t*, int) override { return false; }
    void RequestExit() override {}
    bool Interactive() const override { return false; }
};

class OutputLines : public ScreenObserver {
public:
    std::vector<std::wstring> Lines;
    void LineCompleted(int y) override { Lines.push_back(TheScreen.RowText(y)); }
};

class TraceTest : public testing::Test {
protected:
    TempFolder folder;
    FakeView view;
    KeyHost host;
    OutputLines output;
    ShellHost* savedHost = nullptr;
    ScreenObserver* savedObserver = nullptr;
    TraceView* savedViewer = nullptr;

    void SetUp() override
    {
        savedHost = Host;
        savedObserver = TheScreen.Observer;
        savedViewer = TraceViewer;
        Host = &host;
        TheScreen.Observer = &output;
        TraceViewer = &view;
        host.View = &view;
        view.Output = &output.Lines;
        TheScreen.ClearScreen();
    }
    void TearDown() override
    {
        TraceViewer = savedViewer;
        TheScreen.Observer = savedObserver;
        Host = savedHost;
    }

    std::wstring Path(const std::wstring& name) const { return folder / name; }
    // A typed line, run as the prompt runs it.
    void Run(const std::wstring& line)
    {
        TheEditor.TypeLine(line.c_str(), true);
        output.Lines.clear(); // the typed line itself
        RunTopLevelLine();
    }
    void Trace(const std::wstring& name, const std::string& choices)
    {
        view.Choices.assign(choices.begin(), choices.end());
        Run(L"trace \"" + Path(name) + L"\"");
    }
    std::vector<std::wstring> Printed() const { return lang_test::NonEmpty(output.Lines); }
};

const char kTwoStages[] = "@echo off\r\n"
                          "echo a& echo b\r\n"
                          "\r\n"
                          "echo c\r\n";

TEST_F(TraceTest, OneStepIsOneStage)
{
    folder.WriteBytes(L"t.bat", kTwoStages);
    Trace(L"t.bat", "ssss");

    EXPECT_EQ(view.Title, L"Trace - " + Path(L"t.bat"));
    ASSERT_EQ(view.Waits.size(), 4u);
    // Each stage waits for its own step: b waits after a has printed.
    const std::vector<std::wstring> stages = {L"echo off", L"echo a", L"echo b", L"echo c"};
    const std::vector<std::wstring> sources = {L"@echo off", L"echo a& echo b", L"echo a& echo b", L"echo c"};
    const std::vector<int> highlighted = {0, 1, 1, 3};
    const std::vector<size_t> printedBefore = {0, 0, 1, 2};
    for (size_t i = 0; i < view.Waits.size(); ++i) {
        const WaitPicture& wait = view.Waits[i];
        EXPECT_EQ(std::wstring(SkipWhiteW(wait.Stage.c_str())).substr(0, stages[i].size()), stages[i]) << i;
        EXPECT_EQ(wait.Source, sources[i]) << i;
        EXPECT_EQ(wait.Highlight, highlighted[i]) << i;
        EXPECT_EQ(wait.OutputLines, printedBefore[i]) << i;
        EXPECT_TRUE(wait.Stepping) << i;
        // The list holds every raw line, the blank one too.
        EXPECT_EQ(wait.List.size(), 4u);
    }
    EXPECT_EQ(Printed(), (std::vector<std::wstring>{L"a", L"b", L"c"}));
    // The view is closed when the program ends, and tracing is over.
    EXPECT_EQ(view.Opens, 1);
    EXPECT_EQ(view.Closes, 1);
    EXPECT_EQ(TheShell.TraceActive, 0);
    EXPECT_EQ(TheShell.TraceWindow, nullptr);
    EXPECT_EQ(ErrorLevel, 0);

    // In Unix mode the title shows the path the Unix way.
    TheUnixMode.Unix = 1;
    Trace(L"t.bat", "r");
    TheUnixMode.Unix = 0;
    std::wstring unixPath = Path(L"t.bat");
    std::replace(unixPath.begin(), unixPath.end(), L'\\', L'/');
    EXPECT_EQ(view.Title, L"Trace - " + unixPath);

    // Traced again, the steps count from the start.
    output.Lines.clear();
    view.Waits.clear();
    Trace(L"t.bat", "ssss");
    EXPECT_EQ(view.Waits.size(), 4u);
    EXPECT_EQ(Printed(), (std::vector<std::wstring>{L"a", L"b", L"c"}));
}

TEST_F(TraceTest, TheSourceOfAJoinedGroupIsItsFirstLineAsRead)
{
    folder.WriteBytes(L"g.bat", "@echo off\r\n(\r\necho a\r\n  echo b\r\n)\r\necho c\r\n");
    Trace(L"g.bat", "ssss");
    ASSERT_EQ(view.Waits.size(), 4u);
    const std::vector<std::wstring> sources = {L"@echo off", L"(", L"(", L"echo c"};
    for (size_t i = 0; i < view.Waits.size(); ++i) EXPECT_EQ(view.Waits[i].Source, sources[i]) << i;
    EXPECT_EQ(Printed(), (std::vector<std::wstring>{L"a", L"b", L"c"}));
}

TEST_F(TraceTest, RunFreelyClosesTheViewAndStopEndsTheProgram)
{
    folder.WriteBytes(L"t.bat", kTwoStages);
    Trace(L"t.bat", "sr");
    EXPECT_EQ(view.Waits.size(), 2u);
    EXPECT_EQ(view.Closes, 1);
    EXPECT_EQ(Printed(), (std::vector<std::wstring>{L"a", L"b", L"c"}));
    EXPECT_EQ(TheShell.Terminate, 0);

    // Stop before b: nothing more runs, in this program or its caller.
    folder.WriteBytes(L"s.bat", "@echo off\r\n"
                                "echo a& echo b\r\n"
                                "echo made > \"" +
                                    std::string(folder.Path().begin(), folder.Path().end()) +
                                    "\\made.txt\"\r\n");
    folder.WriteBytes(L"outer.bat", "@echo off\r\ncall \"" +
                                        std::string(folder.Path().begin(), folder.Path().end()) +
                                        "\\s.bat\"\r\necho outer goes on\r\n");
    output.Lines.clear();
    view.Waits.clear();
    view.Choices.assign({'s', 's', 's', 's', 'p'});
    Run(L"trace \"" + Path(L"outer.bat") + L"\"");
    EXPECT_EQ(view.Waits.size(), 5u);
    EXPECT_EQ(Printed(), std::vector<std::wstring>{L"a"});
    EXPECT_FALSE(folder.Exists(L"made.txt"));
    EXPECT_EQ(TheShell.Terminate, 2);
    EXPECT_EQ(view.Closes, 2);
    EXPECT_EQ(TheShell.TraceActive, 0);

    // Closing the window is the same as Stop.
    output.Lines.clear();
    view.Waits.clear();
    Trace(L"t.bat", "");
    EXPECT_EQ(view.Waits.size(), 1u);
    EXPECT_TRUE(Printed().empty());
    EXPECT_EQ(TheShell.Terminate, 2);

    // Steps granted after a stop change nothing.
    TheShell.TracePermitted = -1;
    TraceGrantStep();
    EXPECT_EQ(TheShell.TracePermitted, -1);
}

TEST_F(TraceTest, StepAndStopAreDimmedWhileACommandWaitsForTheUser)
{
    folder.WriteBytes(L"p.bat", "@echo off\r\npause\r\necho after\r\n");
    host.Keys.assign({L'x'});
    Trace(L"p.bat", "sss");
    ASSERT_EQ(host.SteppingAtKey.size(), 1u);
    EXPECT_FALSE(host.SteppingAtKey[0]);
    ASSERT_EQ(view.Waits.size(), 3u);
    EXPECT_TRUE(view.Waits[2].Stepping);
    EXPECT_EQ(Printed().back(), L"after");

    // Ctrl-C at the pause: dimmed through the break question too, and back
    // once the answer lets the program go on.
    output.Lines.clear();
    view.Waits.clear();
    host.SteppingAtKey.clear();
    host.Keys.assign({wchar_t(3), L'n'});
    Trace(L"p.bat", "sss");
    EXPECT_EQ(host.SteppingAtKey, (std::vector<bool>{false, false}));
    ASSERT_EQ(view.Waits.size(), 3u);
    EXPECT_TRUE(view.Waits[2].Stepping);
    EXPECT_EQ(Printed().back(), L"after");

    // The break question after a failed command dims them on its own.
    folder.WriteBytes(L"e.bat", "@echo off\r\nnosuchcommand\r\necho after\r\n");
    output.Lines.clear();
    view.Waits.clear();
    host.SteppingAtKey.clear();
    host.Keys.assign({L'n'});
    Trace(L"e.bat", "sss");
    EXPECT_EQ(host.SteppingAtKey, std::vector<bool>{false});
    ASSERT_EQ(view.Waits.size(), 3u);
    EXPECT_TRUE(view.Waits[1].Stepping);
    EXPECT_TRUE(view.Waits[2].Stepping);
    EXPECT_EQ(Printed().back(), L"after");

    // A command that does not wait leaves the buttons alone.
    TheShell.TraceActive = 1;
    TheShell.TraceWindow = &view;
    view.Stepping = true;
    {
        TraceUserWait wait(false);
        EXPECT_TRUE(view.Stepping);
    }
    TraceEnd();
}

TEST_F(TraceTest, FormsOfTheCommand)
{
    // At the prompt trace needs a program, and one that exists.
    Run(L"trace");
    EXPECT_EQ(Printed(), std::vector<std::wstring>{L"Invalid number of parameters"});
    output.Lines.clear();
    Run(L"trace \"" + Path(L"none") + L"\"");
    EXPECT_EQ(Printed(), std::vector<std::wstring>{L"No such batch program"});
    // A file that is there but no batch program is not run either.
    folder.WriteBytes(L"data.txt", "echo x\r\n");
    output.Lines.clear();
    Run(L"trace \"" + Path(L"data.txt") + L"\"");
    EXPECT_EQ(Printed(), std::vector<std::wstring>{L"No such batch program"});
    EXPECT_EQ(view.Opens, 0);

    // Inside a program, trace alone traces the rest of it, from its own line
    // on; the view stays up until the typed line ends.
    folder.WriteBytes(L"in.bat", "@echo off\r\necho before\r\ntrace & echo same line\r\necho after\r\n");
    output.Lines.clear();
    view.Choices.assign({'s', 's'});
    Run(L"\"" + Path(L"in.bat") + L"\"");
    EXPECT_EQ(view.Title, L"Trace - " + Path(L"in.bat"));
    ASSERT_EQ(view.Waits.size(), 2u);
    EXPECT_EQ(view.Waits[0].Highlight, 2);
    EXPECT_EQ(view.Waits[0].OutputLines, 1u);
    EXPECT_EQ(view.Waits[1].Highlight, 3);
    EXPECT_EQ(Printed(), (std::vector<std::wstring>{L"before", L"same line", L"after"}));
    EXPECT_EQ(view.Closes, 1);
    EXPECT_EQ(TheShell.TraceActive, 0);

    // Already tracing, it does nothing more.
    view.Waits.clear();
    Trace(L"in.bat", "sssssss");
    EXPECT_EQ(view.Opens, 2);
    EXPECT_EQ(view.Waits.size(), 5u);
}

TEST_F(TraceTest, TheListFollowsTheProgramThatRuns)
{
    std::string dir(folder.Path().begin(), folder.Path().end());
    folder.WriteBytes(L"a.bat", "@echo off\r\ncall \"" + dir + "\\b.bat\"\r\necho back\r\n\"" + dir + "\\c.bat\"\r\n");
    folder.WriteBytes(L"b.bat", "@echo off\r\necho in b\r\n");
    folder.WriteBytes(L"c.bat", "@echo in c\r\n");
    Trace(L"a.bat", "ssssssss");
    const std::vector<std::wstring> a = {L"@echo off", L"call \"" + Path(L"b.bat") + L"\"", L"echo back",
                                         L"\"" + Path(L"c.bat") + L"\""};
    const std::vector<std::wstring> b = {L"@echo off", L"echo in b"};
    const std::vector<std::wstring> c = {L"@echo in c"};
    const std::vector<std::vector<std::wstring>> lists = {a, a, b, b, a, a, c};
    const std::vector<int> highlighted = {0, 1, 0, 1, 2, 3, 0};
    ASSERT_EQ(view.Waits.size(), lists.size());
    for (size_t i = 0; i < lists.size(); ++i) {
        EXPECT_EQ(view.Waits[i].List, lists[i]) << i;
        EXPECT_EQ(view.Waits[i].Highlight, highlighted[i]) << i;
    }
    EXPECT_EQ(Printed(), (std::vector<std::wstring>{L"in b", L"back", L"in c"}));

    // trace with a name inside a traced program: the view moves on to the new
    // program in the same window, and the caller is replaced for good.
    folder.WriteBytes(L"d.bat", "@echo off\r\ntrace \"" + dir + "\\b.bat\"\r\necho never\r\n");
    output.Lines.clear();
    view.Waits.clear();
    Trace(L"d.bat", "sssss");
    EXPECT_EQ(view.Opens, 2);
    ASSERT_EQ(view.Waits.size(), 4u);
    EXPECT_EQ(view.Waits[3].List, b);
    EXPECT_EQ(Printed(), std::vector<std::wstring>{L"in b"});
    EXPECT_EQ(TheShell.TraceActive, 0);
}

// Without a view (a host that has none) trace just runs the program.
TEST_F(TraceTest, WithoutAViewTheProgramRunsUntraced)
{
    TraceViewer = nullptr;
    folder.WriteBytes(L"t.bat", kTwoStages);
    Run(L"trace \"" + Path(L"t.bat") + L"\"");
    EXPECT_EQ(Printed(), (std::vector<std::wstring>{L"a", L"b", L"c"}));
    EXPECT_EQ(view.Opens, 0);
}

// ombc.exe prints the line and the stage and reads s, r or p (or Enter, or
// Ctrl-C, or the end of input) from standard input.
TEST(TraceConsole, KeysFromStandardInput)
{
    TempFolder f;
    f.WriteBytes(L"t.bat", kTwoStages);
    auto run = [&](const std::string& keys) {
        return lang_test::NonEmpty(lang_test::Lines(RunOmbcIn(f.Path(), L"", "trace t.bat\n" + keys + "\necho next\n").Output));
    };
    std::wstring title = L"Trace - " + f.Path() + L"\\t.bat";
    const std::vector<std::wstring> stepped = {title, L"1: @echo off", L"> echo off", L"2: echo a& echo b", L"> echo a",
                                               L"a", L"> echo b", L"b", L"4: echo c", L"> echo c", L"c", L"next"};
    auto stepwise = run("ssss");
    ASSERT_EQ(stepwise.size(), stepped.size());
    for (size_t i = 0; i < stepped.size(); ++i)
        EXPECT_EQ(std::wstring(stepwise[i]).substr(0, stepped[i].size()), stepped[i]) << i;
    // Enter steps as well: the line end of the keys line is one more step.
    EXPECT_EQ(run("s\n\n"), stepwise);

    // Run: no more stages are shown.
    auto free = run("sr");
    EXPECT_EQ(free.size(), 9u);
    EXPECT_EQ(std::vector<std::wstring>(free.end() - 4, free.end()),
              (std::vector<std::wstring>{L"a", L"b", L"c", L"next"}));

    // Stop before b; the shell goes on with the next typed line.
    auto stopped = run("ssp");
    EXPECT_EQ(stopped.back(), L"next");
    EXPECT_EQ(std::count(stopped.begin(), stopped.end(), L"a"), 1);
    EXPECT_EQ(std::count(stopped.begin(), stopped.end(), L"b"), 0);
    EXPECT_EQ(std::count(stopped.begin(), stopped.end(), L"c"), 0);

    // The end of input stops as Ctrl-C would (the key and its line end are
    // two steps).
    auto ended = lang_test::NonEmpty(lang_test::Lines(RunOmbcIn(f.Path(), L"/C trace t.bat", "s").Output));
    EXPECT_EQ(std::count(ended.begin(), ended.end(), L"a"), 1);
    EXPECT_EQ(std::count(ended.begin(), ended.end(), L"b"), 0);
    EXPECT_EQ(ended.back(), L"> echo b");
}

} // namespace
