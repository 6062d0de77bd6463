// The add, subtract and multiply families and the sums of the generic tier
// at several vector lengths, against the processor's own instructions.
#include <gtest/gtest.h>

#include <cstring>

#include "generic/fp_arith.h"
#include "generic/fp_reductions.h"
#include "loop_check.h"

namespace {
using namespace generic;
using namespace generic_fp_test;

template <typename T> T reversed_sub(T a, T b, T) { return host::sub<T>(b, a); }

TYPED_TEST_SUITE(EveryWidth, Widths);

TYPED_TEST(EveryWidth, AddSubMulMergeLikeTheHost) {
  using T = TypeParam;
  merging_against_host<T>(by_width<T>(VecF16AddVVM, VecF32AddVVM, VecD64AddVVM), host::add<T>,
                          false, "add");
  merging_against_host<T>(by_width<T>(VecF16SubVVM, VecF32SubVVM, VecD64SubVVM), host::sub<T>,
                          false, "sub");
  merging_against_host<T>(by_width<T>(VecF16SubRVVM, VecF32SubRVVM, VecD64SubRVVM), reversed_sub<T>,
                          false, "subr");
  merging_against_host<T>(by_width<T>(VecF16MulVVM, VecF32MulVVM, VecD64MulVVM), host::mul<T>,
                          false, "mul");
  merging_against_host<T>(by_width<T>(VecF16MulXVVM, VecF32MulXVVM, VecD64MulXVVM), host::mulx<T>,
                          false, "mulx");
  merging_against_host<T>(by_width<T>(VecF16AbdVVM, VecF32AbdVVM, VecD64AbdVVM), host::abd<T>,
                          false, "abd");
}

TYPED_TEST(EveryWidth, UnpredicatedFormsComputeEveryElement) {
  using T = TypeParam;
  unpredicated_against_host<T>(by_width<T>(VecF16AddVVX, VecF32AddVVX, VecD64AddVVX), host::add<T>,
                               "fadd");
  unpredicated_against_host<T>(by_width<T>(VecF16SubVVX, VecF32SubVVX, VecD64SubVVX), host::sub<T>,
                               "fsub");
  unpredicated_against_host<T>(by_width<T>(VecF16MulVVX, VecF32MulVVX, VecD64MulVVX), host::mul<T>,
                               "fmul");
}

// FADDA adds in element order, skipping inactive elements; with none active
// the initial value comes back untouched, even a signalling NaN.
TYPED_TEST(EveryWidth, OrderedSumIsTheHostsSequence) {
  using T = TypeParam;
  const auto fn = by_width<T>(VecF16AddReduceAV, VecF32AddReduceAV, VecD64AddReduceAV);
  for_random_cases(40, [&](draw& d, uint32_t vl, CpuContext& ctx) {
    const VecV a = d.vector<T>(vl);
    const PredV g = d.predicate();
    const T initial = random_operand<T>(d.rng);
    T sum = initial;
    uint32_t fpsr = ctx.fpsr;
    for (unsigned i = 0; i < vl * 8 / sizeof(T); ++i)
      if (active(g, i, sizeof(T))) {
        host_fpcr_scope scope(ctx.fpcr);
        sum = host::add<T>(sum, element<T>(a, i));
        fpsr |= scope.flags();
      }
    // Bits of Vd above a narrower element are not part of the value.
    const uint64_t upper = sizeof(T) < 8 ? uint64_t{0xabcd} << 48 : 0;
    EXPECT_EQ(fn(&g, upper | initial, &a, &ctx), sum);
    EXPECT_EQ(ctx.fpsr, fpsr & kFpsrKept);
  });
  const PredV none{};
  CpuContext ctx{};
  ctx.vl = 6;
  const T signalling = T(fp_constant<T>(FpConstant::plus_infinity) | 1);
  draw d;
  const VecV a = d.vector<T>(6);
  EXPECT_EQ(fn(&none, signalling, &a, &ctx), signalling);
  EXPECT_EQ(ctx.fpsr, 0u);
}

TEST(TreeReductions, SumPairsNeighboursLikeTheHostTree) {
  tree_against_host<uint16_t>(VecF16AddReduceFV, host::add<uint16_t>, FpConstant::zero, "faddv h");
  tree_against_host<uint32_t>(VecF32AddReduceFV, host::add<uint32_t>, FpConstant::zero, "faddv s");
  tree_against_host<uint64_t>(VecD64AddReduceFV, host::add<uint64_t>, FpConstant::zero, "faddv d");
}

TEST(TreeReductions, EmptySumIsPlusZeroAndMinusZeroBecomesPlus) {
  CpuContext ctx{};
  ctx.vl = 6;
  const PredV none{};
  VecV a;
  std::memset(a.b, 0x7d, sizeof a.b); // signalling NaNs in every width
  EXPECT_EQ(VecF16AddReduceFV(&none, &a, &ctx), 0u);
  EXPECT_EQ(VecD64AddReduceFV(&none, &a, &ctx), 0u);
  EXPECT_EQ(ctx.fpsr, 0u);
  PredV first{};
  first.w[0] = 1;
  set_element<uint16_t>(a, 0, 0x8000);
  EXPECT_EQ(VecF16AddReduceFV(&first, &a, &ctx), 0u);
}

} // namespace
