// Element-count steps, cntp and incp, reductions and the last active lane,
// run from their instruction words, where the reference check rarely or never
// goes: saturation at the edges, predicate bytes other than 0 and 1, empty
// predicates and register 31. Pattern counts are the reference check's.
#include <gtest/gtest.h>

#include <cstring>

#include "test_state.h"

namespace {

// Register fields are ORed in; the words below name register 0 and pattern 0.
constexpr uint32_t kDechZ = 0x0470c400;   // dech z0.h, pattern, mul #1
constexpr uint32_t kUqdecbW = 0x0420fc00; // uqdecb w0, pattern, mul #1
constexpr uint32_t kUqdecbX = 0x0430fc00; // uqdecb x0, pattern, mul #1
constexpr uint32_t kCntpS = 0x25a08440;   // cntp x0, p1, p2.s
constexpr uint32_t kIncpS = 0x25ac8840;   // incp x0, p2.s
constexpr uint32_t kUaddvB = 0x04012440;  // uaddv d0, p1, z2.b
constexpr uint32_t kSmaxvH = 0x04482440;  // smaxv h0, p1, z2.h
constexpr uint32_t kAndvS = 0x049a2440;   // andv s0, p1, z2.s
constexpr uint32_t kClastbB = 0x0531a440; // clastb w0, p1, w0, z2.b
constexpr uint32_t kLastbB = 0x0521a440;  // lastb w0, p1, z2.b
constexpr uint32_t kLastbD = 0x05e1a440;  // lastb x0, p1, z2.d

uint32_t with_pattern(uint32_t word, unsigned pattern) { return word | pattern << 5; }

TEST(Counts, VectorDecrementWrapsAndUqdecbSaturates) {
  cpu_state s{};
  ASSERT_EQ(run_word(&s, with_pattern(kDechZ, 31)), AARCH64_DECODE_OK); // 24 halfwords
  for (unsigned i = 0; i < 24; ++i) EXPECT_EQ(elem(s.z[0], 2, i), 0x10000u - 24);

  // The W form reads and writes the low half only: VL32 at bytes is 32.
  s.regs[0] = 0xFFFFFFFF00000010ull;
  ASSERT_EQ(run_word(&s, with_pattern(kUqdecbW, 10)), AARCH64_DECODE_OK);
  EXPECT_EQ(s.regs[0], 0u);
  s.regs[0] = 0xFFFFFFFF00000010ull;
  ASSERT_EQ(run_word(&s, with_pattern(kUqdecbW, 8)), AARCH64_DECODE_OK);
  EXPECT_EQ(s.regs[0], 8u);
  // A pattern without a name counts 0, and the W form still clears the top.
  s.regs[0] = 0xFFFFFFFF00000010ull;
  ASSERT_EQ(run_word(&s, with_pattern(kUqdecbW, 20)), AARCH64_DECODE_OK);
  EXPECT_EQ(s.regs[0], 0x10u);
  s.regs[0] = 48;
  ASSERT_EQ(run_word(&s, with_pattern(kUqdecbX, 31)), AARCH64_DECODE_OK);
  EXPECT_EQ(s.regs[0], 0u);
}

// Only bit 0 of an element's first predicate byte counts.
TEST(Counts, CntpAndIncpLookAtBitZeroOfTheFirstByte) {
  cpu_state s{};
  for (unsigned i = 0; i < 48; ++i) {
    s.p[1][i] = i % 4 == 0 ? 0x03 : 0x01; // all 12 word elements active
    s.p[2][i] = i % 4 == 1 ? 0x01 : 0xfe; // no word element true
  }
  s.p[2][8] = 0xff;  // element 2
  s.p[2][44] = 0x01; // element 11
  s.regs[0] = 0x1234;
  ASSERT_EQ(run_word(&s, kCntpS), AARCH64_DECODE_OK);
  EXPECT_EQ(s.regs[0], 2u);
  s.p[1][8] = 0x02; // element 2 now inactive
  ASSERT_EQ(run_word(&s, kCntpS), AARCH64_DECODE_OK);
  EXPECT_EQ(s.regs[0], 1u);
  s.regs[0] = ~0ull;
  ASSERT_EQ(run_word(&s, kIncpS), AARCH64_DECODE_OK);
  EXPECT_EQ(s.regs[0], 1u); // wraps through zero
}

TEST(Counts, ReductionsWidthsAndEmptyPredicates) {
  std::mt19937_64 rng(9);
  cpu_state s;
  randomize(&s, rng);
  std::memset(s.z[2], 0xff, 48);
  std::memset(s.p[1], 0x01, 48);
  ASSERT_EQ(run_word(&s, kUaddvB), AARCH64_DECODE_OK);
  EXPECT_EQ(elem(s.z[0], 8, 0), 12240u);
  for (unsigned i = 8; i < 48; ++i) ASSERT_EQ(s.z[0][i], 0) << i;

  std::memset(s.p[1], 0xfe, 48); // nothing active
  ASSERT_EQ(run_word(&s, kSmaxvH), AARCH64_DECODE_OK);
  EXPECT_EQ(elem(s.z[0], 2, 0), 0x8000u);
  for (unsigned i = 2; i < 48; ++i) ASSERT_EQ(s.z[0][i], 0) << i;
  ASSERT_EQ(run_word(&s, kAndvS), AARCH64_DECODE_OK);
  EXPECT_EQ(elem(s.z[0], 8, 0), 0xffffffffu);
}

TEST(Counts, LastActiveLane) {
  cpu_state s{};
  for (unsigned i = 0; i < 48; ++i) s.z[2][i] = static_cast<uint8_t>(0x80 + i);
  std::memset(s.p[1], 0xfe, 48); // nothing active
  s.regs[0] = ~0ull;
  ASSERT_EQ(run_word(&s, kLastbB), AARCH64_DECODE_OK);
  EXPECT_EQ(s.regs[0], 0x80u + 47); // the last element, zero-extended
  ASSERT_EQ(run_word(&s, kLastbD), AARCH64_DECODE_OK);
  EXPECT_EQ(s.regs[0], elem(s.z[2], 8, 5));
  s.regs[0] = 0x1234;
  ASSERT_EQ(run_word(&s, kClastbB), AARCH64_DECODE_OK);
  EXPECT_EQ(s.regs[0], 0x34u);

  s.p[1][7] = 0x03;
  s.p[1][9] = 0x02;
  ASSERT_EQ(run_word(&s, kClastbB), AARCH64_DECODE_OK);
  EXPECT_EQ(s.regs[0], 0x87u);

  // Register 31 is the zero register here: SP in regs[31] must not change.
  s.regs[31] = 0x5555;
  ASSERT_EQ(run_word(&s, kClastbB | 31), AARCH64_DECODE_OK);
  ASSERT_EQ(run_word(&s, kLastbB | 31), AARCH64_DECODE_OK);
  EXPECT_EQ(s.regs[31], 0x5555u);
}

} // namespace
