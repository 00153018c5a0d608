// The escape-aware writers: echo-style output and the output of captured
// console programs. Both batch plain text into a buffer and write it with
// Write, acting on control characters and escape sequences between batches;
// so with output redirected the sequences still move the screen's cursor
// while the text goes to the file.
#include "app/toolkit/omdib.h"
#include "screen/screen_store.h"

#include <cwctype>
#include <string>

namespace {

struct FilterRules {
    int TextLimit; // units the buffer takes
    int TabLimit;  // padding stops when the buffer holds this many
    bool Console;  // console program output
    bool Printable; // keep only printable units (console output)
};

constexpr FilterRules kEchoRules{4095, 255, false, false};

int Wrapped(int64_t value) { return int(uint32_t(uint64_t(value))); }

class OutputFilter {
public:
    OutputFilter(ScreenStore& screen, FilterRules rules) : screen_(screen), rules_(rules) {}

    void Run(const wchar_t* text)
    {
        while (*text) text = Step(text);
        Flush();
    }

private:
    void Flush()
    {
        if (n_ == 0) return;
        pending_[n_] = 0;
        n_ = 0;
        screen_.Write(pending_);
    }

    void Append(wchar_t unit)
    {
        if (n_ < rules_.TextLimit) pending_[n_++] = unit;
    }

    // Echo output drops control units; console output keeps them unless only
    // printable units are asked for.
    void Keep(wchar_t unit)
    {
        if (rules_.Console ? !rules_.Printable || std::iswprint(unit) : unit >= 32) Append(unit);
    }

    void BackSpace()
    {
        if (rules_.Console) {
            Flush();
            screen_.Locate(Wrapped(int64_t(screen_.CursorX) - 1), screen_.CursorY);
            return;
        }
        // The cursor steps back onto the last pending character and the
        // column behind it is blanked.
        int64_t x = int64_t(screen_.CursorX) + n_;
        int y = screen_.CursorY;
        Append(L' ');
        Flush();
        screen_.Locate(Wrapped(x - 1), y);
    }

    void Tab()
    {
        do {
            if (n_ >= rules_.TabLimit) return;
            Append(L' ');
        } while ((int64_t(screen_.CursorX) + n_) % 8 != 0);
    }

    const wchar_t* Escape(const wchar_t* p)
    {
        if (rules_.Console && p[1] != L'[') {
            Keep(*p);
            return p + 1;
        }
        Flush();
        const wchar_t* behind = screen_.ParseSequences(state_, p);
        return behind == p ? p + 1 : behind;
    }

    const wchar_t* Step(const wchar_t* p)
    {
        switch (*p) {
        case 8: BackSpace(); break;
        case 9: Tab(); break;
        case 10:
            Flush();
            screen_.NewLine();
            break;
        case 13:
            Flush();
            screen_.Locate(0, screen_.CursorY);
            break;
        case 27: return Escape(p);
        default: Keep(*p); break;
        }
        return p + 1;
    }

    ScreenStore& screen_;
    FilterRules rules_;
    EscapeState state_{};
    // Room for the largest batch and its terminator.
    wchar_t pending_[kLineMax + 1];
    int n_ = 0;
};

} // namespace

void ScreenStore::WriteEscaped(const wchar_t* text)
{
    if (!text) return;
    OutputFilter(*this, kEchoRules).Run(text);
}

int ScreenStore::ConsoleWrite(const wchar_t* text, int filter, int clearBreak)
{
    if (clearBreak) BreakFlag = 0;
    OutputFilter(*this, FilterRules{kLineMax, kLineMax, true, filter != 0}).Run(text);
    return lstrlenW(text);
}

int ScreenStore::ConsoleWriteCount(const wchar_t* text, int units, int filter, int clearBreak)
{
    if (units <= 0) return 0;
    // A counted text need not be terminated; a zero unit inside it ends nothing.
    std::wstring copy;
    for (int i = 0; i < units; ++i)
        if (text[i]) copy += text[i];
    ConsoleWrite(copy.c_str(), filter, clearBreak);
    return units;
}

wchar_t ScreenStore::ConsoleWriteUnit(wchar_t unit)
{
    switch (unit) {
    case 10: LineFeed(); break;
    case 13: Locate(0, CursorY); break;
    case 8: Locate(Wrapped(int64_t(CursorX) - 1), CursorY); break;
    case 9: {
        std::wstring spaces;
        do spaces += L' ';
        while ((int64_t(CursorX) + int64_t(spaces.size())) % 8 != 0);
        WriteCells(spaces.c_str());
        break;
    }
    default: {
        wchar_t text[2] = {unit, 0};
        WriteCells(text);
        break;
    }
    }
    return unit;
}
