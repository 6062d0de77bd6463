// The exponential and trigonometric accelerators and the power-of-two
// scale exist only as SVE instructions, so this program runs where SVE is
// present at a 48-byte vector length and compares the library element by
// element with fexpa, ftsmul, ftmad and fscale.
#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <type_traits>

#include "fp/fp_trig_exp.h"
#include "fp_host/fp_random.h"
#include "state/vector_length.h"

namespace {

struct vector_bytes {
  alignas(16) uint8_t b[kDefaultVectorBytes];
};

// z0 <- insn(z0, z1) with p0 all true under fpcr; returns FPSR. The
// compiler knows nothing of SVE and keeps nothing of its own in z0, z1, p0.
#define SVE_BINARY(name, insn)                                                                     \
  uint32_t name(const vector_bytes& a, const vector_bytes& b, vector_bytes* out, uint32_t fpcr) {  \
    uint64_t fpsr;                                                                                 \
    asm volatile(".arch_extension sve\n\t"                                                         \
                 "ldr z0, [%[a]]\n\t"                                                              \
                 "ldr z1, [%[b]]\n\t"                                                              \
                 "ptrue p0.b\n\t"                                                                  \
                 "msr fpcr, %[c]\n\t"                                                              \
                 "msr fpsr, xzr\n\t" insn "\n\t"                                                   \
                 "mrs %[s], fpsr\n\t"                                                              \
                 "str z0, [%[o]]\n\t"                                                              \
                 "msr fpcr, xzr"                                                                   \
                 : [s] "=&r"(fpsr)                                                                 \
                 : [a] "r"(a.b), [b] "r"(b.b), [o] "r"(out->b), [c] "r"(uint64_t{fpcr})            \
                 : "v0", "v1", "p0", "memory");                                                    \
    return static_cast<uint32_t>(fpsr);                                                            \
  }

SVE_BINARY(sve_fexpa16, "fexpa z0.h, z0.h")
SVE_BINARY(sve_fexpa32, "fexpa z0.s, z0.s")
SVE_BINARY(sve_fexpa64, "fexpa z0.d, z0.d")
SVE_BINARY(sve_ftsmul16, "ftsmul z0.h, z0.h, z1.h")
SVE_BINARY(sve_ftsmul32, "ftsmul z0.s, z0.s, z1.s")
SVE_BINARY(sve_ftsmul64, "ftsmul z0.d, z0.d, z1.d")
SVE_BINARY(sve_fscale16, "fscale z0.h, p0/m, z0.h, z1.h")
SVE_BINARY(sve_fscale32, "fscale z0.s, p0/m, z0.s, z1.s")
SVE_BINARY(sve_fscale64, "fscale z0.d, p0/m, z0.d, z1.d")
#define SVE_FTMAD(n)                                                                               \
  SVE_BINARY(sve_ftmad16_##n, "ftmad z0.h, z0.h, z1.h, #" #n)                                      \
  SVE_BINARY(sve_ftmad32_##n, "ftmad z0.s, z0.s, z1.s, #" #n)                                      \
  SVE_BINARY(sve_ftmad64_##n, "ftmad z0.d, z0.d, z1.d, #" #n)
SVE_FTMAD(0)
SVE_FTMAD(1)
SVE_FTMAD(2)
SVE_FTMAD(3)
SVE_FTMAD(4)
SVE_FTMAD(5)
SVE_FTMAD(6)
SVE_FTMAD(7)

using sve_op = uint32_t (*)(const vector_bytes&, const vector_bytes&, vector_bytes*, uint32_t);

template <typename T> struct sve_ops;
#define SVE_OPS(T, w)                                                                              \
  template <> struct sve_ops<T> {                                                                  \
    static constexpr sve_op fexpa = sve_fexpa##w, ftsmul = sve_ftsmul##w, fscale = sve_fscale##w;  \
    static constexpr sve_op ftmad[8] = {sve_ftmad##w##_0, sve_ftmad##w##_1, sve_ftmad##w##_2,      \
                                        sve_ftmad##w##_3, sve_ftmad##w##_4, sve_ftmad##w##_5,      \
                                        sve_ftmad##w##_6, sve_ftmad##w##_7};                       \
  };
SVE_OPS(uint16_t, 16)
SVE_OPS(uint32_t, 32)
SVE_OPS(uint64_t, 64)

template <typename T> T lane(const vector_bytes& v, unsigned i) {
  T x;
  std::memcpy(&x, v.b + i * sizeof(T), sizeof x);
  return x;
}
template <typename T> void set_lane(vector_bytes* v, unsigned i, T x) {
  std::memcpy(v->b + i * sizeof(T), &x, sizeof x);
}

// The flags that the SVE unit raised since run_draws began: draws that
// never reach a flag cannot show that the library raises it correctly.
uint32_t native_flags_seen;

// Runs one instruction on a vector of operand pairs and the library on each
// pair, and compares lane by lane. FPSR gathers the flags of all lanes, so
// the library's flags are gathered the same way; callers that want each
// pair's flags on their own fill every lane with the same pair.
template <typename T, typename Lib>
int compare_vector(const char* what, sve_op native, Lib lib, const vector_bytes& a,
                   const vector_bytes& b, uint32_t fpcr) {
  vector_bytes out;
  const uint32_t native_flags = native(a, b, &out, fpcr) & FP_FLAG_BITS;
  native_flags_seen |= native_flags;
  FPSCR fpscr = fpcr;
  int mismatches = 0;
  for (unsigned i = 0; i < kDefaultVectorBytes / sizeof(T); ++i) {
    const T got = lib(lane<T>(a, i), lane<T>(b, i), fpscr);
    const T want = lane<T>(out, i);
    if (got != want && ++mismatches <= 4)
      ADD_FAILURE() << what << std::hex << " a=0x" << uint64_t{lane<T>(a, i)} << " b=0x"
                    << uint64_t{lane<T>(b, i)} << " fpcr=0x" << fpcr << ": library 0x"
                    << uint64_t{got} << ", SVE 0x" << uint64_t{want};
  }
  EXPECT_EQ(fpscr & ~FP_FLAG_BITS, fpcr) << what << ": control bits changed";
  if ((fpscr & FP_FLAG_BITS) != native_flags) {
    ++mismatches;
    ADD_FAILURE() << what << std::hex << " fpcr=0x" << fpcr << ": library flags 0x"
                  << (fpscr & FP_FLAG_BITS) << ", SVE flags 0x" << native_flags
                  << " (first pair a=0x" << uint64_t{lane<T>(a, 0)} << " b=0x"
                  << uint64_t{lane<T>(b, 0)} << ")";
  }
  return mismatches;
}

// Every flag but division by zero; half precision inputs are flushed
// without a flag.
template <typename T> constexpr uint32_t arithmetic_flags() {
  return FP_IOC | FP_OFC | FP_UFC | FP_IXC | (sizeof(T) == 2 ? 0 : FP_IDC);
}

// Half of the vectors hold one pair in every lane, so that its flags are
// compared exactly; the others hold a different pair in each lane.
template <typename T, typename DrawA, typename DrawB, typename Check>
uint32_t run_draws(fp_rng& rng, int vectors, DrawA draw_a, DrawB draw_b, Check check) {
  int failures = 0;
  native_flags_seen = 0;
  for (int v = 0; v < vectors && failures < 10; ++v) {
    vector_bytes a, b;
    const bool same = v & 1;
    T pa = draw_a(rng), pb = draw_b(rng);
    for (unsigned i = 0; i < kDefaultVectorBytes / sizeof(T); ++i) {
      if (!same) pa = draw_a(rng), pb = draw_b(rng);
      set_lane(&a, i, pa);
      set_lane(&b, i, pb);
    }
    failures += check(a, b, random_fpscr(rng));
  }
  EXPECT_EQ(failures, 0);
  return native_flags_seen;
}

template <typename T> T fexpa_lib(T op, T, FPSCR&) { return FPEXPA<T>(op); }

// Every index with exponents from both ends and the middle, and random
// patterns whose bits above the exponent must be ignored.
template <typename T> void check_fexpa() {
  const unsigned index_bits = sizeof(T) == 2 ? 5 : 6;
  const unsigned exp_bits = fp_format<T>::E;
  const unsigned lanes = kDefaultVectorBytes / sizeof(T);
  int failures = 0;
  unsigned filled = 0;
  vector_bytes a{}, b{};
  for (uint64_t e : {uint64_t{0}, uint64_t{1}, (uint64_t{1} << (exp_bits - 1)) - 1,
                     (uint64_t{1} << exp_bits) - 2, (uint64_t{1} << exp_bits) - 1}) {
    for (uint64_t i = 0; i < (uint64_t{1} << index_bits); ++i) {
      set_lane(&a, filled++, static_cast<T>((e << index_bits) | i));
      if (filled == lanes) {
        failures += compare_vector<T>("FPEXPA", sve_ops<T>::fexpa, fexpa_lib<T>, a, b, 0);
        filled = 0;
      }
    }
  }
  fp_rng rng{0xe4a0u + sizeof(T)};
  auto bits = [](fp_rng& r) { return static_cast<T>(r.next()); };
  run_draws<T>(rng, 400, bits, bits, [](auto& x, auto& y, uint32_t fpcr) {
    return compare_vector<T>("FPEXPA", sve_ops<T>::fexpa, fexpa_lib<T>, x, y, fpcr);
  });
  EXPECT_EQ(failures, 0);
}

TEST(ExponentialStart, HalfAgainstSve) { check_fexpa<uint16_t>(); }
TEST(ExponentialStart, SingleAgainstSve) { check_fexpa<uint32_t>(); }
TEST(ExponentialStart, DoubleAgainstSve) { check_fexpa<uint64_t>(); }

// The sign selector is an integer lane: bit 0 counts, the rest is noise.
template <typename T> T draw_selector(fp_rng& rng) {
  return rng.coin() ? static_cast<T>(rng.next() & 3) : random_operand<T>(rng);
}

template <typename T> void check_ftsmul() {
  fp_rng rng{0x75u + sizeof(T)};
  const uint32_t seen = run_draws<T>(
      rng, 6000, random_operand<T>, draw_selector<T>, [](auto& x, auto& y, uint32_t fpcr) {
        return compare_vector<T>("FPTRISMUL", sve_ops<T>::ftsmul, FPTRISMUL<T>, x, y, fpcr);
      });
  EXPECT_EQ(seen, arithmetic_flags<T>());
}

TEST(TrigSquare, HalfAgainstSve) { check_ftsmul<uint16_t>(); }
TEST(TrigSquare, SingleAgainstSve) { check_ftsmul<uint32_t>(); }
TEST(TrigSquare, DoubleAgainstSve) { check_ftsmul<uint64_t>(); }

// Arguments of a polynomial step are small: the square of a reduced angle
// and a partial sum. Such pairs bring out the coefficients' own bits;
// general draws bring the special cases.
template <typename T> T draw_small(fp_rng& rng) {
  if (rng.below(3) == 0) return random_operand<T>(rng);
  const int exp = fp_format<T>::bias - static_cast<int>(rng.below(12));
  return fp_pack<T>(rng.coin(), exp, static_cast<T>(rng.next()));
}

template <typename T> void check_ftmad() {
  fp_rng rng{0x77adu + sizeof(T)};
  uint32_t seen = 0;
  for (unsigned x = 0; x < 8; ++x) {
    seen |=
        run_draws<T>(rng, 1000, draw_small<T>, draw_small<T>, [x](auto& a, auto& b, uint32_t fpcr) {
          auto lib = [x](T op1, T op2, FPSCR& s) { return FPTRIMADD<T>(x, op1, op2, s); };
          return compare_vector<T>("FPTRIMADD", sve_ops<T>::ftmad[x], lib, a, b, fpcr);
        });
  }
  EXPECT_EQ(seen, arithmetic_flags<T>());
}

TEST(TrigMultiplyAdd, HalfAgainstSve) { check_ftmad<uint16_t>(); }
TEST(TrigMultiplyAdd, SingleAgainstSve) { check_ftmad<uint32_t>(); }
TEST(TrigMultiplyAdd, DoubleAgainstSve) { check_ftmad<uint64_t>(); }

// Scale factors: small ones, ones that cross the range of the format from
// either end, ones beyond the clamp, and the extremes of the lane.
template <typename T> T draw_scale(fp_rng& rng) {
  using S = std::make_signed_t<T>;
  const int64_t span = int64_t{2} << fp_format<T>::E;
  switch (rng.below(5)) {
  case 0:
    return static_cast<T>(static_cast<S>(static_cast<int64_t>(rng.below(9)) - 4));
  case 1:
  case 2:
    return static_cast<T>(static_cast<S>(static_cast<int64_t>(rng.below(2 * span)) - span));
  case 3:
    return rng.coin() ? static_cast<T>(std::numeric_limits<S>::max())
                      : static_cast<T>(std::numeric_limits<S>::min());
  default:
    return static_cast<T>(rng.next());
  }
}

uint16_t fscale16(uint16_t op, uint16_t n, FPSCR& s) {
  return FPScale16(op, static_cast<short>(n), s);
}
uint32_t fscale32(uint32_t op, uint32_t n, FPSCR& s) {
  return FPScale32(op, static_cast<int>(n), s);
}
uint64_t fscale64(uint64_t op, uint64_t n, FPSCR& s) {
  return FPScale64(op, static_cast<long>(n), s);
}

template <typename T, typename Lib> void check_fscale(Lib lib) {
  fp_rng rng{0x5ca1eu + sizeof(T)};
  const uint32_t seen = run_draws<T>(
      rng, 6000, random_operand<T>, draw_scale<T>, [lib](auto& a, auto& b, uint32_t fpcr) {
        return compare_vector<T>("FPScale", sve_ops<T>::fscale, lib, a, b, fpcr);
      });
  EXPECT_EQ(seen, arithmetic_flags<T>());
}

TEST(Scale, HalfAgainstSve) { check_fscale<uint16_t>(fscale16); }
TEST(Scale, SingleAgainstSve) { check_fscale<uint32_t>(fscale32); }
TEST(Scale, DoubleAgainstSve) { check_fscale<uint64_t>(fscale64); }

} // namespace
