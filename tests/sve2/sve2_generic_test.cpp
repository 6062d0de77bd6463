// The SVE2, int8 matrix and BF16 generic functions where the reference
// check, at its one vector length and on random states, seldom or never
// looks: other lengths, counts that wrap, and BF16 overflow and sticky bits.
#include <gtest/gtest.h>

#include <cstring>

#include "generic/bf16.h"
#include "generic/int8_matrix.h"
#include "generic/sve2_complex.h"
#include "generic/sve2_fp.h"
#include "generic/sve2_integer.h"
#include "generic/sve2_shift_imm.h"
#include "vector_length.h"

namespace {
using namespace generic;

VecV pattern(uint32_t seed) {
  VecV v;
  for (unsigned i = 0; i < sizeof v.b; ++i) {
    seed = seed * 1103515245u + 12345u;
    v.b[i] = static_cast<uint8_t>(seed >> 16) & 0x1f; // small values repeat
  }
  return v;
}

// A form that works within 128-bit segments gives, at 2048 bits, each
// segment what it gives at 128 bits on that segment alone.
template <typename Fn> void expect_segment_local(Fn fn) {
  const VecV a = pattern(1), b = pattern(2), c = pattern(3);
  CpuContext wide_ctx = context(32);
  VecV whole;
  fn(&whole, a, b, c, &wide_ctx);
  for (unsigned s = 0; s < 16; ++s) {
    VecV sa{}, sb{}, sc{}, part;
    std::memcpy(sa.b, a.b + 16 * s, 16);
    std::memcpy(sb.b, b.b + 16 * s, 16);
    std::memcpy(sc.b, c.b + 16 * s, 16);
    CpuContext one = context(2);
    fn(&part, sa, sb, sc, &one);
    EXPECT_EQ(std::memcmp(part.b, whole.b + 16 * s, 16), 0) << "segment " << s;
  }
}

TEST(SegmentForms, EachSegmentStandsAloneAt2048Bits) {
  expect_segment_local([](VecV* o, const VecV& a, const VecV& b, const VecV& c, CpuContext* x) {
    VecS32MMlaVVV(o, &a, &b, &c, x);
  });
  expect_segment_local([](VecV* o, const VecV& a, const VecV& b, const VecV& c, CpuContext* x) {
    VecU32SUDotVVVI(o, &a, &b, &c, 3, x);
  });
  expect_segment_local([](VecV* o, const VecV& a, const VecV& b, const VecV&, CpuContext* x) {
    VecU8HistSegVV(o, &a, &b, x);
  });
  expect_segment_local([](VecV* o, const VecV& a, const VecV& b, const VecV& c, CpuContext* x) {
    VecF32BfMMlaVVV(o, &a, &b, &c, x);
  });
  expect_segment_local([](VecV* o, const VecV& a, const VecV& b, const VecV& c, CpuContext* x) {
    VecF32BfDotVVVI(o, &a, &b, &c, 2, x);
  });
}

TEST(SegmentForms, IndexedComplexAndLongFormsStayInTheirSegmentAt2048Bits) {
  expect_segment_local([](VecV* o, const VecV& a, const VecV& b, const VecV& c, CpuContext* x) {
    VecS16CMlaVVVII(o, &a, &b, &c, 3, 2, x);
  });
  expect_segment_local([](VecV* o, const VecV& a, const VecV& b, const VecV& c, CpuContext* x) {
    VecS32QRDCMlaHVVVII(o, &a, &b, &c, 1, 1, x);
  });
  expect_segment_local([](VecV* o, const VecV& a, const VecV& b, const VecV& c, CpuContext* x) {
    VecS64CDotVVVII(o, &a, &b, &c, 2, 1, x);
  });
  expect_segment_local([](VecV* o, const VecV& a, const VecV& b, const VecV&, CpuContext* x) {
    VecS32QDMulLTVVI(o, &a, &b, 7, x);
  });
  expect_segment_local([](VecV* o, const VecV& a, const VecV& b, const VecV& c, CpuContext* x) {
    VecU64MlsLBVVVI(o, &a, &b, &c, 3, x);
  });
  expect_segment_local([](VecV* o, const VecV& a, const VecV& b, const VecV& c, CpuContext* x) {
    VecF32MlslTVVVI(o, &a, &b, &c, 5, x);
  });
  expect_segment_local([](VecV* o, const VecV& a, const VecV& b, const VecV& c, CpuContext* x) {
    VecF32BfMlalBVVVI(o, &a, &b, &c, 6, x);
  });
}

// The top-half forms write every odd half of a 2048-bit vector and keep
// every even one; the bottom-half forms clear the odd halves.
TEST(NarrowingShifts, TopKeepsAndBottomClearsTheOtherHalvesAt2048Bits) {
  CpuContext ctx = context(32);
  VecV n, d;
  for (unsigned i = 0; i < 256; ++i) {
    n.b[i] = static_cast<uint8_t>(i);
    d.b[i] = 0xa5;
  }
  VecV top, bottom;
  VecU16ShrNTVVI(&top, &n, 4, &d, &ctx);
  VecS16QShrUNBVI(&bottom, &n, 1, &ctx);
  for (unsigned h = 0; h < 128; ++h) {
    const unsigned wide = n.b[2 * h] | n.b[2 * h + 1] << 8;
    EXPECT_EQ(top.b[2 * h], 0xa5) << h;
    EXPECT_EQ(top.b[2 * h + 1], (wide >> 4) & 0xff) << h;
    // Read as signed: the upper half of the vector holds negative halfwords,
    // which saturate to 0; halved positives above 255 saturate to 255.
    const int shifted = static_cast<int16_t>(wide) >> 1;
    EXPECT_EQ(bottom.b[2 * h], shifted < 0 ? 0 : shifted > 255 ? 255 : shifted) << h;
    EXPECT_EQ(bottom.b[2 * h + 1], 0) << h;
  }
}

unsigned count_true(const PredV& p, unsigned elements) {
  unsigned n = 0;
  for (unsigned i = 0; i < elements; ++i) n += active(p, i, 1);
  return n;
}

TEST(WhileDown, CountsFromTheLastElementAndWrapsInTheScalarsWidth) {
  CpuContext ctx = context(32); // 256 byte elements
  PredV p{};
  VecS8While4GTSS(&p, 100, 0, &ctx);
  EXPECT_EQ(count_true(p, 256), 100u);
  EXPECT_TRUE(active(p, 255, 1));
  EXPECT_FALSE(active(p, 155, 1));
  EXPECT_EQ(ctx.nzcv & 0xf0000000u, 0x00000000u); // first element false, last true: N=0, C=0

  // Unsigned, from 5 down to 0 inclusive: below 0 the count wraps to the
  // largest value, which is still at least 0, so every element is true.
  p = PredV{};
  VecU8While8HSSS(&p, 5, 0, &ctx);
  EXPECT_EQ(count_true(p, 256), 256u);
  p = PredV{};
  VecU8While8HISS(&p, 5, 0, &ctx);
  EXPECT_EQ(count_true(p, 256), 5u);

  // Signed 32-bit, down to the smallest value inclusive: below it the count
  // wraps to the largest, still at least the limit, so all are true; one
  // more than the smallest as the limit ends the run after three.
  p = PredV{};
  VecS8While4GESS(&p, 0x80000002u, 0x80000000u, &ctx);
  EXPECT_EQ(count_true(p, 256), 256u);
  p = PredV{};
  VecS8While4GESS(&p, 0x80000003u, 0x80000001u, &ctx);
  EXPECT_EQ(count_true(p, 256), 3u);
}

TEST(HistogramCount, CountsBeyondTheReferenceLength) {
  CpuContext ctx = context(32); // 32 doublewords
  VecV a{}, b{};
  PredV all{};
  for (unsigned i = 0; i < 32; ++i) set_group(all, i, 8, true);
  VecV r;
  VecU64HistCntVVZ(&r, &all, &a, &b, &ctx);
  for (unsigned i = 0; i < 32; ++i) EXPECT_EQ(element<uint64_t>(r, i), i + 1) << i;
}

TEST(Bf16Dot, RoundsToOddAndOverflowsToInfinity) {
  // The largest finite BF16 squared overflows: infinity, where truncation
  // alone would give the largest finite single.
  EXPECT_EQ(bf_mul(0x7f7f0000u, 0x7f7f0000u), 0x7f800000u);
  EXPECT_EQ(bf_mul(0xff7f0000u, 0x7f7f0000u), 0xff800000u);
  // 1 + 2^-30 is not a single: round to odd keeps the lost bit as bit 0.
  EXPECT_EQ(bf_add(0x3f800000u, 0x30800000u), 0x3f800001u);
  // A denormal product is flushed; a NaN becomes the default one.
  EXPECT_EQ(bf_mul(0x00800000u, 0x3e800000u), 0u);
  EXPECT_EQ(bf_add(0x7f800001u, 0x3f800000u), 0x7fc00000u);
}

TEST(Bf16Convert, OverflowAndFlushFollowTheControls) {
  FPSCR s = 0;
  EXPECT_EQ(fp32_to_bf16(0x7f7fffffu, s), 0x7f80u); // nearest: to infinity
  EXPECT_EQ(s & FP_FLAG_BITS, uint32_t(FP_OFC | FP_IXC));
  s = 3u << FPSCR_RMODE_SHIFT;
  EXPECT_EQ(fp32_to_bf16(0x7f7fffffu, s), 0x7f7fu); // towards zero: the largest finite
  EXPECT_EQ(s & FP_FLAG_BITS, uint32_t(FP_IXC));
  s = FPSCR_FZ;
  EXPECT_EQ(fp32_to_bf16(0x80000001u, s), 0x8000u);
  EXPECT_EQ(s & FP_FLAG_BITS, uint32_t(FP_IDC));
  s = 0;
  EXPECT_EQ(fp32_to_bf16(0x00018000u, s), 0x0002u); // a tie between denormals, to even
  EXPECT_EQ(s & FP_FLAG_BITS, uint32_t(FP_UFC | FP_IXC));
}

} // namespace
