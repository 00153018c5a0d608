// What the store tells a painter, and when the pager is asked to wait.
#include "screen_fixture.h"

namespace {

int pauses = 0;
ScreenStore* paused = nullptr;

// The pager's part at a full page: it starts counting the page again.
void CountPause()
{
    ++pauses;
    paused->PageLines = 0;
}

TEST_F(ScreenTest, WritesReportTheirRowsAndScrollsTheWholeScreen)
{
    store->TakeDamage();
    uint32_t changes = store->ChangeCount;
    store->Locate(0, 3);
    store->Write(std::wstring(85, L'a').c_str());
    ScreenDamage rows = store->TakeDamage();
    EXPECT_FALSE(rows.Whole);
    EXPECT_EQ(rows.Top, 3);
    EXPECT_EQ(rows.Bottom, 4);
    EXPECT_NE(store->ChangeCount, changes);

    ScreenDamage none = store->TakeDamage();
    EXPECT_FALSE(none.Whole);
    EXPECT_GT(none.Top, none.Bottom);

    // Writing into history is not on screen; a scroll repaints everything.
    store->Locate(0, -2);
    store->Write(L"above");
    none = store->TakeDamage();
    EXPECT_GT(none.Top, none.Bottom);
    store->Locate(78, 23);
    store->Write(L"xyz");
    EXPECT_TRUE(store->TakeDamage().Whole);
    EXPECT_EQ(store->Scrolled, 0);
}

TEST_F(ScreenTest, APagedListingWaitsAtEachFullPage)
{
    pauses = 0;
    paused = store.get();
    store->PagePause = CountPause;
    store->Paging = 1;
    store->PageLines = 0;
    store->TakeDamage();
    for (int i = 0; i < 50; ++i) {
        store->Write(L"listed");
        store->NewLine();
    }
    // A page is ScreenHeight - 1 lines: waits after lines 23 and 46. The
    // scroll stays marked until the listing ends.
    EXPECT_EQ(pauses, 2);
    EXPECT_EQ(store->Scrolled, 1);
    EXPECT_TRUE(store->TakeDamage().Whole);

    // Wrapped rows count as lines too.
    store->Paging = 1;
    store->PageLines = 0;
    pauses = 0;
    store->Write(std::wstring(80 * 23 + 1, L'w').c_str());
    EXPECT_EQ(pauses, 1);
    store->Paging = 0;
}

} // namespace
