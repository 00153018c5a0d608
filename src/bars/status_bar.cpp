// The status bar's record and the one percent call that paints.
#include "bars/status_bar.h"

void StatusBar::PaintPercent()
{
    if (Window) RedrawWindow(Window, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
}

void ProgressEnd()
{
    TheStatusBar.PaintPercent();
    TheStatusBar.Percent = -1;
}
