// The output writer: every text the shell prints passes here. Write chooses
// between the redirection file and the store, applies the one-shot field
// width and thousands separators, and honours BreakFlag; WriteCells is the
// store side with the deferred wrap.
#include "app/globals.h"
#include "app/host.h"
#include "app/toolkit/omdib.h"
#include "screen/colours.h"
#include "screen/screen_store.h"

#include <algorithm>
#include <cwchar>
#include <string>

namespace {

// The widest field a command may ask for.
constexpr int kFieldMax = 40;

// The row below y; a row far below the screen only needs to stay below it,
// which keeps a wild cursor from overflowing.
int NextRow(int y) { return y < ScreenHeight ? y + 1 : y; }

} // namespace

void ScreenStore::WriteCells(const wchar_t* text)
{
    int width = Columns();
    int height = ScreenRows();
    int runRow = CursorY;
    // The cell under the cursor while it is known; the next one in its row
    // follows by one step.
    ScreenCell* cell = nullptr;
    while (*text) {
        // The wrap waits until a character comes for the full row.
        if (CursorX >= width) {
            MarkRow(runRow);
            if (Observer) Observer->LineCompleted(CursorY);
            CursorX = 0;
            CursorY = NextRow(CursorY);
            ++PageLines;
            runRow = CursorY;
            cell = nullptr;
        }
        if (CursorY >= height) {
            ScrollScreen();
            cell = nullptr;
        }
        if (Paging && PageLines >= height - 1 && PagePause) {
            PagePause();
            // Ctrl-C at the pause drops the rest of the text too.
            if (BreakFlag) break;
            width = Columns();
            height = ScreenRows();
            cell = nullptr;
        }
        if (!cell) cell = ScreenCellAt(CursorX, CursorY, width);
        text = cell ? cells::set(*cell, text, Attr) : _CharNextW(text, -1, nullptr);
        ++CursorX;
        cell = cell && CursorX > 0 && CursorX < width ? cell + 1 : nullptr;
    }
    MarkRow(runRow);
    // The scroll already marked the whole screen; a listing keeps the mark
    // until the pager has shown its page.
    if (!Paging) Scrolled = 0;
}

void ScreenStore::LineFeed()
{
    if (Observer) Observer->LineCompleted(CursorY);
    CursorX = 0;
    ++PageLines;
    CursorY = NextRow(CursorY);
    if (CursorY >= ScreenRows()) ScrollScreen();
    if (Paging && PageLines >= ScreenRows() - 1 && PagePause) PagePause();
}

void ScreenStore::Write(const wchar_t* text)
{
    if (BreakFlag) {
        FieldWidth = 0;
        return;
    }
    // Right-aligned in the field; a longer text is written whole.
    std::wstring field;
    if (FieldWidth > 0) {
        int width = std::min(FieldWidth, kFieldMax);
        int n = std::min(lstrlenW(text), width);
        field.assign(size_t(width - n), L' ');
        field += text;
        text = field.c_str();
    }
    if (!Redirected) {
        WriteCells(text);
    } else {
        PollBreak();
        if (BreakFlag) return;
        OutputFile.Write(text);
    }
    FieldWidth = 0;
}

const wchar_t* ScreenStore::WriteChar(const wchar_t* text)
{
    int units = 0;
    const wchar_t* next = _CharNextW(text, -1, &units);
    std::wstring character(text, size_t(units));
    Write(character.c_str());
    return next;
}

void ScreenStore::WriteUnit(wchar_t unit)
{
    wchar_t text[2] = {unit, 0};
    Write(text);
}

void ScreenStore::WriteNumber(wchar_t* digits)
{
    if (CommaNext) StrCommaW(digits);
    CommaNext = 0;
    Write(digits);
}

void ScreenStore::WriteInt64(int64_t value)
{
    wchar_t text[40];
    WriteNumber(i64tow_ex(value, text, 10));
}

void ScreenStore::WriteUInt64(uint64_t value)
{
    wchar_t text[40];
    WriteNumber(ui64tow_ex(value, text, 10));
}

void ScreenStore::WriteInt(int32_t value) { WriteInt64(value); }

void ScreenStore::WriteLong(int32_t value) { WriteInt64(value); }

void ScreenStore::WriteULong(uint32_t value) { WriteUInt64(value); }

void ScreenStore::WriteFloat(double value)
{
    wchar_t text[80];
    std::swprintf(text, 40, L"%.15g", value);
    WriteNumber(text);
}

void ScreenStore::NewLine()
{
    if (BreakFlag) return;
    PollBreak();
    if (Redirected) OutputFile.Write(L"\r\n", 2);
    else LineFeed();
}

void ScreenStore::ShowBreak()
{
    Attr = uint16_t((Attr & 0xFF00) | ItemValue(Item::Text));
    WriteCells(L"^C");
}

void ScreenStore::PollBreak()
{
    if (PollEnabled) Host->PollBreak();
}

void ScreenStore::OpenRedirect(HANDLE file)
{
    CloseRedirect();
    Redirected = 1;
    OutputFile.ReportErrors = 1;
    OutputFile.Adopt(file);
    // An empty file takes the chosen encoding; one with content keeps its own
    // and is appended to.
    if (OutputFile.CurrentSize() == 0) {
        OutputFile.Encoding = UnicodeRedirection ? Utf16LE : CodePageText;
        OutputFile.WriteMark();
        return;
    }
    OutputFile.SniffEncoding();
    OutputFile.Seek(OutputFile.CurrentSize());
}

void ScreenStore::CloseRedirect()
{
    if (Redirected) OutputFile.Close();
    Redirected = 0;
}
