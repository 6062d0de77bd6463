// Helpers for tests that run instructions on a cpu_state.
#pragma once

#include <cstdint>
#include <random>

#include "state/cpu_state.h"

// A state full of random bits; predicate bytes hold random bytes too, so
// that readers which look at more than bit 0 are caught.
void randomize(cpu_state* s, std::mt19937_64& rng);

// Element i of size `bytes` of a 48-byte register, zero-extended.
uint64_t elem(const uint8_t* reg, unsigned bytes, unsigned i);

// Runs the word through the cascade and its decoder; fails the test when no
// row matches.
aarch64_decode_rc run_word(cpu_state* s, uint32_t word);
