// Conversions and rounding to integral of the generic tier.
#include <gtest/gtest.h>

#include <cstring>
#include <type_traits>

#include "generic/fp_conversions.h"
#include "loop_check.h"

namespace {
using namespace generic;
using namespace generic_fp_test;

constexpr uint32_t kAhpFz16 = FPSCR_AHP | FPSCR_FZ16;

// A conversion over containers of C with its source, of type Source, in the
// low bits: an integer extended by its sign, or a floating-point pattern
// drawn from the hard cases. The host runs under the controls with
// `fpcr_clear` taken out.
template <typename C, typename Source>
void convert_against_host(VecFn<C> fn, uint64_t (*host_op)(uint64_t), uint32_t fpcr_clear,
                          const char* what) {
  constexpr bool narrower_float = !std::is_signed_v<Source> && sizeof(Source) < sizeof(C);
  for_random_cases(40, [&](draw& d, uint32_t vl, CpuContext& ctx) {
    const VecV a = d.vector<C>(vl);
    VecV b = d.vector<C>(vl);
    const PredV g = d.predicate();
    expectation<C> want(a, ctx.fpsr);
    for (unsigned i = 0; i < vl * 8 / sizeof(C); ++i) {
      if constexpr (narrower_float) // its own hard cases in the low bits
        set_element<C>(
            b, i, C((element<C>(b, i) & ~C(Source(~Source(0)))) | random_operand<Source>(d.rng)));
      const Source x = Source(element<C>(b, i));
      const uint64_t operand = std::is_signed_v<Source> ? uint64_t(int64_t(x)) : uint64_t(x);
      if (active(g, i, sizeof(C)))
        want.compute(i, ctx.fpcr & ~fpcr_clear, [&] { return C(host_op(operand)); });
    }
    VecV out;
    fn(&out, &a, &g, &b, &ctx);
    expect_elements<C>(want.value, out, vl, what);
    ASSERT_EQ(ctx.fpsr, want.fpsr) << what;
  });
}

TEST(Conversions, FromIntegersRoundByTheControls) {
  convert_against_host<uint16_t, int16_t>(VecF16FromS2VM, host::scvtf_h, 0, "scvtf h, 16");
  convert_against_host<uint16_t, uint16_t>(VecF16FromU2VM, host::ucvtf_h, 0, "ucvtf h, 16");
  convert_against_host<uint32_t, int32_t>(VecF16FromS4VM, host::scvtf_h, 0, "scvtf h, 32");
  convert_against_host<uint32_t, uint32_t>(VecF16FromU4VM, host::ucvtf_h, 0, "ucvtf h, 32");
  convert_against_host<uint64_t, int64_t>(VecF16FromS8VM, host::scvtf_h, 0, "scvtf h, 64");
  convert_against_host<uint64_t, uint64_t>(VecF16FromU8VM, host::ucvtf_h, 0, "ucvtf h, 64");
  convert_against_host<uint64_t, uint64_t>(VecF64FromU8VM, host::ucvtf_s, 0, "ucvtf s, 64");
}

TEST(Conversions, ToIntegersSaturateTowardsZero) {
  convert_against_host<uint32_t, uint16_t>(VecS32_4FromHVM, host::fcvtzs_w_h, 0, "fcvtzs 32, h");
  convert_against_host<uint32_t, uint16_t>(VecU32_4FromHVM, host::fcvtzu_w_h, 0, "fcvtzu 32, h");
  convert_against_host<uint64_t, uint16_t>(VecS64_8FromHVM, host::fcvtzs_x_h, 0, "fcvtzs 64, h");
  convert_against_host<uint64_t, uint16_t>(VecU64_8FromHVM, host::fcvtzu_x_h, 0, "fcvtzu 64, h");
  convert_against_host<uint64_t, uint32_t>(VecU64_8FromFVM, host::fcvtzu_x_s, 0, "fcvtzu 64, s");
}

// The 16-bit results saturate at 16 bits, which no scalar instruction does.
TEST(Conversions, SixteenBitResultsSaturateAtTheirWidth) {
  CpuContext ctx{};
  ctx.vl = 6;
  VecV a{}, b{};
  set_element<uint16_t>(b, 0, 0x7bff); // 65504.0
  set_element<uint16_t>(b, 1, 0xfbff); // -65504.0
  set_element<uint16_t>(b, 2, 0x5640); // 100.0
  const PredV g = {{~uint64_t{0}, 0, 0, 0}};
  VecV out;
  VecS16_2FromHVM(&out, &a, &g, &b, &ctx);
  EXPECT_EQ(element<uint16_t>(out, 0), 0x7fffu);
  EXPECT_EQ(element<uint16_t>(out, 1), 0x8000u);
  EXPECT_EQ(element<uint16_t>(out, 2), 100u);
  EXPECT_EQ(ctx.fpsr, uint32_t{FP_IOC});
  ctx.fpsr = 0;
  VecU16_2FromHVM(&out, &a, &g, &b, &ctx);
  EXPECT_EQ(element<uint16_t>(out, 0), 65504u);
  EXPECT_EQ(element<uint16_t>(out, 1), 0u);
  EXPECT_EQ(ctx.fpsr, uint32_t{FP_IOC});
}

// FCVT to and from half ignores AHP and FZ16: the host is run without them.
TEST(Conversions, BetweenFormatsIgnoreAlternativeHalfAndHalfFlush) {
  convert_against_host<uint32_t, uint16_t>(VecF32ExtndHVM, host::fcvt_s_h, kAhpFz16, "fcvt s, h");
  convert_against_host<uint64_t, uint16_t>(VecD64ExtndHVM, host::fcvt_d_h, kAhpFz16, "fcvt d, h");
  convert_against_host<uint32_t, uint32_t>(VecH32TruncFVM, host::fcvt_h_s, kAhpFz16, "fcvt h, s");
  convert_against_host<uint64_t, uint64_t>(VecH64TruncDVM, host::fcvt_h_d, kAhpFz16, "fcvt h, d");
}

TYPED_TEST_SUITE(EveryWidth, Widths);

TYPED_TEST(EveryWidth, RoundToIntegralLikeTheHost) {
  using T = TypeParam;
  merging_against_host<T>(by_width<T>(VecF16FRIntIVM, VecF32FRIntIVM, VecD64FRIntIVM),
                          host::frinti<T>, true, "frinti");
  merging_against_host<T>(by_width<T>(VecF16FRIntXVM, VecF32FRIntXVM, VecD64FRIntXVM),
                          host::frintx<T>, true, "frintx");
  merging_against_host<T>(by_width<T>(VecF16FRIntAVM, VecF32FRIntAVM, VecD64FRIntAVM),
                          host::frinta<T>, true, "frinta");
}

// The fixed roundings ignore the controls: 2.5 and -2.5 in every letter.
TEST(RoundToIntegral, FixedLettersIgnoreTheControls) {
  CpuContext ctx{};
  ctx.vl = 1;
  ctx.fpcr = 3u << FPSCR_RMODE_SHIFT; // towards zero, which only I and X follow
  VecV a{}, b{};
  set_element<uint16_t>(b, 0, 0x4100); // 2.5
  set_element<uint16_t>(b, 1, 0xc100); // -2.5
  const PredV g = {{~uint64_t{0}, 0, 0, 0}};
  struct letter {
    VecFn<uint16_t> fn;
    uint16_t plus, minus;
  };
  const letter letters[] = {{VecF16FRIntNVM, 0x4000, 0xc000}, {VecF16FRIntPVM, 0x4200, 0xc000},
                            {VecF16FRIntMVM, 0x4000, 0xc200}, {VecF16FRIntZVM, 0x4000, 0xc000},
                            {VecF16FRIntAVM, 0x4200, 0xc200}, {VecF16FRIntIVM, 0x4000, 0xc000}};
  for (const letter& l : letters) {
    VecV out;
    l.fn(&out, &a, &g, &b, &ctx);
    EXPECT_EQ(element<uint16_t>(out, 0), l.plus);
    EXPECT_EQ(element<uint16_t>(out, 1), l.minus);
  }
  EXPECT_EQ(ctx.fpsr, 0u); // only X reports the lost fraction
  VecV out;
  VecF16FRIntXVM(&out, &a, &g, &b, &ctx);
  EXPECT_EQ(ctx.fpsr, uint32_t{FP_IXC});
}

} // namespace
