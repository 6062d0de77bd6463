// Random operands and control words for differential tests of the software
// floating-point library and the generic tier, biased towards the places where rounding, flushing
// and NaN handling go wrong: zeros, denormals, the extreme normals,
// infinities, both kinds of NaN, and mantissas near halfway points.
#pragma once

#include <cstdint>

#include "fp/fp_core.h"

struct fp_rng {
  uint64_t state;
  uint64_t next() {
    state ^= state >> 12;
    state ^= state << 25;
    state ^= state >> 27;
    return state * 0x2545f4914f6cdd1dull;
  }
  uint64_t operator()() { return next(); }
  uint64_t below(uint64_t n) { return next() % n; }
  bool coin() { return next() & 1; }
};

// A mantissa field: random, or a pattern that lands on or next to a
// rounding boundary once shifted.
template <typename T> T random_fraction(fp_rng& rng) {
  const T mask = fp_mantissa_mask<T>();
  const int M = fp_format<T>::M;
  switch (rng.below(6)) {
  case 0:
    return static_cast<T>(rng.below(4));
  case 1:
    return static_cast<T>(mask - rng.below(4));
  case 2:
    return static_cast<T>((T(1) << rng.below(M)) | rng.below(2));
  case 3: // long runs of ones or zeros below a random cut
    return static_cast<T>(mask >> rng.below(M));
  default:
    return static_cast<T>(rng.next() & mask);
  }
}

// A biased exponent field for a finite non-zero value, sometimes near the
// ends of the range or near 1.0.
template <typename T> int random_exponent(fp_rng& rng) {
  const int top = fp_format<T>::exp_max, bias = fp_format<T>::bias;
  switch (rng.below(5)) {
  case 0:
    return 1 + static_cast<int>(rng.below(3));
  case 1:
    return top - 1 - static_cast<int>(rng.below(3));
  case 2:
    return bias - 3 + static_cast<int>(rng.below(7));
  default:
    return 1 + static_cast<int>(rng.below(top - 1));
  }
}

template <typename T> T random_operand(fp_rng& rng) {
  const int sgn = rng.coin();
  const int top = fp_format<T>::exp_max;
  const T quiet = fp_quiet_bit<T>();
  switch (rng.below(16)) {
  case 0:
    return fp_zero<T>(sgn);
  case 1:
  case 2: {
    T frac = random_fraction<T>(rng);
    return fp_pack<T>(sgn, 0, frac ? frac : T(1));
  }
  case 3:
    return fp_infinity<T>(sgn);
  case 4:
    return fp_pack<T>(sgn, top, static_cast<T>(quiet | random_fraction<T>(rng)));
  case 5: {
    T frac = static_cast<T>(random_fraction<T>(rng) & (quiet - 1));
    return fp_pack<T>(sgn, top, frac ? frac : T(1));
  }
  default:
    return fp_pack<T>(sgn, random_exponent<T>(rng), random_fraction<T>(rng));
  }
}

// A second operand related to the first so that the pair exercises
// cancellation, ties and the ends of the range more often than two
// independent draws would.
template <typename T> T related_operand(fp_rng& rng, T a) {
  using F = fp_format<T>;
  const int a_exp = fp_exp_field(a);
  if (a_exp == 0 || a_exp == F::exp_max || rng.below(3) == 0) return random_operand<T>(rng);
  switch (rng.below(4)) {
  case 0: // nearly equal magnitude, either sign: cancellation
    return static_cast<T>((a ^ (rng.coin() ? fp_sign_bit<T>() : 0)) + rng.below(5) - 2);
  case 1: { // a nearby exponent with a short mantissa: halfway sums
    int e = a_exp - static_cast<int>(rng.below(F::M + 3));
    return fp_pack<T>(rng.coin(), e > 0 ? e : 0, static_cast<T>(T(1) << rng.below(F::M)));
  }
  case 2: // far apart: the smaller only reaches the sticky bit
    return fp_pack<T>(rng.coin(), 1 + static_cast<int>(rng.below(3)), random_fraction<T>(rng));
  default: { // exponents that put a product near overflow or underflow
    int target = rng.coin() ? F::bias + F::exp_max - 2 : F::bias - F::M + 2;
    int e = target - a_exp + static_cast<int>(rng.below(5)) - 2;
    if (e < 0) e = 0;
    if (e > F::exp_max - 1) e = F::exp_max - 1;
    return fp_pack<T>(rng.coin(), e, random_fraction<T>(rng));
  }
  }
}

// A control word with every combination of the controls the library reads.
inline FPSCR random_fpscr(fp_rng& rng) {
  FPSCR fpscr = static_cast<FPSCR>(rng.below(4)) << FPSCR_RMODE_SHIFT;
  if (rng.coin()) fpscr |= FPSCR_FZ;
  if (rng.coin()) fpscr |= FPSCR_DN;
  if (rng.coin()) fpscr |= FPSCR_FZ16;
  if (rng.coin()) fpscr |= FPSCR_AHP;
  return fpscr;
}

// Trap enable bits (IOE, DZE, OFE, UFE, IXE, IDE) for the library's word.
// They change nothing: exceptions are only recorded, and underflow stays
// tied to inexactness even with UFE set, where the architecture would signal
// it for every tiny result. Tests keep them out of the processor's FPCR.
inline FPSCR random_trap_enables(fp_rng& rng) {
  return rng.coin() ? static_cast<FPSCR>(rng.next() & 0x9f00u) : 0u;
}
