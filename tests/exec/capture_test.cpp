// Console capture end to end: console programs under the console loader
// (their screen output, the keys typed to them, their exit codes), the
// loader's banner, log, scratch file and its own pipe route, the choice of
// helper, and the capture command with CAPTURE.LST.
#include "exec/capture_settings.h"
#include "exec/launch_prepare.h"
#include "exec_support.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::wstring InBin(const wchar_t* name) { return ProgramFolder() + L"\\" + name; }

std::wstring TempFile(const wchar_t* name)
{
    wchar_t folder[MAX_PATH];
    GetTempPathW(MAX_PATH, folder);
    return std::wstring(folder) + name;
}

int CountScratchFiles()
{
    WIN32_FIND_DATAW found;
    HANDLE find = FindFirstFileW(TempFile(L"$om*.tmp").c_str(), &found);
    if (find == INVALID_HANDLE_VALUE) return 0;
    int count = 0;
    do ++count;
    while (FindNextFileW(find, &found));
    FindClose(find);
    return count;
}

// CAPTURE.LST beside the shell (shared by every test program of the build):
// gone again when the test ends, whatever happened.
struct ListCleanup {
    ~ListCleanup()
    {
        SetFileAttributesW(InBin(L"CAPTURE.LST").c_str(), FILE_ATTRIBUTE_NORMAL);
        DeleteFileW(InBin(L"CAPTURE.LST").c_str());
    }
};

TEST(Capture, TheLoaderShowsTheProgramAndTypesToIt)
{
    OmbrelSetting noBanner(L"Copyright", 0);
    // In a pseudo console the console echoes a line when the program reads
    // it; on the loader's own pipes the loader echoes the keys as they come.
    // ombc.exe sends a line out each time it is finished, so the line the
    // program went back to comes twice there.
    struct Route {
        const wchar_t* pipes;
        std::wstring painted, echoed;
    } routes[] = {
        {nullptr, L"plain\nred   moved\nred   moved!\nname? Bob\nhello Bob\n",
         L"one\ngot: one\ntwo\ngot: two\n^Z\nlines: 2\n"},
        {L"1", L"plain\nred   moved!\nname? hello Bob\n", L"one\ntwo\ngot: one\ngot: two\nlines: 2\n"},
    };
    for (const Route& route : routes) {
        SetEnvironmentVariableW(L"OMLD32_PIPES", route.pipes);
        OmbcResult run = RunOmbc(L"/C \"" + InBin(L"paint_ask.exe") + L"\"", "Bob\n");
        std::wstring painted = JoinLines(run.Output);
        // On pipes the typed line shows when it arrives, which may be before
        // or after the program's first lines.
        if (route.pipes) {
            size_t echo = painted.find(L"Bob\n");
            ASSERT_NE(echo, std::wstring::npos) << painted;
            painted.erase(echo, 4);
        }
        EXPECT_EQ(painted, route.painted);
        EXPECT_EQ(run.ExitCode, 3);
        // The end of the shell's input is the end of the program's.
        run = RunOmbc(L"/C \"" + InBin(L"echo_in.exe") + L"\"", "one\ntwo\n");
        EXPECT_EQ(JoinLines(run.Output), route.echoed);
        EXPECT_EQ(run.ExitCode, 2);
    }
    SetEnvironmentVariableW(L"OMLD32_PIPES", nullptr);
    // A /C run leaves no prompt behind, at a console too.
    OmbcResult nested = RunOmbc(L"/C \"" + InBin(L"ombc.exe") + L"\" /C echo hi");
    EXPECT_EQ(JoinLines(nested.Output), L"hi\n");
    TempFolder f;
    f.WriteBytes(L"in.txt", "x\r\ny\r\nz\r\n");
    // Redirections go to the program, not to the screen.
    EXPECT_EQ(TypedWithPrograms(f, "echo_in < in.txt > out.txt\necho el=%errorlevel%\n"), L"el=3\n");
    EXPECT_EQ(f.ReadBytes(L"out.txt"), "got: x\r\ngot: y\r\ngot: z\r\nlines: 3\r\n");
}

// ombc.exe at a console lends it to the programs it runs, as a console shell
// does: they paint and read there themselves, with no loader of their own
// (whose banner would show again), and redirections still reach them.
TEST(Capture, OmbcAtAConsoleLendsItToItsPrograms)
{
    OmbrelSetting banner(L"Copyright", 1);
    TempFolder f;
    f.WriteBytes(L"lent.bat", "@echo off\r\necho before\r\n\"" + Narrow(InBin(L"paint_ask.exe")) +
                                  "\"\r\necho el=%errorlevel%\r\n\"" + Narrow(InBin(L"say_args.exe")) +
                                  "\" a \"b c\" > said.txt\r\necho el=%errorlevel%\r\n");
    OmbcResult lent = RunOmbcIn(f.Path(), L"/C \"" + InBin(L"ombc.exe") + L"\" /C lent.bat", "Bob\n");
    EXPECT_EQ(JoinLines(lent.Output), L"OMLD32 console loader for Ombrel\nbefore\nplain\nred   moved\nred   "
                                      L"moved!\nname? Bob\nhello Bob\nel=3\nel=0\n");
    EXPECT_EQ(lent.ExitCode, 0);
    EXPECT_NE(f.ReadBytes(L"said.txt").find("[a]\r\n[b c]\r\n"), std::string::npos);
    // A program that leaves the console raw does not take the shell's line
    // input with it: the typed line is echoed and read whole.
    f.WriteBytes(L"raw.bat",
                 "@echo off\r\n\"" + Narrow(InBin(L"raw_input.exe")) + "\"\r\ngetstr\r\necho [%getstr%]\r\n");
    lent = RunOmbcIn(f.Path(), L"/C \"" + InBin(L"ombc.exe") + L"\" /C raw.bat", "Ann Lee\n");
    EXPECT_EQ(JoinLines(lent.Output), L"OMLD32 console loader for Ombrel\nAnn Lee\n[Ann Lee]\n");
}

TEST(Capture, BannerLogAndScratchFile)
{
    OmbrelSetting logging(L"Logging", 1);
    std::wstring log = TempFile(L"OMLD32.LOG");
    DeleteFileW(log.c_str());
    int scratchBefore = CountScratchFiles();
    OmbcResult run = RunOmbc(L"/C \"" + InBin(L"exit_with.exe") + L"\" 4");
    EXPECT_EQ(JoinLines(run.Output), L"OMLD32 console loader for Ombrel\nexiting 4\n");
    EXPECT_EQ(run.ExitCode, 4);
    TempFolder f;
    ASSERT_TRUE(CopyFileW(log.c_str(), (f / L"log.txt").c_str(), FALSE));
    EXPECT_NE(f.ReadBytes(L"log.txt").find("exit code 4"), std::string::npos);
    // The scratch file named in "=imgbase" goes with the run.
    EXPECT_EQ(CountScratchFiles(), scratchBefore);
}

TEST(Capture, TheHelperFollowsTheSettingsAndTheList)
{
    ListCleanup cleanup;
    std::wstring console = InBin(L"say_args.exe"), listed = InBin(L"exit_with.exe");
    ASSERT_EQ(RunOmbc(L"/C capture \"" + listed + L"\"").ExitCode, 0);
    struct Case {
        int capture, emulator, kind;
        bool noWait;
        const std::wstring* program;
        bool loader, captured;
    } cases[] = {
        {1, 1, 2, false, &console, true, true},
        {1, 1, 2, true, &console, false, true}, // start never uses the loader
        {1, 1, 2, false, &listed, false, false},
        {1, 0, 2, false, &console, false, true},
        {1, 1, 1, false, &console, false, false}, // a DOS program with emulation on
        {1, 0, 1, false, &console, false, true},
        {0, 1, 2, false, &console, false, false},
        {1, 1, 0, false, &console, false, false},
    };
    CaptureSettings saved = TheCaptureSettings;
    for (const Case& c : cases) {
        TheCaptureSettings.Capture = c.capture;
        TheCaptureSettings.Emulator = c.emulator;
        std::wstring helper = ChooseHelper(c.program->c_str(), c.kind, c.noWait);
        EXPECT_EQ(NamesLoader(helper), c.loader) << c.capture << c.emulator << c.kind << c.noWait;
        EXPECT_EQ(CaptureApplies(c.program->c_str(), c.kind), c.captured) << c.capture << c.emulator << c.kind;
        if (!c.loader) {
            EXPECT_EQ(helper, InBin(L"oms32.exe"));
        }
    }
    TheCaptureSettings = saved;
}

TEST(Capture, TheCommandKeepsTheList)
{
    ListCleanup cleanup;
    TempFolder f;
    std::string say = Narrow(InBin(L"say_args.exe")), exitWith = Narrow(InBin(L"exit_with.exe"));
    std::string gui = Narrow(InBin(L"gui_exit.exe"));
    struct Case {
        std::string lines;
        std::wstring expected;
    } cases[] = {
        {"capture\n", L"     No-Capture List\n\n     0 program(s) found\n"},
        {"capture OFF\ncapture on\n", L"Capture is OFF\nCapture is ON\n"},
        {"capture " + say + "\ncapture " + say + "\ncapture " + exitWith + "\n", L""},
        {"capture\n", L"     No-Capture List\n\n " + InBin(L"say_args.exe") + L"\n " + InBin(L"exit_with.exe") +
                          L"\n\n     2 program(s) found\n"},
        {"capture x:\\nothere.exe\necho el=%errorlevel%\n", L"No such file or directory\n\nel=1\n"},
        {"capture " + gui + "\n", L"Not a Win32 console application\n\n"},
        {"capture /d x:\\nothere.exe\n", L"No such entry\n\n"},
        {"capture a b\n", L"Invalid parameter\n\n"},
        {"capture /q\n", L"Invalid switch\n\n"},
        // A listed program runs without capture: oms32.exe, and no loader.
        {"say_args x\n", L"line=say_args x\n[x]\n"},
        {"capture /d " + say + "\ncapture\n",
         L"     No-Capture List\n\n " + InBin(L"exit_with.exe") + L"\n\n     1 program(s) found\n"},
    };
    for (const Case& c : cases) EXPECT_EQ(TypedWithPrograms(f, c.lines), c.expected) << c.lines.c_str();
    // A new list is UTF-16 with its mark, and hidden.
    std::wstring list = InBin(L"CAPTURE.LST");
    EXPECT_NE(GetFileAttributesW(list.c_str()) & FILE_ATTRIBUTE_HIDDEN, 0u);
    HANDLE file = CreateFileW(list.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
    unsigned char mark[2] = {};
    DWORD got = 0;
    ReadFile(file, mark, 2, &got, nullptr);
    CloseHandle(file);
    EXPECT_EQ(mark[0], 0xFF);
    EXPECT_EQ(mark[1], 0xFE);
    // The last entry taken away takes the file with it.
    EXPECT_EQ(TypedWithPrograms(f, "capture /d " + exitWith + "\n"), L"");
    EXPECT_EQ(GetFileAttributesW(list.c_str()), INVALID_FILE_ATTRIBUTES);
}

TEST(Capture, AListWrittenByHandKeepsItsEncodingAndComments)
{
    ListCleanup cleanup;
    TempFolder f;
    std::string say = Narrow(InBin(L"say_args.exe")), exitWith = Narrow(InBin(L"exit_with.exe"));
    std::wstring list = InBin(L"CAPTURE.LST");
    // The last line has no line end: a new entry must not run into it.
    std::string text = "; no capture for these\r\n\r\n   " + say;
    HANDLE file = CreateFileW(list.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    DWORD written = 0;
    WriteFile(file, text.data(), DWORD(text.size()), &written, nullptr);
    CloseHandle(file);
    EXPECT_EQ(TypedWithPrograms(f, "capture\ncapture " + exitWith + "\ncapture /d " + say + "\n"),
              L"     No-Capture List\n\n " + InBin(L"say_args.exe") + L"\n\n     1 program(s) found\n");
    // The comment stays, the new entry is in the file's own encoding.
    ASSERT_TRUE(CopyFileW(list.c_str(), (f / L"list.txt").c_str(), FALSE));
    EXPECT_EQ(f.ReadBytes(L"list.txt"), "; no capture for these\r\n\r\n" + exitWith + "\r\n");
}

} // namespace
