// One library operation against the host instruction, over many drawn
// operand pairs and control words: the result and the flags must be the
// same, flags already in the word must stay, and no control bit may change.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>

#include "draws.h"
#include "fp/fp_core.h"
#include "host_fp.h"

// What the library and the host report for one case: the value the operation
// stands for (a result pattern, a truth value or an NZCV nibble) and the flags.
struct fp_outcome {
  uint64_t value;
  uint32_t flags;
};

// Trap enables, which the library must not read, and flags left by earlier
// operations, which it must keep.
inline uint32_t draw_library_extras(draw_rng& rng) {
  const uint32_t trap_enables = 0x9f00u;
  uint32_t extras = uint32_t(rng()) & trap_enables;
  if (rng() % 4 == 0) extras |= uint32_t(rng()) & kFlagBits;
  return extras;
}

// draw(rng) gives an operand pair; lib(a, b, fpscr) and host(a, b, fpcr)
// give an fp_outcome each. Reports the first few disagreements in full.
template <typename T, typename Draw, typename Lib, typename Host>
void expect_same_as_host(const char* what, int cases, uint64_t seed, Draw draw, Lib lib,
                         Host host) {
  draw_rng rng(seed);
  int failures = 0;
  for (int i = 0; i < cases; ++i) {
    const auto [a, b] = draw(rng);
    const uint32_t fpcr = draw_fpcr(rng);
    const uint32_t extras = draw_library_extras(rng);
    FPSCR fpscr = fpcr | extras;
    const fp_outcome got = lib(T(a), T(b), fpscr);
    const fp_outcome want = host(uint64_t(a), uint64_t(b), fpcr);
    const uint32_t want_flags = (want.flags | extras) & kFlagBits;
    const bool same = got.value == want.value && (fpscr & kFlagBits) == want_flags &&
                      (fpscr & ~kFlagBits) == ((fpcr | extras) & ~kFlagBits);
    if (!same && ++failures <= 8) {
      ADD_FAILURE() << what << " case " << i << " seed " << seed << std::hex << ": a=0x"
                    << uint64_t(a) << " b=0x" << uint64_t(b) << " fpcr=0x" << fpcr << " extras=0x"
                    << extras << " -> library 0x" << got.value << " fpscr=0x" << fpscr
                    << ", host 0x" << want.value << " flags=0x" << want_flags;
    }
  }
  EXPECT_EQ(failures, 0) << what;
}

template <typename T> constexpr uint64_t width_mask() {
  return sizeof(T) == 8 ? ~uint64_t(0) : (uint64_t(1) << (8 * sizeof(T))) - 1;
}
