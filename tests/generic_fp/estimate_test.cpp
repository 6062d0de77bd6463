// Estimates, Newton steps, scaling and the trigonometric and exponential
// helpers of the generic tier.
#include <gtest/gtest.h>

#include <utility>

#include "generic/fp_estimates.h"
#include "loop_check.h"

namespace {
using namespace generic;
using namespace generic_fp_test;

TYPED_TEST_SUITE(EveryWidth, Widths);

TYPED_TEST(EveryWidth, EstimatesAndStepsLikeTheHost) {
  using T = TypeParam;
  using Unary = void (*)(VecV*, const VecV*, CpuContext*);
  const Unary recpe = by_width<T>(VecF16RecpEV, VecF32RecpEV, VecD64RecpEV);
  const Unary rsqrte = by_width<T>(VecF16RSqrtEV, VecF32RSqrtEV, VecD64RSqrtEV);
  draw d;
  for (uint32_t vl : kLengths) {
    CpuContext ctx = d.context(vl);
    const VecV a = d.vector<T>(vl);
    for (const auto& [fn, op] :
         {std::pair{recpe, host::recpe<T>}, std::pair{rsqrte, host::rsqrte<T>}}) {
      expectation<T> want(a, ctx.fpsr);
      for (unsigned i = 0; i < vl * 8 / sizeof(T); ++i)
        want.compute(i, ctx.fpcr, [&] { return op(element<T>(a, i), 0, 0); });
      VecV out;
      fn(&out, &a, &ctx);
      expect_elements<T>(want.value, out, vl, "estimate");
      ASSERT_EQ(ctx.fpsr, want.fpsr);
    }
  }
  unpredicated_against_host<T>(by_width<T>(VecF16RecpSVV, VecF32RecpSVV, VecD64RecpSVV),
                               host::recps<T>, "frecps");
  unpredicated_against_host<T>(by_width<T>(VecF16RSqrtSVV, VecF32RSqrtSVV, VecD64RSqrtSVV),
                               host::rsqrts<T>, "frsqrts");
  merging_against_host<T>(by_width<T>(VecF16RecpXVM, VecF32RecpXVM, VecD64RecpXVM), host::recpx<T>,
                          true, "frecpx");
}

TEST(TrigAndExp, SelectMultiplyAndExponent) {
  CpuContext ctx{};
  ctx.vl = 6;
  VecV a{}, b{};
  for (unsigned i = 0; i < 4; ++i) set_element<uint16_t>(a, i, 0x4200); // 3.0
  for (unsigned i = 0; i < 4; ++i) set_element<uint16_t>(b, i, uint16_t(i));
  VecV out;
  VecF16TRISSELVV(&out, &a, &b, &ctx);
  EXPECT_EQ(element<uint16_t>(out, 0), 0x4200u); // a
  EXPECT_EQ(element<uint16_t>(out, 1), 0x3c00u); // 1.0
  EXPECT_EQ(element<uint16_t>(out, 2), 0xc200u); // -a
  EXPECT_EQ(element<uint16_t>(out, 3), 0xbc00u); // -1.0
  VecF16TRISMULVV(&out, &a, &b, &ctx);
  EXPECT_EQ(element<uint16_t>(out, 0), 0x4880u); // 9.0
  EXPECT_EQ(element<uint16_t>(out, 1), 0xc880u); // sign from bit 0 of b
  // The exponent field of the operand becomes the result's, the low bits
  // pick the fraction: 2^0 at every width.
  VecV e{};
  set_element<uint16_t>(e, 0, 15 << 5);
  VecF16EXPAV(&out, &e, &ctx);
  EXPECT_EQ(element<uint16_t>(out, 0), 0x3c00u);
  set_element<uint64_t>(e, 0, 1023 << 6);
  VecD64EXPAV(&out, &e, &ctx);
  EXPECT_EQ(element<uint64_t>(out, 0), 0x3ff0000000000000u);
  EXPECT_EQ(ctx.fpsr, 0u);
}

TEST(TrigAndExp, ScaleTakesASignedIntegerOfTheElementsWidth) {
  CpuContext ctx{};
  ctx.vl = 6;
  VecV a{}, b{};
  set_element<uint16_t>(a, 0, 0x3c00); // 1.0
  set_element<uint16_t>(a, 1, 0x3c00);
  set_element<uint16_t>(b, 0, 3);
  set_element<uint16_t>(b, 1, 0xfffe); // -2
  const PredV g = {{~uint64_t{0}, 0, 0, 0}};
  VecV out;
  VecF16ScaleVVM(&out, &a, &g, &b, &ctx);
  EXPECT_EQ(element<uint16_t>(out, 0), 0x4800u); // 8.0
  EXPECT_EQ(element<uint16_t>(out, 1), 0x3400u); // 0.25
}

} // namespace
