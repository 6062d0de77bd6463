// The estimates, the exponent-only reciprocal and the Newton steps against
// the host's own frecpe, frsqrte, frecpx, frecps and frsqrts at all three
// widths, in every rounding mode with FZ, DN, FZ16 and AHP drawn at random;
// the unsigned estimates against urecpe and ursqrte.
#include <gtest/gtest.h>

#include "fp/fp_estimate.h"
#include "fp_host/fp_random.h"
#include "fp_host/host_fp.h"

namespace {

constexpr int kDraws = 200000;

// Compares one call and remembers which flags the host raised, so that a
// test can show its draws reached the branches behind them.
struct differential {
  uint32_t flags_seen = 0;
  int failures = 0;
  template <typename T>
  void check(const char* what, T got, FPSCR fpscr, FPSCR before, host_result want, uint64_t a,
             uint64_t b = 0) {
    flags_seen |= want.fpsr;
    // Flags already set survive, control bits are untouched.
    if (got == static_cast<T>(want.bits) && fpscr == (before | (want.fpsr & FP_FLAG_BITS))) return;
    if (++failures <= 8)
      ADD_FAILURE() << what << std::hex << " a=0x" << a << " b=0x" << b << " fpscr=0x" << before
                    << ": library 0x" << uint64_t{got} << " fpscr 0x" << fpscr << ", host 0x"
                    << want.bits << " flags 0x" << (want.fpsr & FP_FLAG_BITS);
  }
};

// Besides the shared draws: denormals on both sides of the point below
// which a reciprocal overflows (the top two fraction bits).
template <typename T> T estimate_operand(fp_rng& rng) {
  if (rng.below(8)) return random_operand<T>(rng);
  const int M = fp_format<T>::M;
  const T frac = static_cast<T>((rng.next() & fp_mantissa_mask<T>()) >> (1 + rng.below(3)));
  return fp_pack<T>(rng.coin(), 0, frac ? frac : T(1) << (M - 2));
}

template <typename T> void check_estimates(uint64_t seed) {
  fp_rng rng{seed};
  differential d;
  for (int i = 0; i < kDraws && d.failures == 0; ++i) {
    const T a = estimate_operand<T>(rng);
    const FPSCR controls = random_fpscr(rng);
    const FPSCR before = controls | (rng.coin() ? FP_IXC : 0);
    FPSCR s1 = before, s2 = before, s3 = before;
    d.check("FPRecipEstimate", FPRecipEstimate<T>(a, s1), s1, before, host_frecpe(a, controls), a);
    d.check("FPRSqrtEstimate", FPRSqrtEstimate<T>(a, s2), s2, before, host_frsqrte(a, controls), a);
    d.check("FPRecpX", FPRecpX<T>(a, s3), s3, before, host_frecpx(a, controls), a);
  }
  const uint32_t expected =
      FP_IOC | FP_DZC | FP_OFC | FP_UFC | FP_IXC | (sizeof(T) == 2 ? 0 : FP_IDC);
  EXPECT_EQ(d.flags_seen & FP_FLAG_BITS, expected) << "draws missed a flag";
}

TEST(Estimates, HalfAgainstHost) { check_estimates<uint16_t>(1); }
TEST(Estimates, SingleAgainstHost) { check_estimates<uint32_t>(2); }
TEST(Estimates, DoubleAgainstHost) { check_estimates<uint64_t>(3); }

// Every half pattern, under four combinations of FZ16, FZ and DN, in a
// rounding mode that rotates with the pattern.
TEST(Estimates, EveryHalfPattern) {
  differential d;
  for (FPSCR controls : {0u, FPSCR_FZ16, FPSCR_DN, FPSCR_FZ16 | FPSCR_DN | FPSCR_FZ}) {
    for (uint32_t bits = 0; bits <= 0xffff && d.failures == 0; ++bits) {
      const uint16_t a = static_cast<uint16_t>(bits);
      const FPSCR before = controls | ((bits * 7 >> 3) & 3) << FPSCR_RMODE_SHIFT;
      FPSCR s1 = before, s2 = before, s3 = before;
      d.check("FPRecipEstimate", FPRecipEstimate(a, s1), s1, before, host_frecpe(a, before), a);
      d.check("FPRSqrtEstimate", FPRSqrtEstimate(a, s2), s2, before, host_frsqrte(a, before), a);
      d.check("FPRecpX", FPRecpX(a, s3), s3, before, host_frecpx(a, before), a);
    }
  }
}

// Pairs for the Newton steps. Besides the shared pairs, the iteration's own
// operands (x and an estimate of its reciprocal), and powers of two whose
// product is exactly the addend, 2 or 3, for exact cancellation.
template <typename T> void draw_step_pair(fp_rng& rng, T* a, T* b, bool rsqrt) {
  using F = fp_format<T>;
  switch (rng.below(4)) {
  case 0:
    *a = random_operand<T>(rng);
    *b = static_cast<T>((rsqrt ? host_frsqrte(*a, 0) : host_frecpe(*a, 0)).bits);
    break;
  case 1: {
    const int k = 1 + static_cast<int>(rng.below(2 * F::bias));
    *a = fp_pack<T>(rng.coin(), k, rsqrt ? fp_quiet_bit<T>() : T(0));
    *b = fp_pack<T>(rng.coin(), 2 * F::bias + 1 - k, 0);
    break;
  }
  default:
    *a = random_operand<T>(rng);
    *b = related_operand<T>(rng, *a);
  }
  if (rng.coin()) std::swap(*a, *b);
}

template <typename T> void check_steps(uint64_t seed) {
  fp_rng rng{seed};
  differential d;
  for (int i = 0; i < kDraws && d.failures == 0; ++i) {
    const FPSCR controls = random_fpscr(rng);
    T a, b;
    FPSCR s1 = controls, s2 = controls;
    draw_step_pair<T>(rng, &a, &b, false);
    d.check("FPRecipStepFused", FPRecipStepFused<T>(a, b, s1), s1, controls,
            host_frecps(a, b, controls), a, b);
    draw_step_pair<T>(rng, &a, &b, true);
    d.check("FPRSqrtStepFused", FPRSqrtStepFused<T>(a, b, s2), s2, controls,
            host_frsqrts(a, b, controls), a, b);
  }
  // 2 - a x b is a multiple of the product's last place, so only half
  // precision can come close enough to 0 to underflow.
  const uint32_t expected = FP_IOC | FP_OFC | FP_IXC | (sizeof(T) == 2 ? FP_UFC : FP_IDC);
  EXPECT_EQ(d.flags_seen & FP_FLAG_BITS, expected) << "draws missed a flag";
}

TEST(NewtonSteps, HalfAgainstHost) { check_steps<uint16_t>(4); }
TEST(NewtonSteps, SingleAgainstHost) { check_steps<uint32_t>(5); }
TEST(NewtonSteps, DoubleAgainstHost) { check_steps<uint64_t>(6); }

TEST(UnsignedEstimates, AgainstHost) {
  fp_rng rng{7};
  int failures = 0;
  for (int i = 0; i < kDraws && failures < 8; ++i) {
    uint32_t op = static_cast<uint32_t>(rng.next());
    // The top two bits choose the form; only the top nine bits count.
    op >>= rng.below(3);
    if (rng.below(8) == 0) op |= 0x007fffffu;
    const uint64_t recpe = UnsignedRecipEstimate(op, 32), rsqrte = UnsignedRSqrtEstimate(op, 32);
    if (recpe == host_urecpe(op) && rsqrte == host_ursqrte(op)) continue;
    ++failures;
    ADD_FAILURE() << std::hex << "op=0x" << op << ": library 0x" << recpe << ", 0x" << rsqrte
                  << ", host 0x" << host_urecpe(op) << ", 0x" << host_ursqrte(op);
  }
}

} // namespace
