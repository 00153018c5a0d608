// Program search and launch end to end: our own small programs started by
// ombc.exe, their output on the screen, their exit codes as ErrorLevel, and
// the files they were given.
#include "exec_support.h"

#include <gtest/gtest.h>

#include <string>

namespace {

struct LaunchCase {
    std::string lines;
    std::wstring expected;
};

TEST(Launch, OutputArgumentsAndExitCodes)
{
    TempFolder f;
    OmbrelSetting noBanner(L"Copyright", 0);
    const LaunchCase cases[] = {
        // Arguments arrive as typed, quotes and all.
        {"say_args \"a b\"  c\n", L"line=say_args \"a b\"  c\n[a b]\n[c]\n"},
        {"exit_with 7\necho el=%errorlevel%\n", L"exiting 7\nel=7\n"},
        {"exit_with -2\necho el=%errorlevel%\n", L"exiting -2\nel=-2\n"},
        {"exit_with\necho el=%errorlevel%\n", L"exiting 0\nel=0\n"},
        // A GUI program gives the prompt back at once: it is still running.
        {"gui_exit 4\necho el=%errorlevel%\n", L"el=259\n"},
        {"flood 2\n", L"00000001 abcdefghijklmnopqrstuvwxyz ABCDEFGHIJKLMNOPQRSTUVWXYZ 0123\n"
                      L"00000002 abcdefghijklmnopqrstuvwxyz ABCDEFGHIJKLMNOPQRSTUVWXYZ 0123\n\ndone\n"},
        // start does not wait; start /w does, and takes the exit code.
        {"start /w exit_with 3\necho el=%errorlevel%\n", L"exiting 3\nel=3\n"},
        {"start \"title\" /w exit_with 5\necho el=%errorlevel%\n", L"exiting 5\nel=5\n"},
        {"start gui_exit 6\necho el=%errorlevel%\n", L"el=259\n"},
        {"start\necho el=%errorlevel%\n", L"el=0\n"},
        // call of a program runs it and keeps its exit code.
        {"call exit_with 4\necho el=%errorlevel%\n", L"exiting 4\nel=4\n"},
    };
    // Both capture routes give the program's output and exit code alike.
    for (int emulator : kCaptureRoutes) {
        OmbrelSetting route(L"Emulator", emulator);
        for (const LaunchCase& c : cases)
            EXPECT_EQ(TypedWithPrograms(f, c.lines), c.expected) << c.lines.c_str() << " emulator " << emulator;
        // Lines typed to ombc.exe are its commands: a reading program sees the
        // end of its input at once (which its console shows as ^Z).
        EXPECT_EQ(TypedWithPrograms(f, "echo_in\necho el=%errorlevel%\n"),
                  std::wstring(emulator ? L"^Z\n" : L"") + L"lines: 0\nel=0\n");
    }
}

TEST(Launch, RedirectionReachesTheProgram)
{
    TempFolder f;
    OmbrelSetting noBanner(L"Copyright", 0);
    f.WriteBytes(L"in.txt", "one\r\ntwo\r\n");
    EXPECT_EQ(TypedWithPrograms(f, "exit_with 4 > out.txt\necho el=%errorlevel%\n"), L"el=4\n");
    EXPECT_EQ(f.ReadBytes(L"out.txt"), "exiting 4\r\n");
    TypedWithPrograms(f, "exit_with 5 >> out.txt\n");
    EXPECT_EQ(f.ReadBytes(L"out.txt"), "exiting 4\r\nexiting 5\r\n");
    EXPECT_EQ(TypedWithPrograms(f, "echo_in < in.txt\necho el=%errorlevel%\n"), L"got: one\ngot: two\nlines: 2\nel=2\n");
    TypedWithPrograms(f, "echo_in < in.txt > got.txt\n");
    EXPECT_EQ(f.ReadBytes(L"got.txt"), "got: one\r\ngot: two\r\nlines: 2\r\n");
    // What the statement wrote before the program stays in the file.
    f.WriteBytes(L"both.bat", "@echo first\r\n@exit_with 1\r\n@echo last\r\n");
    TypedWithPrograms(f, "both.bat > both.txt\n");
    EXPECT_EQ(f.ReadBytes(L"both.txt"), "first\r\nexiting 1\r\nlast\r\n");
    // A pipe hands the program's output to the next stage.
    EXPECT_EQ(TypedWithPrograms(f, "say_args x | echo_in\n"), L"got: line=say_args x\ngot: [x]\nlines: 2\n");
    // The helpers' variables are gone after the run, behind oms32.exe and
    // behind the loader alike (set lists no name that begins with "=").
    for (int emulator : {0, 1}) {
        OmbrelSetting route(L"Emulator", emulator);
        std::wstring shown = TypedWithPrograms(
            f, "exit_with 1 > out.txt\nexit_with 1\necho [%=run%%=cmd%%=hwnd%%=open%%=cp%%=cpyr%%=logg%%=imgbase%%=size%]\n");
        EXPECT_EQ(shown.substr(shown.rfind(L'[')), L"[]\n") << emulator;
    }
}

TEST(Launch, SuffixAndPathOrderDecide)
{
    TempFolder f;
    OmbrelSetting noBanner(L"Copyright", 0);
    CreateDirectoryW((f / L"first").c_str(), nullptr);
    CreateDirectoryW((f / L"second").c_str(), nullptr);
    std::wstring exitWith = ProgramFolder() + L"\\exit_with.exe";
    // In one folder .EXE comes before .BAT; an earlier folder wins over a
    // better suffix in a later one; the current folder comes first of all.
    ASSERT_TRUE(CopyFileW(exitWith.c_str(), (f / L"second\\prog.exe").c_str(), FALSE));
    f.WriteBytes(L"second\\prog.bat", "@echo second bat\r\n");
    f.WriteBytes(L"first\\prog.cmd", "@echo first cmd\r\n");
    f.WriteBytes(L"first\\other.bat", "@echo other bat\r\n");
    ASSERT_TRUE(CopyFileW(exitWith.c_str(), (f / L"first\\other.com").c_str(), FALSE));
    std::string path = "set PATH=" + Narrow(f.Path()) + "\\first;" + Narrow(f.Path()) + "\\second\n";
    EXPECT_EQ(TypedOutput(path + "prog 2\n", f.Path()), L"first cmd\n");
    EXPECT_EQ(TypedOutput(path + "other 2\n", f.Path()), L"exiting 2\n");
    EXPECT_EQ(TypedOutput(path + "prog.exe 3\necho el=%errorlevel%\n", f.Path()), L"exiting 3\nel=3\n");
    f.WriteBytes(L"prog.wbt", "@echo here wbt\r\n");
    EXPECT_EQ(TypedOutput(path + "prog\n", f.Path()), L"here wbt\n");
    // Empty and quoted pieces of PATH.
    std::string odd = "set PATH=;;\"" + Narrow(f.Path()) + "\\second\";\n";
    EXPECT_EQ(TypedOutput(odd + "prog.exe 6\n", f.Path()), L"exiting 6\n");
}

TEST(Launch, AFileOpensWithItsAssociatedProgram)
{
    TempFolder f;
    OmbrelSetting noBanner(L"Copyright", 0);
    f.WriteBytes(L"notes.omt", "text\r\n");
    std::wstring command = L"\"" + ProgramFolder() + L"\\say_args.exe\" \"%1\" tail";
    ASSERT_EQ(RegSetKeyValueW(HKEY_CLASSES_ROOT, L".omt", nullptr, REG_SZ, L"OmbrelTest",
                              sizeof(L"OmbrelTest")),
              ERROR_SUCCESS);
    ASSERT_EQ(RegSetKeyValueW(HKEY_CLASSES_ROOT, L"OmbrelTest\\shell\\open\\command", nullptr,
                              REG_SZ, command.c_str(), DWORD((command.size() + 1) * sizeof(wchar_t))),
              ERROR_SUCCESS);
    std::wstring program = ProgramFolder() + L"\\say_args.exe";
    EXPECT_EQ(TypedOutput("notes.omt\n", f.Path()),
              L"line=\"" + program + L"\" \"" + f.Path() + L"\\notes.omt\" tail\n[" + f.Path() + L"\\notes.omt]\n[tail]\n");
    // An extension without an association is searched for and then tried as a folder.
    EXPECT_EQ(TypedOutput("notes.zzq\n", f.Path()), L"Bad command or file name\n\n");
    RegDeleteTreeW(HKEY_CLASSES_ROOT, L"OmbrelTest");
    RegDeleteTreeW(HKEY_CLASSES_ROOT, L".omt");
}

TEST(Launch, WhichNamesTheKind)
{
    TempFolder f;
    f.WriteBytes(L"dos.exe", std::string("MZ") + std::string(62, '\0'));
    f.WriteBytes(L"text.com", "not a program\r\n");
    std::wstring out = TypedWithPrograms(f, "which say_args\nwhich gui_exit.exe\nwhich dos\nwhich text.com\n"
                                            "which nothere\necho el=%errorlevel%\nwhich\nwhich /x a\n");
    std::wstring bin = ProgramFolder();
    EXPECT_EQ(out, L"Found " + bin + L"\\say_args.exe (64-bit, Console)\n"
                   L"Found " + bin + L"\\gui_exit.exe (64-bit, GUI)\n"
                   L"Found " + f.Path() + L"\\dos.exe (DOS)\n"
                   L"Found " + f.Path() + L"\\text.com\n"
                   L"Executable not found\n\nel=1\n"
                   L"Invalid number of parameters\n\nInvalid switch\n\n");
}

TEST(Launch, BadInputIsReported)
{
    TempFolder f;
    f.WriteBytes(L"text.exe", "just text\r\n");
    CreateDirectoryW((f / L"sub").c_str(), nullptr);
    std::string longName(300, 'a');
    const LaunchCase cases[] = {
        {"nothere\necho el=%errorlevel%\n", L"Bad command or file name\n\nel=1\n"},
        {"text.exe\necho el=%errorlevel%\n", L"Unable to execute program\n\nel=1\n"},
        {longName + "\necho el=%errorlevel%\n", L"Bad command or file name\n\nel=1\n"},
        {"x:\\" + longName + ".exe\n", L"Bad command or file name\n\n"},
        // An unknown word is tried as a folder.
        {"sub\necho %cd%\n", f.Path() + L"\\sub\n"},
        {"sub\\..\\\necho %cd%\n", f.Path() + L"\n"},
        {"debug\n", L"Invalid number of parameters\n\n"},
        {"tasks /q\n", L"Invalid switch\n\n"},
        {"tasks /k 4\n", L"No such entry\n\n"},
        {"tasks\n", L"     Background Tasks\n\n     0 task(s) running\n"},
        {"dos what\n", L"Invalid parameter\n\n"},
    };
    for (const LaunchCase& c : cases) EXPECT_EQ(TypedWithPrograms(f, c.lines), c.expected) << c.lines.c_str();
}

// The pipe route reads the output in pieces in the shell's code page.
TEST(Launch, BinaryNoiseAndLongOutput)
{
    TempFolder f;
    OmbrelSetting pipes(L"Emulator", 0);
    std::wstring noise = TypedWithPrograms(f, "flood noise 20000\necho el=%errorlevel%\n");
    EXPECT_NE(noise.find(L"done\nel=0\n"), std::wstring::npos);
    std::wstring lines = TypedWithPrograms(f, "flood 20000\n");
    EXPECT_NE(lines.find(L"00020000 abc"), std::wstring::npos);
    EXPECT_NE(lines.find(L"00010000 abc"), std::wstring::npos);
    // Every line arrives once and in order, also where a read ends inside a
    // character.
    std::wstring expected;
    for (int i = 1; i <= 6000; ++i) {
        std::wstring number = std::to_wstring(i);
        expected += std::wstring(7 - number.size(), L'0') + number + L" \u00FC\u20AC\U0001F600\n";
    }
    EXPECT_EQ(TypedWithPrograms(f, "chcp 65001\nflood utf8 6000\necho el=%errorlevel%\n"),
              expected + L"\ndone\nel=0\n");
    // Under the loader the program's console takes the code page chcp chose.
    // (Wine's console keeps a character outside the basic plane as two
    // cells, so only the first two characters are compared.)
    OmbrelSetting loader(L"Emulator", 1);
    OmbrelSetting noBanner(L"Copyright", 0);
    std::wstring loaded = TypedWithPrograms(f, "chcp 65001\nflood utf8 300\n");
    for (const wchar_t* line : {L"0000001 \u00FC\u20AC", L"0000300 \u00FC\u20AC"})
        EXPECT_NE(loaded.find(line), std::wstring::npos) << line;
}

} // namespace
