#include "app/sound_events.h"

#include <windows.h>

void PlaySoundEvent(const wchar_t*)
{
    // No sound of its own is configured for an event: the system's default
    // beep stands for all of them.
    MessageBeep(MB_OK);
}
