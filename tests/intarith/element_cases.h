// Cases that put one pair of operands in each element, so that one run of
// an instruction word checks them all.
#pragma once

#include <gtest/gtest.h>

#include <cstring>

#include "test_state.h"

inline void set_elem(uint8_t* reg, unsigned bytes, unsigned i, uint64_t v) {
  std::memcpy(reg + i * bytes, &v, bytes);
}

inline void all_active(cpu_state* s, unsigned pg) { std::memset(s->p[pg], 1, 48); }

struct pair_case {
  uint64_t zdn, zm, result;
};

// Runs a word of the form "op z0, p1/m, z0, z2" with every element active.
inline void check_pairs(uint32_t word, unsigned bytes, const pair_case* cases, unsigned n) {
  cpu_state s{};
  all_active(&s, 1);
  for (unsigned i = 0; i < n; ++i) {
    set_elem(s.z[0], bytes, i, cases[i].zdn);
    set_elem(s.z[2], bytes, i, cases[i].zm);
  }
  ASSERT_EQ(run_word(&s, word), AARCH64_DECODE_OK);
  for (unsigned i = 0; i < n; ++i)
    EXPECT_EQ(elem(s.z[0], bytes, i), cases[i].result)
        << std::hex << "word " << word << ": " << cases[i].zdn << ", " << cases[i].zm;
}

template <unsigned N> void check_pairs(uint32_t word, unsigned bytes, const pair_case (&cases)[N]) {
  check_pairs(word, bytes, cases, N);
}
