// Divide, multiply and the move prefix, run from their instruction words at
// the edges of their ranges, where random machine states seldom go: zero and
// minus-one divisors, the most negative number, all-inactive predicates.
#include <gtest/gtest.h>

#include <cstring>

#include "element_cases.h"

namespace {

constexpr uint32_t kSdivS = 0x04940440;      // sdiv z0.s, p1/m, z0.s, z2.s
constexpr uint32_t kSdivD = 0x04d40440;      // sdiv z0.d, p1/m, z0.d, z2.d
constexpr uint32_t kUdivrS = 0x04970440;     // udivr z0.s, p1/m, z0.s, z2.s
constexpr uint32_t kMovprfxZ = 0x04902440;   // movprfx z0.s, p1/z, z2.s
constexpr uint32_t kMovprfxM = 0x04912440;   // movprfx z0.s, p1/m, z2.s
constexpr uint32_t kMovprfx = 0x0420bc40;    // movprfx z0, z2
constexpr uint32_t kMulDMinus1 = 0x25f0dfe0; // mul z0.d, z0.d, #-1

TEST(Divide, SignedWordsByZeroMinusOneAndTowardZero) {
  const pair_case cases[] = {
      {0x80000000, 0xffffffff, 0x80000000}, // most negative / -1
      {0x80000000, 0, 0},                   // by zero
      {0, 0, 0},
      {0x7fffffff, 0xffffffff, 0x80000001},
      {7, 0xfffffffe, 0xfffffffd}, // 7 / -2 = -3
      {0xfffffff9, 2, 0xfffffffd}, // -7 / 2 = -3
      {0x80000000, 1, 0x80000000},
      {100, 7, 14},
  };
  check_pairs(kSdivS, 4, cases);
}

TEST(Divide, SignedDoublewords) {
  const uint64_t min = 0x8000000000000000ull;
  const pair_case cases[] = {
      {min, ~0ull, min},     {min, 0, 0}, {~0ull, 0, 0}, {min, 2, 0xc000000000000000ull},
      {5, ~0ull, ~0ull - 4}, // 5 / -1 = -5
  };
  check_pairs(kSdivD, 8, cases);
}

TEST(Divide, ReversedUnsignedDividesZmByZdn) {
  // {Zdn, Zm, Zm / Zdn}
  const pair_case cases[] = {
      {0, 0xffffffff, 0}, {2, 0xffffffff, 0x7fffffff}, {0xffffffff, 2, 0}, {3, 10, 3}};
  check_pairs(kUdivrS, 4, cases);
}

TEST(Divide, InactiveElementWithZeroDivisorKeepsZdn) {
  cpu_state s{};
  set_elem(s.z[0], 4, 0, 1234);
  set_elem(s.z[0], 4, 1, 1234);
  set_elem(s.z[2], 4, 1, 2);
  s.p[1][4] = 1; // only element 1
  ASSERT_EQ(run_word(&s, kSdivS), AARCH64_DECODE_OK);
  EXPECT_EQ(elem(s.z[0], 4, 0), 1234u);
  EXPECT_EQ(elem(s.z[0], 4, 1), 617u);
}

TEST(Multiply, ImmediateMinusOneNegatesDoublewords) {
  cpu_state s{};
  set_elem(s.z[0], 8, 0, 5);
  set_elem(s.z[0], 8, 1, 0x8000000000000000ull);
  ASSERT_EQ(run_word(&s, kMulDMinus1), AARCH64_DECODE_OK);
  EXPECT_EQ(elem(s.z[0], 8, 0), ~0ull - 4);
  EXPECT_EQ(elem(s.z[0], 8, 1), 0x8000000000000000ull);
  EXPECT_EQ(elem(s.z[0], 8, 2), 0u);
}

TEST(MovePrefix, AllOffPredicateZeroesOrKeeps) {
  std::mt19937_64 rng(3);
  cpu_state s;
  randomize(&s, rng);
  std::memset(s.p[1], 0, 48);
  cpu_state before = s;
  ASSERT_EQ(run_word(&s, kMovprfxM), AARCH64_DECODE_OK);
  EXPECT_EQ(std::memcmp(s.z[0], before.z[0], 48), 0);
  ASSERT_EQ(run_word(&s, kMovprfxZ), AARCH64_DECODE_OK);
  for (unsigned i = 0; i < 48; ++i) ASSERT_EQ(s.z[0][i], 0) << i;

  s.p[1][4] = 1; // word element 1 only
  ASSERT_EQ(run_word(&s, kMovprfxZ), AARCH64_DECODE_OK);
  EXPECT_EQ(elem(s.z[0], 4, 1), elem(s.z[2], 4, 1));
  EXPECT_EQ(elem(s.z[0], 4, 0), 0u);

  ASSERT_EQ(run_word(&s, kMovprfx), AARCH64_DECODE_OK);
  EXPECT_EQ(std::memcmp(s.z[0], s.z[2], 48), 0);
}

} // namespace

namespace {

constexpr uint32_t kSdotS = 0x44800020;       // sdot z0.s, z1.b, z0.b
constexpr uint32_t kUdotD = 0x44c20420;       // udot z0.d, z1.h, z2.h
constexpr uint32_t kUdotSIndex3 = 0x44ba0420; // udot z0.s, z1.b, z2.b[3]
constexpr uint32_t kSdotDIndex1 = 0x44f20020; // sdot z0.d, z1.h, z2.h[1]

// The four products of an element's group only fit the accumulator's width:
// a sum kept at product width, or of sign-extended unsigned lanes, is wrong.
TEST(DotProduct, ExtremeProductsSumAtAccumulatorWidth) {
  cpu_state s{};
  std::memset(s.z[0], 0x7f, 48); // accumulator and Zm: 127
  std::memset(s.z[1], 0x80, 48); // -128
  ASSERT_EQ(run_word(&s, kSdotS), AARCH64_DECODE_OK);
  for (unsigned i = 0; i < 12; ++i) ASSERT_EQ(elem(s.z[0], 4, i), 0x7f7f7f7fu - 4 * 128 * 127) << i;

  std::memset(s.z[0], 0, 48);
  std::memset(s.z[1], 0xff, 48);
  std::memset(s.z[2], 0xff, 48);
  ASSERT_EQ(run_word(&s, kUdotD), AARCH64_DECODE_OK);
  for (unsigned i = 0; i < 6; ++i) ASSERT_EQ(elem(s.z[0], 8, i), 4 * 0xfffe0001ull) << i;
}

// Each 128-bit segment takes the indexed group from its own segment of Zm.
TEST(DotProduct, IndexedGroupComesFromEachSegment) {
  cpu_state s{};
  std::memset(s.z[1], 1, 48);
  for (unsigned i = 0; i < 48; ++i) s.z[2][i] = static_cast<uint8_t>(i);
  ASSERT_EQ(run_word(&s, kUdotSIndex3), AARCH64_DECODE_OK);
  for (unsigned i = 0; i < 12; ++i) {
    const unsigned first = 16 * (i / 4) + 12; // bytes 12..15 of the segment
    ASSERT_EQ(elem(s.z[0], 4, i), 4 * first + 6) << i;
  }

  std::memset(s.z[0], 0, 48);
  for (unsigned i = 0; i < 24; ++i) set_elem(s.z[1], 2, i, 0x8000);
  for (unsigned i = 0; i < 24; ++i) set_elem(s.z[2], 2, i, i % 8 < 4 ? 1 : 0x8000);
  ASSERT_EQ(run_word(&s, kSdotDIndex1), AARCH64_DECODE_OK);
  for (unsigned i = 0; i < 6; ++i) ASSERT_EQ(elem(s.z[0], 8, i), 1ull << 32) << i;
}

} // namespace
