#include "screen/pager.h"

#include "app/event_pump.h"
#include "app/host.h"
#include "screen/screen_store.h"

namespace {

constexpr unsigned kCtrlC = 3;

} // namespace

void Pause()
{
    ScreenStore& screen = TheScreen;
    int height = ScreenHeight;
    InputMode = 2;
    screen.PageLines = 0;
    screen.AtMore = 1;
    // The painter lays the mark over the page when it draws the whole screen.
    screen.RepaintScreen();
    Host->Refresh();
    for (;;) {
        InputEvent event = Host->NextInput(InputWait::Page);
        if (event.Kind == InputKind::Char) {
            if (event.Unit == kCtrlC) screen.BreakFlag = 1;
            break;
        }
        // A program that is ending has no one to read the rest.
        if (event.Kind == InputKind::End) {
            screen.BreakFlag = 1;
            break;
        }
        if (event.Kind != InputKind::Resized) continue;
        if (ScreenHeight > height) {
            // Only the added rows fill before the next wait.
            screen.PageLines = height - 1;
            break;
        }
        height = ScreenHeight;
    }
    screen.AtMore = 0;
    InputMode = 0;
    // Drawing the row again takes the mark away.
    screen.ClearToEnd();
}

ListingPager::ListingPager(bool arm) : armed_(arm)
{
    if (!armed_) return;
    ScreenStore& screen = TheScreen;
    screen.Paging = screen.PageEnabled ? 1 : 0;
    screen.BreakFlag = 0;
    screen.PageLines = 0;
}

ListingPager::~ListingPager()
{
    if (!armed_) return;
    TheScreen.Paging = 0;
    TheScreen.RepaintScreen();
}
