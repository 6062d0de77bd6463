// The generic functions at vector lengths other than the emulator's, and
// the exact arithmetic under them.
#include <gtest/gtest.h>

#include "generic/arith.h"
#include "generic/predicate.h"
#include "generic/reduce.h"

namespace {
using namespace generic;

CpuContext context(uint32_t vl) {
  CpuContext ctx{};
  ctx.vl = vl;
  return ctx;
}

constexpr uint32_t kFlagsNZCV = 0xf0000000;
constexpr uint32_t kZC = 0x60000000;

TEST(Support, WidenAndSaturate) {
  EXPECT_EQ(Int(0x80, 8, false), -128);
  EXPECT_EQ(Int(0x80, 8, true), 128);
  EXPECT_EQ(Int(0x8000000000000000u, 64, false), wide(INT64_MIN));
  EXPECT_EQ(SatAdd(127, 1, 8, false), 127u);
  EXPECT_EQ(SatSub(0, 1, 8, true), 0u);
  EXPECT_EQ(SatSub(0x80000000u, 1, 32, false), 0x80000000u);
  const Saturated s = SatQ(-129, 8, false);
  EXPECT_EQ(s.value, 0x80u);
  EXPECT_TRUE(s.saturated);
  EXPECT_EQ(SatQ(wide(1) << 64, 64, true).value, ~uint64_t{0});
  EXPECT_EQ(ones(64), ~uint64_t{0});
  EXPECT_EQ(ones(0), ~uint64_t{0});
  EXPECT_EQ(Max(0x80, 0x7f, 8, false), 0x7fu);
  EXPECT_EQ(Max(0x80, 0x7f, 8, true), 0x80u);
  EXPECT_EQ(Min(1, 2, 12, true), 0u);
}

TEST(Support, BitCounts) {
  EXPECT_EQ(CountLeadingZeroBits(0, 8), 8u);
  EXPECT_EQ(CountLeadingSignBits(0xff, 8), 7u);
  EXPECT_EQ(CountLeadingSignBits(0, 8), 7u);
  EXPECT_EQ(BitReverse(0x01, 8), 0x80u);
  EXPECT_EQ(Reverse(0x11223344, 32, 1), 0x44332211u);
  EXPECT_EQ(Reverse(0x11223344, 32, 3), 0u);
  EXPECT_EQ(ShiftRightInt(-5, 200), -1);
  EXPECT_EQ(ShiftLeftInt(1, 200), wide(1) << 64);
}

TEST(Support, PatternLengths) {
  EXPECT_EQ(VecTrueILength(0, 48), 32u);
  EXPECT_EQ(VecTrueILength(0, 0), 1u);
  EXPECT_EQ(VecTrueILength(7, 6), 0u);
  EXPECT_EQ(VecTrueILength(29, 6), 4u);
  EXPECT_EQ(VecTrueILength(30, 6), 6u);
  EXPECT_EQ(VecTrueILength(31, 6), 6u);
  EXPECT_EQ(VecTrueILength(9, 24), 16u);
  EXPECT_EQ(VecTrueILength(9, 12), 0u);
  EXPECT_EQ(VecTrueILength(13, 256), 256u);
  EXPECT_EQ(VecTrueILength(20, 48), 0u);
}

TEST(Support, FlagsFromAPredicate) {
  CpuContext ctx = context(6);
  ctx.nzcv = 0x0abcdef0 | kFlagsNZCV;
  PredV g{}, r{};
  PredSetNZCV(g, r, 8, &ctx);
  EXPECT_EQ(ctx.nzcv, 0x0abcdef0 | kZC); // the other 28 bits stay
  // esize 16: the upper bit of the last group alone makes it non-zero.
  g.w[0] = 0x5;
  r.w[0] = 0x8;
  PredSetNZCV(g, r, 16, &ctx);
  EXPECT_EQ(ctx.nzcv & kFlagsNZCV, 0u); // N from bit 0 only, C clear
  CpuContext empty = context(0);
  PredSetNZCV(g, r, 8, &empty);
  EXPECT_EQ(empty.nzcv, kZC);
}

TEST(Generic, CountsFollowTheVectorLength) {
  CpuContext ctx = context(32); // 2048 bits
  EXPECT_EQ(VecU8CountVLSI(31, 0, &ctx), 256u);
  EXPECT_EQ(VecU64CountVLSI(0, 15, &ctx), 32u * 16);
  ctx = context(2);
  EXPECT_EQ(VecU16CountVLSI(31, 1, &ctx), 16u);
  EXPECT_EQ(VecU32QDecrVL4SI(5, 31, 0, &ctx), 1u);
  EXPECT_EQ(VecU32QDecrVL4SI(0x100000003u, 31, 0, &ctx), 0u);
  EXPECT_EQ(VecS32QDecrVL4SI(0x80000001u, 31, 0, &ctx), 0xffffffff80000000u);
  EXPECT_EQ(VecU64QIncrVL8SI(~uint64_t{0} - 1, 31, 0, &ctx), ~uint64_t{0});
}

TEST(Generic, ReductionsAndLanesAtTwoThousandBits) {
  CpuContext ctx = context(32);
  VecV a;
  PredV g{};
  for (unsigned i = 0; i < 256; ++i) a.b[i] = static_cast<uint8_t>(i);
  EXPECT_EQ(VecU8LastAV(&g, &a, &ctx), 0u); // no active element: element 0
  set_pred_bit(g, 200, true);
  EXPECT_EQ(VecU8LastAV(&g, &a, &ctx), 201u);
  set_pred_bit(g, 255, true);
  EXPECT_EQ(VecU8LastAV(&g, &a, &ctx), 0u); // the top element active: wraps
  EXPECT_EQ(VecB8CondXBSV(&g, 0x1234, &a, &ctx), 255u);
  g = PredV{};
  EXPECT_EQ(VecB8CondXBSV(&g, 0x1234, &a, &ctx), 0x34u);
  for (auto& w : g.w) w = ~uint64_t{0};
  // 0..127, then 128..255 read as -128..-1.
  EXPECT_EQ(static_cast<int64_t>(VecS8AddReduceV(&g, &a, &ctx)), -128);
}

TEST(Generic, WhileAndBreaks) {
  CpuContext ctx = context(32);
  PredV r{};
  VecS32While4LESS(&r, 0, 0x7fffffff, &ctx); // the limit is the largest value
  for (unsigned i = 0; i < 64; ++i) EXPECT_TRUE(active(r, i, 4)) << i;
  EXPECT_EQ(ctx.nzcv, 0x80000000u);
  VecS16While8LESS(&r, 5, 4, &ctx);
  EXPECT_EQ(r.w[0] | r.w[1] | r.w[2] | r.w[3], 0u);
  EXPECT_EQ(ctx.nzcv, kZC);

  PredV g{}, a{};
  g.w[0] = 0xf0;
  a.w[0] = 0x10; // set at the first active bit
  VecPBreakBFlgPZ(&r, &g, &a, &ctx);
  EXPECT_EQ(r.w[0], 0u);
  VecPBreakAFlgPZ(&r, &g, &a, &ctx);
  EXPECT_EQ(r.w[0], 0x10u);
}

TEST(Generic, TransposeCopiesWholeGroups) {
  CpuContext ctx = context(1);
  PredV a{}, b{}, r{};
  a.w[0] = 0x2c; // groups of 2: 00 11 10 00
  b.w[0] = 0x13; // 11 00 01 00
  VecP16Trn2PP(&r, &a, &b, &ctx);
  // pairs take a[1], b[1] and a[3], b[3]
  EXPECT_EQ(r.w[0] & 0xff, 0x03u | 0x00u << 2 | 0x00u << 4 | 0x00u << 6);
  VecP16Trn1PP(&r, &a, &b, &ctx);
  EXPECT_EQ(r.w[0] & 0xff, 0x00u | 0x03u << 2 | 0x02u << 4 | 0x01u << 6);
}

TEST(Generic, AddressesWithExtendedOffsets) {
  CpuContext ctx = context(2);
  VecV a{}, b{}, r;
  set_element<uint64_t>(a, 0, 1000);
  set_element<uint64_t>(b, 0, 0xdeadbeefffffffffu); // low half -1
  VecU64LEA4XVV(&r, &a, &b, &ctx);
  EXPECT_EQ(element<uint64_t>(r, 0), 996u);
  VecU64LEA2YVV(&r, &a, &b, &ctx);
  EXPECT_EQ(element<uint64_t>(r, 0), 1000 + 2 * uint64_t{0xffffffff});
}

} // namespace
