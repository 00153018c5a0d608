#include "app/banner.h"

#include "screen/colours.h"
#include "screen/screen_store.h"

void PrintBanner()
{
    UseItem(Item::Number);
    TheScreen.Write(L"        OOP - ");
    UseItem(Item::FileName);
    TheScreen.Write(L"General Command Shell for Windows");
    UseItem(Item::Error);
    TheScreen.Write(L" v");
    TheScreen.Write(L"8.2");
    TheScreen.NewLine();
    UseItem(Item::BoldText);
    TheScreen.Write(L"Ombrel");
    UseItem(Item::FileAttrib);
    TheScreen.Write(L" - free software, ");
    UseItem(Item::FileDate);
    TheScreen.Write(L"by the Ombrel developers");
    TheScreen.NewLine();
    TheScreen.NewLine();
}
