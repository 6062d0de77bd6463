// FPConvert and FPRoundInt against the processor's fcvt and frint*,
// over random operands and random control words.
#include "fp/fp_convert.h"
#include "host_convert.h"

namespace {

constexpr int kDraws = 100000;

HOST_UNARY(fcvt_hs, "fcvt", h, s)
HOST_UNARY(fcvt_hd, "fcvt", h, d)
HOST_UNARY(fcvt_sh, "fcvt", s, h)
HOST_UNARY(fcvt_sd, "fcvt", s, d)
HOST_UNARY(fcvt_dh, "fcvt", d, h)
HOST_UNARY(fcvt_ds, "fcvt", d, s)

template <typename T> bool is_denormal(T op) {
  using S = fp_format<T>;
  return !((op >> S::M) & ((1u << (S::W - 1 - S::M)) - 1)) && (op & ((T(1) << S::M) - 1));
}

template <typename T, typename U> void convert_against(HostFn host, const char* what) {
  fp_rng rng{sizeof(T) * 8 + sizeof(U)};
  Mismatches bad;
  for (int i = 0; i < kDraws; ++i) {
    const T op = draw_fp<T>(rng);
    const uint32_t fpcr = random_fpscr(rng);
    FPSCR fpscr = fpcr;
    const U got = FPConvert<T, U>(op, FPRounding((fpcr >> 22) & 3), fpscr);
    host_result want = host(op, fpcr);
    // The processor's conversion from half ignores FZ16; the library flushes
    // a denormal half source to zero under it, silently, so that one flush
    // rule holds for every half input.
    if (sizeof(T) == 2 && (fpcr & FPSCR_FZ16) && is_denormal(op))
      want = {uint64_t(op >> 15) << (sizeof(U) * 8 - 1), 0};
    bad.check(what, op, fpcr, want, got, fpscr);
  }
  EXPECT_EQ(bad.count, 0);
}

TEST(FPConvert, NarrowingMatchesProcessor) {
  convert_against<uint32_t, uint16_t>(fcvt_sh, "fcvt h, s");
  convert_against<uint64_t, uint16_t>(fcvt_dh, "fcvt h, d");
  convert_against<uint64_t, uint32_t>(fcvt_ds, "fcvt s, d");
}

TEST(FPConvert, WideningMatchesProcessor) {
  convert_against<uint16_t, uint32_t>(fcvt_hs, "fcvt s, h");
  convert_against<uint16_t, uint64_t>(fcvt_hd, "fcvt d, h");
  convert_against<uint32_t, uint64_t>(fcvt_sd, "fcvt d, s");
}

#define FRINT_FAMILY(src)                                                                          \
  HOST_UNARY(frintn_##src, "frintn", src, src)                                                     \
  HOST_UNARY(frintp_##src, "frintp", src, src)                                                     \
  HOST_UNARY(frintm_##src, "frintm", src, src)                                                     \
  HOST_UNARY(frintz_##src, "frintz", src, src)                                                     \
  HOST_UNARY(frinta_##src, "frinta", src, src)                                                     \
  HOST_UNARY(frintx_##src, "frintx", src, src)                                                     \
  HOST_UNARY(frinti_##src, "frinti", src, src)                                                     \
  const HostFn frint_##src[7] = {frintn_##src, frintp_##src, frintm_##src, frintz_##src,           \
                                 frinta_##src, frintx_##src, frinti_##src};
FRINT_FAMILY(h)
FRINT_FAMILY(s)
FRINT_FAMILY(d)

// host: frint n, p, m, z, a (indexed by FPRounding), then x and i, which
// follow the rounding mode of FPCR with and without the inexact flag.
template <typename T> void round_int_against(const HostFn (&host)[7], const char* what) {
  fp_rng rng{sizeof(T) * 3};
  Mismatches bad;
  for (int i = 0; i < kDraws; ++i) {
    const T op = draw_fp<T>(rng);
    const uint32_t fpcr = random_fpscr(rng);
    const FPRounding mode = FPRounding((fpcr >> 22) & 3);
    FPSCR fpscr = fpcr;
    bad.check(std::string(what) + "x", op, fpcr, host[5](op, fpcr),
              FPRoundInt<T>(op, mode, true, fpscr), fpscr);
    fpscr = fpcr;
    bad.check(std::string(what) + "i", op, fpcr, host[6](op, fpcr),
              FPRoundInt<T>(op, mode, false, fpscr), fpscr);
    // An explicit rounding, with the inexact flag asked for or not. frint
    // with an explicit rounding never raises it, so where it is asked for it
    // comes from frintx towards zero, which raises it exactly when the value
    // has a fraction.
    const int rounding = int(rng() % 5);
    const bool exact = rng() & 1;
    host_result want = host[rounding](op, fpcr);
    if (exact) want.fpsr |= host[5](op, (fpcr & ~(3u << 22)) | (3u << 22)).fpsr & FP_IXC;
    fpscr = fpcr;
    const T got = FPRoundInt<T>(op, FPRounding(rounding), exact, fpscr);
    bad.check(std::string(what) + "npmza"[rounding] + (exact ? " exact" : ""), op, fpcr, want, got,
              fpscr);
  }
  EXPECT_EQ(bad.count, 0);
}

TEST(FPRoundInt, HalfMatchesFrint) { round_int_against<uint16_t>(frint_h, "frint h "); }
TEST(FPRoundInt, SingleMatchesFrint) { round_int_against<uint32_t>(frint_s, "frint s "); }
TEST(FPRoundInt, DoubleMatchesFrint) { round_int_against<uint64_t>(frint_d, "frint d "); }

} // namespace
