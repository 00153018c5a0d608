// Commands that talk to the user through the text screen: echo, echo., say,
// ask, pause, getkey, getstr, getnum, locate, box, beep and sleep.
#include "app/errors.h"
#include "app/event_pump.h"
#include "app/profile/profile.h"
#include "app/toolkit/omdib.h"
#include "input/editor.h"
#include "lang/builtins.h"
#include "lang/command_args.h"
#include "lang/shell_command.h"
#include "lang/variables.h"
#include "screen/colours.h"
#include "screen/screen_store.h"

#include <cwchar>
#include <cwctype>

namespace {

constexpr wchar_t kCtrlC = 3;

bool OnlyBlanks(const wchar_t* text) { return !*SkipWhiteW(text); }

// Ctrl-C during a wait: the statement breaks and its batch program is asked.
void BreakWait()
{
    TheScreen.BreakFlag = 1;
    TheShell.Terminate = 1;
}

void StoreNumber(const wchar_t* name, const wchar_t* text)
{
    wchar_t* end = nullptr;
    std::wcstod(text, &end);
    bool number = *text && end != text && *end == 0;
    SetVariable(name, number ? text : L"");
}

} // namespace

void CmdEcho()
{
    if (OnlyBlanks(CommandArgs.Tail)) {
        UseItem(Item::Text);
        TheScreen.Write(L"echo is ");
        UseItem(Item::HighText);
        TheScreen.Write(TheShell.EchoOn ? L"ON" : L"OFF");
        TheScreen.NewLine();
        return;
    }
    if (CommandArgs.ArgCount == 1) {
        if (lstrcmpiW(CommandArgs.Args[0], L"on") == 0) {
            TheShell.EchoOn = 1;
            return;
        }
        if (lstrcmpiW(CommandArgs.Args[0], L"off") == 0) {
            TheShell.EchoOn = 0;
            return;
        }
    }
    TheScreen.WriteEscaped(CommandArgs.Tail);
    TheScreen.NewLine();
}

void CmdEchoDot()
{
    TheScreen.WriteEscaped(CommandArgs.Tail);
    TheScreen.NewLine();
}

void CmdSay() { TheScreen.WriteEscaped(CommandArgs.Tail); }

void CmdAsk()
{
    ErrorLevel = 0;
    if (OnlyBlanks(CommandArgs.Tail)) TheScreen.Write(L"Continue (Y/N)?");
    else TheScreen.WriteEscaped(CommandArgs.Tail);
    int answer = AskYesNo();
    if (answer < 0) {
        ErrorLevel = 1;
        return;
    }
    TheScreen.NewLine();
    if (answer == 0) ErrorLevel = 1;
}

void CmdPause()
{
    if (OnlyBlanks(CommandArgs.Tail)) TheScreen.Write(L"Press any key to continue . . .");
    else TheScreen.WriteEscaped(CommandArgs.Tail);
    TheScreen.NewLine();
    if (PauseKey()) BreakWait();
}

void CmdGetkey()
{
    TheScreen.Write(CommandArgs.Tail);
    // A key is asked of the user even while input is redirected.
    wchar_t key = ReadKeyEcho();
    if (key == kCtrlC || key == 0) {
        BreakWait();
        SetVariable(L"GETKEY", L"");
        return;
    }
    wchar_t text[2] = {key, 0};
    SetVariable(L"GETKEY", text);
}

void CmdGetstr()
{
    TheScreen.Write(CommandArgs.Tail);
    wchar_t line[CommandLineEditor::kReadLimit + 1];
    SetVariable(L"GETSTR", ReadLine(line) ? line : L"");
}

void CmdGetnum()
{
    TheScreen.Write(CommandArgs.Tail);
    wchar_t line[CommandLineEditor::kReadLimit + 1];
    StoreNumber(L"GETNUM", ReadLine(line) ? line : L"");
}

void CmdLocate()
{
    if (CommandArgs.ArgCount != 2) {
        ReportId(32);
        return;
    }
    TheScreen.Locate(int(wtoi64_ex(CommandArgs.Args[0])), int(wtoi64_ex(CommandArgs.Args[1])));
}

// Corners, horizontal and vertical of each style: top left, horizontal, top
// right, vertical, bottom left, bottom right.
static const wchar_t kBoxUnicode[5][7] = {
    {0x250C, 0x2500, 0x2510, 0x2502, 0x2514, 0x2518, 0}, {0x2554, 0x2550, 0x2557, 0x2551, 0x255A, 0x255D, 0},
    {0x2552, 0x2550, 0x2555, 0x2502, 0x2558, 0x255B, 0}, {0x2553, 0x2500, 0x2556, 0x2551, 0x2559, 0x255C, 0},
    {L' ', L' ', L' ', L' ', L' ', L' ', 0}};
// The same in the OEM positions that a Terminal font draws.
static const wchar_t kBoxTerminal[5][7] = {
    {218, 196, 191, 179, 192, 217, 0}, {201, 205, 187, 186, 200, 188, 0}, {213, 205, 184, 179, 212, 190, 0},
    {214, 196, 183, 186, 211, 189, 0}, {L' ', L' ', L' ', L' ', L' ', L' ', 0}};

static void BoxLine(int left, wchar_t first, wchar_t middle, wchar_t last, int width)
{
    std::wstring line(size_t(width), middle);
    line.front() = first;
    line.back() = last;
    TheScreen.Locate(left, TheScreen.CursorY);
    TheScreen.Write(line.c_str());
    TheScreen.NewLine();
}

void CmdBox()
{
    if (CommandArgs.ArgCount < 4) {
        ReportId(32);
        return;
    }
    int left = int(wtoi64_ex(CommandArgs.Args[0])), top = int(wtoi64_ex(CommandArgs.Args[1]));
    int right = int(wtoi64_ex(CommandArgs.Args[2])), bottom = int(wtoi64_ex(CommandArgs.Args[3]));
    int style = CommandArgs.ArgCount > 4 ? int(wtoi64_ex(CommandArgs.Args[4])) : 1;
    int width = right - left + 1, height = bottom - top + 1;
    if (left < 0 || top < 0 || right < 0 || bottom < 0 || style < 1 || style > 5 || width < 2 || height < 2) return;
    wchar_t family[64];
    ProfileReadString(L"Ombrel", L"FontFamily", L"Courier New", family, 64);
    const wchar_t* parts = lstrcmpiW(family, L"Terminal") == 0 ? kBoxTerminal[style - 1] : kBoxUnicode[style - 1];
    TheScreen.Locate(left, top);
    BoxLine(left, parts[0], parts[1], parts[2], width);
    for (int row = 1; row < height - 1 && !TheScreen.BreakFlag; ++row) BoxLine(left, parts[3], L' ', parts[3], width);
    BoxLine(left, parts[4], parts[1], parts[5], width);
}

void CmdBeep()
{
    int count = CommandArgs.ArgCount;
    if (count == 1 && (lstrcmpiW(CommandArgs.Args[0], L"on") == 0 || lstrcmpiW(CommandArgs.Args[0], L"off") == 0)) {
        bool on = lstrcmpiW(CommandArgs.Args[0], L"on") == 0;
        if (!SystemParametersInfoW(SPI_SETBEEP, on ? TRUE : FALSE, nullptr, SPIF_SENDCHANGE)) return;
        UseItem(Item::Text);
        TheScreen.Write(L"Beep is ");
        UseItem(Item::HighText);
        TheScreen.Write(on ? L"ON" : L"OFF");
        TheScreen.NewLine();
        return;
    }
    if (count <= 1) {
        MessageBeep(MB_OK);
        return;
    }
    if (count % 2) return;
    for (int i = 0; i + 1 < count && !TheScreen.BreakFlag; i += 2) {
        const wchar_t* end;
        int64_t frequency = lstrtoi64W(CommandArgs.Args[i], &end, 0);
        int64_t duration = lstrtoi64W(CommandArgs.Args[i + 1], &end, 0);
        if (frequency >= 0 && frequency < 32768 && duration >= 0) Beep(DWORD(frequency), DWORD(duration));
    }
}

void CmdSleep()
{
    if (RejectSwitches()) return;
    if (CommandArgs.ArgCount != 1) {
        ReportId(1);
        return;
    }
    int64_t seconds = wtoi64_ex(CommandArgs.Args[0]);
    UINT_PTR timer = SetTimer(nullptr, 0, 1000, nullptr);
    if (!timer) {
        ReportId(42);
        return;
    }
    // The window stays alive while sleeping: messages go on being handled,
    // and Ctrl-C ends the sleep early.
    ULONGLONG end = GetTickCount64() + ULONGLONG(seconds > 0 ? seconds : 0) * 1000u;
    for (ULONGLONG now = GetTickCount64(); now < end && !TheScreen.BreakFlag; now = GetTickCount64()) {
        DWORD slice = DWORD(end - now < 100 ? end - now : 100);
        MsgWaitForMultipleObjects(0, nullptr, FALSE, slice, QS_ALLINPUT);
        TheScreen.PollBreak();
    }
    KillTimer(nullptr, timer);
}
