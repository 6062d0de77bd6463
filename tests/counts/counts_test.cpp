// Pattern counts, element-count steps, cntp and incp, reductions and the
// last active lane, run from their instruction words.
#include <gtest/gtest.h>

#include <cstring>

#include "test_state.h"

namespace {

// Register fields are ORed in; the words below name register 0 and pattern 0.
constexpr uint32_t kPtrue = 0x2518e000;   // ptrue p0.<T>, pattern; size at 23:22
constexpr uint32_t kIncbX = 0x0430e000;   // incb x0, pattern; inch/w/d at 23:22
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
uint32_t with_size(uint32_t word, unsigned size) { return (word & ~(3u << 22)) | size << 22; }
uint32_t with_multiplier(uint32_t word, unsigned mul) { return word | (mul - 1) << 16; }

// Elements a pattern names at a 48-byte vector, by pattern and element size.
unsigned expected_count(unsigned pattern, unsigned size) {
  static const unsigned fixed[14][4] = {{32, 16, 8, 4}, {1, 1, 1, 1},   {2, 2, 2, 2},  {3, 3, 3, 3},
                                        {4, 4, 4, 4},   {5, 5, 5, 5},   {6, 6, 6, 6},  {7, 7, 7, 0},
                                        {8, 8, 8, 0},   {16, 16, 0, 0}, {32, 0, 0, 0}, {0, 0, 0, 0},
                                        {0, 0, 0, 0},   {0, 0, 0, 0}};
  static const unsigned named_high[3][4] = {{48, 24, 12, 4}, {48, 24, 12, 6}, {48, 24, 12, 6}};
  if (pattern < 14) return fixed[pattern][size];
  if (pattern >= 29) return named_high[pattern - 29][size];
  return 0;
}

TEST(Counts, PtrueAndIncrementsFollowThePatternTable) {
  for (unsigned size = 0; size < 4; ++size) {
    const unsigned bytes = 1u << size;
    for (unsigned pattern = 0; pattern < 32; ++pattern) {
      cpu_state s;
      std::memset(&s, 0xee, sizeof s);
      ASSERT_EQ(run_word(&s, with_pattern(with_size(kPtrue, size), pattern)), AARCH64_DECODE_OK);
      const unsigned n = expected_count(pattern, size);
      for (unsigned i = 0; i < 48 / bytes; ++i)
        ASSERT_EQ(elem(s.p[0], bytes, i), i < n ? 1u : 0u)
            << "size " << size << " pattern " << pattern << " element " << i;
      s.regs[0] = 1000;
      ASSERT_EQ(run_word(&s, with_multiplier(with_pattern(with_size(kIncbX, size), pattern), 16)),
                AARCH64_DECODE_OK);
      EXPECT_EQ(s.regs[0], 1000 + 16 * n) << "size " << size << " pattern " << pattern;
    }
  }
}

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
