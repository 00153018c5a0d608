#include "screen/screen_store.h"

#include "app/host.h"
#include "app/profile/profile.h"
#include "app/toolkit/omdib.h"
#include "screen/colours.h"

int ScreenWidth = 80;
int ScreenHeight = 24;
int ScrollBack = 270;

ScreenStore::ScreenStore()
{
    rows_.assign(size_t(ScrollBack), std::vector<ScreenCell>(size_t(MaxWidth)));
    rowIndex_.resize(size_t(ScrollBack));
    for (int i = 0; i < ScrollBack; ++i) rowIndex_[size_t(i)] = i;
    ClearScreen();
}

ScreenCell& ScreenStore::Cell(int x, int y)
{
    int history = ScrollBack - MaxHeight;
    return rows_[size_t(rowIndex_[size_t(history + y)])][size_t(x)];
}

const ScreenCell& ScreenStore::CellAt(int x, int y) const
{
    int history = ScrollBack - MaxHeight;
    return rows_[size_t(rowIndex_[size_t(history + y)])][size_t(x)];
}

void ScreenStore::ClearScreen()
{
    for (auto& row : rows_)
        for (auto& cell : row) {
            cell.Attr = Attr;
            cell.Text = L" ";
        }
    CursorX = CursorY = 0;
}

void ScreenStore::ScrollScreen()
{
    // The oldest row falls off; it comes back blank at the bottom.
    int oldest = rowIndex_.front();
    rowIndex_.erase(rowIndex_.begin());
    rowIndex_.push_back(oldest);
    for (auto& cell : rows_[size_t(oldest)]) {
        cell.Attr = Attr;
        cell.Text = L" ";
    }
    --CursorY;
    --EditY;
}

void ScreenStore::WriteCells(const wchar_t* text)
{
    while (*text) {
        if (CursorX >= ScreenWidth) {
            if (Observer) Observer->LineCompleted(CursorY);
            CursorX = 0;
            ++CursorY;
        }
        if (CursorY >= ScreenHeight) ScrollScreen();
        int units;
        const wchar_t* next = _CharNextW(text, -1, &units);
        ScreenCell& cell = Cell(CursorX, CursorY);
        cell.Text.assign(text, size_t(units));
        cell.Attr = Attr;
        ++CursorX;
        text = next;
    }
}

void ScreenStore::Write(const wchar_t* text)
{
    if (BreakFlag) {
        FieldWidth = 0;
        return;
    }
    std::wstring aligned;
    if (FieldWidth > 0) {
        int n = lstrlenW(text);
        if (n < FieldWidth) aligned.assign(size_t(FieldWidth - n), L' ');
        aligned += text;
        text = aligned.c_str();
    }
    WriteCells(text);
    FieldWidth = 0;
}

void ScreenStore::WriteUnit(wchar_t unit)
{
    wchar_t text[2] = {unit, 0};
    Write(text);
}

void ScreenStore::WriteInt64(int64_t value)
{
    wchar_t text[40];
    i64tow_ex(value, text, 10);
    if (CommaNext) StrCommaW(text);
    CommaNext = 0;
    Write(text);
}

void ScreenStore::WriteInt(int32_t value) { WriteInt64(value); }

void ScreenStore::WriteUInt64(uint64_t value)
{
    wchar_t text[40];
    ui64tow_ex(value, text, 10);
    if (CommaNext) StrCommaW(text);
    CommaNext = 0;
    Write(text);
}

void ScreenStore::LineFeed()
{
    if (Observer) Observer->LineCompleted(CursorY);
    CursorX = 0;
    ++CursorY;
    if (CursorY >= ScreenHeight) ScrollScreen();
}

void ScreenStore::NewLine()
{
    if (BreakFlag) return;
    PollBreak();
    LineFeed();
}

void ScreenStore::Locate(int x, int y)
{
    CursorX = x;
    CursorY = y;
}

void ScreenStore::ShowBreak()
{
    UseItem(Item::Text);
    WriteCells(L"^C");
}

void ScreenStore::PollBreak()
{
    if (PollEnabled) Host->PollBreak();
}

std::wstring ScreenStore::RowText(int y) const
{
    std::wstring text;
    for (int x = 0; x < ScreenWidth; ++x) text += CellAt(x, y).Text;
    size_t end = text.find_last_not_of(L' ');
    text.resize(end == std::wstring::npos ? 0 : end + 1);
    return text;
}
