// Shifts at and beyond the element width, the predicate test of the
// vector-blended shifts, the bitmask immediate, extension and reversal.
#include <gtest/gtest.h>

#include <cstring>

#include "decode/handler_declarations.h"
#include "element_cases.h"

namespace {

constexpr uint32_t kLslB = 0x04138440;     // lsl z0.b, p1/m, z0.b, z2.b
constexpr uint32_t kLslH = 0x04538440;     // lsl z0.h, p1/m, z0.h, z2.h
constexpr uint32_t kAsrH = 0x04508440;     // asr z0.h, p1/m, z0.h, z2.h
constexpr uint32_t kLsrS = 0x04918440;     // lsr z0.s, p1/m, z0.s, z2.s
constexpr uint32_t kAsrS = 0x04908440;     // asr z0.s, p1/m, z0.s, z2.s
constexpr uint32_t kAsrHImm1 = 0x040087e0; // asr z0.h, p1/m, z0.h, #1
constexpr uint32_t kAsrBImm8 = 0x04289040; // asr z0.b, z2.b, #8
constexpr uint32_t kAnd55 = 0x05800780;    // and z0.b, z0.b, #0x55
constexpr uint32_t kDupm55 = 0x05c00780;   // dupm z0.b, #0x55
constexpr uint32_t kSxtbD = 0x04d0a440;    // sxtb z0.d, p1/m, z2.d
constexpr uint32_t kRbitH = 0x05678440;    // rbit z0.h, p1/m, z2.h
constexpr uint32_t kRevw = 0x05e68440;     // revw z0.d, p1/m, z2.d

TEST(ShiftByVector, CountsAtAndBeyondTheWidth) {
  const pair_case lsl_b[] = {{0xff, 7, 0x80}, {0xff, 8, 0}, {0x01, 0xff, 0}, {0x81, 1, 0x02}};
  check_pairs(kLslB, 1, lsl_b);
  const pair_case lsr_s[] = {
      {0xffffffff, 31, 1}, {0xffffffff, 32, 0}, {0xffffffff, 0x100000000 - 1, 0}, {8, 0, 8}};
  check_pairs(kLsrS, 4, lsr_s);
  const pair_case asr_s[] = {{0x80000000, 0xffffffff, 0xffffffff},
                             {0x7fffffff, 0xffffffff, 0},
                             {0x80000000, 32, 0xffffffff},
                             {0x80000000, 4, 0xf8000000}};
  check_pairs(kAsrS, 4, asr_s);
  // The whole halfword is the count: 256 is not taken modulo 16.
  const pair_case lsl_h[] = {{0xffff, 256, 0}, {0xffff, 15, 0x8000}, {0xffff, 16, 0}};
  check_pairs(kLslH, 2, lsl_h);
  const pair_case asr_h[] = {{0x8000, 256, 0xffff}, {0x4000, 256, 0}, {0x8000, 15, 0xffff}};
  check_pairs(kAsrH, 2, asr_h);
}

TEST(ShiftByImmediate, ArithmeticByTheWholeByteFillsWithTheSign) {
  cpu_state s{};
  set_elem(s.z[2], 1, 0, 0x80);
  set_elem(s.z[2], 1, 1, 0x7f);
  ASSERT_EQ(run_word(&s, kAsrBImm8), AARCH64_DECODE_OK);
  EXPECT_EQ(elem(s.z[0], 1, 0), 0xffu);
  EXPECT_EQ(elem(s.z[0], 1, 1), 0u);
}

TEST(ShiftByImmediate, HalfwordPredicateIsBitZeroOfTheFirstByte) {
  cpu_state s{};
  for (unsigned i = 0; i < 24; ++i) set_elem(s.z[0], 2, i, 0x8000);
  const uint8_t pred[6] = {0x00, 0x01, 0x03, 0x00, 0xfe, 0xff};
  std::memcpy(s.p[1], pred, sizeof pred);
  ASSERT_EQ(run_word(&s, kAsrHImm1), AARCH64_DECODE_OK);
  EXPECT_EQ(elem(s.z[0], 2, 0), 0x8000u); // only the second byte set
  EXPECT_EQ(elem(s.z[0], 2, 1), 0xc000u); // 0x03 in the first byte
  EXPECT_EQ(elem(s.z[0], 2, 2), 0x8000u); // 0xfe: bit 0 clear
}

// Counts the decoders never produce: a left shift by the width or more
// clears, an arithmetic one caps at width minus 1.
TEST(ShiftByImmediate, HandlersDefineCountsBeyondTheDecodersRange) {
  for (unsigned size = 0; size < 4; ++size) {
    const unsigned bytes = 1u << size, bits = 8 * bytes;
    const uint64_t top = uint64_t{1} << (bits - 1), all = top | (top - 1);
    for (unsigned count : {bits - 1, bits, bits + 1, 200u}) {
      cpu_state s{};
      all_active(&s, 1);
      for (unsigned i = 0; i < 48 / bytes; ++i) set_elem(s.z[2], bytes, i, top | 1);
      std::memcpy(s.z[3], s.z[2], 48);
      const aarch64_z_reg zd{0, size, kZNone, kZNone}, zn{2, size, kZNone, kZNone};
      const aarch64_z_reg zdn{3, kZNone, size, size};
      const aarch64_p_reg pg{1, kPMerging, kPNone, kPNone};

      ASSERT_EQ(sve_lsl_zzi(&s, zd, zn, count), AARCH64_DECODE_OK);
      EXPECT_EQ(elem(s.z[0], bytes, 5), count < bits ? top : 0) << bits << " " << count;
      ASSERT_EQ(sve_asr_zzi(&s, zd, zn, count), AARCH64_DECODE_OK);
      EXPECT_EQ(elem(s.z[0], bytes, 5), all) << bits << " " << count;
      ASSERT_EQ(sve_lsl_zpi(&s, zdn, pg, count), AARCH64_DECODE_OK);
      EXPECT_EQ(elem(s.z[3], bytes, 5), count < bits ? top : 0) << bits << " " << count;
    }
  }
}

TEST(Logic, BitmaskImmediateAndBroadcast) {
  cpu_state s{};
  std::memset(s.z[0], 0xff, 48);
  ASSERT_EQ(run_word(&s, kAnd55), AARCH64_DECODE_OK);
  for (unsigned i = 0; i < 48; ++i) ASSERT_EQ(s.z[0][i], 0x55) << i;
  std::memset(s.z[0], 0, 48);
  ASSERT_EQ(run_word(&s, kDupm55), AARCH64_DECODE_OK);
  for (unsigned i = 0; i < 48; ++i) ASSERT_EQ(s.z[0][i], 0x55) << i;
}

TEST(ExtendReverse, OnlyTheLowPartCountsAndBitsReverseWithinTheElement) {
  cpu_state s{};
  all_active(&s, 1);
  set_elem(s.z[2], 8, 0, 0x123456789abcde80ull);
  set_elem(s.z[2], 8, 1, 0xffffffffffffff7full);
  ASSERT_EQ(run_word(&s, kSxtbD), AARCH64_DECODE_OK);
  EXPECT_EQ(elem(s.z[0], 8, 0), 0xffffffffffffff80ull);
  EXPECT_EQ(elem(s.z[0], 8, 1), 0x7fu);

  ASSERT_EQ(run_word(&s, kRevw), AARCH64_DECODE_OK);
  EXPECT_EQ(elem(s.z[0], 8, 0), 0x9abcde8012345678ull);

  set_elem(s.z[2], 2, 0, 0x0001);
  set_elem(s.z[2], 2, 1, 0xc000);
  ASSERT_EQ(run_word(&s, kRbitH), AARCH64_DECODE_OK);
  EXPECT_EQ(elem(s.z[0], 2, 0), 0x8000u);
  EXPECT_EQ(elem(s.z[0], 2, 1), 0x0003u);
}

} // namespace
