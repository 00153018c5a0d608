#include "screen/colours.h"

#include "screen/screen_store.h"

uint8_t ItemColour[kItemCount] = {16, 39, 13, 38, 39, 24, 32, 16, 2, 16, 13, 24, 32, 24, 26, 38, 0};

void UseItem(Item item)
{
    TheScreen.Attr = uint16_t((TheScreen.Attr & 0xFF00) | ItemColour[static_cast<int>(item)]);
}
