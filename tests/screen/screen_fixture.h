// A store built without a window, at 80 x 24 with 270 rows, for screen-picture
// tests: write through the real writer, then read rows back as strings.
#pragma once

#include "screen/colours.h"
#include "screen/screen_store.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

class ScreenTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        ScreenWidth = 80;
        ScreenHeight = 24;
        BrightFlag = 0;
        store = std::make_unique<ScreenStore>(270);
    }

    std::wstring Row(int y) const { return store->RowText(y); }
    uint8_t Foreground(int x, int y) const { return uint8_t(store->CellAt(x, y).Attr & 0xFF); }
    uint8_t Background(int x, int y) const { return uint8_t(store->CellAt(x, y).Attr >> 8); }
    // The units of one cell, up to its first zero.
    std::wstring CellText(int x, int y) const
    {
        const ScreenCell& cell = store->CellAt(x, y);
        std::wstring text;
        for (int i = 0; cell.Units() && i < cell.Capacity && cell.Units()[i]; ++i) text += cell.Units()[i];
        return text;
    }
    void ExpectCursor(int x, int y) const
    {
        EXPECT_EQ(store->CursorX, x);
        EXPECT_EQ(store->CursorY, y);
    }

    std::unique_ptr<ScreenStore> store;
};
