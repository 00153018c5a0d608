#include "lang/random.h"

// A linear congruential generator with the classic C library constants, so a
// given seed always gives the same sequence on every build.
static uint32_t state = 1;

void SeedRandom(uint32_t seed) { state = seed; }

int NextRandom()
{
    state = state * 214013u + 2531011u;
    return int((state >> 16) & 0x7FFF);
}
