#include "app/event_pump.h"

#include "app/host.h"
#include "app/toolkit/omdib.h"
#include "input/editor.h"
#include "screen/colours.h"
#include "screen/screen_store.h"

int InputMode = 0;

namespace {

constexpr wchar_t kCtrlC = 3;
constexpr wchar_t kCtrlZ = 0x1A;
constexpr wchar_t kEndOfInput = 0xFFFF;

// The next character of a key wait, 0 when the program is ending.
wchar_t NextKey()
{
    InputEvent event = Host->NextInput(InputWait::Key);
    return event.Kind == InputKind::Char ? wchar_t(event.Unit) : 0;
}

void ShowText(const wchar_t* text)
{
    UseItem(Item::Text);
    TheScreen.WriteCells(text);
}

// The next unit of the redirected input; the end of the file and Ctrl-Z both
// end the input for good.
bool NextRedirectedUnit(wchar_t& unit)
{
    if (!TheEditor.Input.NextUnit(unit) || unit == kCtrlZ) {
        TheEditor.EndOfInput = 1;
        return false;
    }
    return true;
}

wchar_t* ReadRedirectedLine(wchar_t* buffer)
{
    int n = 0;
    wchar_t unit;
    while (n < CommandLineEditor::kReadLimit && NextRedirectedUnit(unit)) {
        if (unit == 0 || unit == L'\n') break;
        // A CR ends the text but not the read, so CR LF is one line end and
        // whatever stands behind a lone CR is read and hidden.
        buffer[n++] = unit == L'\r' ? 0 : unit;
    }
    buffer[n] = 0;
    return buffer;
}

} // namespace

wchar_t WaitKey()
{
    Host->Refresh();
    Host->ShowCaret();
    wchar_t key = NextKey();
    Host->HideCaret();
    if (key == kCtrlC) TheScreen.BreakFlag = 1;
    return key;
}

int PauseKey()
{
    InputMode = 2;
    wchar_t key = NextKey();
    InputMode = 0;
    if (key != kCtrlC) return 0;
    TheScreen.BreakFlag = 1;
    return 1;
}

wchar_t ReadKeyEcho()
{
    Host->Refresh();
    Host->ShowCaret();
    InputMode = 2;
    wchar_t key = NextKey();
    Host->HideCaret();
    InputMode = 0;
    switch (key) {
    case kCtrlC: TheScreen.BreakFlag = 1; return kCtrlC;
    case kCtrlZ: TheEditor.EndOfInput = 1; return kEndOfInput;
    case L'\r': TheScreen.LineFeed(); return L'\n';
    case L'\t': TheScreen.WriteCells(L" "); return L'\t';
    default: break;
    }
    if (key >= 0x20) {
        wchar_t text[2] = {key, 0};
        TheScreen.WriteCells(text);
    }
    return key;
}

wchar_t ReadKey()
{
    if (TheEditor.EndOfInput) return kEndOfInput;
    if (!TheEditor.Input.IsOpen()) return ReadKeyEcho();
    wchar_t unit;
    return NextRedirectedUnit(unit) ? unit : kEndOfInput;
}

wchar_t* ReadLine(wchar_t* buffer)
{
    if (TheEditor.EndOfInput) return nullptr;
    if (TheEditor.Input.IsOpen()) return ReadRedirectedLine(buffer);
    return Host->ReadLine(buffer, CommandLineEditor::kReadLimit + 1) ? buffer : nullptr;
}

wchar_t* ReadTypedLine(wchar_t* buffer, int size)
{
    TheEditor.ResetLine();
    InputMode = 1;
    Host->Refresh();
    Host->ShowCaret();
    for (;;) {
        InputEvent event = Host->NextInput(InputWait::Line);
        // The program is ending: the line is whatever was typed.
        if (event.Kind == InputKind::End) break;
        if (event.Kind == InputKind::KeyDown) {
            TheEditor.ReadEditorKey(int(event.Unit), event.Modifiers);
            continue;
        }
        wchar_t unit = wchar_t(event.Unit);
        if (unit == kCtrlC && ReadCopySwallowsCtrlC) {
            ReadCopySwallowsCtrlC = 0;
            continue;
        }
        if (unit == kCtrlC || unit == kCtrlZ) {
            Host->HideCaret();
            InputMode = 0;
            ShowText(unit == kCtrlC ? L"^C" : L"^Z");
            if (unit == kCtrlC) TheScreen.BreakFlag = 1;
            else TheEditor.EndOfInput = 1;
            return nullptr;
        }
        if (TheEditor.ReadEditorChar(unit, event.Modifiers)) break;
    }
    Host->HideCaret();
    TheEditor.EndScreenLine();
    InputMode = 0;
    CopyCutW(buffer, TheEditor.Line, size);
    return buffer;
}

int AskYesNo()
{
    InputMode = 2;
    Host->ShowCaret();
    int answer = -2;
    while (answer == -2) {
        InputEvent event = Host->NextInput(InputWait::Key);
        // A program that is ending answers nothing: taken as a break.
        wchar_t key = event.Kind == InputKind::Char ? wchar_t(event.Unit) : kCtrlC;
        if (key == L'y' || key == L'Y') answer = 1;
        else if (key == L'n' || key == L'N') answer = 0;
        else if (key == kCtrlC) answer = -1;
    }
    InputMode = 0;
    Host->HideCaret();
    if (answer < 0) {
        TheScreen.ShowBreak();
        TheScreen.LineFeed();
        TheScreen.BreakFlag = 1;
        return answer;
    }
    TheScreen.Write(answer ? L"Y" : L"N");
    TheScreen.NewLine();
    return answer;
}
