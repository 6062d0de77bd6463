#include <gtest/gtest.h>

#include <cstring>
#include <random>

#include "decode/bridge.h"
#include "state/vector_length.h"
#include "test_state.h"

namespace {

struct BridgeTest : testing::Test {
  cpu_state s;
  std::mt19937_64 rng{7};
  void SetUp() override { randomize(&s, rng); }
};

bool only_zero_and_one(const uint8_t* bytes) {
  for (unsigned i = 0; i < kDefaultVectorBytes; ++i)
    if (bytes[i] > 1) return false;
  return true;
}

TEST(PredicatePacking, KeepsBitZeroOfEachByteAndComesBackAsZeroOrOne) {
  std::mt19937_64 rng(3);
  for (int round = 0; round < 100; ++round) {
    uint8_t bytes[kDefaultVectorBytes], back[kDefaultVectorBytes];
    for (uint8_t& b : bytes) b = static_cast<uint8_t>(rng());
    const PredV p = to_pred_v(bytes);
    EXPECT_EQ(p.w[1] | p.w[2] | p.w[3], 0u);
    EXPECT_EQ(p.w[0] >> kDefaultVectorBytes, 0u);
    from_pred_v(p, back);
    for (unsigned i = 0; i < kDefaultVectorBytes; ++i) ASSERT_EQ(back[i], bytes[i] & 1) << i;
  }
}

TEST_F(BridgeTest, ContextTakesTheMaskedFpcrAndTheLowFlagWord) {
  s.fpcr = 0xffffffff;
  s.nzcv = 0xabcdef0150000000u;
  const CpuContext ctx = enter_generic(&s);
  EXPECT_EQ(ctx.fpcr, 0x07c89f00u);
  EXPECT_EQ(ctx.nzcv, 0x50000000u);
  EXPECT_EQ(ctx.vl, kDefaultVectorBytes / 8);
}

TEST_F(BridgeTest, EveryInstructionRewritesFfrAndFlagsInTheirOwnForm) {
  s.nzcv = 0xffffffff60000000u;
  for (uint8_t& b : s.ffr) b = 0xfe | (b & 1);
  uint8_t ffr_bits[kDefaultVectorBytes];
  for (unsigned i = 0; i < kDefaultVectorBytes; ++i) ffr_bits[i] = s.ffr[i] & 1;
  ASSERT_EQ(run_word(&s, 0x0420e3e0), AARCH64_DECODE_OK); // cntb x0
  EXPECT_EQ(s.regs[0], kDefaultVectorBytes);
  EXPECT_EQ(s.nzcv, 0x60000000u);
  EXPECT_TRUE(only_zero_and_one(s.ffr));
  EXPECT_EQ(std::memcmp(s.ffr, ffr_bits, kDefaultVectorBytes), 0);
}

TEST_F(BridgeTest, NumberThirtyOneAsXdWritesNothing) {
  const uint64_t sp = s.regs[31];
  ASSERT_EQ(run_word(&s, 0x0420e3ff), AARCH64_DECODE_OK); // cntb xzr
  EXPECT_EQ(s.regs[31], sp);
}

TEST_F(BridgeTest, PatternAndMultiplierReachTheCount) {
  ASSERT_EQ(run_word(&s, 0x04e1e063), AARCH64_DECODE_OK); // cntd x3, vl3, mul #2
  EXPECT_EQ(s.regs[3], 6u);
}

TEST_F(BridgeTest, ScalarResultsClearTheRestOfTheirRegister) {
  for (unsigned i = 0; i < kDefaultVectorBytes; ++i) s.p[2][i] = 1;
  ASSERT_EQ(run_word(&s, 0x04002861), AARCH64_DECODE_OK); // saddv d1, p2, z3.b
  int64_t sum = 0;
  for (unsigned i = 0; i < kDefaultVectorBytes; ++i) sum += static_cast<int8_t>(s.z[3][i]);
  int64_t got;
  std::memcpy(&got, s.z[1], 8);
  EXPECT_EQ(got, sum);
  for (unsigned i = 8; i < kDefaultVectorBytes; ++i) EXPECT_EQ(s.z[1][i], 0) << i;

  s.regs[4] = ~uint64_t{0};
  ASSERT_EQ(run_word(&s, 0x05a0a444), AARCH64_DECODE_OK); // lasta w4, p1, z2.s
  EXPECT_EQ(s.regs[4] >> 32, 0u);
  ASSERT_EQ(run_word(&s, 0x05228445), AARCH64_DECODE_OK); // lasta b5, p1, z2.b
  for (unsigned i = 1; i < kDefaultVectorBytes; ++i) EXPECT_EQ(s.z[5][i], 0) << i;
}

TEST_F(BridgeTest, PredicateResultsHoldOnlyZeroAndOne) {
  ASSERT_EQ(run_word(&s, 0x2559e3e3), AARCH64_DECODE_OK); // ptrues p3.h
  EXPECT_TRUE(only_zero_and_one(s.p[3]));
  for (unsigned i = 0; i < kDefaultVectorBytes; ++i) EXPECT_EQ(s.p[3][i], i % 2 == 0) << i;
  EXPECT_EQ(s.nzcv >> 28, 0x8u); // N, not Z, not C (the last element is active)
}

TEST_F(BridgeTest, CtermLeavesZAndCAndSetsVWhenNeitherTermNorCarry) {
  s.regs[1] = 0x100000005;
  s.regs[2] = 0x200000006;
  s.nzcv = 0x40000000;                                    // Z set, C clear
  ASSERT_EQ(run_word(&s, 0x25a22020), AARCH64_DECODE_OK); // ctermeq w1, w2
  EXPECT_EQ(s.nzcv, 0x50000000u);
  s.regs[2] = 0x300000005; // equal in the low 32 bits
  s.nzcv = 0x20000000;
  ASSERT_EQ(run_word(&s, 0x25a22020), AARCH64_DECODE_OK);
  EXPECT_EQ(s.nzcv, 0xa0000000u);
}

TEST_F(BridgeTest, UnsignedImmediateOfASignedSaturatingAdd) {
  // sqadd z1.h, z1.h, #65280: the immediate counts as unsigned, so every
  // element grows and saturates at 0x7fff rather than wrapping.
  for (unsigned i = 0; i < kDefaultVectorBytes / 2; ++i) {
    s.z[1][2 * i] = 0;
    s.z[1][2 * i + 1] = 0;
  }
  s.z[1][0] = 0x34, s.z[1][1] = 0x12; // element 0 is 0x1234
  ASSERT_EQ(run_word(&s, 0x2564ffe1), AARCH64_DECODE_OK);
  EXPECT_EQ(elem(s.z[1], 2, 0), 0x7fffu);
  EXPECT_EQ(elem(s.z[1], 2, 1), 0x7fffu);
}

} // namespace
