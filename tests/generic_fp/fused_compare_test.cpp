// Fused multiply-add (plain, indexed and complex), the immediate and
// unpredicated forms, and the comparisons of the generic tier.
#include <gtest/gtest.h>

#include <cstring>

#include "generic/fp_arith.h"
#include "generic/fp_comparisons.h"
#include "generic/fp_fused.h"
#include "generic/fp_minmax_div.h"
#include "loop_check.h"

namespace {
using namespace generic;
using namespace generic_fp_test;

using FusedFn = void (*)(VecV*, const VecV*, const PredV*, const VecV*, const VecV*, CpuContext*);

// d is Zd, n bits 9:5, m bits 20:16. The host computes addend + f1 * f2
// with the negations of its own instructions.
template <typename T>
void fused_against_host(FusedFn fn, HostFn<T> host_op, bool addend_is_destination,
                        const char* what) {
  for_random_cases(30, [&](draw& d, uint32_t vl, CpuContext& ctx) {
    const VecV zd = d.vector<T>(vl), zn = d.vector<T>(vl), zm = d.vector<T>(vl);
    const PredV g = d.predicate();
    expectation<T> want(zd, ctx.fpsr);
    for (unsigned i = 0; i < vl * 8 / sizeof(T); ++i)
      if (active(g, i, sizeof(T))) {
        const T dv = element<T>(zd, i), nv = element<T>(zn, i), mv = element<T>(zm, i);
        want.compute(i, ctx.fpcr, [&] {
          return addend_is_destination ? host_op(dv, nv, mv) : host_op(mv, dv, nv);
        });
      }
    VecV out;
    fn(&out, &zd, &g, &zn, &zm, &ctx);
    expect_elements<T>(want.value, out, vl, what);
    ASSERT_EQ(ctx.fpsr, want.fpsr) << what;
  });
}

TEST(Fused, HalfPrecisionFamilyAgainstHost) {
  using T = uint16_t;
  fused_against_host<T>(VecF16FMAVVVM, host::madd<T>, true, "fmla");
  fused_against_host<T>(VecF16FMSVVVM, host::msub<T>, true, "fmls");
  fused_against_host<T>(VecF16FNMAVVVM, host::nmadd<T>, true, "fnmla");
  fused_against_host<T>(VecF16FNMSVVVM, host::nmsub<T>, true, "fnmls");
  fused_against_host<T>(VecF16FMADDVVVM, host::madd<T>, false, "fmad");
  fused_against_host<T>(VecF16FMSUBVVVM, host::msub<T>, false, "fmsb");
  fused_against_host<T>(VecF16FNMADDVVVM, host::nmadd<T>, false, "fnmad");
  fused_against_host<T>(VecF16FNMSUBVVVM, host::nmsub<T>, false, "fnmsb");
}

TEST(Fused, WiderTwinsAgainstHost) {
  fused_against_host<uint32_t>(VecF32FNMAVVVM, host::nmadd<uint32_t>, true, "fnmla s");
  fused_against_host<uint64_t>(VecD64FMSUBVVVM, host::msub<uint64_t>, false, "fmsb d");
}

// The indexed operand is element `index` of each 128-bit segment of Zm.
template <typename T> void indexed_against_host(unsigned index) {
  const auto mul = sizeof(T) == 2 ? VecF16MulVVIX : sizeof(T) == 4 ? VecF32MulVVIX : VecD64MulVVIX;
  const auto fms = sizeof(T) == 2   ? VecF16FMSVVVIX
                   : sizeof(T) == 4 ? VecF32FMSVVVIX
                                    : VecD64FMSVVVIX;
  draw d;
  for (uint32_t vl : kLengths) {
    if (vl % 2) continue; // whole segments only
    CpuContext ctx = d.context(vl);
    const VecV zn = d.vector<T>(vl), zm = d.vector<T>(vl), zd = d.vector<T>(vl);
    expectation<T> product(zd, ctx.fpsr);
    const unsigned per_segment = 16 / sizeof(T);
    for (unsigned i = 0; i < vl * 8 / sizeof(T); ++i) {
      const T y = element<T>(zm, i / per_segment * per_segment + index);
      product.compute(i, ctx.fpcr, [&] { return host::mul<T>(element<T>(zn, i), y); });
    }
    VecV out;
    mul(&out, &zn, &zm, index, &ctx);
    expect_elements<T>(product.value, out, vl, "indexed fmul");
    ASSERT_EQ(ctx.fpsr, product.fpsr);

    expectation<T> fused(zd, ctx.fpsr);
    for (unsigned i = 0; i < vl * 8 / sizeof(T); ++i) {
      const T y = element<T>(zm, i / per_segment * per_segment + index);
      fused.compute(i, ctx.fpcr,
                    [&] { return host::msub<T>(element<T>(zd, i), element<T>(zn, i), y); });
    }
    fms(&out, &zn, &zm, &zd, index, &ctx);
    expect_elements<T>(fused.value, out, vl, "indexed fmls");
    ASSERT_EQ(ctx.fpsr, fused.fpsr);
  }
}

TEST(Fused, IndexedFormsTakeTheirSegmentsElement) {
  for (unsigned index : {0u, 3u, 7u}) indexed_against_host<uint16_t>(index);
  for (unsigned index : {0u, 2u, 3u}) indexed_against_host<uint32_t>(index);
  for (unsigned index : {0u, 1u}) indexed_against_host<uint64_t>(index);
}

// Complex numbers as (real, imaginary) pairs of halves.
constexpr uint16_t kOne = 0x3c00, kTwo = 0x4000, kThree = 0x4200, kFour = 0x4400, kFive = 0x4500,
                   kSix = 0x4600, kTen = 0x4900, kMinus = 0x8000;

VecV pairs(uint16_t re, uint16_t im) {
  VecV v{};
  for (unsigned i = 0; i < 24; i += 2)
    set_element<uint16_t>(v, i, re), set_element<uint16_t>(v, i + 1, im);
  return v;
}
PredV all_active() { return {{~uint64_t{0}, ~uint64_t{0}, ~uint64_t{0}, ~uint64_t{0}}}; }

TEST(Complex, AddRotatesTheSecondOperand) {
  CpuContext ctx{};
  ctx.vl = 6;
  const VecV a = pairs(kOne, kTwo), b = pairs(kThree, kFour);
  const PredV g = all_active();
  VecV out;
  VecF16FCADDVVM(&out, &a, &g, &b, 0, &ctx); // a + i*b = -3 + 5i
  EXPECT_EQ(element<uint16_t>(out, 4), kMinus | kThree);
  EXPECT_EQ(element<uint16_t>(out, 5), kFive);
  VecF16FCADDVVM(&out, &a, &g, &b, 1, &ctx); // a - i*b = 5 - 1i
  EXPECT_EQ(element<uint16_t>(out, 4), kFive);
  EXPECT_EQ(element<uint16_t>(out, 5), kMinus | kOne);
  // Only the odd element active: the even one keeps a.
  PredV odd{};
  odd.w[0] = 0b10110; // bit 4 for element 1; bits 1 and 2 lie inside element 0
  VecF32FCADDVVM(&out, &a, &odd, &b, 0, &ctx);
  EXPECT_EQ(std::memcmp(out.b, a.b, 4), 0);
  EXPECT_NE(std::memcmp(out.b + 4, a.b + 4, 4), 0);
}

TEST(Complex, TwoRotationsOfMultiplyAddMakeAProduct) {
  CpuContext ctx{};
  ctx.vl = 6;
  const VecV zero{}, n = pairs(kOne, kTwo), m = pairs(kThree, kFour);
  const PredV g = all_active();
  VecV half_way, product;
  VecF16FCMLAVVVM(&half_way, &zero, &g, &n, &m, 0, &ctx);
  VecF16FCMLAVVVM(&product, &half_way, &g, &n, &m, 1, &ctx); // (1+2i)(3+4i) = -5+10i
  EXPECT_EQ(element<uint16_t>(product, 6), kMinus | kFive);
  EXPECT_EQ(element<uint16_t>(product, 7), kTen);
  // Rotations 2 and 3 subtract the same product again.
  VecV back;
  VecF16FCMLAVVVM(&half_way, &product, &g, &n, &m, 2, &ctx);
  VecF16FCMLAVVVM(&back, &half_way, &g, &n, &m, 3, &ctx);
  for (unsigned i = 0; i < 24; ++i) EXPECT_EQ(element<uint16_t>(back, i) & 0x7fff, 0u) << i;

  // Indexed: pair 1 of each segment of m; the other pairs hold zeros.
  VecV m_indexed{};
  for (unsigned seg = 0; seg < 3; ++seg) {
    set_element<uint16_t>(m_indexed, seg * 8 + 2, kThree);
    set_element<uint16_t>(m_indexed, seg * 8 + 3, kFour);
  }
  VecF16FCMLAVVVIX(&half_way, &n, &m_indexed, &zero, 0, 1, &ctx);
  VecF16FCMLAVVVIX(&product, &n, &m_indexed, &half_way, 1, 1, &ctx);
  EXPECT_EQ(element<uint16_t>(product, 22), kMinus | kFive);
  EXPECT_EQ(element<uint16_t>(product, 23), kTen);
}

TEST(Immediates, BitFivePicksTheConstant) {
  CpuContext ctx{};
  ctx.vl = 6;
  const VecV a = pairs(kTwo, kSix);
  const PredV g = all_active();
  VecV out;
  VecF16MulVIM(&out, &a, &g, 1, &ctx); // times 2.0
  EXPECT_EQ(element<uint16_t>(out, 0), kFour);
  VecF16SubRVIM(&out, &a, &g, 0, &ctx); // 0.5 - 2.0
  EXPECT_EQ(element<uint16_t>(out, 0), kMinus | 0x3e00);
  VecD64MinNumVIM(&out, &a, &g, 0, &ctx); // minnum(x, 0.0) of positive x
  EXPECT_EQ(element<uint64_t>(out, 3), 0u);
  VecF32MinVIM(&out, &a, &g, 1, &ctx); // min(a large single, 1.0)
  EXPECT_EQ(element<uint32_t>(out, 2), 0x3f800000u);
  EXPECT_EQ(ctx.fpsr, 0u);
}

TEST(Immediates, CopyAndSignOperationsTouchNoFlag) {
  CpuContext ctx{};
  ctx.vl = 6;
  VecV a;
  std::memset(a.b, 0x7d, sizeof a.b); // signalling NaNs
  PredV even{};
  even.w[0] = 0x0303030303030303; // halves 0, 4, 8, ... active
  VecV out;
  VecF16DupIM(&out, &a, &even, 0xbc00, &ctx);
  EXPECT_EQ(element<uint16_t>(out, 4), 0xbc00u);
  EXPECT_EQ(element<uint16_t>(out, 5), 0x7d7du);
  VecF16NegVM(&out, &a, &even, &a, &ctx);
  EXPECT_EQ(element<uint16_t>(out, 0), 0xfd7du);
  EXPECT_EQ(element<uint16_t>(out, 1), 0x7d7du);
  VecV ones;
  std::memset(ones.b, 0xff, sizeof ones.b);
  VecD64AbsVM(&out, &a, &even, &ones, &ctx);
  EXPECT_EQ(element<uint64_t>(out, 0), 0x7fffffffffffffffu);
  EXPECT_EQ(ctx.fpsr, 0u);
}

// Comparisons: the host's mask, bit 0 of the element's predicate group,
// and 0 for every inactive element and every other bit.
using CompareFn = void (*)(PredV*, const PredV*, const VecV*, const VecV*, CpuContext*);
using ZeroCompareFn = void (*)(PredV*, const PredV*, const VecV*, CpuContext*);

template <typename T>
void compare_against_host(CompareFn fn, ZeroCompareFn zero_fn, HostFn<T> host_op, bool negate,
                          const char* what) {
  for_random_cases(40, [&](draw& d, uint32_t vl, CpuContext& ctx) {
    const VecV a = d.vector<T>(vl), b = d.vector<T>(vl);
    const PredV g = d.predicate();
    PredV want{};
    uint32_t fpsr = ctx.fpsr;
    for (unsigned i = 0; i < vl * 8 / sizeof(T); ++i)
      if (active(g, i, sizeof(T))) {
        host_fpcr_scope scope(ctx.fpcr);
        const bool mask = host_op(element<T>(a, i), fn ? element<T>(b, i) : T(0), 0) != 0;
        fpsr |= scope.flags();
        set_pred_bit(want, i * sizeof(T), mask != negate);
      }
    PredV out;
    std::memset(&out, 0xff, sizeof out);
    if (fn)
      fn(&out, &g, &a, &b, &ctx);
    else
      zero_fn(&out, &g, &a, &ctx);
    for (unsigned bit = 0; bit < vl * 8; ++bit)
      ASSERT_EQ(pred_bit(out, bit), pred_bit(want, bit)) << what << " bit " << bit << " vl " << vl;
    ASSERT_EQ(ctx.fpsr, fpsr & kFpsrKept) << what;
  });
}

TEST(Compare, VectorsAgainstHost) {
  using H = uint16_t;
  compare_against_host<H>(VecF16CmpEQVVZ, nullptr, host::cmeq<H>, false, "fcmeq");
  compare_against_host<H>(VecF16CmpNEVVZ, nullptr, host::cmeq<H>, true, "fcmne");
  compare_against_host<H>(VecF16CmpGEVVZ, nullptr, host::cmge<H>, false, "fcmge");
  compare_against_host<H>(VecF16CmpGTVVZ, nullptr, host::cmgt<H>, false, "fcmgt");
  compare_against_host<H>(VecF16AcGEVVZ, nullptr, host::acge<H>, false, "facge h");
  compare_against_host<uint32_t>(VecF32AcGTVVZ, nullptr, host::acgt<uint32_t>, false, "facgt s");
  compare_against_host<uint64_t>(VecD64AcGEVVZ, nullptr, host::acge<uint64_t>, false, "facge d");
}

TEST(Compare, AgainstZeroAgainstHost) {
  using H = uint16_t;
  compare_against_host<H>(nullptr, VecF16CmpEQV0Z, host::cmeq<H>, false, "fcmeq #0");
  compare_against_host<H>(nullptr, VecF16CmpNEV0Z, host::cmeq<H>, true, "fcmne #0");
  compare_against_host<H>(nullptr, VecF16CmpGEV0Z, host::cmge<H>, false, "fcmge #0");
  compare_against_host<H>(nullptr, VecF16CmpGTV0Z, host::cmgt<H>, false, "fcmgt #0");
  compare_against_host<H>(nullptr, VecF16CmpLEV0Z, host::cmle_zero<H>, false, "fcmle #0");
  compare_against_host<H>(nullptr, VecF16CmpLTV0Z, host::cmlt_zero<H>, false, "fcmlt #0");
  compare_against_host<uint64_t>(nullptr, VecD64CmpNEV0Z, host::cmeq<uint64_t>, true, "fcmne d #0");
}

TEST(Compare, UnorderedIsQuietAndTrueForEitherNaN) {
  CpuContext ctx{};
  ctx.vl = 6;
  VecV a{}, b{};
  set_element<uint16_t>(a, 0, 0x7e01); // quiet NaN
  set_element<uint16_t>(b, 1, 0x7c01); // signalling NaN
  const PredV g = all_active();
  PredV out;
  VecF16CmpUNVVZ(&out, &g, &a, &b, &ctx);
  EXPECT_EQ(out.w[0], 0b101u);
  EXPECT_EQ(ctx.fpsr, 1u); // IOC from the signalling NaN only
}

} // namespace
