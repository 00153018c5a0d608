// The banner printed when the window program starts.
#pragma once

void PrintBanner();
