// The library's core: unpacking, NaN selection, the integer helpers and the
// three rounding routines. Rounding is checked against the processor's own
// narrowing conversions, which round an exact double with the same rules.
#include <gtest/gtest.h>

#include "fp/fp_core.h"
#include "fp_random.h"
#include "host_fp.h"

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

TEST(FpUnpack, ZeroAndDenormalShareExponentOneAndNormalsGetTheHiddenBit) {
  auto z = unpack<uint32_t>(0, 0);
  EXPECT_EQ(z.exp, 1);
  EXPECT_EQ(z.mnt, 0u);
  auto den = unpack<uint32_t>(0x00400000, 0);
  EXPECT_EQ(den.exp, 1);
  EXPECT_EQ(den.mnt, 0x00400000u);
  auto one = unpack<uint64_t>(0x3ff8000000000000ull, 0);
  EXPECT_EQ(one.exp, 1023);
  EXPECT_EQ(one.mnt, 0x0018000000000000ull);
  auto inf = unpack<uint16_t>(0xfc00, 0);
  EXPECT_EQ(inf.sgn, 1);
  EXPECT_EQ(inf.exp, 31);
  EXPECT_EQ(inf.mnt, 0x400);
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

TEST(FpNan, DefaultNanUnderDnAndFlagOnlyForSignalling) {
  int flags = 0;
  EXPECT_EQ(fp_nan_one<uint16_t>(0xfd01, FP_MODE_DN, &flags), 0x7e00);
  EXPECT_EQ(flags, FP_IOC);
  flags = 0;
  EXPECT_EQ(fp_nan_one<uint64_t>(0xfff8000000000001ull, FP_MODE_DN, &flags), 0x7ff8000000000000ull);
  EXPECT_EQ(flags, 0);
  EXPECT_EQ(fp_nan_one<uint64_t>(0xfff0000000000001ull, 0, &flags), 0xfff8000000000001ull);
  EXPECT_EQ(flags, FP_IOC);
}

template <typename T> int leading_zeros(T x) {
  int n = 0;
  for (int bit = sizeof(T) * 8 - 1; bit >= 0 && !((x >> bit) & 1); --bit) ++n;
  return n;
}

template <typename T> void check_normalise(fp_rng& rng) {
  for (int i = 0; i < 20000; ++i) {
    T x = static_cast<T>(rng.next() >> rng.below(64));
    if (!x) x = 1;
    T m = x;
    int exp = 100;
    fp_normalise(&m, &exp);
    int lz = leading_zeros(x);
    ASSERT_EQ(m, static_cast<T>(x << lz)) << std::hex << x;
    ASSERT_EQ(exp, 100 - lz);
  }
}

TEST(FpHelpers, NormaliseLeftJustifiesEveryWidth) {
  fp_rng rng{0x1234};
  check_normalise<uint16_t>(rng);
  check_normalise<uint32_t>(rng);
  check_normalise<uint64_t>(rng);
  for (int i = 0; i < 20000; ++i) {
    unsigned __int128 x = (static_cast<unsigned __int128>(rng.next()) << 64) | rng.next();
    x >>= rng.below(128);
    if (!x) x = 1;
    uint64_t hi = static_cast<uint64_t>(x >> 64), lo = static_cast<uint64_t>(x);
    int exp = 0, lz = 0;
    while (!(x >> 127)) x <<= 1, ++lz;
    fp_normalise(&hi, &lo, &exp);
    ASSERT_EQ(hi, static_cast<uint64_t>(x >> 64));
    ASSERT_EQ(lo, static_cast<uint64_t>(x));
    ASSERT_EQ(exp, -lz);
  }
}

TEST(FpHelpers, JamShiftKeepsEveryLostBitAsSticky) {
  EXPECT_EQ(fp_jam_shift<uint32_t>(0x80000000u, 32), 1u);
  EXPECT_EQ(fp_jam_shift<uint32_t>(0, 40), 0u);
  EXPECT_EQ(fp_jam_shift<uint16_t>(0x8001, 4), 0x0801);
  EXPECT_EQ(fp_jam_shift<uint16_t>(0x8000, 4), 0x0800);
  fp_rng rng{99};
  for (int i = 0; i < 20000; ++i) {
    unsigned __int128 x = (static_cast<unsigned __int128>(rng.next()) << 64) | rng.next();
    x >>= rng.below(128);
    int shift = static_cast<int>(rng.below(140));
    unsigned __int128 expect =
        shift >= 128
            ? (x != 0)
            : (x >> shift) | ((x & ((static_cast<unsigned __int128>(1) << shift) - 1)) != 0);
    uint64_t hi = static_cast<uint64_t>(x >> 64), lo = static_cast<uint64_t>(x);
    fp_jam_shift(&hi, &lo, shift);
    ASSERT_EQ(hi, static_cast<uint64_t>(expect >> 64)) << shift;
    ASSERT_EQ(lo, static_cast<uint64_t>(expect)) << shift;
    uint64_t w = static_cast<uint64_t>(x);
    uint64_t w_expect = shift >= 64 ? (w != 0) : (w >> shift) | ((w & ((1ull << shift) - 1)) != 0);
    ASSERT_EQ(fp_jam_shift<uint64_t>(w, shift), w_expect);
  }
}

TEST(FpHelpers, LimbProductIsExactBelowTwoToThe62) {
  fp_rng rng{7};
  const uint64_t limit = (1ull << 62) - 1;
  const uint64_t edges[] = {0, 1, 0x7fffffff, 0x80000000, limit, 1ull << 52, (1ull << 53) - 1};
  for (uint64_t a : edges) {
    for (uint64_t b : edges) {
      uint64_t x0, x1;
      fp_mul62x62(&x0, &x1, a, b);
      unsigned __int128 p = static_cast<unsigned __int128>(a) * b;
      EXPECT_EQ(x1, static_cast<uint64_t>(p >> 64));
      EXPECT_EQ(x0, static_cast<uint64_t>(p));
    }
  }
  for (int i = 0; i < 50000; ++i) {
    uint64_t a = rng.next() & (limit >> rng.below(40)), b = rng.next() & limit;
    uint64_t x0, x1;
    fp_mul62x62(&x0, &x1, a, b);
    unsigned __int128 p = static_cast<unsigned __int128>(a) * b;
    ASSERT_EQ(x1, static_cast<uint64_t>(p >> 64));
    ASSERT_EQ(x0, static_cast<uint64_t>(p));
  }
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

TYPED_TEST(FpRoundCorners, OverflowDependsOnModeAndSign) {
  using T = TypeParam;
  using F = fp_format<T>;
  const int big = F::exp_max + 3;
  const struct {
    int rm, sgn;
    T expect;
  } cases[] = {
      {FPRounding_TIEEVEN, 0, fp_infinity<T>(0)},  {FPRounding_TIEEVEN, 1, fp_infinity<T>(1)},
      {FPRounding_ZERO, 0, fp_max_normal<T>(0)},   {FPRounding_ZERO, 1, fp_max_normal<T>(1)},
      {FPRounding_POSINF, 0, fp_infinity<T>(0)},   {FPRounding_POSINF, 1, fp_max_normal<T>(1)},
      {FPRounding_NEGINF, 0, fp_max_normal<T>(0)}, {FPRounding_NEGINF, 1, fp_infinity<T>(1)},
  };
  for (const auto& c : cases) {
    int flags = 0;
    EXPECT_EQ(fp_round<T>(c.sgn, big, 0, c.rm, 0, &flags), c.expect) << c.rm << " " << c.sgn;
    EXPECT_EQ(flags, FP_OFC | FP_IXC);
  }
  // The largest normal with all fraction bits and a round bit carries out.
  int flags = 0;
  EXPECT_EQ(fp_round<T>(0, F::exp_max - 1, static_cast<T>(~T(0)), FPRounding_TIEEVEN, 0, &flags),
            fp_infinity<T>(0));
  EXPECT_EQ(flags, FP_OFC | FP_IXC);
}

TEST(FpRoundHalf, AlternativeFormatSaturatesWithInvalid) {
  int flags = 0;
  // Exponent 31 is an ordinary value in the alternative format.
  EXPECT_EQ(fp16_round_(0, 31, 0xffc0, FPRounding_TIEEVEN, FP_MODE_AHP, &flags), 0x7fff);
  EXPECT_EQ(flags, 0);
  EXPECT_EQ(fp16_round_(1, 31, 0xffe0, FPRounding_TIEEVEN, FP_MODE_AHP, &flags), 0xffff);
  EXPECT_EQ(flags, FP_IOC) << "carry out of the largest value saturates";
  flags = 0;
  EXPECT_EQ(fp16_round_(1, 31, 0xffe0, FPRounding_ZERO, FP_MODE_AHP, &flags), 0xffff);
  EXPECT_EQ(flags, FP_IXC);
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

TEST(FpRoundDifferential, SingleAgainstNarrowingConversion) {
  fp_rng rng{0x5eed};
  for (int i = 0; i < kDraws; ++i) {
    uint64_t bits;
    double_parts p = random_double_in_range(rng, 127, -30, 260, &bits);
    FPSCR fpscr = random_fpscr(rng);
    int mode = fp_mode_of(fpscr), flags = 0;
    uint32_t got =
        fp32_round_(p.sgn, p.exp, cut_fraction<uint32_t>(p.fraction), mode & 3, mode, &flags);
    host_result want = host_fcvt_d_to_s(bits, fpscr);
    ASSERT_EQ(got, want.bits) << std::hex << bits << " fpscr " << fpscr;
    ASSERT_EQ(static_cast<uint32_t>(flags), want.fpsr & FP_FLAG_BITS)
        << std::hex << bits << " fpscr " << fpscr;
  }
}

TEST(FpRoundDifferential, SingleRoundToOddAgainstNarrowingConversion) {
  fp_rng rng{0x0dd};
  for (int i = 0; i < kDraws; ++i) {
    uint64_t bits;
    double_parts p = random_double_in_range(rng, 127, -30, 260, &bits);
    FPSCR fpscr = random_fpscr(rng);
    int flags = 0;
    uint32_t got = fp32_round_(p.sgn, p.exp, cut_fraction<uint32_t>(p.fraction), FPRounding_ODD,
                               fp_mode_of(fpscr), &flags);
    host_result want = host_fcvtxn_d_to_s(bits, fpscr);
    ASSERT_EQ(got, want.bits) << std::hex << bits << " fpscr " << fpscr;
    ASSERT_EQ(static_cast<uint32_t>(flags), want.fpsr & FP_FLAG_BITS)
        << std::hex << bits << " fpscr " << fpscr;
  }
}

// Conversion to half ignores FZ16 and honours AHP: the mode the conversions
// of the library hand to the routine.
TEST(FpRoundDifferential, HalfAgainstNarrowingConversionInBothFormats) {
  fp_rng rng{0x4a1f};
  for (int i = 0; i < kDraws; ++i) {
    uint64_t bits;
    double_parts p = random_double_in_range(rng, 15, -15, 36, &bits);
    FPSCR fpscr = random_fpscr(rng);
    int mode = (fp_mode_of(fpscr) & ~FP_MODE_FZ16) | ((fpscr & FPSCR_AHP) ? FP_MODE_AHP : 0);
    int flags = 0;
    uint16_t got =
        fp16_round_(p.sgn, p.exp, cut_fraction<uint16_t>(p.fraction), mode & 3, mode, &flags);
    host_result want = host_fcvt_d_to_h(bits, fpscr);
    ASSERT_EQ(got, want.bits) << std::hex << bits << " fpscr " << fpscr;
    ASSERT_EQ(static_cast<uint32_t>(flags), want.fpsr & FP_FLAG_BITS)
        << std::hex << bits << " fpscr " << fpscr;
  }
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
