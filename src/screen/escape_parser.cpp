// The escape sequences of screen output: ESC "[" parameters final. They move
// the cursor, erase, save and restore the cursor, and choose colours. Numbers
// are read without an overflow check, wrapping as 32-bit values, and cursor
// arithmetic wraps the same way; the store never lets a wild position reach
// outside its cells.
#include "screen/colours.h"
#include "screen/screen_store.h"

int BrightFlag = 0;

namespace {

// Palette indices of the eight ANSI colours: dim and bright foregrounds, and
// backgrounds.
constexpr uint8_t kDim[8] = {0, 1, 15, 11, 25, 33, 21, 38};
constexpr uint8_t kBright[8] = {36, 2, 16, 13, 26, 32, 24, 39};
constexpr uint8_t kBack[8] = {0, 2, 16, 13, 26, 32, 24, 38};

bool IsDigit(wchar_t c) { return c >= L'0' && c <= L'9'; }

// digits: the decimal number at p, or fallback when there is none; p moves
// behind the digits.
int ReadNumber(const wchar_t*& p, int fallback)
{
    if (!IsDigit(*p)) return fallback;
    uint32_t value = 0;
    while (IsDigit(*p)) value = value * 10 + uint32_t(*p++ - L'0');
    return int(value);
}

int Forward(int position, int n) { return int(uint32_t(position) + uint32_t(n)); }
int Back(int position, int n) { return int(uint32_t(position) - uint32_t(n)); }

void SetForeground(uint16_t& attr, int index) { attr = uint16_t((attr & 0xFF00) | index); }

void ApplySgr(uint16_t& attr, int number)
{
    if (number == 0) BrightFlag = 0;
    else if (number == 1) BrightFlag = 1;
    else if (number >= 30 && number <= 37) SetForeground(attr, (BrightFlag ? kBright : kDim)[number - 30]);
    else if (number >= 40 && number <= 47) attr = uint16_t((attr & 0x00FF) | kBack[number - 40] << 8);
    else if (number >= 50 && number <= 57) {
        static const Item items[8] = {Item::BackGrd,    Item::Error,    Item::FileName, Item::Number,
                                      Item::FileAttrib, Item::FileDate, Item::BoldText, Item::Text};
        SetForeground(attr, ItemValue(items[number - 50]));
    } else if (number == 60) attr = uint16_t((attr & 0x00FF) | ItemValue(Item::BackGrd) << 8);
}

} // namespace

// "[" {digit | ";"} final, at p (the unit after ESC). Returns where reading
// goes on; sets state.Failed for anything it does not know.
static const wchar_t* ParseEscape(ScreenStore& screen, EscapeState& state, const wchar_t* p)
{
    state.Failed = 0;
    if (*p != L'[') {
        state.Failed = 1;
        return p;
    }
    const wchar_t* params = p + 1;
    const wchar_t* final = params;
    while (IsDigit(*final) || *final == L';') ++final;
    const wchar_t* q = params;
    switch (*final) {
    case L'A': screen.CursorY = Back(screen.CursorY, ReadNumber(q, 1)); break;
    case L'B': screen.CursorY = Forward(screen.CursorY, ReadNumber(q, 1)); break;
    case L'C': screen.CursorX = Forward(screen.CursorX, ReadNumber(q, 1)); break;
    case L'D': screen.CursorX = Back(screen.CursorX, ReadNumber(q, 1)); break;
    case L'H':
    case L'f': {
        int row = ReadNumber(q, 1);
        if (*q == L';') ++q;
        int column = ReadNumber(q, 1);
        screen.Locate(Back(column, 1), Back(row, 1));
        break;
    }
    case L'J':
        if (ReadNumber(q, 0) != 2) {
            state.Failed = 1;
            return p;
        }
        screen.ClearScreen();
        break;
    // K, s and u take no parameters: reading goes on right behind the unit
    // that follows "[", whatever it was.
    case L'K': screen.ClearToEnd(); return params + 1;
    case L's':
        state.SavedX = screen.CursorX;
        state.SavedY = screen.CursorY;
        return params + 1;
    case L'u': screen.Locate(state.SavedX, state.SavedY); return params + 1;
    case L'm':
        for (;;) {
            ApplySgr(screen.Attr, ReadNumber(q, 0));
            if (*q != L';') break;
            ++q;
        }
        break;
    default: state.Failed = 1; return p;
    }
    return final + 1;
}

const wchar_t* ScreenStore::ParseSequences(EscapeState& state, const wchar_t* text)
{
    while (*text == 8) {
        Locate(CursorX > 0 ? CursorX - 1 : 0, CursorY);
        ++text;
    }
    const wchar_t* start = text;
    while (*text == 27) {
        text = ParseEscape(*this, state, text + 1);
        if (state.Failed) return start;
    }
    return text;
}
