// Add, subtract, multiply and the extended multiply against the processor's
// scalar instructions, over operands biased to the hard cases and every
// combination of rounding mode, FZ, DN and FZ16; then the corners whose
// exact result is worth reading in the test itself.
#include <gtest/gtest.h>

#include "fp/fp_add_mul.h"
#include "fp_host/fp_random.h"
#include "fp_host/host_fp.h"

namespace {

constexpr int kDraws = 300000;

// How often the host reported each flag: a draw that never reaches a flag
// cannot show that the library raises it correctly.
struct flag_census {
  int seen[8] = {};
  void count(uint32_t fpsr) {
    for (int bit = 0; bit < 8; ++bit)
      if (fpsr & (1u << bit)) ++seen[bit];
  }
};

template <typename T, typename Lib, typename Host>
flag_census compare_binary(uint64_t seed, Lib lib, Host host) {
  fp_rng rng{seed};
  flag_census census;
  for (int i = 0; i < kDraws; ++i) {
    T a = random_operand<T>(rng);
    T b = related_operand<T>(rng, a);
    if (rng.coin()) std::swap(a, b);
    const FPSCR controls = random_fpscr(rng);
    // Flags already set must survive: the library only ever adds. The
    // library's word may hold trap enables; the processor's never does.
    const FPSCR before = controls | (rng.coin() ? FP_DZC : 0) | random_trap_enables(rng);
    FPSCR fpscr = before;
    T got = lib(a, b, fpscr);
    host_result want = host(a, b, controls);
    census.count(want.fpsr);
    EXPECT_EQ(got, static_cast<T>(want.bits))
        << std::hex << "a " << a << " b " << b << " fpscr " << controls;
    EXPECT_EQ(fpscr, before | (want.fpsr & FP_FLAG_BITS))
        << std::hex << "a " << a << " b " << b << " fpscr " << controls;
    if (::testing::Test::HasFailure()) break;
  }
  return census;
}

template <typename T> class FpAddMulDifferential : public ::testing::Test {};
using FpWidths = ::testing::Types<uint16_t, uint32_t, uint64_t>;
TYPED_TEST_SUITE(FpAddMulDifferential, FpWidths);

// Half inputs never raise IDC, so the census leaves that flag out for them.
template <typename T> void expect_flags_reached(const flag_census& c) {
  EXPECT_GT(c.seen[0], 100) << "IOC";
  EXPECT_GT(c.seen[2], 100) << "OFC";
  EXPECT_GT(c.seen[3], 100) << "UFC";
  EXPECT_GT(c.seen[4], 1000) << "IXC";
  if (sizeof(T) != 2) {
    EXPECT_GT(c.seen[7], 100) << "IDC";
  }
}

TYPED_TEST(FpAddMulDifferential, AddSubMulMulX) {
  using T = TypeParam;
  {
    SCOPED_TRACE("add");
    expect_flags_reached<T>(
        compare_binary<T>(11, FPAdd<T>, [](T a, T b, FPSCR s) { return host_fadd(a, b, s); }));
  }
  {
    SCOPED_TRACE("sub");
    expect_flags_reached<T>(
        compare_binary<T>(22, FPSub<T>, [](T a, T b, FPSCR s) { return host_fsub(a, b, s); }));
  }
  {
    SCOPED_TRACE("mul");
    expect_flags_reached<T>(
        compare_binary<T>(33, FPMul<T>, [](T a, T b, FPSCR s) { return host_fmul(a, b, s); }));
  }
  {
    SCOPED_TRACE("mulx");
    expect_flags_reached<T>(
        compare_binary<T>(44, FPMulX<T>, [](T a, T b, FPSCR s) { return host_fmulx(a, b, s); }));
  }
}

constexpr FPSCR kNegInf = FPRounding_NEGINF << FPSCR_RMODE_SHIFT;

TEST(FpAddCorners, SignOfAnExactZeroSum) {
  FPSCR fpscr = 0;
  const uint32_t x = 0x40490fdb;
  EXPECT_EQ(FPAdd<uint32_t>(x, FPNeg(x), fpscr), 0u);
  EXPECT_EQ(FPAdd<uint16_t>(0x0000, 0x8000, fpscr), 0x0000);
  EXPECT_EQ(FPAdd<uint16_t>(0x8000, 0x8000, fpscr), 0x8000);
  EXPECT_EQ(fpscr, 0u);
  fpscr = kNegInf;
  EXPECT_EQ(FPAdd<uint32_t>(x, FPNeg(x), fpscr), 0x80000000u);
  EXPECT_EQ(FPAdd<uint64_t>(0, 0x8000000000000000ull, fpscr), 0x8000000000000000ull);
  EXPECT_EQ(fpscr, kNegInf);
}

TEST(FpAddCorners, InfinitiesAndTheSignOfANanSubtrahend) {
  FPSCR fpscr = 0;
  EXPECT_EQ(FPSub<uint32_t>(0x7f800000, 0x7f800000, fpscr), 0x7fc00000u);
  EXPECT_EQ(fpscr, static_cast<FPSCR>(FP_IOC)) << "default NaN even with DN clear";
  fpscr = 0;
  EXPECT_EQ(FPSub<uint32_t>(0x7f800000, 0xff800000, fpscr), 0x7f800000u);
  EXPECT_EQ(FPSub<uint64_t>(0x3ff0000000000000ull, 0xfff8000000000123ull, fpscr),
            0xfff8000000000123ull);
  EXPECT_EQ(fpscr, 0u);
}

TEST(FpSign, NegAndAbsTouchOnlyTheSignBit) {
  EXPECT_EQ(FPNeg<uint16_t>(0x7d01), 0xfd01) << "a signalling NaN stays signalling";
  EXPECT_EQ(FPNeg<uint64_t>(0x8000000000000000ull), 0u);
  EXPECT_EQ(FPAbs<uint32_t>(0xff800001), 0x7f800001u);
  EXPECT_EQ(FPAbs<uint64_t>(0x3ff0000000000000ull), 0x3ff0000000000000ull);
}

} // namespace
