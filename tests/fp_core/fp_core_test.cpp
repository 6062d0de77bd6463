// The library's core: unpacking, NaN selection and the rounding routines. Rounding is checked
// against the processor's own narrowing conversions, which round an exact double with the same
// rules.
#include <gtest/gtest.h>

#include "fp/fp_core.h"
#include "fp_host/fp_random.h"
#include "fp_host/host_fp.h"

namespace {

constexpr int kDraws = 200000;

template <typename T> struct unpacked {
  int sgn = -1, exp = -1;
  T mnt = 0;
  int flags = 0;
};

template <typename T> unpacked<T> unpack(T x, int mode) {
  unpacked<T> u;
  fp_unpack<T>(&u.sgn, &u.exp, &u.mnt, x, mode, &u.flags);
  return u;
}

TEST(FpUnpack, EachWidthReadsOnlyItsOwnFlushBit) {
  const uint16_t half_denormal = 0x8003;
  const uint32_t single_denormal = 0x00000005;
  const uint64_t double_denormal = 0x800fffffffffffffull;

  auto h = unpack<uint16_t>(half_denormal, FP_MODE_FZ);
  EXPECT_EQ(h.mnt, 3);
  EXPECT_EQ(h.flags, 0);
  h = unpack<uint16_t>(half_denormal, FP_MODE_FZ16);
  EXPECT_EQ(h.mnt, 0);
  EXPECT_EQ(h.sgn, 1);
  EXPECT_EQ(h.flags, 0) << "a flushed half raises nothing";

  auto s = unpack<uint32_t>(single_denormal, FP_MODE_FZ16);
  EXPECT_EQ(s.mnt, 5u);
  EXPECT_EQ(s.flags, 0);
  s = unpack<uint32_t>(single_denormal, FP_MODE_FZ);
  EXPECT_EQ(s.mnt, 0u);
  EXPECT_EQ(s.flags, FP_IDC);

  auto d = unpack<uint64_t>(double_denormal, FP_MODE_FZ);
  EXPECT_EQ(d.mnt, 0u);
  EXPECT_EQ(d.sgn, 1);
  EXPECT_EQ(d.flags, FP_IDC);

  EXPECT_EQ(unpack<uint32_t>(0x80000000u, FP_MODE_FZ).flags, 0) << "zero is not a denormal";
}

TEST(FpNan, SignallingBeatsQuietAndOnlyTheWinnerIsProcessed) {
  const uint32_t qnan_neg = 0xffc00001, snan = 0x7f800123, qnan = 0x7fc00042, one = 0x3f800000;
  int flags = 0;
  EXPECT_EQ(fp_nan_two<uint32_t>(qnan_neg, snan, 0, &flags), 0x7fc00123u);
  EXPECT_EQ(flags, FP_IOC);

  flags = 0;
  EXPECT_EQ(fp_nan_two<uint32_t>(qnan, qnan_neg, 0, &flags), qnan);
  EXPECT_EQ(flags, 0);
  EXPECT_EQ(fp_nan_two<uint32_t>(one, qnan_neg, 0, &flags), qnan_neg);
  EXPECT_EQ(fp_nan_two<uint32_t>(one, one, 0, &flags), 0u);
  EXPECT_EQ(flags, 0);

  EXPECT_EQ(fp_nan_three<uint32_t>(qnan, one, snan, 0, &flags), 0x7fc00123u);
  EXPECT_EQ(flags, FP_IOC);
  flags = 0;
  EXPECT_EQ(fp_nan_three<uint32_t>(one, qnan_neg, qnan, 0, &flags), qnan_neg);
  EXPECT_EQ(fp_nan_three<uint32_t>(one, one, qnan, 0, &flags), qnan);
  EXPECT_EQ(fp_nan_three<uint32_t>(one, one, one, 0, &flags), 0u);
  EXPECT_EQ(flags, 0);
}

// Rounding routine corner cases, the same for every width. Each value is
// given as the routine receives it: exponent and left-justified fraction.
template <typename T> class FpRoundCorners : public ::testing::Test {};
using FpWidths = ::testing::Types<uint16_t, uint32_t, uint64_t>;
TYPED_TEST_SUITE(FpRoundCorners, FpWidths);

TYPED_TEST(FpRoundCorners, TinyResults) {
  using T = TypeParam;
  using F = fp_format<T>;
  const T half = fp_sign_bit<T>(); // fraction .1
  const int flush = F::flush_bit;
  int flags = 0;

  // 1.1b x 2^(1 - bias - 1) is the exact denormal 0.11b x 2^(1 - bias).
  EXPECT_EQ(fp_round<T>(0, 0, half, FPRounding_TIEEVEN, 0, &flags), static_cast<T>(3)
                                                                        << (F::M - 2));
  EXPECT_EQ(flags, 0);
  // One more fraction bit falls below the denormal's last place.
  EXPECT_EQ(fp_round<T>(0, -(F::M - 1), half, FPRounding_ZERO, 0, &flags), T(1));
  EXPECT_EQ(flags, FP_UFC | FP_IXC);

  flags = 0;
  EXPECT_EQ(fp_round<T>(1, 0, half, FPRounding_TIEEVEN, flush, &flags), fp_zero<T>(1));
  EXPECT_EQ(flags, FP_UFC) << "a flushed result is not inexact";

  // Just below the smallest normal rounds up into it; underflow is judged
  // before rounding.
  flags = 0;
  EXPECT_EQ(fp_round<T>(0, 0, static_cast<T>(~T(0)), FPRounding_TIEEVEN, 0, &flags),
            fp_pack<T>(0, 1, 0));
  EXPECT_EQ(flags, FP_UFC | FP_IXC);

  // Far below the smallest denormal: only the sticky bit remains.
  flags = 0;
  EXPECT_EQ(fp_round<T>(0, -F::W - 5, 0, FPRounding_POSINF, 0, &flags), T(1));
  EXPECT_EQ(fp_round<T>(1, -F::W - 5, 0, FPRounding_POSINF, 0, &flags), fp_zero<T>(1));
  EXPECT_EQ(fp_round<T>(0, -F::W - 5, 0, FPRounding_TIEEVEN, 0, &flags), fp_zero<T>(0));
  EXPECT_EQ(fp_round<T>(1, -F::W - 5, 0, FPRounding_NEGINF, 0, &flags), fp_pack<T>(1, 0, 1));
  EXPECT_EQ(flags, FP_UFC | FP_IXC);
}

// The processor narrows an exact double with the same rounding rules, so a
// random double is a random input to the routine once its fraction is cut
// to the routine's width with a sticky bit.
struct double_parts {
  int sgn, exp;
  uint64_t fraction; // left-justified, leading 1 removed
};

double_parts random_double_in_range(fp_rng& rng, int target_bias, int low, int high,
                                    uint64_t* bits) {
  int e = low + static_cast<int>(rng.below(high - low + 1));
  if (rng.below(16) == 0) e = low - static_cast<int>(rng.below(1000)); // far below
  if (e - target_bias + 1023 < 1) e = target_bias - 1022;
  double_parts p{rng.coin(), e, random_fraction<uint64_t>(rng) << 12};
  *bits = fp_pack<uint64_t>(p.sgn, e - target_bias + 1023, p.fraction >> 12);
  return p;
}

template <typename T> T cut_fraction(uint64_t fraction) {
  constexpr int W = sizeof(T) * 8;
  return static_cast<T>(fp_jam_shift<uint64_t>(fraction, 64 - W));
}

// round(p, fpscr) is the library's rounding of the parts, host(bits, fpscr)
// the processor's narrowing of the same double.
template <typename Round, typename Host>
void compare_rounding(uint64_t seed, int target_bias, int low, int high, Round round, Host host) {
  fp_rng rng{seed};
  for (int i = 0; i < kDraws; ++i) {
    uint64_t bits;
    double_parts p = random_double_in_range(rng, target_bias, low, high, &bits);
    FPSCR fpscr = random_fpscr(rng);
    int flags = 0;
    uint64_t got = round(p, fpscr, &flags);
    host_result want = host(bits, fpscr);
    ASSERT_EQ(got, want.bits) << std::hex << bits << " fpscr " << fpscr;
    ASSERT_EQ(static_cast<uint32_t>(flags), want.fpsr & FP_FLAG_BITS)
        << std::hex << bits << " fpscr " << fpscr;
  }
}

TEST(FpRoundDifferential, SingleAgainstNarrowingConversion) {
  compare_rounding(
      0x5eed, 127, -30, 260,
      [](const double_parts& p, FPSCR fpscr, int* flags) {
        int mode = fp_mode_of(fpscr);
        return fp32_round_(p.sgn, p.exp, cut_fraction<uint32_t>(p.fraction), mode & 3, mode, flags);
      },
      host_fcvt_d_to_s);
  compare_rounding(
      0x0dd, 127, -30, 260,
      [](const double_parts& p, FPSCR fpscr, int* flags) {
        return fp32_round_(p.sgn, p.exp, cut_fraction<uint32_t>(p.fraction), FPRounding_ODD,
                           fp_mode_of(fpscr), flags);
      },
      host_fcvtxn_d_to_s);
}

// Conversion to half ignores FZ16 and honours AHP: the mode the conversions
// of the library hand to the routine.
TEST(FpRoundDifferential, HalfAgainstNarrowingConversionInBothFormats) {
  compare_rounding(
      0x4a1f, 15, -15, 36,
      [](const double_parts& p, FPSCR fpscr, int* flags) {
        int mode = (fp_mode_of(fpscr) & ~FP_MODE_FZ16) | ((fpscr & FPSCR_AHP) ? FP_MODE_AHP : 0);
        return fp16_round_(p.sgn, p.exp, cut_fraction<uint16_t>(p.fraction), mode & 3, mode, flags);
      },
      host_fcvt_d_to_h);
}

TEST(FpStatus, ModeAndMergeKeepControlsAndOnlySetFlags) {
  FPSCR fpscr = FPSCR_FZ16 | (2u << FPSCR_RMODE_SHIFT) | FPSCR_DN | FPSCR_AHP | 0x1f00u;
  EXPECT_EQ(fp_mode_of(fpscr), 2 | FP_MODE_DN | FP_MODE_FZ16);
  EXPECT_EQ(fp_mode_of(FPSCR_FZ | (3u << FPSCR_RMODE_SHIFT)), 3 | FP_MODE_FZ);
  const FPSCR before = fpscr | FP_DZC;
  fpscr = before;
  fp_flags_merge(FP_IOC | FP_IDC | 0x60 | 0x100, fpscr);
  EXPECT_EQ(fpscr, before | FP_IOC | FP_IDC) << "bits 5, 6 and above the low byte stay";
  fp_flags_merge(0, fpscr);
  EXPECT_EQ(fpscr, before | FP_IOC | FP_IDC);
}

} // namespace
