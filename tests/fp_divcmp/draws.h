// Operands for division and square root on top of the general draws of the
// shared harness: divisors that put a quotient at the overflow threshold or
// among the denormals, pairs whose quotient is exact or one unit off it, and
// perfect squares with their neighbours.
#pragma once

#include <cstdint>
#include <utility>

#include "fp_host/fp_random.h"

// A divisor for a: related draws, or one whose exponent puts a / divisor
// near the largest exponent or just below the smallest normal.
template <typename T> T quotient_partner(fp_rng& rng, T a) {
  using F = fp_format<T>;
  const int a_exp = fp_exp_field(a);
  if (a_exp == 0 || a_exp == F::exp_max || rng.below(3)) return related_operand<T>(rng, a);
  // The quotient's exponent field is about a_exp - b_exp + bias.
  const int target = rng.coin() ? F::exp_max - 1 : -static_cast<int>(rng.below(F::M + 2));
  int e = a_exp + F::bias - target + static_cast<int>(rng.below(5)) - 2;
  if (e < 0) e = 0;
  if (e > F::exp_max - 1) e = F::exp_max - 1;
  return fp_pack<T>(rng.coin(), e, random_fraction<T>(rng));
}

// The normal number n x 2^scale, for 0 < n < 2^(M+1).
template <typename T> T normal_from_integer(int sgn, uint64_t n, int scale) {
  int msb = 63;
  while (!(n >> msb)) --msb;
  return fp_pack<T>(sgn, scale + msb + fp_format<T>::bias,
                    static_cast<T>(n << (fp_format<T>::M - msb)));
}

// A divisor of a few significant bits and a quotient of the rest, so that
// their product is an exact dividend; the dividend is then often moved by one
// unit, putting the quotient just off a representable value.
template <typename T> std::pair<T, T> exact_quotient_pair(fp_rng& rng) {
  constexpr int M = fp_format<T>::M;
  const int k = 1 + static_cast<int>(rng.below(5));
  const uint64_t d = (uint64_t(1) << (k - 1)) | (rng.next() & ((uint64_t(1) << (k - 1)) - 1));
  const int q_bits = M + 1 - k;
  const uint64_t q =
      (uint64_t(1) << (q_bits - 1)) | (rng.next() & ((uint64_t(1) << (q_bits - 1)) - 1));
  const int scale = static_cast<int>(rng.below(9)) - 4;
  const T a = normal_from_integer<T>(rng.coin(), q * d, scale - M / 2);
  const T b = normal_from_integer<T>(rng.coin(), d, scale);
  return {static_cast<T>(a + rng.below(3) - 1), b};
}

// The square of an integer of half the mantissa's width at an exponent that
// keeps it a square, or a neighbour one unit away.
template <typename T> T square_or_neighbour(fp_rng& rng) {
  using F = fp_format<T>;
  const int half_bits = (F::M + 1) / 2;
  const uint64_t root =
      (uint64_t(1) << (half_bits - 1)) | (rng.next() & ((uint64_t(1) << (half_bits - 1)) - 1));
  // The bias is odd, so an exponent field of the parity of msb + 1 leaves an
  // even power of two.
  const uint64_t square = root * root;
  const int msb = 63 - __builtin_clzll(square);
  const int scale =
      2 * static_cast<int>(rng.below(F::exp_max / 2 - half_bits)) + 1 + (msb & 1) - msb - F::bias;
  return static_cast<T>(normal_from_integer<T>(0, square, scale) + rng.below(3) - 1);
}
