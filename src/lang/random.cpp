#include "lang/random.h"

// The shell's one generator: state x, next x = x * 22695477 + 1 (mod 2^32),
// and the result is bits 16 to 30, so a seed always gives the same sequence.
static uint32_t state = 1;

void SeedRandom(uint32_t seed) { state = seed; }

int NextRandom()
{
    state = state * 22695477u + 1u;
    return int((state >> 16) & 0x7FFF);
}
