// The percent indicator as commands drive it: the figure it holds after each
// call, without any window.
#include "bars/status_bar.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>

namespace {

struct ProgressCase {
    const char* name;
    std::function<void()> drive;
    int32_t percent;
    uint64_t done;
};

TEST(Progress, FigureAfterEachKindOfCall)
{
    const ProgressCase cases[] = {
        {"a zero total leaves it off", [] { ProgressStart(0); }, -1, 0},
        {"steps do nothing while off",
         [] {
             ProgressStart(0);
             for (int i = 0; i < 5; ++i) ProgressStep();
             ProgressAdd(3);
         },
         -1, 0},
        {"a start begins at 0", [] { ProgressStart(7); }, 0, 0},
        {"steps count whole units, rounding down",
         [] {
             ProgressStart(3);
             ProgressStep();
             ProgressStep();
         },
         66, 2},
        {"more steps than the total stop at 100",
         [] {
             ProgressStart(4);
             for (int i = 0; i < 9; ++i) ProgressStep();
         },
         100, 4},
        {"an add beyond what is left stops at 100",
         [] {
             ProgressStart(1000);
             ProgressAdd(250);
             ProgressAdd(5000);
         },
         100, 1000},
        {"adds sum up",
         [] {
             ProgressStart(1000);
             ProgressAdd(125);
             ProgressAdd(125);
         },
         25, 250},
        {"the largest add never wraps",
         [] {
             ProgressStart(10);
             ProgressAdd(5);
             ProgressAdd(UINT64_MAX);
         },
         100, 10},
        {"a total near the 64-bit end still climbs",
         [] {
             ProgressStart(UINT64_MAX - 1);
             ProgressAdd(UINT64_MAX / 2);
         },
         50, UINT64_MAX / 2},
        {"a new start resets what was done",
         [] {
             ProgressStart(2);
             ProgressStep();
             ProgressStart(8);
             ProgressStep();
             ProgressStep();
         },
         25, 2},
        {"the end switches it off", [] { ProgressStart(2); ProgressStep(); ProgressEnd(); }, -1, 1},
        {"calls after the end do nothing",
         [] {
             ProgressStart(2);
             ProgressEnd();
             ProgressStep();
             ProgressAdd(1);
         },
         -1, 0},
    };
    for (const ProgressCase& c : cases) {
        TheStatusBar.Percent = -1;
        TheStatusBar.Done = 0;
        TheStatusBar.Total = 0;
        c.drive();
        EXPECT_EQ(TheStatusBar.Percent, c.percent) << c.name;
        EXPECT_EQ(TheStatusBar.Done, c.done) << c.name;
    }
}

} // namespace
