// One library operation against the host instruction over many drawn operand
// pairs and control words: the same answer and the same flags, flags already
// in the word kept, trap enables ignored, and no control bit changed. The
// flags the host raised are counted, so a test can show that its draws
// reached every exception it claims to check.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>

#include "fp_host/fp_random.h"
#include "fp_host/host_fp.h"

// What one side answers: a result pattern, a truth value or an NZCV nibble,
// and the flags raised.
struct fp_outcome {
  uint64_t value;
  uint32_t flags;
};

struct flag_counts {
  int seen[8] = {};
  int ioc() const { return seen[0]; }
  int dzc() const { return seen[1]; }
  int ofc() const { return seen[2]; }
  int ufc() const { return seen[3]; }
  int ixc() const { return seen[4]; }
  int idc() const { return seen[7]; }
};

constexpr uint32_t kTrapEnables = 0x9f00;

// draw(rng) gives an operand pair, lib(a, b, fpscr) the library's answer and
// host(a, b, controls) the host's fp_outcome.
template <typename T, typename Draw, typename Lib, typename Host>
flag_counts expect_same_as_host(int draws, uint64_t seed, Draw draw, Lib lib, Host host) {
  fp_rng rng{seed};
  flag_counts counts;
  for (int i = 0; i < draws; ++i) {
    const auto [a, b] = draw(rng);
    const FPSCR controls = random_fpscr(rng);
    const FPSCR before = controls | (static_cast<FPSCR>(rng.next()) & kTrapEnables) |
                         (rng.below(4) ? 0 : static_cast<FPSCR>(rng.next()) & FP_FLAG_BITS);
    FPSCR fpscr = before;
    const uint64_t got = lib(a, b, fpscr);
    const fp_outcome want = host(a, b, controls);
    for (int bit = 0; bit < 8; ++bit) counts.seen[bit] += (want.flags >> bit) & 1;
    if (got != want.value || fpscr != (before | (want.flags & FP_FLAG_BITS))) {
      ADD_FAILURE() << std::hex << "draw " << i << ": a 0x" << uint64_t(a) << " b 0x" << uint64_t(b)
                    << " fpscr 0x" << before << " -> library 0x" << got << " fpscr 0x" << fpscr
                    << ", host 0x" << want.value << " flags 0x" << want.flags;
      break;
    }
  }
  return counts;
}

template <typename T> fp_outcome host_bits(const host_result& h) {
  return {static_cast<T>(h.bits), h.fpsr};
}
