// Sound events: named moments (a recall that found nothing, a completion
// with several candidates) at which the program makes itself heard.
#pragma once

void PlaySoundEvent(const wchar_t* name);
