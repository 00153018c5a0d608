// The shell's random numbers: one generator for seed, calc and the banner tip.
#pragma once

#include <cstdint>

void SeedRandom(uint32_t seed);
// 0 to 32767.
int NextRandom();
