// fplibFPToFixed and fplibFixedToFP against the processor's fcvt[npmza][su]
// and scvtf/ucvtf, with and without fraction bits, over random operands and
// random control words.
#include "fp/fp_convert.h"
#include "host_convert.h"

namespace {

constexpr int kDraws = 100000;

// One source and destination pair: the five roundings, signed and unsigned,
// indexed [u][FPRounding], and the fixed-point forms, which round to zero.
#define TO_INT_FAMILY(src, dst)                                                                    \
  HOST_UNARY(fcvtns_##src##dst, "fcvtns", src, dst)                                                \
  HOST_UNARY(fcvtps_##src##dst, "fcvtps", src, dst)                                                \
  HOST_UNARY(fcvtms_##src##dst, "fcvtms", src, dst)                                                \
  HOST_UNARY(fcvtzs_##src##dst, "fcvtzs", src, dst)                                                \
  HOST_UNARY(fcvtas_##src##dst, "fcvtas", src, dst)                                                \
  HOST_UNARY(fcvtnu_##src##dst, "fcvtnu", src, dst)                                                \
  HOST_UNARY(fcvtpu_##src##dst, "fcvtpu", src, dst)                                                \
  HOST_UNARY(fcvtmu_##src##dst, "fcvtmu", src, dst)                                                \
  HOST_UNARY(fcvtzu_##src##dst, "fcvtzu", src, dst)                                                \
  HOST_UNARY(fcvtau_##src##dst, "fcvtau", src, dst)                                                \
  const HostFn to_int_##src##dst[2][5] = {                                                         \
      {fcvtns_##src##dst, fcvtps_##src##dst, fcvtms_##src##dst, fcvtzs_##src##dst,                 \
       fcvtas_##src##dst},                                                                         \
      {fcvtnu_##src##dst, fcvtpu_##src##dst, fcvtmu_##src##dst, fcvtzu_##src##dst,                 \
       fcvtau_##src##dst}};                                                                        \
  HOST_FIXED(fcvtzs_fixed_##src##dst, "fcvtzs", src, dst);                                         \
  HOST_FIXED(fcvtzu_fixed_##src##dst, "fcvtzu", src, dst);

TO_INT_FAMILY(h, h)
TO_INT_FAMILY(h, w)
TO_INT_FAMILY(h, x)
TO_INT_FAMILY(s, w)
TO_INT_FAMILY(s, x)
TO_INT_FAMILY(d, w)
TO_INT_FAMILY(d, x)

template <typename T, typename U, typename FixedS, typename FixedU>
void to_fixed_against(const HostFn (&host)[2][5], const char* what) {
  constexpr int kMaxFbits = sizeof(U) * 8;
  fp_rng rng{sizeof(T) * 8 + sizeof(U)};
  Mismatches bad;
  for (int i = 0; i < kDraws; ++i) {
    const T op = draw_fp<T>(rng);
    const uint32_t fpcr = random_fpscr(rng);
    const bool u = rng() & 1;
    const int rounding = int(rng() % 5);
    const std::string name = std::string(what) + "npmza"[rounding] + (u ? "u" : "s");
    FPSCR fpscr = fpcr;
    U got = fplibFPToFixed<T, U>(op, 0, u, FPRounding(rounding), fpscr);
    bad.check(name, op, fpcr, host[u][rounding](op, fpcr), got, fpscr);

    const int fbits = 1 + int(rng() % kMaxFbits);
    const host_result want = u ? run_fixed<FixedU, kMaxFbits>(fbits, op, fpcr)
                               : run_fixed<FixedS, kMaxFbits>(fbits, op, fpcr);
    fpscr = fpcr;
    got = fplibFPToFixed<T, U>(op, fbits, u, FPRounding_ZERO, fpscr);
    bad.check(name + " #" + std::to_string(fbits), op, fpcr, want, got, fpscr);
  }
  EXPECT_EQ(bad.count, 0);
}

TEST(FPToFixed, HalfMatchesProcessor) {
  to_fixed_against<uint16_t, uint16_t, fcvtzs_fixed_hh, fcvtzu_fixed_hh>(to_int_hh, "fcvt h<-h ");
  to_fixed_against<uint16_t, uint32_t, fcvtzs_fixed_hw, fcvtzu_fixed_hw>(to_int_hw, "fcvt w<-h ");
  to_fixed_against<uint16_t, uint64_t, fcvtzs_fixed_hx, fcvtzu_fixed_hx>(to_int_hx, "fcvt x<-h ");
}

TEST(FPToFixed, SingleMatchesProcessor) {
  to_fixed_against<uint32_t, uint32_t, fcvtzs_fixed_sw, fcvtzu_fixed_sw>(to_int_sw, "fcvt w<-s ");
  to_fixed_against<uint32_t, uint64_t, fcvtzs_fixed_sx, fcvtzu_fixed_sx>(to_int_sx, "fcvt x<-s ");
}

TEST(FPToFixed, DoubleMatchesProcessor) {
  to_fixed_against<uint64_t, uint32_t, fcvtzs_fixed_dw, fcvtzu_fixed_dw>(to_int_dw, "fcvt w<-d ");
  to_fixed_against<uint64_t, uint64_t, fcvtzs_fixed_dx, fcvtzu_fixed_dx>(to_int_dx, "fcvt x<-d ");
}

// One integer source width to one format: signed and unsigned, plain and
// fixed-point, indexed [u].
#define FROM_INT_FAMILY(src, dst)                                                                  \
  HOST_UNARY(scvtf_##src##dst, "scvtf", src, dst)                                                  \
  HOST_UNARY(ucvtf_##src##dst, "ucvtf", src, dst)                                                  \
  HOST_FIXED(scvtf_fixed_##src##dst, "scvtf", src, dst);                                           \
  HOST_FIXED(ucvtf_fixed_##src##dst, "ucvtf", src, dst);                                           \
  const HostFn from_int_##src##dst[2] = {scvtf_##src##dst, ucvtf_##src##dst};

FROM_INT_FAMILY(w, h)
FROM_INT_FAMILY(w, s)
FROM_INT_FAMILY(w, d)
FROM_INT_FAMILY(x, h)
FROM_INT_FAMILY(x, s)
FROM_INT_FAMILY(x, d)

// Src is the integer register's width: a 32-bit source reaches the library
// sign- or zero-extended, as its callers pass it.
template <typename T, typename Src, typename FixedS, typename FixedU>
void from_fixed_against(const HostFn (&host)[2], const char* what) {
  constexpr int kMaxFbits = sizeof(Src) * 8;
  fp_rng rng{sizeof(T) * 8 + sizeof(Src)};
  Mismatches bad;
  for (int i = 0; i < kDraws; ++i) {
    const Src a = Src(draw_integer(rng));
    const bool u = rng() & 1;
    const uint64_t op = u ? uint64_t(a) : uint64_t(int64_t(std::make_signed_t<Src>(a)));
    uint32_t fpcr = random_fpscr(rng);
    const int fbits = rng() % 3 ? 0 : 1 + int(rng() % kMaxFbits);
    FPSCR fpscr = fpcr;
    const T got = fplibFixedToFP<T>(op, fbits, u, FPRounding((fpcr >> 22) & 3), fpscr);
    // The library never flushes a half result, where the processor does
    // under FZ16; only fraction bits make a result that small, and no
    // instruction we emulate has them.
    const uint32_t host_fpcr = sizeof(T) == 2 ? fpcr & ~FPSCR_FZ16 : fpcr;
    host_result want;
    if (!fbits)
      want = host[u](a, host_fpcr);
    else
      want = u ? run_fixed<FixedU, kMaxFbits>(fbits, a, host_fpcr)
               : run_fixed<FixedS, kMaxFbits>(fbits, a, host_fpcr);
    const std::string name =
        std::string(u ? "ucvtf " : "scvtf ") + what + " #" + std::to_string(fbits);
    bad.check(name, a, fpcr, want, got, fpscr);
  }
  EXPECT_EQ(bad.count, 0);
}

TEST(FixedToFP, ToHalfMatchesProcessor) {
  from_fixed_against<uint16_t, uint32_t, scvtf_fixed_wh, ucvtf_fixed_wh>(from_int_wh, "h<-w");
  from_fixed_against<uint16_t, uint64_t, scvtf_fixed_xh, ucvtf_fixed_xh>(from_int_xh, "h<-x");
}

TEST(FixedToFP, ToSingleMatchesProcessor) {
  from_fixed_against<uint32_t, uint32_t, scvtf_fixed_ws, ucvtf_fixed_ws>(from_int_ws, "s<-w");
  from_fixed_against<uint32_t, uint64_t, scvtf_fixed_xs, ucvtf_fixed_xs>(from_int_xs, "s<-x");
}

TEST(FixedToFP, ToDoubleMatchesProcessor) {
  from_fixed_against<uint64_t, uint32_t, scvtf_fixed_wd, ucvtf_fixed_wd>(from_int_wd, "d<-w");
  from_fixed_against<uint64_t, uint64_t, scvtf_fixed_xd, ucvtf_fixed_xd>(from_int_xd, "d<-x");
}

} // namespace
