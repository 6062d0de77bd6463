// Random instruction words within a row's pattern, and random machine
// states and memory for them. Values at the edges of their range (zero, all
// ones, the most negative, infinities, NaNs, subnormals, small counts) come
// up far more often than uniform bits would bring them.
#pragma once

#include <cstdint>
#include <random>

#include "machine.h"
#include "native_run.h"
#include "row_profile.h"

using rng_t = std::mt19937_64;

// One element of the given bytes (1, 2, 4 or 8).
uint64_t draw_element(rng_t& rng, unsigned bytes, bool floating);

// A word that the row's pattern matches: fixed bits from the row, free bits
// random, with edge immediates and repeated register numbers favoured.
uint32_t draw_word(rng_t& rng, const row_profile& p);

// A whole state; for memory forms the registers that form addresses point
// into the test area (near its unreadable end for first-fault forms).
void draw_state(rng_t& rng, const row_profile& p, uint32_t word, const test_area& area,
                machine_state* m);

// New contents for the parts of the test area that memory forms reach most.
void draw_memory(rng_t& rng, const row_profile& p, const test_area& area);
