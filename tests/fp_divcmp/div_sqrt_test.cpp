// Division and square root against the host's fdiv and fsqrt, bit for bit
// with flags, in every rounding mode and flush setting, and the corners that
// random pairs rarely reach.
#include <gtest/gtest.h>

#include <utility>

#include "differential.h"
#include "fp/fp_div_sqrt.h"

namespace {

constexpr int kCases = 200000;

// The double method corrects a reciprocal estimate by one unit: exact
// quotients and their neighbours are where an error there would show.
template <typename T> std::pair<T, T> draw_div_pair(draw_rng& rng) {
  if (rng() % 4 == 0) return draw_exact_quotient<T>(rng);
  const T a = draw_operand<T>(rng);
  return {a, draw_partner<T>(rng, a)};
}

template <typename T> std::pair<T, T> draw_sqrt_operand(draw_rng& rng) {
  return {rng() % 3 ? draw_operand<T>(rng) : draw_square<T>(rng), T(0)};
}

template <typename T> void div_against_host(uint64_t seed) {
  expect_same_as_host<T>(
      "FPDiv", kCases, seed, draw_div_pair<T>,
      [](T a, T b, FPSCR& fpscr) {
        return fp_outcome{FPDiv<T>(a, b, fpscr), 0};
      },
      [](uint64_t a, uint64_t b, uint32_t fpcr) {
        const host_out h = host_fdiv<T>(a, b, fpcr);
        return fp_outcome{h.value & width_mask<T>(), h.fpsr};
      });
}

template <typename T> void sqrt_against_host(uint64_t seed) {
  expect_same_as_host<T>(
      "FPSqrt", kCases, seed, draw_sqrt_operand<T>,
      [](T a, T, FPSCR& fpscr) {
        return fp_outcome{FPSqrt<T>(a, fpscr), 0};
      },
      [](uint64_t a, uint64_t b, uint32_t fpcr) {
        const host_out h = host_fsqrt<T>(a, b, fpcr);
        return fp_outcome{h.value & width_mask<T>(), h.fpsr};
      });
}

TEST(FpDivide, HalfMatchesHost) { div_against_host<uint16_t>(0xd1716); }
TEST(FpDivide, SingleMatchesHost) { div_against_host<uint32_t>(0xd1732); }
TEST(FpDivide, DoubleMatchesHost) { div_against_host<uint64_t>(0xd1764); }
TEST(FpSqrt, HalfMatchesHost) { sqrt_against_host<uint16_t>(0x5a716); }
TEST(FpSqrt, SingleMatchesHost) { sqrt_against_host<uint32_t>(0x5a732); }
TEST(FpSqrt, DoubleMatchesHost) { sqrt_against_host<uint64_t>(0x5a764); }

constexpr uint32_t kIOC = 1, kDZC = 2, kOFC = 4, kUFC = 8, kIXC = 16, kIDC = 128;
constexpr uint32_t kRoundUp = 1u << 22, kRoundZero = 3u << 22;

template <typename T> struct run {
  T value;
  uint32_t flags;
};
template <typename T> run<T> div(T a, T b, uint32_t fpcr = 0) {
  FPSCR f = fpcr;
  const T r = FPDiv<T>(a, b, f);
  return {r, f & kFlagBits};
}
template <typename T> run<T> sqrt(T a, uint32_t fpcr = 0) {
  FPSCR f = fpcr;
  const T r = FPSqrt<T>(a, f);
  return {r, f & kFlagBits};
}
template <typename T> void expect_run(run<T> got, T value, uint32_t flags, const char* what) {
  EXPECT_EQ(got.value, value) << what << std::hex << " got 0x" << uint64_t(got.value);
  EXPECT_EQ(got.flags, flags) << what;
}

TEST(FpDivide, ZerosInfinitiesAndDivisionByZero) {
  expect_run(div<uint32_t>(0x3f800000, 0), uint32_t(0x7f800000), kDZC, "1/0");
  expect_run(div<uint32_t>(0xbf800000, 0), uint32_t(0xff800000), kDZC, "-1/0");
  expect_run(div<uint32_t>(0x3f800000, 0x80000000), uint32_t(0xff800000), kDZC, "1/-0");
  expect_run(div<uint32_t>(0x7f800000, 0), uint32_t(0x7f800000), 0, "inf/0");
  expect_run(div<uint32_t>(0, 0), uint32_t(0x7fc00000), kIOC, "0/0");
  expect_run(div<uint32_t>(0x7f800000, 0xff800000), uint32_t(0x7fc00000), kIOC, "inf/-inf");
  expect_run(div<uint32_t>(0, 0x7f800000), uint32_t(0), 0, "0/inf");
  expect_run(div<uint32_t>(0x3f800000, 0x7f800000), uint32_t(0), 0, "1/inf");
  expect_run(div<uint16_t>(0x3c00, 0), uint16_t(0x7c00), kDZC, "half 1/0");
  expect_run(div<uint64_t>(0x8000000000000000, 0x7ff0000000000000), uint64_t(0x8000000000000000), 0,
             "-0/inf");
}

TEST(FpDivide, FlushedAndUnflushedDenormals) {
  const uint32_t denormal = 0x00000003, one = 0x3f800000;
  expect_run(div<uint32_t>(denormal, one, kFz), uint32_t(0), kIDC, "denormal/1 flushed");
  expect_run(div<uint32_t>(one | 0x80000000, denormal, kFz), uint32_t(0xff800000), kIDC | kDZC,
             "-1/denormal flushed");
  expect_run(div<uint32_t>(one, denormal), uint32_t(0x7f800000), kOFC | kIXC,
             "1/denormal overflows");
  expect_run(div<uint32_t>(one, denormal, kRoundZero), uint32_t(0x7f7fffff), kOFC | kIXC,
             "1/denormal overflows toward zero");
  // FZ does not reach half precision, and FZ16 raises no IDC.
  expect_run(div<uint16_t>(0x0001, 0x3c00, kFz), uint16_t(0x0001), 0, "half denormal under FZ");
  expect_run(div<uint16_t>(0x0001, 0x3c00, kFz16), uint16_t(0), 0, "half denormal under FZ16");
  // A tiny quotient: underflow with inexact, or a flushed zero with UFC alone.
  expect_run(div<uint32_t>(0x00800000, 0x40400000), uint32_t(0x002aaaab), kUFC | kIXC,
             "tiny quotient");
  expect_run(div<uint32_t>(0x00800000, 0x40400000, kFz), uint32_t(0), kUFC, "tiny flushed");
}

TEST(FpDivide, ExactQuotientsRaiseNothing) {
  expect_run(div<uint64_t>(0x3ff8000000000000, 0x3fe0000000000000), uint64_t(0x4008000000000000), 0,
             "1.5/0.5");
  expect_run(div<uint32_t>(0x40c00000, 0x40000000), uint32_t(0x40400000), 0, "6/2");
  expect_run(div<uint16_t>(0x4600, 0x4000), uint16_t(0x4200), 0, "half 6/2");
  expect_run(div<uint64_t>(0x3ff0000000000000, 0x4008000000000000), uint64_t(0x3fd5555555555555),
             kIXC, "1/3");
  expect_run(div<uint64_t>(0x3ff0000000000000, 0x4008000000000000, kRoundUp),
             uint64_t(0x3fd5555555555556), kIXC, "1/3 up");
}

TEST(FpDivide, NansKeepPayloadSignAndOrder) {
  const uint32_t qnan = 0xffc01234, snan = 0x7f800042;
  expect_run(div<uint32_t>(qnan, 0x3f800000), qnan, 0, "quiet NaN dividend");
  expect_run(div<uint32_t>(qnan, snan), uint32_t(snan | 0x400000), kIOC,
             "signalling divisor beats quiet dividend");
  expect_run(div<uint32_t>(snan, 0, kDn), uint32_t(0x7fc00000), kIOC, "signalling under DN");
}

TEST(FpSqrt, SpecialValues) {
  expect_run(sqrt<uint32_t>(0x80000000), uint32_t(0x80000000), 0, "-0");
  expect_run(sqrt<uint32_t>(0x80000001, kFz), uint32_t(0x80000000), kIDC, "flushed -denormal");
  expect_run(sqrt<uint32_t>(0xbf800000), uint32_t(0x7fc00000), kIOC, "-1");
  expect_run(sqrt<uint32_t>(0xff800000), uint32_t(0x7fc00000), kIOC, "-inf");
  expect_run(sqrt<uint32_t>(0x7f800000), uint32_t(0x7f800000), 0, "+inf");
  expect_run(sqrt<uint64_t>(0x7ff0000000000001), uint64_t(0x7ff8000000000001), kIOC, "sNaN");
  expect_run(sqrt<uint64_t>(0x7ff0000000000001, kDn), uint64_t(0x7ff8000000000000), kIOC,
             "sNaN under DN");
  expect_run(sqrt<uint16_t>(0xfe01), uint16_t(0xfe01), 0, "negative quiet NaN keeps its sign");
}

TEST(FpSqrt, SquaresAreExactOthersInexact) {
  expect_run(sqrt<uint32_t>(0x41100000), uint32_t(0x40400000), 0, "sqrt 9");
  expect_run(sqrt<uint64_t>(0x4010000000000000), uint64_t(0x4000000000000000), 0, "sqrt 4");
  expect_run(sqrt<uint16_t>(0x4c00), uint16_t(0x4400), 0, "half sqrt 16");
  expect_run(sqrt<uint64_t>(0x4000000000000000), uint64_t(0x3ff6a09e667f3bcd), kIXC, "sqrt 2");
  expect_run(sqrt<uint64_t>(0x4000000000000000, kRoundZero), uint64_t(0x3ff6a09e667f3bcc), kIXC,
             "sqrt 2 toward zero");
  // The smallest denormals: never tiny after the root.
  expect_run(sqrt<uint64_t>(1), uint64_t(0x1e60000000000000), 0, "sqrt of 2^-1074");
  expect_run(sqrt<uint32_t>(1), uint32_t(0x1a3504f3), kIXC, "sqrt of 2^-149");
}

} // namespace
