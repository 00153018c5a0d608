// Batch programs run end to end through ombc.exe: the screen text they
// produce, with the messages and questions of the batch engine.
#include "support/ombc_runner.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <algorithm>
#include <string>

namespace {

// Runs one line in folder, with the given answers on standard input; returns
// the output with CR LF turned into LF.
std::wstring RunIn(const TempFolder& folder, const std::wstring& line, const std::string& input = {})
{
    return JoinLines(RunOmbcIn(folder.Path(), L"/C \"" + line + L"\"", input).Output);
}

TEST(Batch, LabelsAndGotoInBothDirections)
{
    TempFolder f;
    f.WriteBytes(L"jump.bat", "@echo off\r\n"
                              "goto first\r\n"
                              "echo skipped\r\n"
                              ":second\r\n"
                              "echo second\r\n"
                              "goto :done\r\n"
                              ":first\r\n"
                              "echo first\r\n"
                              "goto SECOND\r\n"
                              ":done\r\n"
                              "echo done\r\n");
    EXPECT_EQ(RunIn(f, L"jump.bat"), L"first\nsecond\ndone\n");

    // A missing label ends the program (and its callers) without a question.
    f.WriteBytes(L"lost.bat", "@echo off\r\necho before\r\ngoto nowhere\r\necho after\r\n");
    f.WriteBytes(L"outer.bat", "@echo off\r\ncall lost.bat\r\necho outer goes on\r\n");
    EXPECT_EQ(RunIn(f, L"outer.bat"), L"before\nNo such label\n\n");
    // goto with nothing behind it is the same message.
    f.WriteBytes(L"bare.bat", "@echo off\r\ngoto\r\necho after\r\n");
    EXPECT_EQ(RunIn(f, L"bare.bat"), L"No such label\n\n");

    // The rest of the line still runs before the jump; a group stops at once.
    f.WriteBytes(L"rest.bat", "@echo off\r\n"
                              "goto x & echo rest of line\r\n"
                              ":x\r\n"
                              "(goto y & echo inside group) & echo behind group\r\n"
                              ":y\r\n"
                              "echo y\r\n");
    EXPECT_EQ(RunIn(f, L"rest.bat"), L"rest of line\nbehind group\ny\n");

    // A goto deep inside nested groups leaves them all.
    f.WriteBytes(L"deep.bat", "@echo off\r\n((((((((goto out) & echo no)))))))\r\necho no\r\n:out\r\necho out\r\n");
    EXPECT_EQ(RunIn(f, L"deep.bat"), L"out\n");
}

TEST(Batch, CallReturnsButChainingReplacesTheCaller)
{
    TempFolder f;
    f.WriteBytes(L"a.bat", "@echo off\r\ncall b.bat\r\necho back in a\r\nc\r\necho never\r\n");
    f.WriteBytes(L"b.bat", "echo in b\r\n");
    f.WriteBytes(L"c.cmd", "@echo in c\r\n");
    EXPECT_EQ(RunIn(f, L"a.bat"), L"in b\nback in a\nin c\n");

    // exit in a called program ends both programs, and the shell goes on.
    f.WriteBytes(L"x.bat", "@echo off\r\ncall y.bat\r\necho not reached\r\n");
    f.WriteBytes(L"y.bat", "@echo off\r\necho in y\r\nexit\r\necho not reached either\r\n");
    OmbcResult r = RunOmbcIn(f.Path(), L"", "x.bat\necho shell still up\n");
    EXPECT_EQ(JoinLines(r.Output), L"in y\nshell still up\n");

    // stop ends only its own program; end ends every caller too.
    f.WriteBytes(L"s1.bat", "@echo off\r\ncall s2.bat\r\necho s1 goes on\r\ncall e2.bat\r\necho never\r\n");
    f.WriteBytes(L"s2.bat", "@echo off\r\necho s2\r\nstop\r\necho never\r\n");
    f.WriteBytes(L"e2.bat", "@echo off\r\necho e2\r\nend\r\necho never\r\n");
    EXPECT_EQ(RunIn(f, L"s1.bat"), L"s2\ns1 goes on\ne2\n");

    // call at the prompt does not run a batch program as one: it starts as
    // any other program, through the system's command processor.
    std::wstring started = RunIn(f, L"call b.bat");
    EXPECT_NE(started.find(L"in b\n"), std::wstring::npos) << started;
}

TEST(Batch, EchoShowsPromptAndLineUnlessSilenced)
{
    TempFolder f;
    // "@" counts only in the very first column.
    f.WriteBytes(L"loud.bat", "echo hi\r\n@echo quiet\r\n @echo x\r\n");
    std::wstring out = RunIn(f, L"loud.bat");
    std::wstring prompt = f.Path() + L">";
    EXPECT_EQ(out, prompt + L"echo hi\nhi\nquiet\n" + prompt + L" @echo x\nBad command or file name\n\n" +
                       L"Terminate Batch at line 3 (Y/N)?\n");
    // echo off in a child holds for the caller too.
    f.WriteBytes(L"p.bat", "@call q.bat\r\necho from p\r\n");
    f.WriteBytes(L"q.bat", "@echo off\r\n");
    EXPECT_EQ(RunIn(f, L"p.bat"), L"from p\n");
}

TEST(Batch, GosubNestsAndReturnNeedsAGosub)
{
    TempFolder f;
    f.WriteBytes(L"g.bat", "@echo off\r\n"
                           "gosub one\r\n"
                           "echo back\r\n"
                           "return\r\n"
                           "echo never\r\n"
                           ":one\r\n"
                           "echo in one\r\n"
                           "gosub two\r\n"
                           "echo one again\r\n"
                           "return\r\n"
                           ":two\r\n"
                           "echo in two\r\n"
                           "return\r\n");
    EXPECT_EQ(RunIn(f, L"g.bat"), L"in one\nin two\none again\nback\nReturn without gosub\n\n");

    f.WriteBytes(L"r.bat", "@echo off\r\n:again\r\ngosub again\r\n");
    EXPECT_EQ(RunIn(f, L"r.bat"), L"Too many nested gosub's\n\n");
    f.WriteBytes(L"m.bat", "@echo off\r\ngosub missing\r\necho never\r\n");
    EXPECT_EQ(RunIn(f, L"m.bat"), L"No such label\n\n");
}

TEST(Batch, ProceduresAreSkippedInSequenceAndRunByCallproc)
{
    TempFolder f;
    f.WriteBytes(L"p.bat", "@echo off\r\n"
                           "callproc greet\r\n"
                           "echo after call\r\n"
                           "proc greet\r\n"
                           "echo hello from greet\r\n"
                           "callproc inner\r\n"
                           "endproc\r\n"
                           "PROC inner\r\n"
                           "echo inner\r\n"
                           "ENDPROC\r\n"
                           "echo tail\r\n"
                           "callproc nosuch\r\n"
                           "echo not after error\r\n");
    EXPECT_EQ(RunIn(f, L"p.bat"),
              L"hello from greet\ninner\nafter call\ntail\nNo such procedure\n\nTerminate Batch at line 12 (Y/N)?\n");

    // Jumping into a body runs it in sequence, and endproc is then misplaced.
    f.WriteBytes(L"j.bat", "@echo off\r\ngoto in\r\nproc p\r\n:in\r\necho body\r\nendproc\r\n");
    EXPECT_EQ(RunIn(f, L"j.bat", "y"), L"body\nMisplaced end of procedure\n\nTerminate Batch at line 6 (Y/N)? y\n");
    // A proc without its end stops the program at that line.
    f.WriteBytes(L"open.bat", "@echo off\r\necho a\r\nproc p\r\necho b\r\n");
    EXPECT_EQ(RunIn(f, L"open.bat"), L"a\nEnd of procedure not found\n\n");
    // Eighteen nested procedures are too many.
    f.WriteBytes(L"rec.bat", "@echo off\r\ncallproc r\r\nproc r\r\ncallproc r\r\nendproc\r\n");
    std::wstring out = RunIn(f, L"rec.bat");
    EXPECT_EQ(out.find(L"Too many nested procedures\n"), 0u) << out;

    EXPECT_EQ(RunIn(f, L"proc x"), L"Batch program command\n\n");
    EXPECT_EQ(RunIn(f, L"callproc x"), L"");
}

TEST(Batch, TheTerminateQuestionAfterAnError)
{
    TempFolder f;
    f.WriteBytes(L"e.bat", "@echo off\r\necho one\r\nnosuch\r\necho two\r\n");
    const std::wstring asked = L"one\nBad command or file name\n\nTerminate Batch at line 3 (Y/N)? ";
    EXPECT_EQ(RunIn(f, L"e.bat", "n"), asked + L"n\ntwo\n");
    EXPECT_EQ(RunIn(f, L"e.bat", "xY"), asked + L"Y\n");
    // The end of input answers with Ctrl-C, which is yes, echoed as nothing
    // (and the console program drops the blank at the end of the line).
    EXPECT_EQ(RunIn(f, L"e.bat"), L"one\nBad command or file name\n\nTerminate Batch at line 3 (Y/N)?\n");
}

TEST(Batch, GroupsSpanLinesAndLoadErrorsRunNothing)
{
    TempFolder f;
    f.WriteBytes(L"grp.bat", "@echo off\r\n(\r\necho a\r\n\r\n  echo b\r\n)\r\necho c\r\n");
    EXPECT_EQ(RunIn(f, L"grp.bat"), L"a\nb\nc\n");
    f.WriteBytes(L"open.bat", "@echo off\r\necho first\r\n(\r\necho never closed\r\n");
    EXPECT_EQ(RunIn(f, L"open.bat"), L"Right bracket missing\n\n");
    f.WriteBytes(L"long.bat", "@echo off\r\necho first\r\necho " + std::string(4100, 'x') + "\r\n");
    EXPECT_EQ(RunIn(f, L"long.bat"), L"Line to long\n\n");
    f.WriteBytes(L"bin.bat", std::string("MZ\x90\0\3\0\0\0\4\0echo x\r\n", 16));
    EXPECT_EQ(RunIn(f, L"bin.bat"), L"");
}

TEST(Batch, EveryEncodingRunsTheSame)
{
    TempFolder f;
    const std::wstring text = L"@echo off\r\necho caf\x00E9 \x20AC\r\necho two\r\n";
    std::string utf8;
    for (wchar_t c : text) {
        if (c < 0x80) utf8 += char(c);
        else if (c < 0x800) utf8 += {char(0xC0 | (c >> 6)), char(0x80 | (c & 0x3F))};
        else utf8 += {char(0xE0 | (c >> 12)), char(0x80 | ((c >> 6) & 0x3F)), char(0x80 | (c & 0x3F))};
    }
    std::string le = "\xFF\xFE", be = "\xFE\xFF";
    for (wchar_t c : text) {
        le += {char(c & 0xFF), char(c >> 8)};
        be += {char(c >> 8), char(c & 0xFF)};
    }
    f.WriteBytes(L"u8.bat", utf8);
    f.WriteBytes(L"u8bom.bat", "\xEF\xBB\xBF" + utf8);
    f.WriteBytes(L"le.bat", le);
    f.WriteBytes(L"be.bat", be);
    const std::wstring expected = L"caf\x00E9 \x20AC\ntwo\n";
    for (const wchar_t* name : {L"u8bom.bat", L"le.bat", L"be.bat"}) EXPECT_EQ(RunIn(f, name), expected) << name;
    // Without a mark the file is read in the code page; plain ASCII is the same.
    f.WriteBytes(L"cp.bat", "@echo off\r\necho plain\r\n");
    EXPECT_EQ(RunIn(f, L"cp.bat"), L"plain\n");
}

} // namespace

namespace {

TEST(Batch, RunawayCallsAndVanishingFilesEndCleanly)
{
    TempFolder f;
    // A program that calls itself forever stops at the nesting limit with a
    // message instead of running out of stack.
    f.WriteBytes(L"self.bat", "@call self.bat\r\n");
    // The error brings the question once; yes ends every level.
    OmbcResult r = RunOmbcIn(f.Path(), L"", "self.bat\ny\necho shell still up\n");
    std::wstring out = JoinLines(r.Output);
    EXPECT_NE(out.find(L"Out of memory"), std::wstring::npos) << out.substr(0, 300);
    EXPECT_NE(out.find(L"shell still up"), std::wstring::npos);

    // The whole file is read before it runs: deleting it meanwhile changes nothing.
    f.WriteBytes(L"gone.bat", "@echo off\r\necho before\r\nsleep 2\r\necho after\r\n");
    std::wstring path = f / L"gone.bat";
    HANDLE thread = CreateThread(
        nullptr, 0,
        [](void* name) -> DWORD {
            Sleep(1000);
            DeleteFileW(static_cast<const wchar_t*>(name));
            return 0;
        },
        const_cast<wchar_t*>(path.c_str()), 0, nullptr);
    r = RunOmbcIn(f.Path(), L"/C gone.bat");
    WaitForSingleObject(thread, INFINITE);
    CloseHandle(thread);
    EXPECT_FALSE(f.Exists(L"gone.bat"));
    EXPECT_EQ(JoinLines(r.Output), L"before\nafter\n");
}

} // namespace

namespace {

TEST(Batch, LinesOfExactly4095CharactersLoadAndOneMoreDoesNot)
{
    TempFolder f;
    auto x = [](const std::wstring& out) { return std::count(out.begin(), out.end(), L'x'); };
    // A group joined from three lines: "(" "echo x..." ")" with no separator.
    f.WriteBytes(L"j1.bat", "@echo off\r\n(\r\necho " + std::string(4088, 'x') + "\r\n)\r\n");
    f.WriteBytes(L"j2.bat", "@echo off\r\n(\r\necho " + std::string(4089, 'x') + "\r\n)\r\n");
    f.WriteBytes(L"p1.bat", "@echo " + std::string(4089, 'x') + "\r\n");
    f.WriteBytes(L"p2.bat", "@echo " + std::string(4090, 'x') + "\r\n");
    for (const wchar_t* fits : {L"j1.bat", L"p1.bat"}) {
        std::wstring out = RunIn(f, fits);
        EXPECT_EQ(out.find(L"Line to long"), std::wstring::npos) << fits;
        EXPECT_GE(x(out), 4088) << fits;
    }
    for (const wchar_t* tooLong : {L"j2.bat", L"p2.bat"}) EXPECT_EQ(RunIn(f, tooLong), L"Line to long\n\n") << tooLong;
}

} // namespace
