// From a line to a handler: the command table, the dispatcher, drive changes,
// labels, batch-only words and ErrorLevel, driven end to end through ombc.exe.
#include "lang/dispatch.h"

#include "support/ombc_runner.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cwchar>
#include <set>
#include <sstream>
#include <string>

namespace {

// Every name the language knows, as its users know it; the table may hold
// only these, and only once each.
const wchar_t* const kAllNames =
    L"about acs arch ask attrib beep box calc call callproc capture cbadd cbdelete cbdir cbfind cbget cbinsert "
    L"cbset cbtext cd cdd charnext charprev chcp chdir check clip clip. clipdisp cls color colour comma copy data "
    L"date date2ser ddeexec ddepoke ddereq debug del delbut describe devices dir dirs disk diskfree diskused "
    L"dispbox dlgbox dlgend dlgendall dlgitem dlgmenu dlgshow do dos drag dump echo echo. editbox eject enable end "
    L"endlocal endproc enumreg erase exit ext extension filedate filesize filetime filetype find findreg for "
    L"getfocus gethttp getini getkey getnum getreg getstr gettext go gosub goto gray grey group help his history if "
    L"ischecked isenabled isgrayed isgreyed isticked label lbadd lbdelete lbdir lbfind lbget lbinsert lbset lbtext "
    L"let locate lower macro md mem mkdir more move msgbox openbox page parse path pause play popd postmsg print "
    L"proc prompt pushd radio rd read readln rem ren rename replace return rmdir savebox say scopy seed sendkeys "
    L"sendmail ser2date set setfocus setini setlocal setreg settext shell shift sleep smove start stop strfind "
    L"strfold strpad strrep strrev strrfind strsize strsplit strtrim substr tasks tick time timer tips trace tree "
    L"type until upper ver verify viewicon vol volume wallpaper where which while xset";

std::set<std::wstring> Words(const wchar_t* text)
{
    std::wistringstream words(text);
    std::set<std::wstring> set;
    for (std::wstring word; words >> word;) set.insert(word);
    return set;
}

std::set<std::wstring> AllNames() { return Words(kAllNames); }

TEST(Dispatch, TableIsSortedAndHoldsOnlyKnownNames)
{
    std::set<std::wstring> known = AllNames();
    ASSERT_EQ(known.size(), 194u);
    auto table = CommandTable();
    ASSERT_FALSE(table.empty());
    for (size_t i = 0; i < table.size(); ++i) {
        EXPECT_TRUE(known.count(table[i].Name)) << "not a command: " << table[i].Name;
        if (i > 0) {
            EXPECT_LT(std::wcscmp(table[i - 1].Name, table[i].Name), 0) << table[i].Name;
        }
        if (table[i].Handler == nullptr) {
            EXPECT_NE(table[i].Flags & (NeedsBatch | IgnoredAtPrompt), 0u) << table[i].Name;
        }
    }
    for (const CommandEntry& entry : table) EXPECT_EQ(FindCommand(entry.Name), &entry);
    EXPECT_EQ(FindCommand(L"ech"), nullptr);
    EXPECT_EQ(FindCommand(L"ECHO"), nullptr); // the dispatcher lowers the word first
    EXPECT_EQ(FindCommand(L""), nullptr);

    auto help = HelpNames();
    ASSERT_EQ(help.size(), 148u);
    EXPECT_STREQ(help[77], L"modules");
    EXPECT_STREQ(help[147], L"until");
}

// The rows that carry each flag, as the language defines them; a row added
// to the table later must carry its flags from the start.
const wchar_t* const kNeedsBatch =
    L"cbadd cbdelete cbdir cbfind cbget cbinsert cbset cbtext check dlgbox dlgend dlgendall dlgitem dlgmenu "
    L"dlgshow enable endproc getfocus gettext gray grey ischecked isenabled isgrayed isgreyed isticked lbadd "
    L"lbdelete lbdir lbfind lbget lbinsert lbset lbtext proc radio setfocus settext tick";
const wchar_t* const kIgnoredAtPrompt = L"callproc gosub goto return shift stop";
const wchar_t* const kKeepsLevel =
    L"ask beep box calc call callproc comma data date2ser diskfree diskused echo echo. end endlocal endproc "
    L"enumreg filedate filesize filetime filetype for getini getkey getnum getreg getstr gosub goto let locate "
    L"lower more parse pause play proc read readln rem return say seed ser2date set setini setlocal setreg "
    L"shift sleep start stop strfind strfold strpad strrep strrev strrfind strsize strsplit strtrim substr trace "
    L"upper xset";
const wchar_t* const kWaitsForUser = L"pause getstr getkey getnum msgbox dispbox editbox openbox savebox dlgshow";

TEST(Dispatch, EveryRowCarriesItsFlags)
{
    const std::pair<unsigned, std::set<std::wstring>> flags[] = {{NeedsBatch, Words(kNeedsBatch)},
                                                                 {IgnoredAtPrompt, Words(kIgnoredAtPrompt)},
                                                                 {KeepsLevel, Words(kKeepsLevel)},
                                                                 {WaitsForUser, Words(kWaitsForUser)}};
    for (const CommandEntry& entry : CommandTable())
        for (const auto& [flag, names] : flags)
            EXPECT_EQ((entry.Flags & flag) != 0, names.count(entry.Name) != 0) << entry.Name << " flag " << flag;
}

TEST(Dispatch, BuiltinsLabelsAndUnknownWordsEndToEnd)
{
    OmbcResult r = RunOmbc(L"/C \"echo hello\"");
    EXPECT_EQ(r.Output, L"hello\r\n");
    EXPECT_EQ(r.ExitCode, 0);

    r = RunOmbc(L"/C nosuchcmd");
    EXPECT_EQ(r.Output, L"Bad command or file name\r\n\r\n");
    EXPECT_EQ(r.ExitCode, 1);

    r = RunOmbc(L"/C cbadd");
    EXPECT_EQ(r.Output, L"Batch program command\r\n\r\n");
    EXPECT_EQ(r.ExitCode, 1);

    // Upper-case words find the built-in; spacing inside the text is kept.
    r = RunOmbc(L"/C \"ECHO  Two  Blanks\"");
    EXPECT_EQ(r.Output, L" Two  Blanks\r\n");

    // A label does nothing and leaves ErrorLevel as it was.
    r = RunOmbc(L"", "nosuchcmd\n:label\n");
    EXPECT_EQ(r.ExitCode, 1);
    r = RunOmbc(L"/C :label");
    EXPECT_EQ(r.Output, L"");
    EXPECT_EQ(r.ExitCode, 0);

    // Batch-program words that do nothing outside one keep the level too.
    r = RunOmbc(L"", "nosuchcmd\ngoto x\nshift\n");
    EXPECT_EQ(r.Output, L"Bad command or file name\r\n\r\n");
    EXPECT_EQ(r.ExitCode, 1);
}

TEST(Dispatch, StatementsAfterAnErrorStillRunButEndStopsTheLine)
{
    // echo keeps ErrorLevel; verify, like most built-ins, resets it.
    OmbcResult r = RunOmbc(L"/C \"echo a & nosuch & echo c\"");
    EXPECT_EQ(r.Output, L"a\r\nBad command or file name\r\n\r\nc\r\n");
    EXPECT_EQ(r.ExitCode, 1);
    r = RunOmbc(L"/C \"nosuch & verify\"");
    EXPECT_EQ(r.ExitCode, 0);

    r = RunOmbc(L"/C \"echo a & end & echo b\"");
    EXPECT_EQ(r.Output, L"a\r\n");

    // An empty statement runs nothing and keeps the level.
    r = RunOmbc(L"", "nosuch\n & \n");
    EXPECT_EQ(r.Output, L"Bad command or file name\r\n\r\n");
    EXPECT_EQ(r.ExitCode, 1);
}

TEST(Dispatch, SwitchesHelpAndArgumentChecks)
{
    // dir /? is a help request; with an argument it is not.
    OmbcResult r = RunOmbc(L"/C \"tips /?\"");
    EXPECT_EQ(r.Output, L"");
    EXPECT_EQ(r.ExitCode, 0);

    r = RunOmbc(L"/C \"tips /? x\"");
    EXPECT_EQ(r.Output, L"Invalid switch\r\n\r\n");
    EXPECT_EQ(r.ExitCode, 1);

    r = RunOmbc(L"/C \"tips on off\"");
    EXPECT_EQ(r.Output, L"Invalid number of parameters\r\n\r\n");
    r = RunOmbc(L"/C \"tips maybe\"");
    EXPECT_EQ(r.Output, L"Invalid parameter\r\n\r\n");
    r = RunOmbc(L"/C \"exit /q\"");
    EXPECT_EQ(r.Output, L"Invalid switch\r\n\r\n");
    r = RunOmbc(L"/C \"exit /l /s\"");
    EXPECT_EQ(r.Output, L"Invalid switch\r\n\r\n");
    r = RunOmbc(L"/C \"seed 1 2\"");
    EXPECT_EQ(r.Output, L"Invalid number of parameters\r\n\r\n");
    r = RunOmbc(L"/C \"seed x\"");
    EXPECT_EQ(r.Output, L"Invalid parameter\r\n\r\n");
    r = RunOmbc(L"/C \"help a b\"");
    EXPECT_EQ(r.Output, L"Invalid number of parameters\r\n\r\n");
}

TEST(Dispatch, EchoStateTimerAndExit)
{
    OmbcResult r = RunOmbc(L"", "echo\necho off\necho\n");
    EXPECT_EQ(r.Output, L"echo is ON\r\necho is ON\r\n"); // echo off ends with its line

    r = RunOmbc(L"", "timer\ntimer\ntimer\n");
    std::wstring out = JoinLines(r.Output);
    EXPECT_EQ(out.rfind(L"Ticks elapsed is ", 0), 0u) << out;
    EXPECT_NE(out.find(L" milliseconds\n"), std::wstring::npos);
    EXPECT_EQ(std::count(out.begin(), out.end(), L'\n'), 1); // the third starts again

    // exit ends the input loop; what follows is never read.
    r = RunOmbc(L"", "echo one\nexit\necho two\n");
    EXPECT_EQ(r.Output, L"one\r\n");
    EXPECT_EQ(r.ExitCode, 0);
}

TEST(Dispatch, DriveChangesAndTheirFailures)
{
    OmbcResult r = RunOmbc(L"/C c:");
    EXPECT_EQ(r.Output, L"");
    EXPECT_EQ(r.ExitCode, 0);
    r = RunOmbc(L"/C 1:");
    EXPECT_EQ(r.Output, L"Bad command or file name\r\n\r\n");
    r = RunOmbc(L"/C q:");
    EXPECT_EQ(r.Output, L"No such file or directory\r\n\r\n");
    // A switch other than "-" blocks the drive change: the word goes on to
    // program search, which does not know it.
    r = RunOmbc(L"/C \"c: /p\"");
    EXPECT_EQ(r.Output, L"Bad command or file name\r\n\r\n");
    r = RunOmbc(L"/C \"c: x\"");
    EXPECT_EQ(r.Output, L"Bad command or file name\r\n\r\n");
    r = RunOmbc(L"/C \"c: /-\"");
    EXPECT_EQ(r.Output, L"");
}

TEST(Dispatch, OverlongAndUnbalancedLinesNeverCrash)
{
    // 10,000 characters are cut at 4,095 silently.
    std::string longLine = "echo " + std::string(9995, 'x') + "\n";
    OmbcResult r = RunOmbc(L"", longLine);
    EXPECT_EQ(r.ExitCode, 0);
    std::wstring out = JoinLines(r.Output);
    EXPECT_EQ(std::count(out.begin(), out.end(), L'x'), 4095 - 5);

    for (const char* line : {"echo \"open quote & echo no split\n", "(echo unclosed group\n", "echo )))(((\n",
                             "((((((((((((((((((((\n", "\"\n", "^\n", "echo ^\n"}) {
        r = RunOmbc(L"", line);
        EXPECT_GE(r.ExitCode, 0) << line;
        EXPECT_LE(r.ExitCode, 3) << line;
    }
    r = RunOmbc(L"", "echo \"open quote & echo no split\n");
    EXPECT_EQ(r.Output, L"\"open quote & echo no split\r\n");
}

} // namespace

namespace {

TEST(Dispatch, SeedGivesTheSameSequenceEveryTime)
{
    // x = x * 22695477 + 1, bits 16 to 30: seed 1 gives 346, then 130.
    OmbcResult r = RunOmbc(L"", "seed 1\necho %random%;%random%\nseed 1\necho %random%\n");
    EXPECT_EQ(JoinLines(r.Output), L"346;130\n346\n");
}

} // namespace

namespace {

TEST(Dispatch, TheEndOfARedirectedInputEndsWithItsStatement)
{
    // The first getstr reads its file to the end; the next statement reads
    // the keyboard again instead of finding the input still ended.
    TempFolder f;
    f.WriteBytes(L"one.txt", "only");
    f.WriteBytes(L"eof.txt", "line\x1Arest\r\n");
    EXPECT_EQ(TypedOutput("getstr < one.txt\necho [%GETSTR%]\ngetstr\ntyped\necho [%GETSTR%]\n", f.Path()),
              L"[only]\n[typed]\n");
    EXPECT_EQ(TypedOutput("getstr <eof.txt& getstr& echo [%GETSTR%]\nagain\n", f.Path()), L"[again]\n");
}

} // namespace
