// Divide, multiply, index, address generation, the vector-length scalars and
// the move prefix, run from their instruction words at the edges of their
// ranges.
#include <gtest/gtest.h>

#include <cstring>

#include "element_cases.h"

namespace {

constexpr uint32_t kSdivS = 0x04940440;        // sdiv z0.s, p1/m, z0.s, z2.s
constexpr uint32_t kSdivD = 0x04d40440;        // sdiv z0.d, p1/m, z0.d, z2.d
constexpr uint32_t kUdivrS = 0x04970440;       // udivr z0.s, p1/m, z0.s, z2.s
constexpr uint32_t kIndexBImmReg = 0x04224800; // index z0.b, #0, w2
constexpr uint32_t kIndexBImmImm = 0x042f4000; // index z0.b, #0, #15
constexpr uint32_t kAddvlSpSp = 0x043f57df;    // addvl sp, sp, #-2
constexpr uint32_t kAddplX1Sp = 0x047f5061;    // addpl x1, sp, #3
constexpr uint32_t kRdvlXzr = 0x04bf503f;      // rdvl xzr, #1
constexpr uint32_t kRdvlX3 = 0x04bf5403;       // rdvl x3, #-32
constexpr uint32_t kMovprfxZ = 0x04902440;     // movprfx z0.s, p1/z, z2.s
constexpr uint32_t kMovprfxM = 0x04912440;     // movprfx z0.s, p1/m, z2.s
constexpr uint32_t kMovprfx = 0x0420bc40;      // movprfx z0, z2
constexpr uint32_t kMulDMinus1 = 0x25f0dfe0;   // mul z0.d, z0.d, #-1
constexpr uint32_t kAdrLsl3 = 0x04e2ac20;      // adr z0.d, [z1.d, z2.d, lsl #3]
constexpr uint32_t kMadS = 0x0482c460;         // mad z0.s, p1/m, z2.s, z3.s

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

TEST(Multiply, MadAddsZaToZdnTimesZm) {
  cpu_state s{};
  all_active(&s, 1);
  set_elem(s.z[0], 4, 0, 3);       // Zdn
  set_elem(s.z[2], 4, 0, 5);       // Zm
  set_elem(s.z[3], 4, 0, 100);     // Za
  set_elem(s.z[0], 4, 1, 0x10000); // the product wraps
  set_elem(s.z[2], 4, 1, 0x10001);
  ASSERT_EQ(run_word(&s, kMadS), AARCH64_DECODE_OK);
  EXPECT_EQ(elem(s.z[0], 4, 0), 115u);
  EXPECT_EQ(elem(s.z[0], 4, 1), 0x10000u);
}

TEST(Index, ByteSeriesWrapsAndUsesLowBitsOfTheStep) {
  cpu_state s{};
  s.regs[2] = 0x1010; // only the low byte, 16, counts
  ASSERT_EQ(run_word(&s, kIndexBImmReg), AARCH64_DECODE_OK);
  EXPECT_EQ(elem(s.z[0], 1, 1), 16u);
  EXPECT_EQ(elem(s.z[0], 1, 15), 240u);
  EXPECT_EQ(elem(s.z[0], 1, 16), 0u);
  EXPECT_EQ(elem(s.z[0], 1, 47), (47u * 16) & 0xff);

  ASSERT_EQ(run_word(&s, kIndexBImmImm), AARCH64_DECODE_OK);
  EXPECT_EQ(elem(s.z[0], 1, 47), (47u * 15) & 0xff);
}

TEST(Address, ScaledOffsetsShiftedByTheWordsAmount) {
  cpu_state s{};
  for (unsigned i = 0; i < 6; ++i) {
    set_elem(s.z[1], 8, i, 0x1000 * i);
    set_elem(s.z[2], 8, i, i == 5 ? 0x2000000000000001ull : i);
  }
  ASSERT_EQ(run_word(&s, kAdrLsl3), AARCH64_DECODE_OK);
  EXPECT_EQ(elem(s.z[0], 8, 3), 0x3000u + 24);
  EXPECT_EQ(elem(s.z[0], 8, 5), 0x5000u + 8); // the top bits shift out
}

TEST(VectorLength, AddvlAndAddplUseSpAndRdvlDropsAWriteToXzr) {
  cpu_state s{};
  s.regs[31] = 0x10000;
  ASSERT_EQ(run_word(&s, kAddvlSpSp), AARCH64_DECODE_OK);
  EXPECT_EQ(s.regs[31], 0x10000u - 96);
  ASSERT_EQ(run_word(&s, kAddplX1Sp), AARCH64_DECODE_OK);
  EXPECT_EQ(s.regs[1], 0x10000u - 96 + 18);

  const cpu_state before = s;
  ASSERT_EQ(run_word(&s, kRdvlXzr), AARCH64_DECODE_OK);
  s.raw_instr = before.raw_instr;
  EXPECT_EQ(std::memcmp(&s, &before, sizeof s), 0);
  ASSERT_EQ(run_word(&s, kRdvlX3), AARCH64_DECODE_OK);
  EXPECT_EQ(s.regs[3], static_cast<uint64_t>(-32 * 48));
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
