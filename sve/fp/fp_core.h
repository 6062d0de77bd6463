// Software floating point on raw half, single and double bit patterns: the
// control and status word, the three formats, unpacking, NaN selection,
// packing and the rounding routines that every operation of the library
// rests on. Results and flags are the architecture's, bit for bit, with two
// deliberate differences: exceptions are only recorded, never trapped, and
// underflow is tied to inexactness whatever the trap enables say.
//
// Operands are uint16_t (half), uint32_t (single) and uint64_t (double).
// Nothing here touches the host's floating-point unit.
#pragma once

#include <cstdint>

// One 32-bit word with the FPCR and FPSR bit positions laid over each other.
// Operations read its control bits and OR their flags into its low byte; they
// never clear a flag and never change a control bit.
typedef uint32_t FPSCR;

// Values 0 to 3 equal the RMode encoding, so (fpscr >> 22) & 3 is one.
enum FPRounding {
  FPRounding_TIEEVEN = 0,
  FPRounding_POSINF = 1,
  FPRounding_NEGINF = 2,
  FPRounding_ZERO = 3,
  FPRounding_TIEAWAY = 4,
  FPRounding_ODD = 5
};

// Flag bits, both in the low byte of FPSCR and in an operation's local flags.
enum : int { FP_IOC = 1, FP_DZC = 2, FP_OFC = 4, FP_UFC = 8, FP_IXC = 16, FP_IDC = 128 };
constexpr uint32_t FP_FLAG_BITS = FP_IOC | FP_DZC | FP_OFC | FP_UFC | FP_IXC | FP_IDC;

// Control bits of FPSCR.
constexpr uint32_t FPSCR_FZ16 = 1u << 19;
constexpr int FPSCR_RMODE_SHIFT = 22;
constexpr uint32_t FPSCR_FZ = 1u << 24;
constexpr uint32_t FPSCR_DN = 1u << 25;
constexpr uint32_t FPSCR_AHP = 1u << 26;

// An operation's working copy of the controls, computed once per call.
// FP_MODE_AHP never comes from fp_mode_of: only conversions to half set it.
enum : int {
  FP_MODE_RMODE = 3,
  FP_MODE_FZ = 4,
  FP_MODE_DN = 8,
  FP_MODE_AHP = 16,
  FP_MODE_FZ16 = 32
};

inline int fp_mode_of(FPSCR fpscr) {
  return static_cast<int>((fpscr >> FPSCR_RMODE_SHIFT) & 15) |
         ((fpscr & FPSCR_FZ16) ? FP_MODE_FZ16 : 0);
}

inline void fp_flags_merge(int flags, FPSCR& fpscr) {
  fpscr |= static_cast<uint32_t>(flags) & FP_FLAG_BITS;
}

// The three formats. Each width reads only its own flush bit, and only the
// wider two report a flushed input with IDC.
template <typename T> struct fp_format;

template <int Width, int ExpBits, int FlushBit> struct fp_format_of_width {
  static constexpr int W = Width;
  static constexpr int E = ExpBits;
  static constexpr int M = Width - 1 - ExpBits;
  static constexpr int bias = (1 << (ExpBits - 1)) - 1;
  static constexpr int exp_max = (1 << ExpBits) - 1;
  static constexpr int flush_bit = FlushBit;
  static constexpr bool flush_sets_idc = FlushBit == FP_MODE_FZ;
};

template <> struct fp_format<uint16_t> : fp_format_of_width<16, 5, FP_MODE_FZ16> {};
template <> struct fp_format<uint32_t> : fp_format_of_width<32, 8, FP_MODE_FZ> {};
template <> struct fp_format<uint64_t> : fp_format_of_width<64, 11, FP_MODE_FZ> {};

template <typename T> constexpr T fp_mantissa_mask() {
  return static_cast<T>((T(1) << fp_format<T>::M) - 1);
}
template <typename T> constexpr T fp_hidden_bit() {
  return static_cast<T>(T(1) << fp_format<T>::M);
}
template <typename T> constexpr T fp_quiet_bit() {
  return static_cast<T>(T(1) << (fp_format<T>::M - 1));
}
template <typename T> constexpr T fp_sign_bit() {
  return static_cast<T>(T(1) << (fp_format<T>::W - 1));
}

// Raw packing: the mantissa is cut to its field, the exponent is not checked.
template <typename T> constexpr T fp_pack(int sgn, int biased_exp, T mnt) {
  return static_cast<T>((static_cast<T>(sgn & 1) << (fp_format<T>::W - 1)) |
                        (static_cast<T>(biased_exp) << fp_format<T>::M) |
                        (mnt & fp_mantissa_mask<T>()));
}

// Packs an unpacked operand back: without the hidden bit it is a zero or a
// denormal, whose exponent field is 0 although unpacking reported 1.
template <typename T> constexpr T fp_repack(int sgn, int exp, T mnt) {
  return fp_pack<T>(sgn, (mnt & fp_hidden_bit<T>()) ? exp : 0, mnt);
}

template <typename T> constexpr T fp_zero(int sgn) { return fp_pack<T>(sgn, 0, 0); }
template <typename T> constexpr T fp_infinity(int sgn) {
  return fp_pack<T>(sgn, fp_format<T>::exp_max, 0);
}
template <typename T> constexpr T fp_max_normal(int sgn) {
  return fp_pack<T>(sgn, fp_format<T>::exp_max - 1, fp_mantissa_mask<T>());
}
template <typename T> constexpr T fp_default_nan() {
  return fp_pack<T>(0, fp_format<T>::exp_max, fp_quiet_bit<T>());
}

// Classification of raw operands, before any flushing.
template <typename T> constexpr int fp_exp_field(T x) {
  return static_cast<int>((x >> fp_format<T>::M) & fp_format<T>::exp_max);
}
template <typename T> constexpr bool fp_is_nan(T x) {
  return fp_exp_field(x) == fp_format<T>::exp_max && (x & fp_mantissa_mask<T>()) != 0;
}
template <typename T> constexpr bool fp_is_signalling_nan(T x) {
  return fp_is_nan(x) && !(x & fp_quiet_bit<T>());
}
template <typename T> constexpr bool fp_is_quiet_nan(T x) {
  return fp_is_nan(x) && (x & fp_quiet_bit<T>());
}
template <typename T> constexpr bool fp_is_infinity(T x) {
  return fp_exp_field(x) == fp_format<T>::exp_max && (x & fp_mantissa_mask<T>()) == 0;
}

// Splits an operand into sign, exponent and mantissa with the hidden bit.
// A zero or denormal gets exponent 1, so both kinds share one scale.
template <typename T> inline void fp_unpack(int* sgn, int* exp, T* mnt, T x, int mode, int* flags) {
  using F = fp_format<T>;
  *sgn = static_cast<int>(x >> (F::W - 1));
  *exp = fp_exp_field(x);
  *mnt = static_cast<T>(x & fp_mantissa_mask<T>());
  if (*exp) {
    *mnt = static_cast<T>(*mnt | fp_hidden_bit<T>());
    return;
  }
  *exp = 1;
  if ((mode & F::flush_bit) && *mnt) {
    *mnt = 0;
    if (F::flush_sets_idc) *flags |= FP_IDC;
  }
}

inline void fp16_unpack(int* sgn, int* exp, uint16_t* mnt, uint16_t x, int mode, int* flags) {
  fp_unpack<uint16_t>(sgn, exp, mnt, x, mode, flags);
}
inline void fp32_unpack(int* sgn, int* exp, uint32_t* mnt, uint32_t x, int mode, int* flags) {
  fp_unpack<uint32_t>(sgn, exp, mnt, x, mode, flags);
}
inline void fp64_unpack(int* sgn, int* exp, uint64_t* mnt, uint64_t x, int mode, int* flags) {
  fp_unpack<uint64_t>(sgn, exp, mnt, x, mode, flags);
}

// The result of a NaN operand: quietened (with IOC if it was signalling),
// payload and sign kept, or the default NaN under DN.
template <typename T> inline T fp_nan_one(T op, int mode, int* flags) {
  if (!(op & fp_quiet_bit<T>())) {
    *flags |= FP_IOC;
    op = static_cast<T>(op | fp_quiet_bit<T>());
  }
  return (mode & FP_MODE_DN) ? fp_default_nan<T>() : op;
}

// Signalling NaNs win over quiet ones, then the earlier operand over the
// later; only the winner is processed. 0 means no operand is a NaN: a NaN
// result is never 0.
template <typename T> inline T fp_nan_two(T a, T b, int mode, int* flags) {
  if (fp_is_signalling_nan(a)) return fp_nan_one(a, mode, flags);
  if (fp_is_signalling_nan(b)) return fp_nan_one(b, mode, flags);
  if (fp_is_nan(a)) return fp_nan_one(a, mode, flags);
  if (fp_is_nan(b)) return fp_nan_one(b, mode, flags);
  return 0;
}

template <typename T> inline T fp_nan_three(T a, T b, T c, int mode, int* flags) {
  if (fp_is_signalling_nan(a)) return fp_nan_one(a, mode, flags);
  if (fp_is_signalling_nan(b)) return fp_nan_one(b, mode, flags);
  if (fp_is_signalling_nan(c)) return fp_nan_one(c, mode, flags);
  if (fp_is_nan(a)) return fp_nan_one(a, mode, flags);
  if (fp_is_nan(b)) return fp_nan_one(b, mode, flags);
  if (fp_is_nan(c)) return fp_nan_one(c, mode, flags);
  return 0;
}

// The two operands of a two-operand operation unpacked in order, and the
// NaN result of the pair (0 if neither is a NaN), for use with structured
// bindings: auto [a_sgn, a_exp, a_mnt, b_sgn, b_exp, b_mnt, nan] = ...
template <typename T> struct fp_unpacked_pair {
  int a_sgn, a_exp;
  T a_mnt;
  int b_sgn, b_exp;
  T b_mnt;
  T nan;
};

template <typename T> inline fp_unpacked_pair<T> fp_unpack_two(T op1, T op2, int mode, int* flags) {
  fp_unpacked_pair<T> p;
  fp_unpack<T>(&p.a_sgn, &p.a_exp, &p.a_mnt, op1, mode, flags);
  fp_unpack<T>(&p.b_sgn, &p.b_exp, &p.b_mnt, op2, mode, flags);
  p.nan = fp_nan_two<T>(op1, op2, mode, flags);
  return p;
}

// Shifts a non-zero mantissa left until its top bit is set and lowers the
// exponent by the same amount: a fixed cascade of tests from half the width
// down to one bit, with no loop.
template <typename T, int Shift = sizeof(T) * 4> inline void fp_normalise(T* mnt, int* exp) {
  constexpr int W = sizeof(T) * 8;
  if (!(*mnt >> (W - Shift))) {
    *mnt = static_cast<T>(*mnt << Shift);
    *exp -= Shift;
  }
  if constexpr (Shift > 1) fp_normalise<T, Shift / 2>(mnt, exp);
}

template <int Shift> inline void fp_normalise_words(uint64_t* hi, uint64_t* lo, int* exp) {
  if (!(*hi >> (64 - Shift))) {
    *hi = (*hi << Shift) | (*lo >> (64 - Shift));
    *lo <<= Shift;
    *exp -= Shift;
  }
  if constexpr (Shift > 1) fp_normalise_words<Shift / 2>(hi, lo, exp);
}

// The same for a 128-bit mantissa held as a high and a low word.
inline void fp_normalise(uint64_t* hi, uint64_t* lo, int* exp) {
  if (!*hi) {
    *hi = *lo;
    *lo = 0;
    *exp -= 64;
  }
  fp_normalise_words<32>(hi, lo, exp);
}

// Right shift that keeps every bit shifted out as a sticky bit 0.
template <typename T> inline T fp_jam_shift(T x, int shift) {
  constexpr int W = sizeof(T) * 8;
  if (shift <= 0) return x;
  if (shift >= W) return static_cast<T>(x != 0);
  T lost = static_cast<T>(x & ((T(1) << shift) - 1));
  return static_cast<T>((x >> shift) | (lost != 0));
}

inline void fp_jam_shift(uint64_t* hi, uint64_t* lo, int shift) {
  if (shift <= 0) return;
  if (shift >= 128) {
    *lo = (*hi | *lo) != 0;
    *hi = 0;
  } else if (shift >= 64) {
    bool lost = *lo || (shift > 64 && (*hi << (128 - shift)));
    *lo = (shift == 64 ? *hi : *hi >> (shift - 64)) | lost;
    *hi = 0;
  } else {
    bool lost = (*lo << (64 - shift)) != 0;
    *lo = (*lo >> shift) | (*hi << (64 - shift)) | lost;
    *hi >>= shift;
  }
}

// Exact product of two operands below 2^62 as a high word x1 and a low word
// x0, from 31-bit limbs: every partial product fits a 64-bit word and three
// multiplications suffice. Double multiply, fused multiply-add and divide
// share it.
inline void fp_mul62x62(uint64_t* x0, uint64_t* x1, uint64_t a, uint64_t b) {
  const uint64_t mask = 0x7fffffff;
  uint64_t a0 = a & mask, a1 = (a >> 31) & mask;
  uint64_t b0 = b & mask, b1 = (b >> 31) & mask;
  uint64_t p0 = a0 * b0, p2 = a1 * b1;
  uint64_t p1 = (a0 + a1) * (b0 + b1) - p0 - p2;
  uint64_t s0 = p0, s1 = (s0 >> 31) + p1, s2 = (s1 >> 31) + p2;
  *x0 = (s0 & mask) | ((s1 & mask) << 31) | (s2 << 62);
  *x1 = s2 >> 2;
}

// Rounds (-1)^sgn x 1.mnt x 2^(exp - bias) to the format, where mnt is the
// fraction left-justified in the word with the leading 1 removed and its
// lowest bit may be sticky. exp may be any integer. rm is an FPRounding,
// mode an fp_mode (its own rounding bits are not read here). Tininess is
// judged before rounding, as the architecture does.
template <typename T> inline T fp_round(int sgn, int exp, T mnt, int rm, int mode, int* flags) {
  using F = fp_format<T>;
  constexpr int W = F::W, E = F::E, M = F::M;

  if ((mode & F::flush_bit) && exp < 1) {
    *flags |= FP_UFC;
    return fp_zero<T>(sgn);
  }

  // Leading 1 at bit M+2, fraction in M+1..2, a round bit and a sticky bit.
  const uint64_t wide = mnt;
  const uint64_t t =
      (uint64_t(1) << (M + 2)) | (wide >> (E - 1)) | ((wide & ((uint64_t(1) << E) - 1)) != 0);
  int biased;
  uint64_t int_mant;
  int error; // 0 exact, 1 below half way, 2 half way, 3 above
  if (exp > 0) {
    biased = exp;
    int_mant = t >> 2;
    error = static_cast<int>(t & 3);
  } else {
    biased = 0;
    const int shift = 1 - exp;
    int_mant = shift + 2 >= W ? 0 : t >> (shift + 2);
    if (shift >= W)
      error = 1;
    else
      error = static_cast<int>(((t >> shift) & 3) | ((t & ((uint64_t(1) << shift) - 1)) != 0));
  }

  if (biased == 0 && error) *flags |= FP_UFC;

  const bool away_from_zero = (rm == FPRounding_POSINF && !sgn) || (rm == FPRounding_NEGINF && sgn);
  const bool round_up =
      (rm == FPRounding_TIEEVEN && (error == 3 || (error == 2 && (int_mant & 1)))) ||
      (error && away_from_zero);
  if (round_up) {
    ++int_mant;
    if (int_mant == uint64_t(1) << M) biased = 1; // a denormal grew into the smallest normal
    if (int_mant == uint64_t(2) << M) {
      ++biased;
      int_mant = uint64_t(1) << M;
    }
  }
  if (W != 64 && rm == FPRounding_ODD && error) int_mant |= 1;

  if (W == 16 && (mode & FP_MODE_AHP)) {
    // The alternative half format has no infinities: exponent 31 is a
    // value, and anything larger saturates with an invalid operation.
    if (biased > 31) {
      *flags |= FP_IOC;
      return fp_pack<T>(sgn, 31, fp_mantissa_mask<T>());
    }
  } else if (biased >= F::exp_max) {
    *flags |= FP_OFC | FP_IXC;
    return (rm == FPRounding_TIEEVEN || away_from_zero) ? fp_infinity<T>(sgn)
                                                        : fp_max_normal<T>(sgn);
  }

  if (error) *flags |= FP_IXC;
  return fp_pack<T>(sgn, biased, static_cast<T>(int_mant));
}

inline uint16_t fp16_round_(int sgn, int exp, uint16_t mnt, int rm, int mode, int* flags) {
  return fp_round<uint16_t>(sgn, exp, mnt, rm, mode, flags);
}
inline uint32_t fp32_round_(int sgn, int exp, uint32_t mnt, int rm, int mode, int* flags) {
  return fp_round<uint32_t>(sgn, exp, mnt, rm, mode, flags);
}
// Round to odd is a step of the two narrower routines only; here
// FPRounding_ODD truncates like FPRounding_ZERO.
inline uint64_t fp64_round_(int sgn, int exp, uint64_t mnt, int rm, int mode, int* flags) {
  return fp_round<uint64_t>(sgn, exp, mnt, rm, mode, flags);
}
