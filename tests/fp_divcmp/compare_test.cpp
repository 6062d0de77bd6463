// Compares, minimum and maximum against the host's fcmeq/fcmge/fcmgt,
// fcmp/fcmpe and fmax/fmin/fmaxnm/fminnm, with flags, under every flush and
// default-NaN setting; then the corners the tables of results pin down.
#include <gtest/gtest.h>

#include <utility>

#include "differential.h"
#include "fp/fp_compare.h"

namespace {

constexpr int kCases = 100000;

template <typename T> std::pair<T, T> draw_pair(draw_rng& rng) {
  const T a = draw_operand<T>(rng);
  return rng() & 1 ? std::pair<T, T>{a, draw_partner<T>(rng, a)}
                   : std::pair<T, T>{draw_partner<T>(rng, a), a};
}

// A truth value from the host's all-ones or all-zeros mask.
template <typename T> fp_outcome host_mask(const host_out& h) {
  return {(h.value & width_mask<T>()) != 0, h.fpsr};
}
template <typename T> fp_outcome host_value(const host_out& h) {
  return {h.value & width_mask<T>(), h.fpsr};
}
// Unordered is the V flag of a quiet compare.
fp_outcome host_unordered(const host_out& h) { return {h.nzcv & 1, h.fpsr}; }
fp_outcome host_nzcv(const host_out& h) { return {h.nzcv, h.fpsr}; }

#define LIB(expr) [](T a, T b, FPSCR& fpscr) { return fp_outcome{uint64_t(expr), 0}; }
#define HOST(fn, map) [](uint64_t a, uint64_t b, uint32_t c) { return map(fn<T>(a, b, c)); }

template <typename T> void compares_against_host(uint64_t seed) {
  expect_same_as_host<T>("FPCompareEQ", kCases, seed, draw_pair<T>, LIB(FPCompareEQ(a, b, fpscr)),
                         HOST(host_fcmeq, host_mask<T>));
  expect_same_as_host<T>("FPCompareGE", kCases, seed + 1, draw_pair<T>,
                         LIB(FPCompareGE(a, b, fpscr)), HOST(host_fcmge, host_mask<T>));
  expect_same_as_host<T>("FPCompareGT", kCases, seed + 2, draw_pair<T>,
                         LIB(FPCompareGT(a, b, fpscr)), HOST(host_fcmgt, host_mask<T>));
  expect_same_as_host<T>("FPCompareUN", kCases, seed + 3, draw_pair<T>,
                         LIB(FPCompareUN(a, b, fpscr)), HOST(host_fcmp, host_unordered));
  expect_same_as_host<T>("FPCompare quiet", kCases, seed + 4, draw_pair<T>,
                         LIB(FPCompare(a, b, false, fpscr)), HOST(host_fcmp, host_nzcv));
  expect_same_as_host<T>("FPCompare signalling", kCases, seed + 5, draw_pair<T>,
                         LIB(FPCompare(a, b, true, fpscr)), HOST(host_fcmpe, host_nzcv));
}

template <typename T> void min_max_against_host(uint64_t seed) {
  expect_same_as_host<T>("FPMax", kCases, seed, draw_pair<T>, LIB(FPMax(a, b, fpscr)),
                         HOST(host_fmax, host_value<T>));
  expect_same_as_host<T>("FPMin", kCases, seed + 1, draw_pair<T>, LIB(FPMin(a, b, fpscr)),
                         HOST(host_fmin, host_value<T>));
  expect_same_as_host<T>("FPMaxNum", kCases, seed + 2, draw_pair<T>, LIB(FPMaxNum(a, b, fpscr)),
                         HOST(host_fmaxnm, host_value<T>));
  expect_same_as_host<T>("FPMinNum", kCases, seed + 3, draw_pair<T>, LIB(FPMinNum(a, b, fpscr)),
                         HOST(host_fminnm, host_value<T>));
}

#undef LIB
#undef HOST

TEST(FpCompare, HalfMatchesHost) { compares_against_host<uint16_t>(0xc016); }
TEST(FpCompare, SingleMatchesHost) { compares_against_host<uint32_t>(0xc032); }
TEST(FpCompare, DoubleMatchesHost) { compares_against_host<uint64_t>(0xc064); }
TEST(FpMinMax, HalfMatchesHost) { min_max_against_host<uint16_t>(0x3a016); }
TEST(FpMinMax, SingleMatchesHost) { min_max_against_host<uint32_t>(0x3a032); }
TEST(FpMinMax, DoubleMatchesHost) { min_max_against_host<uint64_t>(0x3a064); }

constexpr uint32_t kIOC = 1, kIDC = 128;
constexpr uint32_t kOne = 0x3f800000, kNegZero = 0x80000000, kInf = 0x7f800000;
constexpr uint32_t kQuiet = 0x7fc00011, kSignalling = 0x7f800011, kMaxNormal = 0x7f7fffff;

template <typename R> struct with_flags {
  R value;
  uint32_t flags;
};
template <typename Op> auto call(Op op, uint32_t fpcr = 0) {
  FPSCR f = fpcr;
  auto r = op(f);
  return with_flags<decltype(r)>{r, f & kFlagBits};
}
#define EXPECT_OP(expr, fpcr, want_value, want_flags)                                              \
  do {                                                                                             \
    const auto got = call([&](FPSCR& fpscr) { return expr; }, fpcr);                               \
    EXPECT_EQ(got.value, want_value) << #expr;                                                     \
    EXPECT_EQ(got.flags, uint32_t(want_flags)) << #expr;                                           \
  } while (0)

TEST(FpCompare, ZerosNansAndInfinities) {
  EXPECT_OP(FPCompareEQ<uint32_t>(0, kNegZero, fpscr), 0, true, 0);
  EXPECT_OP(FPCompareGE<uint32_t>(0, kNegZero, fpscr), 0, true, 0);
  EXPECT_OP(FPCompareGT<uint32_t>(0, kNegZero, fpscr), 0, false, 0);
  EXPECT_OP(FPCompareEQ<uint32_t>(kQuiet, kOne, fpscr), 0, false, 0);
  EXPECT_OP(FPCompareEQ<uint32_t>(kQuiet, kQuiet, fpscr), 0, false, 0);
  EXPECT_OP(FPCompareGE<uint32_t>(kQuiet, kOne, fpscr), 0, false, kIOC);
  EXPECT_OP(FPCompareUN<uint32_t>(kSignalling, kOne, fpscr), 0, true, kIOC);
  EXPECT_OP(FPCompareUN<uint32_t>(kOne, kQuiet, fpscr), 0, true, 0);
  EXPECT_OP(FPCompareUN<uint32_t>(kOne, kInf, fpscr), 0, false, 0);
  EXPECT_OP(FPCompareGT<uint32_t>(kInf, kMaxNormal, fpscr), 0, true, 0);
  EXPECT_OP(FPCompareGT<uint32_t>(kInf | kNegZero, kMaxNormal | kNegZero, fpscr), 0, false, 0);
  EXPECT_OP(FPCompare<uint64_t>(0x7ff8000000000000, 0, false, fpscr), 0, 3, 0);
  EXPECT_OP(FPCompare<uint64_t>(0x7ff8000000000000, 0, true, fpscr), 0, 3, kIOC);
  EXPECT_OP(FPCompare<uint32_t>(kNegZero, 0, false, fpscr), 0, 6, 0);
  EXPECT_OP(FPCompare<uint32_t>(kOne | kNegZero, 0, false, fpscr), 0, 8, 0);
  EXPECT_OP(FPCompare<uint32_t>(kOne, kOne | kNegZero, false, fpscr), 0, 2, 0);
}

// Under FZ a single denormal is a zero for ordering, with IDC; FZ16 flushes
// half denormals silently, and neither bit reaches the other width.
TEST(FpCompare, FlushedDenormalsOrderAsZeros) {
  EXPECT_OP(FPCompareEQ<uint32_t>(0x00000005, 0, fpscr), kFz, true, kIDC);
  EXPECT_OP(FPCompareEQ<uint32_t>(0x00000005, 0, fpscr), kFz16, false, 0);
  EXPECT_OP(FPCompareGT<uint16_t>(0x0005, 0x8000, fpscr), kFz16, false, 0);
  EXPECT_OP(FPCompareGT<uint16_t>(0x0005, 0x8000, fpscr), kFz, true, 0);
  EXPECT_OP(FPCompareEQ<uint32_t>(0, kNegZero, fpscr), kFz, true, 0);
}

TEST(FpMinMax, SignedZerosAndDenormals) {
  EXPECT_OP(FPMax<uint32_t>(kNegZero, 0, fpscr), 0, 0u, 0);
  EXPECT_OP(FPMax<uint32_t>(0, kNegZero, fpscr), 0, 0u, 0);
  EXPECT_OP(FPMin<uint32_t>(kNegZero, 0, fpscr), 0, kNegZero, 0);
  EXPECT_OP(FPMin<uint32_t>(0, kNegZero, fpscr), 0, kNegZero, 0);
  EXPECT_OP(FPMax<uint32_t>(0x00000009, 0x00000003, fpscr), kFz, 0u, kIDC);
  EXPECT_OP(FPMin<uint32_t>(0x80000009, 0x00000003, fpscr), kFz, kNegZero, kIDC);
  EXPECT_OP(FPMin<uint32_t>(0x00000009, 0x00000003, fpscr), 0, 3u, 0);
  EXPECT_OP(FPMin<uint16_t>(0x8009, 0x8003, fpscr), 0, uint16_t(0x8009), 0);
}

TEST(FpMinMax, QuietNansGiveWayOnlyInTheNumberForms) {
  EXPECT_OP(FPMax<uint32_t>(kInf, kQuiet, fpscr), 0, kQuiet, 0);
  EXPECT_OP(FPMaxNum<uint32_t>(kInf, kQuiet, fpscr), 0, kInf, 0);
  EXPECT_OP(FPMinNum<uint32_t>(kQuiet, kInf | kNegZero, fpscr), 0, kInf | kNegZero, 0);
  EXPECT_OP(FPMaxNum<uint32_t>(kQuiet, kOne, fpscr), kDn, kOne, 0);
  EXPECT_OP(FPMinNum<uint32_t>(kQuiet, kOne, fpscr), 0, kOne, 0);
  // A signalling NaN is never replaced: it wins with IOC, quietened.
  EXPECT_OP(FPMaxNum<uint32_t>(kQuiet, kSignalling, fpscr), 0, kSignalling | 0x400000, kIOC);
  EXPECT_OP(FPMinNum<uint32_t>(kSignalling, kOne, fpscr), kDn, 0x7fc00000u, kIOC);
  // Two quiet NaNs: the first, or the default NaN.
  EXPECT_OP(FPMaxNum<uint32_t>(kQuiet | kNegZero, kQuiet, fpscr), 0, kQuiet | kNegZero, 0);
  EXPECT_OP(FPMaxNum<uint32_t>(kQuiet | kNegZero, kQuiet, fpscr), kDn, 0x7fc00000u, 0);
}

} // namespace
