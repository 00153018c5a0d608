// Display items: the named colours that every command prints in. Each item
// holds a palette index; a command puts the item's index into the low byte
// of the current attribute before it writes.
#pragma once

#include <cstdint>

enum class Item : int {
    FileName,
    HighFile,
    Number,
    Text,
    HighText,
    BoldText,
    EnvName,
    EnvStr,
    Error,
    LHS,
    HighLHS,
    RHS,
    FileDate,
    FileTime,
    FileAttrib,
    FileDesc,
    BackGrd,
    Count
};

constexpr int kItemCount = static_cast<int>(Item::Count);

// Palette index of each item, as loaded from the settings.
extern uint8_t ItemColour[kItemCount];

// Foreground of the current attribute to the item; the background stays.
void UseItem(Item item);
