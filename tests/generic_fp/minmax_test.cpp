// Divide, square root, minimum and maximum of the generic tier, and their
// reductions, at several vector lengths against the processor's own
// instructions.
#include <gtest/gtest.h>

#include <cstring>

#include "generic/fp_minmax_div.h"
#include "loop_check.h"

namespace {
using namespace generic;
using namespace generic_fp_test;

template <typename T> T reversed_div(T a, T b, T) { return host::div<T>(b, a); }

TYPED_TEST_SUITE(EveryWidth, Widths);

TYPED_TEST(EveryWidth, DivideAndSqrtMergeLikeTheHost) {
  using T = TypeParam;
  merging_against_host<T>(by_width<T>(VecF16DivVVM, VecF32DivVVM, VecD64DivVVM), host::div<T>,
                          false, "div");
  merging_against_host<T>(by_width<T>(VecF16DivRVVM, VecF32DivRVVM, VecD64DivRVVM), reversed_div<T>,
                          false, "divr");
  merging_against_host<T>(by_width<T>(VecF16SqrtVM, VecF32SqrtVM, VecD64SqrtVM), host::sqrt<T>,
                          true, "sqrt");
}

TYPED_TEST(EveryWidth, MinimumAndMaximumMergeLikeTheHost) {
  using T = TypeParam;
  merging_against_host<T>(by_width<T>(VecF16MaxVVM, VecF32MaxVVM, VecD64MaxVVM), host::max<T>,
                          false, "max");
  merging_against_host<T>(by_width<T>(VecF16MinVVM, VecF32MinVVM, VecD64MinVVM), host::min<T>,
                          false, "min");
  merging_against_host<T>(by_width<T>(VecF16MaxNumVVM, VecF32MaxNumVVM, VecD64MaxNumVVM),
                          host::maxnm<T>, false, "maxnm");
  merging_against_host<T>(by_width<T>(VecF16MinNumVVM, VecF32MinNumVVM, VecD64MinNumVVM),
                          host::minnm<T>, false, "minnm");
}

TEST(TreeReductions, MinimumAndMaximumPairNeighboursLikeTheHostTree) {
  tree_against_host<uint16_t>(VecF16MaxReduceFV, host::max<uint16_t>, FpConstant::minus_infinity,
                              "fmaxv h");
  tree_against_host<uint32_t>(VecF32MinReduceFV, host::min<uint32_t>, FpConstant::plus_infinity,
                              "fminv s");
  tree_against_host<uint64_t>(VecD64MaxReduceFV, host::max<uint64_t>, FpConstant::minus_infinity,
                              "fmaxv d");
  tree_against_host<uint16_t>(VecF16MaxNumReduceFV, host::maxnm<uint16_t>, FpConstant::default_nan,
                              "fmaxnmv h");
  tree_against_host<uint16_t>(VecF16MinNumReduceFV, host::minnm<uint16_t>, FpConstant::default_nan,
                              "fminnmv h");
}

TEST(TreeReductions, EmptyPredicateGivesTheIdentity) {
  CpuContext ctx{};
  ctx.vl = 6;
  const PredV none{};
  VecV a;
  std::memset(a.b, 0x7d, sizeof a.b); // signalling NaNs in every width
  EXPECT_EQ(VecF16MaxNumReduceFV(&none, &a, &ctx), 0x7e00u);
  EXPECT_EQ(VecF16MaxReduceFV(&none, &a, &ctx), 0xfc00u);
  EXPECT_EQ(VecD64MinReduceFV(&none, &a, &ctx), 0x7ff0000000000000u);
  EXPECT_EQ(ctx.fpsr, 0u);
}

} // namespace
