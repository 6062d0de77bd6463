// Compares, minimum and maximum against the host's fcmeq/fcmge/fcmgt,
// fcmp/fcmpe and fmax/fmin/fmaxnm/fminnm, with flags, under every flush and
// default-NaN setting.
#include <gtest/gtest.h>

#include <utility>

#include "differential.h"
#include "fp/fp_compare.h"
#include "host_divcmp.h"

namespace {

constexpr int kDraws = 100000;

template <typename T> std::pair<T, T> ordered_pair(fp_rng& rng) {
  const T a = random_operand<T>(rng);
  const T b = related_operand<T>(rng, a);
  return rng.coin() ? std::pair<T, T>{a, b} : std::pair<T, T>{b, a};
}

// A truth value from the host's all-ones or all-zeros mask.
template <typename T> fp_outcome host_mask(const host_result& h) {
  return {static_cast<T>(h.bits) != 0, h.fpsr};
}
fp_outcome host_unordered(const host_nzcv& h) { return {h.nzcv & 1, h.fpsr}; }
fp_outcome host_nzcv_value(const host_nzcv& h) { return {h.nzcv, h.fpsr}; }

template <typename T, typename Lib, typename Host>
flag_counts against_host(uint64_t seed, Lib lib, Host host) {
  return expect_same_as_host<T>(kDraws, seed, ordered_pair<T>, lib, host);
}

#define LIB(expr) [](T a, T b, FPSCR& fpscr) { return uint64_t(expr); }
#define HOST(expr) [](T a, T b, FPSCR c) { return expr; }

template <typename T> class FpCompareDifferential : public ::testing::Test {};
using FpWidths = ::testing::Types<uint16_t, uint32_t, uint64_t>;
TYPED_TEST_SUITE(FpCompareDifferential, FpWidths);

// Ordering raises invalid operation and input denormal only; every draw set
// must reach both, where the width has IDC at all.
template <typename T> void expect_ordering_flags(const flag_counts& seen) {
  EXPECT_GT(seen.ioc(), 100);
  if (sizeof(T) != 2) {
    EXPECT_GT(seen.idc(), 100);
  }
}

TYPED_TEST(FpCompareDifferential, Compares) {
  using T = TypeParam;
  expect_ordering_flags<T>(
      against_host<T>(1, LIB(FPCompareEQ(a, b, fpscr)), HOST(host_mask<T>(host_fcmeq(a, b, c)))));
  expect_ordering_flags<T>(
      against_host<T>(2, LIB(FPCompareGE(a, b, fpscr)), HOST(host_mask<T>(host_fcmge(a, b, c)))));
  expect_ordering_flags<T>(
      against_host<T>(3, LIB(FPCompareGT(a, b, fpscr)), HOST(host_mask<T>(host_fcmgt(a, b, c)))));
  expect_ordering_flags<T>(
      against_host<T>(4, LIB(FPCompareUN(a, b, fpscr)), HOST(host_unordered(host_fcmp(a, b, c)))));
  expect_ordering_flags<T>(against_host<T>(5, LIB(FPCompare(a, b, false, fpscr)),
                                           HOST(host_nzcv_value(host_fcmp(a, b, c)))));
  expect_ordering_flags<T>(against_host<T>(6, LIB(FPCompare(a, b, true, fpscr)),
                                           HOST(host_nzcv_value(host_fcmpe(a, b, c)))));
}

TYPED_TEST(FpCompareDifferential, MinimumAndMaximum) {
  using T = TypeParam;
  expect_ordering_flags<T>(
      against_host<T>(7, LIB(FPMax(a, b, fpscr)), HOST(host_bits<T>(host_fmax(a, b, c)))));
  expect_ordering_flags<T>(
      against_host<T>(8, LIB(FPMin(a, b, fpscr)), HOST(host_bits<T>(host_fmin(a, b, c)))));
  expect_ordering_flags<T>(
      against_host<T>(9, LIB(FPMaxNum(a, b, fpscr)), HOST(host_bits<T>(host_fmaxnm(a, b, c)))));
  expect_ordering_flags<T>(
      against_host<T>(10, LIB(FPMinNum(a, b, fpscr)), HOST(host_bits<T>(host_fminnm(a, b, c)))));
}

#undef LIB
#undef HOST

} // namespace
