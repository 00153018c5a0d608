#include "exec/capture_settings.h"

#include "app/profile/profile.h"

#include <windows.h>

namespace {

// A 64-bit system is told by the variable that only it sets.
bool SixtyFourBitSystem() { return GetEnvironmentVariableW(L"ProgramW6432", nullptr, 0) != 0; }

} // namespace

void CaptureSettings::Load()
{
    struct Key {
        const wchar_t* Name;
        int CaptureSettings::*Field;
        int Default;
    };
    const Key keys[] = {
        {L"Capture", &CaptureSettings::Capture, 1},
        {L"Emulator", &CaptureSettings::Emulator, 1},
        {L"Copyright", &CaptureSettings::Copyright, 1},
        {L"Logging", &CaptureSettings::Logging, 0},
        {L"VDM", &CaptureSettings::VDM, 0},
        {L"WOW64", &CaptureSettings::WOW64, SixtyFourBitSystem() ? 1 : 0},
        {L"UnicodeRedirection", &CaptureSettings::UnicodeRedirection, 0},
        {L"RecycleBin", &CaptureSettings::RecycleBin, 0},
        {L"DriveIcon", &CaptureSettings::DriveIcon, 0},
        {L"DriveHiddenAttrib", &CaptureSettings::DriveHiddenAttrib, 0},
        {L"Console", &CaptureSettings::Console, 1},
        {L"GUIStart", &CaptureSettings::GUIStart, 1},
    };
    for (const Key& key : keys) this->*key.Field = ProfileReadInt(L"Ombrel", key.Name, key.Default);
}
