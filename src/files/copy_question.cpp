#include "files/copy_question.h"

#include "app/event_pump.h"
#include "input/editor.h"
#include "input/unix_mode.h"
#include "screen/colours.h"
#include "screen/screen_store.h"

#include <windows.h>

#include <cwchar>

namespace {

constexpr wchar_t kCtrlC = 3;
constexpr wchar_t kCtrlZ = 0x1A;
constexpr wchar_t kEndOfInput = 0xFFFF;

// One of Y, N, S, A (echoed), Ctrl-C or the end of input; all else is ignored.
wchar_t ReadAnswer()
{
    for (;;) {
        InputMode = 2;
        wchar_t key = WaitKey();
        InputMode = 0;
        // A program that is ending answers nothing: taken as a break.
        if (key == 0 || key == kCtrlC) return kCtrlC;
        if (key == kCtrlZ || key == kEndOfInput) return kEndOfInput;
        key = wchar_t(reinterpret_cast<UINT_PTR>(CharUpperW(reinterpret_cast<LPWSTR>(UINT_PTR(key)))));
        if (key && std::wcschr(L"YNSA", key)) {
            wchar_t echo[2] = {key, 0};
            TheScreen.Write(echo);
            return key;
        }
    }
}

// "Enter new file name: " and the line typed; false when it is empty or the
// input was aborted.
bool ReadNewName(std::wstring& destination)
{
    UseItem(Item::Number);
    TheScreen.Write(L"Enter new file name: ");
    wchar_t line[CommandLineEditor::kReadLimit + 1];
    if (!ReadLine(line) || !line[0]) return false;
    ConvertUnixInput(line);
    size_t slash = destination.find_last_of(L'\\');
    if (slash != std::wstring::npos && !std::wcschr(line, L'\\')) destination.replace(slash + 1, std::wstring::npos, line);
    else destination = line;
    return true;
}

} // namespace

OverwriteAnswer AskOverwrite(int& overwriteAll, std::wstring& destination)
{
    UseItem(Item::HighText);
    TheScreen.Write(L" Overwrite (Y/N/S/A)?");
    wchar_t answer = ReadAnswer();
    if (answer == kCtrlC) {
        TheScreen.BreakFlag = 1;
        TheScreen.ShowBreak();
        TheScreen.LineFeed();
        return OverwriteAnswer::Stop;
    }
    TheScreen.NewLine();
    switch (answer) {
    case L'A': ++overwriteAll; return OverwriteAnswer::Overwrite;
    case L'Y': return OverwriteAnswer::Overwrite;
    case L'S': return OverwriteAnswer::Skip;
    default: return ReadNewName(destination) ? OverwriteAnswer::Renamed : OverwriteAnswer::Stop;
    }
}
