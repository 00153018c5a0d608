#include "screen/scrollback.h"

#include <algorithm>

ScrollBarState TheScrollBar;

int ScrollBarState::Maximum() const { return TheScreen.History() + 1; }

void ScrollBarState::RowEntered()
{
    if (Filled >= TheScreen.History() - 1) return;
    ++Filled;
    Position = Filled + 1;
    barChanged_ = true;
}

void ScrollBarState::ResetRange()
{
    Filled = std::clamp(Filled, 0, std::max(TheScreen.History(), 0));
    Position = std::min(Position, Filled + 1);
    barChanged_ = true;
    SyncBar();
}

void ScrollBarState::SyncBar()
{
    if (!barChanged_ || !Display) return;
    barChanged_ = false;
    // The thumb shrinks as history fills.
    Display->SetBar(Position, Maximum(), UseScrollInfo ? Maximum() - Filled : 0);
}

int ScrollBarState::TopRow() const { return TheScreen.History() - Filled + (Viewing ? Position - 1 : Filled); }

void ScrollBarState::ScrollCommand(int code, int position)
{
    int p = Position - 1;
    int height = ScreenHeight;
    switch (code) {
    case LineUp:
        if (p > 0) Move(p - 1);
        return;
    case LineDown:
        if (p + 1 < Filled) Move(p + 1);
        else SnapBack();
        return;
    case PageUp:
        if (p > 0) Move(std::max(p - height, 0));
        return;
    case PageDown:
        if (p >= TheScreen.History()) return;
        if (p + height < Filled) Move(p + height);
        else SnapBack();
        return;
    case Thumb:
        if (position - 1 < Filled) Move(std::max(position - 1, 0));
        else SnapBack();
        return;
    default: return;
    }
}

void ScrollBarState::Move(int p)
{
    if (!Viewing) {
        Viewing = 1;
        if (Display) Display->ShowCaret(false);
    }
    Position = p + 1;
    barChanged_ = true;
    SyncBar();
    if (Display) Display->PaintHistory(TopRow());
}

void ScrollBarState::SnapBack()
{
    if (!Viewing) return;
    Position = Filled + 1;
    Viewing = 0;
    barChanged_ = true;
    SyncBar();
    if (!Display) return;
    Display->PaintHistory(TheScreen.History());
    Display->ShowCaret(true);
}

void ScrollBarState::Repaint()
{
    if (Display) Display->PaintHistory(TopRow());
}
