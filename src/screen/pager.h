// The "-- more --" pager. A listing arms it for its own duration with a
// ListingPager; while it is armed the writer draws nothing and, once a page
// (ScreenHeight - 1 rows, wrapped rows and line feeds alike) is full, calls
// Pause, which paints the finished page with the mark and waits for a key.
//
// Only the window program waits: it installs Pause as the store's PagePause.
// The console program's output is a stream, so nothing there ever pauses.
#pragma once

// Paints the page with "-- more --" at the cursor (in the picture only, never
// in the cells) and waits. Any character continues; Ctrl-C continues and sets
// BreakFlag. Growing the window ends the wait so the added rows fill first;
// shrinking it keeps waiting. Scrolling, selecting and resizing work meanwhile.
void Pause();

// Arms the pager for one listing command and disarms it on every way out:
//     ListingPager pager;          // at the listing's start
// On arming, Paging follows the page setting, BreakFlag is cleared and the
// page count starts again; on leaving, Paging is cleared and the whole screen
// is drawn again. A command that prints without paging (type /a) passes false
// and the object does nothing.
class ListingPager {
public:
    explicit ListingPager(bool arm = true);
    ~ListingPager();
    ListingPager(const ListingPager&) = delete;
    ListingPager& operator=(const ListingPager&) = delete;

private:
    bool armed_;
};
