// What the reference check cannot reach in add and subtract: the predicate
// bytes of the register record holding more than 0 or 1. Results on real
// machine states are the reference check's.
#include <gtest/gtest.h>

#include <cstring>

#include "test_state.h"

namespace {

constexpr uint32_t kAddZpz = 0x04000000;

uint32_t zpz(uint32_t op, unsigned size, unsigned zdn, unsigned pg, unsigned zm) {
  return op | size << 22 | pg << 10 | zm << 5 | zdn;
}

TEST(AddSub, PredicateTestLooksAtBitZeroOfTheFirstByteOnly) {
  cpu_state s{};
  for (unsigned i = 0; i < 48; ++i) s.z[2][i] = 1;
  // Halfword elements: 0x0100 (inactive), 0x00fe (inactive), 0xff01 (active).
  const uint8_t pred[6] = {0x00, 0x01, 0xfe, 0x00, 0x01, 0xff};
  std::memcpy(s.p[1], pred, sizeof pred);
  ASSERT_EQ(run_word(&s, zpz(kAddZpz, 1, 0, 1, 2)), AARCH64_DECODE_OK);
  EXPECT_EQ(elem(s.z[0], 2, 0), 0u);
  EXPECT_EQ(elem(s.z[0], 2, 1), 0u);
  EXPECT_EQ(elem(s.z[0], 2, 2), 0x0101u);
  EXPECT_EQ(elem(s.z[0], 2, 3), 0u);
}

} // namespace
