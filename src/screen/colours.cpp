#include "screen/colours.h"

#include "app/profile/profile.h"
#include "screen/screen_store.h"

#include <cwchar>

uint8_t ItemColour[kItemCount] = {16, 39, 13, 38, 39, 24, 32, 16, 2, 16, 13, 24, 32, 24, 26, 38, 0};
COLORREF Palette[kPaletteSize];
int DefaultText = 0;
int DefaultScheme = 0;

namespace {

constexpr const wchar_t* kSection = L"Colour40";

int PaletteIndexOr(int value, int fallback) { return value >= 0 && value < kPaletteSize ? value : fallback; }

void PaletteKey(int index, wchar_t* key)
{
    std::swprintf(key, 8, L"rgb%02d", index);
}

} // namespace

void UseItem(Item item)
{
    TheScreen.Attr = uint16_t((TheScreen.Attr & 0xFF00) | ItemColour[static_cast<int>(item)]);
}

void ForceBackground()
{
    TheScreen.Attr = uint16_t((TheScreen.Attr & 0x00FF) | (ItemValue(Item::BackGrd) << 8));
}

int ColourByName(const wchar_t* name)
{
    struct Named {
        const wchar_t* Name;
        int Index;
    };
    static const Named colours[] = {
        {L"Grey", 38}, {L"Gray", 38}, {L"White", 39}, {L"Black", 0},    {L"Yellow", 13},
        {L"Green", 16}, {L"Blue", 26}, {L"Red", 2},    {L"Cyan", 24},   {L"Magenta", 32},
    };
    for (const Named& colour : colours)
        if (lstrcmpiW(name, colour.Name) == 0) return colour.Index;
    for (int i = 0; i < kItemCount; ++i)
        if (lstrcmpiW(name, ItemNames[i]) == 0) return ItemColour[i];
    return -1;
}

bool PaletteEditable()
{
    HDC screen = GetDC(nullptr);
    if (!screen) return true;
    int bits = GetDeviceCaps(screen, BITSPIXEL) * GetDeviceCaps(screen, PLANES);
    ReleaseDC(nullptr, screen);
    return bits >= 8;
}

void LoadColours()
{
    DefaultText = ProfileReadInt(kSection, L"DefaultText", 0);
    DefaultScheme = ProfileReadInt(kSection, L"DefaultScheme", 0);
    for (int i = 0; i < kItemCount; ++i)
        ItemColour[i] = uint8_t(PaletteIndexOr(ProfileReadInt(kSection, ItemNames[i], ItemColour[i]), ItemColour[i]));
    ForceBackground();
    // The display is not asked here: the console program has none, and the
    // window program limits the palette once its window stands.
    for (int i = 0; i < kPaletteSize; ++i) {
        wchar_t key[8];
        PaletteKey(i, key);
        Palette[i] = COLORREF(ProfileReadInt(kSection, key, int(PaletteDefault[i])));
    }
}

void LimitPaletteToDisplay()
{
    if (PaletteEditable()) return;
    for (int i = 0; i < kPaletteSize; ++i) Palette[i] = PaletteDefault[i];
}

void SaveItems()
{
    ProfileWriteInt(kSection, L"DefaultText", DefaultText);
    ProfileWriteInt(kSection, L"DefaultScheme", DefaultScheme);
    for (int i = 0; i < kItemCount; ++i) ProfileWriteInt(kSection, ItemNames[i], ItemColour[i]);
}

void SetPaletteEntry(int index, COLORREF rgb)
{
    if (index < 0 || index >= kPaletteSize) return;
    Palette[index] = rgb;
    wchar_t key[8];
    PaletteKey(index, key);
    ProfileWriteInt(kSection, key, int(rgb));
    ForceBackground();
}

void ColourPageState::Open()
{
    for (int i = 0; i < kItemCount; ++i) Working[i] = ItemColour[i];
    SavedText = DefaultText;
    SavedScheme = DefaultScheme;
}

void ColourPageState::SelectScheme(int scheme)
{
    if (scheme < 0 || scheme >= kSchemeCount) return;
    DefaultScheme = scheme;
    for (int i = 0; i < kItemCount; ++i) Working[i] = uint8_t(SchemeItems[scheme][i]);
}

void ColourPageState::AssignToSelected(int paletteIndex)
{
    if (DefaultText < 0 || DefaultText >= kItemCount || paletteIndex < 0 || paletteIndex >= kPaletteSize) return;
    Working[DefaultText] = uint8_t(paletteIndex);
}

void ColourPageState::Accept()
{
    for (int i = 0; i < kItemCount; ++i) ItemColour[i] = Working[i];
    TheScreen.NewLine();
    ForceBackground();
    TheScreen.ClearScreen();
    SaveItems();
}

void ColourPageState::Cancel()
{
    DefaultText = SavedText;
    DefaultScheme = SavedScheme;
}
