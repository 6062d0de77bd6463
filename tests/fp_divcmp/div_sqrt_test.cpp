// Division and square root against the host's fdiv and fsqrt, bit for bit
// with flags, in every rounding mode and flush setting, and the corners that
// random pairs rarely reach: exact quotients, perfect squares, and every half
// square root.
#include <gtest/gtest.h>

#include <utility>

#include "differential.h"
#include "draws.h"
#include "fp/fp_div_sqrt.h"
#include "host_divcmp.h"

namespace {

// Double division and root take the longest way to their result, with an
// estimate corrected by one unit, so they get more draws.
template <typename T> constexpr int draws_for() { return sizeof(T) == 8 ? 800000 : 200000; }

template <typename T> class FpDivSqrtDifferential : public ::testing::Test {};
using FpWidths = ::testing::Types<uint16_t, uint32_t, uint64_t>;
TYPED_TEST_SUITE(FpDivSqrtDifferential, FpWidths);

TYPED_TEST(FpDivSqrtDifferential, Divide) {
  using T = TypeParam;
  const flag_counts seen = expect_same_as_host<T>(
      draws_for<T>(), 0xd1f + sizeof(T),
      [](fp_rng& rng) {
        if (rng.below(4) == 0) return exact_quotient_pair<T>(rng);
        const T a = random_operand<T>(rng);
        return std::pair<T, T>{a, quotient_partner<T>(rng, a)};
      },
      [](T a, T b, FPSCR& fpscr) { return uint64_t(FPDiv<T>(a, b, fpscr)); },
      [](T a, T b, FPSCR c) { return host_bits<T>(host_fdiv(a, b, c)); });
  EXPECT_GT(seen.ioc(), 100);
  EXPECT_GT(seen.dzc(), 100);
  EXPECT_GT(seen.ofc(), 100);
  EXPECT_GT(seen.ufc(), 100);
  EXPECT_GT(seen.ixc(), 1000);
  if (sizeof(T) != 2) {
    EXPECT_GT(seen.idc(), 100);
  }
}

// Square roots are never tiny and never overflow: the flags to reach are
// inexact, invalid and input denormal.
TYPED_TEST(FpDivSqrtDifferential, SquareRoot) {
  using T = TypeParam;
  const flag_counts seen = expect_same_as_host<T>(
      draws_for<T>(), 0x5a7 + sizeof(T),
      [](fp_rng& rng) {
        return std::pair<T, T>{rng.below(3) ? random_operand<T>(rng) : square_or_neighbour<T>(rng),
                               T(0)};
      },
      [](T a, T, FPSCR& fpscr) { return uint64_t(FPSqrt<T>(a, fpscr)); },
      [](T a, T, FPSCR c) { return host_bits<T>(host_fsqrt(a, c)); });
  EXPECT_GT(seen.ioc(), 100);
  EXPECT_GT(seen.ixc(), 1000);
  if (sizeof(T) != 2) {
    EXPECT_GT(seen.idc(), 100);
  }
}

// FPSqrt<T> of every pattern first..last, under the control word that
// controls_of(pattern) picks, against the host.
template <typename T, typename Controls>
void sqrt_sweep(uint64_t first, uint64_t last, Controls controls_of) {
  int mismatches = 0;
  for (uint64_t op = first; op <= last; ++op) {
    const FPSCR fpcr = controls_of(op);
    FPSCR fpscr = fpcr;
    const T got = FPSqrt<T>(T(op), fpscr);
    const host_result want = host_fsqrt(T(op), fpcr);
    if ((got != T(want.bits) || fpscr != (fpcr | (want.fpsr & FP_FLAG_BITS))) &&
        ++mismatches <= 4) {
      ADD_FAILURE() << std::hex << "op 0x" << op << " fpcr 0x" << fpcr << " library 0x"
                    << uint64_t(got) << " fpscr 0x" << fpscr << ", host 0x" << want.bits
                    << " fpsr 0x" << want.fpsr;
    }
  }
  EXPECT_EQ(mismatches, 0);
}

// Every half pattern, under every rounding mode with and without FZ16 and
// DN: the whole input space of the half method.
TEST(FpSqrtSweep, EveryHalfOperand) {
  for (uint32_t c = 0; c < 16; ++c) {
    const FPSCR fpcr =
        ((c & 3) << FPSCR_RMODE_SHIFT) | (c & 4 ? FPSCR_FZ16 : 0) | (c & 8 ? FPSCR_DN : 0);
    sqrt_sweep<uint16_t>(0, 0xffff, [=](uint64_t) { return fpcr; });
  }
}

// The single method sees only the normalised mantissa and the exponent's
// parity, so two adjacent binades hold every case it can meet; the rounding
// mode turns with the pattern.
TEST(FpSqrtSweep, EverySingleMantissaInBothParities) {
  sqrt_sweep<uint32_t>(0x3f000000, 0x3fffffff,
                       [](uint64_t op) { return FPSCR(op & 3) << FPSCR_RMODE_SHIFT; });
}

} // namespace
