// The SVE2 permutes, conflict whiles and octaword loads at lengths the
// reference check (at 384 bits) never runs: 2048 bits, where there are
// sixteen quadwords and a byte index cannot leave the first table, and
// 256 bits, where the octaword fills the vector exactly.
#include <gtest/gtest.h>

#include <cstdint>

#include "generic/load_quad.h"
#include "generic/sve2_permute.h"
#include "vector_length.h"

namespace {
using namespace generic;

// Every byte of quadword q of a is q, of b 0x80 | q.
void tag_quadwords(VecV* a, VecV* b) {
  for (unsigned i = 0; i < sizeof a->b; ++i) {
    a->b[i] = static_cast<uint8_t>(i / 16);
    b->b[i] = static_cast<uint8_t>(0x80 | i / 16);
  }
}

TEST(QuadPermutes, SixteenQuadwordsAt2048Bits) {
  CpuContext ctx = context(32);
  VecV a, b, zip2, uzp1, trn2;
  tag_quadwords(&a, &b);
  VecQ128Zip2VV(&zip2, &a, &b, &ctx);
  VecQ128Uzp1VV(&uzp1, &a, &b, &ctx);
  VecQ128Trn2VV(&trn2, &a, &b, &ctx);
  for (unsigned p = 0; p < 8; ++p) {
    EXPECT_EQ(zip2.b[32 * p], 8 + p) << p;
    EXPECT_EQ(zip2.b[32 * p + 16], 0x80 | (8 + p)) << p;
    EXPECT_EQ(uzp1.b[16 * p], 2 * p) << p;
    EXPECT_EQ(uzp1.b[16 * (8 + p)], 0x80 | (2 * p)) << p;
    EXPECT_EQ(trn2.b[32 * p + 15], 2 * p + 1) << p;
    EXPECT_EQ(trn2.b[32 * p + 16], 0x80 | (2 * p + 1)) << p;
  }
}

TEST(QuadPermutes, AnOddLastQuadwordIsZeroForZipButReadByUzp) {
  CpuContext ctx = context(6); // 384 bits: three quadwords
  VecV a, b, zip1, uzp2;
  tag_quadwords(&a, &b);
  VecQ128Zip1VV(&zip1, &a, &b, &ctx);
  VecQ128Uzp2VV(&uzp2, &a, &b, &ctx);
  EXPECT_EQ(zip1.b[0], 0);
  EXPECT_EQ(zip1.b[16], 0x80);
  EXPECT_EQ(zip1.b[32], 0); // zeroed, not a's quadword 1 nor b's
  EXPECT_EQ(zip1.b[47], 0);
  EXPECT_EQ(uzp2.b[0], 1);
  EXPECT_EQ(uzp2.b[16], 0x80); // quadword 3 of a:b is b's first
  EXPECT_EQ(uzp2.b[32], 0x82);
}

unsigned leading_true(const PredV& p, unsigned elements, unsigned bytes) {
  unsigned n = 0;
  while (n < elements && active(p, n, bytes)) ++n;
  return n;
}

TEST(ConflictWhiles, CountPastTheReferenceLength) {
  CpuContext ctx = context(32); // 256 bytes
  PredV p{};
  VecU8WhileWRSS(&p, 0x1000, 0x1000 + 200, &ctx);
  EXPECT_EQ(leading_true(p, 256, 1), 200u);
  EXPECT_FALSE(active(p, 200, 1));
  VecU8WhileWRSS(&p, 0x1000, 0x1000 + 300, &ctx);
  EXPECT_EQ(leading_true(p, 256, 1), 256u);
  VecU16WhileRWSS(&p, 0x1000 + 201, 0x1000, &ctx); // 201 bytes back: 100 halfwords
  EXPECT_EQ(leading_true(p, 128, 2), 100u);
  VecU64WhileRWSS(&p, 0x1000, 0x1000 + 7, &ctx); // closer than one element: none
  EXPECT_EQ(leading_true(p, 32, 8), 0u);
  EXPECT_EQ(ctx.nzcv & 0xf0000000u, 0x60000000u); // none active: Z and C
}

TEST(PairTable, ByteIndicesNeverReachTheSecondTableAt2048Bits) {
  CpuContext ctx = context(32);
  VecV a, b, idx, r;
  for (unsigned i = 0; i < 256; ++i) {
    a.b[i] = static_cast<uint8_t>(i);
    b.b[i] = 0xee;
    idx.b[i] = static_cast<uint8_t>(255 - i);
  }
  VecU8TblPairVV(&r, &a, &b, &idx, &ctx);
  for (unsigned i = 0; i < 256; ++i) EXPECT_EQ(r.b[i], 255 - i) << i;
  // Halfword indices 128..255 read the second table.
  for (unsigned i = 0; i < 128; ++i) set_element<uint16_t>(idx, i, uint16_t(128 + i));
  for (unsigned i = 0; i < 128; ++i) set_element<uint16_t>(b, i, uint16_t(0x5000 + i));
  VecU16TblPairVV(&r, &a, &b, &idx, &ctx);
  for (unsigned i = 0; i < 128; ++i) EXPECT_EQ(element<uint16_t>(r, i), 0x5000 + i) << i;
}

TEST(OctawordLoad, FillsEverySegmentOrLeavesTheTailZero) {
  alignas(32) static uint8_t memory[64];
  for (unsigned i = 0; i < 64; ++i) memory[i] = static_cast<uint8_t>(i + 1);
  PredV all{};
  for (unsigned i = 0; i < 32; ++i) set_group(all, i, 1, true);
  set_group(all, 5, 1, false);
  const uint64_t base = reinterpret_cast<uint64_t>(memory);
  for (const uint32_t vl : {4u, 6u, 32u}) {
    CpuContext ctx = context(vl);
    VecV r;
    VecU8LoadDup1OSIZ(&r, &all, base, 1, &ctx); // one octaword on
    const unsigned bytes = vl * 8, filled = bytes / 32 * 32;
    for (unsigned i = 0; i < bytes; ++i) {
      const unsigned k = i % 32;
      const unsigned expected = i >= filled ? 0 : k == 5 ? 0 : 33 + k;
      EXPECT_EQ(r.b[i], expected) << "vl " << vl << " byte " << i;
    }
  }
}

} // namespace
