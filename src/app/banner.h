// The banner the window program prints before its first prompt: title,
// rights line, five lines about the system, and a tip while setting Tips is on.
#pragma once

#include <cstdint>

// The shell's version, as the banner and ver show it.
constexpr const wchar_t* kShellVersion = L"8.2";

void PrintBanner();

// "Tip: " and tip number id of the string table, broken into lines as the
// table holds it.
void PrintTip(int id);

// Colours the display can show; a display with more than 24 bits per pixel
// still shows 16,777,216, its other bits carrying no colour.
uint64_t NumDisplayColors();
