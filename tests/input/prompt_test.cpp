// The prompt's $ codes, the prompt command, and Unix mode in both directions,
// checked on the screen the way the user sees them.
#include "input_fixture.h"

#include "app/profile/profile.h"
#include "lang/shell_command.h"
#include "support/temp_folder.h"

#include <windows.h>

#include <cwctype>
#include <ctime>

namespace {

using PromptTest = InputTest;

std::wstring PromptFor(const wchar_t* text)
{
    TheScreen.ClearScreen();
    ThePrompt.SetTemplate(text);
    ShowPrompt();
    return TheScreen.RowText(0);
}

std::wstring CurrentDirectory()
{
    wchar_t directory[MAX_PATH];
    GetCurrentDirectoryW(MAX_PATH, directory);
    return directory;
}

std::wstring Message(int id)
{
    wchar_t text[128];
    LoadStringW(GetModuleHandleW(nullptr), UINT(id), text, 128);
    return text;
}

TEST_F(PromptTest, CharacterCodesInEitherCase)
{
    EXPECT_EQ(PromptFor(L"[$$$a$b$c$f$g$i$j$l$q$s$x]"), L"[$&|()>{}<= $x]");
    EXPECT_EQ(PromptFor(L"[$A$B$C$F$G$I$J$L$Q$S$X]"), L"[&|()>{}<= $X]");
    EXPECT_EQ(PromptFor(L"end$"), L"end$");
    EXPECT_EQ(PromptFor(L"abc$hd"), L"abd"); // steps back, erases nothing by itself
    EXPECT_EQ(PromptFor(L"$h$hok"), L"ok");

    PromptFor(L"one$_two");
    EXPECT_EQ(TheScreen.RowText(1), L"two");
    EXPECT_EQ(TheScreen.CursorX, 3);
    EXPECT_EQ(TheScreen.EditX, 3); // the line is anchored behind the prompt
    EXPECT_EQ(TheScreen.EditY, 1);
}

TEST_F(PromptTest, EscapeSequencesAreTakenOffTheText)
{
    EXPECT_EQ(PromptFor(L"a$e[1;56;60mb$e[0m$e[Kc"), L"abc");
    EXPECT_EQ(PromptFor(L"$e[1;56;60m$p$e[53m$g$e[0;57m"), CurrentDirectory() + L">");
    // The setting's own default reads the same way.
    ThePrompt.LoadSetting();
    TheScreen.ClearScreen();
    ShowPrompt();
    EXPECT_EQ(TheScreen.RowText(0), CurrentDirectory() + L">");
}

TEST_F(PromptTest, DriveDirectoryDateTimeVersionAndCounter)
{
    TempFolder folder;
    std::wstring saved = CurrentDirectory();
    ASSERT_TRUE(SetCurrentDirectoryW(folder.Path().c_str()));
    EXPECT_EQ(PromptFor(L"$n:$p$g"), std::wstring(1, towupper(folder.Path()[0])) + L":" + folder.Path() + L">");
    SetCurrentDirectoryW(saved.c_str());

    std::time_t now = std::time(nullptr);
    wchar_t date[32];
    std::wcsftime(date, 32, L"%a %b %d %Y", std::localtime(&now));
    EXPECT_EQ(PromptFor(L"$D"), date);

    std::wstring time = PromptFor(L"[$t]");
    ASSERT_EQ(time.size(), 11u);
    EXPECT_EQ(time.substr(0, 2), L"[ "); // the leading blank is part of it
    EXPECT_EQ(time[4], L':');
    EXPECT_EQ(time[7], L':');
    for (int i : {2, 3, 5, 6, 8, 9}) EXPECT_TRUE(iswdigit(time[size_t(i)])) << time;

    std::wstring version = PromptFor(L"$v");
    EXPECT_EQ(version.substr(0, 16), L"Windows Version ");
    EXPECT_NE(version.find(L'.', 16), std::wstring::npos);

    // Each command line counts once, and the prompt shows the new count.
    ThePrompt.SetTemplate(L"$z$g");
    int before = TheShell.StatementCounter;
    TheEditor.TypeLine(L"rem", true);
    RunTopLevelLine();
    EXPECT_EQ(TheScreen.RowText(TheScreen.CursorY), std::to_wstring((before + 1) % 257) + L">");
}

TEST_F(PromptTest, PromptCommandLastsForTheRunOnly)
{
    wchar_t setting[256];
    ProfileReadString(L"Ombrel", L"Prompt", L"(none)", setting, 256);

    TheEditor.TypeLine(L"prompt [$p]", true);
    RunTopLevelLine();
    EXPECT_EQ(Row(1), L"[" + CurrentDirectory() + L"]");
    TheEditor.TypeLine(L"prompt /x", true);
    RunTopLevelLine();
    EXPECT_EQ(Row(2), Message(2));
    EXPECT_EQ(Row(4), L"[" + CurrentDirectory() + L"]");

    // Alone, it goes back to the setting, which was never written.
    TheEditor.TypeLine(L"prompt", true);
    RunTopLevelLine();
    EXPECT_EQ(Row(5), CurrentDirectory() + L">");
    wchar_t after[256];
    ProfileReadString(L"Ombrel", L"Prompt", L"(none)", after, 256);
    EXPECT_STREQ(after, setting);
}

TEST_F(PromptTest, UnixInputConversion)
{
    struct Case {
        const wchar_t* typed;
        const wchar_t* converted;
    };
    const Case cases[] = {
        {L"dir -w /tmp", L"dir /w \\tmp"},
        {L"echo --x", L"echo -x"},
        {L"type \"a/b -c\" -p", L"type \"a/b -c\" /p"},
        {L"-x a-b c/d", L"-x a-b c\\d"},
        {L"cd ../up", L"cd ..\\up"},
    };
    for (const Case& c : cases) {
        wchar_t line[64];
        lstrcpyW(line, c.typed);
        ConvertUnixInput(line);
        EXPECT_STREQ(line, c.typed) << "Unix mode is off";
        TheUnixMode.Unix = 1;
        ConvertUnixInput(line);
        TheUnixMode.Unix = 0;
        EXPECT_STREQ(line, c.converted);
    }
}

TEST_F(PromptTest, UnixModeRunsConvertedLinesAndShowsPathsItsWay)
{
    TheUnixMode.Unix = 1;
    TheEditor.TypeLine(L"echo --x \"--y\" a/b", true);
    RunTopLevelLine();
    EXPECT_EQ(Row(1), L"-x \"--y\" a\\b");

    TheUnixMode.Display = 1;
    TheEditor.TypeLine(L"echo -- -w", true);
    RunTopLevelLine();
    EXPECT_EQ(Row(3), L"echo - /w");
    EXPECT_EQ(Row(4), L"- /w");

    EXPECT_STREQ(UnixDisplayW(L"C:\\dir\\sub /w -x \"a\\b -c\""), L"C:/dir/sub -w --x \"a\\b -c\"");
    std::wstring shown = CurrentDirectory();
    for (wchar_t& unit : shown)
        if (unit == L'\\') unit = L'/';
    EXPECT_EQ(PromptFor(L"$p$g"), shown + L">");
    TheUnixMode.Unix = 0;
    EXPECT_STREQ(UnixDisplayW(L"C:\\dir /w"), L"C:\\dir /w");
}

} // namespace
