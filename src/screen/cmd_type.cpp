// type and more: text files and redirected input onto the screen, a line at
// a time, under the pager. One escape state lasts for the whole file, so ANSI
// pictures spread over many lines come out whole.
#include "app/errors.h"
#include "app/event_pump.h"
#include "bars/status_bar.h"
#include "input/editor.h"
#include "lang/builtins.h"
#include "lang/command_args.h"
#include "lang/text_stream.h"
#include "screen/colours.h"
#include "screen/pager.h"
#include "screen/screen_store.h"

#include <cwchar>
#include <string>

namespace {

// The line buffer: a longer line comes out as several.
constexpr int kLineUnits = 1024;
constexpr wchar_t kEscape = 0x1B;
constexpr wchar_t kBackspace = 0x08;

// How a listing prints its lines.
struct ListingStyle {
    int TabWidth = 8;
    bool Numbered = false;   // /l
    bool Manual = false;     // /m: overstrike pairs of printed manual pages
    bool Typewriter = false; // /a: one character at a time, no pager
};

// {"/" digit | "/" letter-of-allowed}: false (message 2) on any other.
bool ReadStyle(const wchar_t* allowed, ListingStyle& style)
{
    for (const wchar_t* s = CommandArgs.Switches; *s; ++s) {
        if (*s >= L'1' && *s <= L'8') {
            style.TabWidth = *s - L'0';
        } else if (*s != L'/' && std::wcschr(allowed, *s)) {
            style.Numbered |= *s == L'l';
            style.Manual |= *s == L'm';
            style.Typewriter |= *s == L'a';
        } else {
            ReportId(2);
            return false;
        }
    }
    return true;
}

// The picture a console gives the control codes, so that a binary file shows
// as symbols instead of breaking the screen. Escape and backspace keep their
// meaning for ANSI pictures and overstrike.
constexpr wchar_t kControlGlyphs[32] = {
    L' ',      L'\u263A', L'\u263B', L'\u2665', L'\u2666', L'\u2663', L'\u2660', L'\u2022',
    kBackspace, L'\u25CB', L'\u25D9', L'\u2642', L'\u2640', L'\u266A', L'\u266B', L'\u263C',
    L'\u25BA', L'\u25C4', L'\u2195', L'\u203C', L'\u00B6', L'\u00A7', L'\u25AC', L'\u21A8',
    L'\u2191', L'\u2193', L'\u2192', kEscape,  L'\u221F', L'\u2194', L'\u25B2', L'\u25BC',
};

bool IsPrintable(wchar_t unit) { return unit >= 0x20 && unit != 0x7F; }

// The line with its tabs expanded from column 0 and its control codes shown.
std::wstring ShownLine(const wchar_t* line, int tabWidth)
{
    std::wstring shown;
    for (const wchar_t* p = line; *p; ++p) {
        if (*p == L'\t') shown.append(size_t(tabWidth - int(shown.size()) % tabWidth), L' ');
        else if (*p < 0x20) shown += kControlGlyphs[*p];
        else if (*p == 0x7F) shown += L'\u2302';
        else shown += *p;
    }
    return shown;
}

class Lister {
public:
    explicit Lister(const ListingStyle& style) : style_(style) {}

    // Lines of the stream until its end or a break, with the percent
    // indicator following the bytes read.
    void List(TextStream& stream)
    {
        ProgressStart(uint64_t(stream.CurrentSize()));
        stream.KeepTabs = 1;
        stream.LineCapacity = kLineUnits;
        UseItem(Item::Text);
        int number = 0;
        while (!TheScreen.BreakFlag) {
            const wchar_t* line = stream.ReadLine();
            if (!line) break;
            if (style_.Numbered) ShowNumber(++number);
            std::wstring shown = ShownLine(line, style_.TabWidth);
            if (style_.Manual || style_.Typewriter) PrintByCharacter(shown);
            else PrintByRun(shown);
            TheScreen.NewLine();
            ProgressAdd(uint64_t(stream.BytesConsumed));
        }
    }

private:
    void ShowNumber(int number)
    {
        UseItem(Item::Number);
        TheScreen.FieldWidth = 4;
        TheScreen.WriteInt(number);
        UseItem(Item::Text);
        TheScreen.Write(L": ");
    }

    // Sequences act where they stand; the text between them goes out in one
    // write, which is the same as writing it character by character.
    void PrintByRun(std::wstring& line)
    {
        wchar_t* p = line.data();
        while (*p && !TheScreen.BreakFlag) {
            if (*p == kEscape || *p == kBackspace) p = SkipSequences(p);
            wchar_t* end = p;
            while (*end && *end != kEscape && *end != kBackspace) ++end;
            if (end == p) continue;
            wchar_t saved = *end;
            *end = 0;
            TheScreen.Write(p);
            *end = saved;
            p = end;
        }
    }

    void PrintByCharacter(std::wstring& line)
    {
        wchar_t* p = line.data();
        while (*p && !TheScreen.BreakFlag) {
            if (*p == kEscape || *p == kBackspace) {
                p = SkipSequences(p);
                if (!*p) break;
            }
            int units = 0;
            const wchar_t* next = _CharNextW(p, -1, &units);
            // A character followed by a control unit is half of an overstrike
            // pair: it and the control unit go.
            if (style_.Manual && *next && !IsPrintable(*next)) {
                p = const_cast<wchar_t*>(next) + 1;
                continue;
            }
            p = const_cast<wchar_t*>(TheScreen.WriteChar(p));
            if (style_.Typewriter) {
                Sleep(2);
                TheScreen.PollBreak();
            }
        }
    }

    // The sequences at p act; an unknown one leaves its ESC to be dropped and
    // the rest printed as it stands.
    wchar_t* SkipSequences(wchar_t* p)
    {
        wchar_t* after = const_cast<wchar_t*>(TheScreen.ParseSequences(escape_, p));
        if (after != p) return after;
        while (*after == kBackspace) ++after;
        return *after == kEscape ? after + 1 : after;
    }

    ListingStyle style_;
    EscapeState escape_;
};

// Writes a typed line back, for more without redirected input.
void EchoTypedLines()
{
    wchar_t line[CommandLineEditor::kReadLimit + 1];
    while (!TheScreen.BreakFlag && ReadLine(line)) {
        TheScreen.Write(line);
        TheScreen.NewLine();
    }
}

} // namespace

void CmdType()
{
    ListingStyle style;
    if (!ReadStyle(L"lma", style)) return;
    if (CommandArgs.ArgCount != 1) {
        ReportId(1);
        return;
    }
    TextStream file;
    if (!file.Open(CommandArgs.Args[0], GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, OPEN_EXISTING)) {
        TheErrors.ReportPlatformError(GetLastError());
        return;
    }
    if (file.SniffEncoding() == NotText) {
        ReportId(46);
        return;
    }
    {
        ListingPager pager(!style.Typewriter);
        Lister(style).List(file);
    }
    ProgressEnd();
}

void CmdMore()
{
    ListingStyle style;
    if (!ReadStyle(L"", style)) return;
    if (CommandArgs.ArgCount != 0) {
        ReportId(1);
        return;
    }
    HANDLE input = TheEditor.Input.Handle();
    if (input == INVALID_HANDLE_VALUE) {
        EchoTypedLines();
        return;
    }
    // The stream reads the input from its start on a handle of its own.
    HANDLE own = INVALID_HANDLE_VALUE;
    if (!DuplicateHandle(GetCurrentProcess(), input, GetCurrentProcess(), &own, 0, FALSE, DUPLICATE_SAME_ACCESS)) {
        TheErrors.ReportPlatformError(GetLastError());
        return;
    }
    TextStream stream;
    stream.Adopt(own);
    if (stream.SniffEncoding() == NotText) stream.Encoding = CodePageText;
    {
        ListingPager pager;
        Lister(style).List(stream);
    }
    ProgressEnd();
}
