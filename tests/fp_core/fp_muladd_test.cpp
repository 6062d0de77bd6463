// Fused multiply-add against the processor's fmadd, with addends chosen to
// cancel the product, to sit far above or below it, or anywhere; the scaled
// core against fmadd of operands pre-scaled exactly; then the corners.
#include <gtest/gtest.h>

#include "fp/fp_add_mul.h"
#include "fp/fp_muladd.h"
#include "fp_host/fp_random.h"
#include "fp_host/host_fp.h"

namespace {

constexpr int kDraws = 300000;

// An addend that makes the sum interesting: close to minus the rounded
// product (massive cancellation), or far from it (only the sticky bit of
// the smaller side reaches the result), or unrelated.
template <typename T> T addend_for(fp_rng& rng, T b, T c) {
  using F = fp_format<T>;
  const T product = static_cast<T>(host_fmul(b, c, 0).bits);
  const int p_exp = fp_exp_field(product);
  if (p_exp == 0 || p_exp == F::exp_max) return random_operand<T>(rng);
  switch (rng.below(4)) {
  case 0:
    return static_cast<T>(FPNeg(product) + rng.below(5) - 2);
  case 1:
  case 2: { // the other side of the sum is far above or far below
    int e = p_exp + (rng.coin() ? 1 : -1) * static_cast<int>(F::M + 2 + rng.below(2 * F::M + 8));
    if (e < 1) e = 1;
    if (e > F::exp_max - 1) e = F::exp_max - 1;
    return fp_pack<T>(rng.coin(), e, random_fraction<T>(rng));
  }
  default:
    return random_operand<T>(rng);
  }
}

template <typename T> class FpMulAddDifferential : public ::testing::Test {};
using FpWidths = ::testing::Types<uint16_t, uint32_t, uint64_t>;
TYPED_TEST_SUITE(FpMulAddDifferential, FpWidths);

TYPED_TEST(FpMulAddDifferential, MatchesFusedInstruction) {
  using T = TypeParam;
  fp_rng rng{0xfa11 + sizeof(T)};
  int seen_ufc = 0, seen_ioc = 0, seen_exact_zero = 0;
  for (int i = 0; i < kDraws; ++i) {
    T b = random_operand<T>(rng);
    T c = related_operand<T>(rng, b);
    if (rng.coin()) std::swap(b, c);
    T a = rng.coin() ? addend_for<T>(rng, b, c) : random_operand<T>(rng);
    const FPSCR controls = random_fpscr(rng) | random_trap_enables(rng);
    FPSCR fpscr = controls;
    T got = FPMulAdd<T>(a, b, c, fpscr);
    host_result want = host_fmadd(a, b, c, controls);
    seen_ufc += (want.fpsr & FP_UFC) != 0;
    seen_ioc += (want.fpsr & FP_IOC) != 0;
    seen_exact_zero +=
        (want.bits << 1) == 0 && (fp_exp_field(a) != 0 || (a & fp_mantissa_mask<T>()));
    ASSERT_EQ(got, static_cast<T>(want.bits))
        << std::hex << "a " << a << " b " << b << " c " << c << " fpscr " << controls;
    ASSERT_EQ(fpscr, controls | (want.fpsr & FP_FLAG_BITS))
        << std::hex << "a " << a << " b " << b << " c " << c << " fpscr " << controls;
  }
  EXPECT_GT(seen_ufc, 500);
  EXPECT_GT(seen_ioc, 500);
  EXPECT_GT(seen_exact_zero, 50) << "cancellation to zero with a non-zero addend";
}

// The core's scale: (a + b x c) x 2^s equals the unscaled sum of a x 2^s
// and (b x 2^s) x c whenever those two are exact normals.
TYPED_TEST(FpMulAddDifferential, ScaleIsAppliedBeforeTheOneRounding) {
  using T = TypeParam;
  using F = fp_format<T>;
  fp_rng rng{0x5ca1e + sizeof(T)};
  int compared = 0;
  for (int i = 0; i < kDraws / 3; ++i) {
    const int scale = rng.coin() ? -1 : static_cast<int>(rng.below(7)) - 3;
    T b = fp_pack<T>(rng.coin(), random_exponent<T>(rng), random_fraction<T>(rng));
    T c = related_operand<T>(rng, b);
    T a = addend_for<T>(rng, b, c);
    const int a_exp = fp_exp_field(a), b_exp = fp_exp_field(b);
    if (a_exp == 0 || a_exp == F::exp_max || b_exp == 0 || b_exp == F::exp_max) continue;
    if (a_exp + scale < 1 || a_exp + scale >= F::exp_max || b_exp + scale < 1 ||
        b_exp + scale >= F::exp_max)
      continue;
    const T a_scaled = static_cast<T>(a + (static_cast<T>(scale) << F::M));
    const T b_scaled = static_cast<T>(b + (static_cast<T>(scale) << F::M));
    const FPSCR controls = random_fpscr(rng);
    const int mode = fp_mode_of(controls);
    int flags = 0;
    T got = fp_muladd_scaled<T>(a, b, c, scale, mode, &flags);
    host_result want = host_fmadd(a_scaled, b_scaled, c, controls);
    ++compared;
    ASSERT_EQ(got, static_cast<T>(want.bits))
        << std::hex << "a " << a << " b " << b << " c " << c << " scale " << std::dec << scale;
    ASSERT_EQ(static_cast<uint32_t>(flags), want.fpsr & FP_FLAG_BITS)
        << std::hex << "a " << a << " b " << b << " c " << c << " scale " << std::dec << scale;
  }
  EXPECT_GT(compared, kDraws / 10);
}

constexpr uint32_t kOne = 0x3f800000, kInf = 0x7f800000, kQuiet = 0x7fc00001,
                   kSignalling = 0x7f800001;

TEST(FpMulAddCorners, QuietNanAddendDoesNotHideZeroTimesInfinity) {
  FPSCR fpscr = 0;
  EXPECT_EQ(FPMulAdd<uint32_t>(kQuiet, 0, kInf, fpscr), 0x7fc00000u);
  EXPECT_EQ(fpscr, static_cast<FPSCR>(FP_IOC));
  fpscr = 0;
  EXPECT_EQ(FPMulAdd<uint32_t>(kSignalling, kInf, 0x80000000, fpscr), 0x7fc00001u);
  EXPECT_EQ(fpscr, static_cast<FPSCR>(FP_IOC));
  fpscr = FPSCR_DN;
  EXPECT_EQ(FPMulAdd<uint32_t>(kSignalling, 0, kInf, fpscr), 0x7fc00000u);
  fpscr = 0;
  EXPECT_EQ(FPMulAdd<uint32_t>(kOne, 0, kInf, fpscr), 0x7fc00000u);
  EXPECT_EQ(fpscr, static_cast<FPSCR>(FP_IOC));
}

TEST(FpMulAddCorners, ScaledResultJustAboveTheSmallestNormalRoundsOnce) {
  int flags = 0;
  // (2^-126 + 2^-148) / 2 is the exact denormal 0x00400001.
  EXPECT_EQ(fp32_muladd(0, 0x00800002, kOne, -1, 0, &flags), 0x00400001u);
  EXPECT_EQ(flags, 0);
  // (2^-126 + 2^-149) / 2 is half way between two denormals: ties to even.
  EXPECT_EQ(fp32_muladd(0, 0x00800001, kOne, -1, 0, &flags), 0x00400000u);
  EXPECT_EQ(flags, FP_UFC | FP_IXC);
}

TEST(FpMulAddCorners, HalfProductOfTwoDenormals) {
  int flags = 0;
  // 2^-14 x 0x3ff x 2^-24 + 2^-14 x ... : the product of two denormals is far
  // below the half range and only its sticky bit reaches the sum.
  EXPECT_EQ(fp16_muladd(0x0400, 0x03ff, 0x03ff, 0, FPRounding_POSINF, &flags), 0x0401);
  EXPECT_EQ(flags, FP_IXC);
  // A denormal times a large normal brings the denormal's bits back up.
  flags = 0;
  EXPECT_EQ(fp16_muladd(0, 0x0001, 0x7800, 0, 0, &flags), 0x1800); // 2^-24 x 2^15
  EXPECT_EQ(flags, 0);
}

} // namespace
