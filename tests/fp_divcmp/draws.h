// Random operands and control words for the differential tests, biased to
// where division, square root and ordering have their corners: signed zeros,
// denormals, the extreme normals, infinities, both kinds of NaN, short
// mantissas whose quotients and squares are exact, and pairs whose quotient
// lands at the overflow threshold or among the denormals.
#pragma once

#include <cstdint>
#include <random>
#include <utility>

using draw_rng = std::mt19937_64;

template <typename T> struct draw_fmt {
  static constexpr int W = sizeof(T) * 8;
  static constexpr int E = W == 16 ? 5 : W == 32 ? 8 : 11;
  static constexpr int M = W - 1 - E;
  static constexpr int bias = (1 << (E - 1)) - 1;
  static constexpr int top = (1 << E) - 1;
  static constexpr uint64_t frac_mask = (uint64_t(1) << M) - 1;
  static constexpr uint64_t quiet = uint64_t(1) << (M - 1);
};

template <typename T> T make(uint64_t sign, int64_t exp_field, uint64_t frac) {
  using F = draw_fmt<T>;
  return T((sign << (F::W - 1)) | (uint64_t(exp_field & F::top) << F::M) | (frac & F::frac_mask));
}
template <typename T> int exp_field_of(T x) { return int(x >> draw_fmt<T>::M) & draw_fmt<T>::top; }

template <typename T> T draw_operand(draw_rng& rng) {
  using F = draw_fmt<T>;
  const uint64_t s = rng() & 1, frac = rng();
  switch (rng() % 14) {
  case 0:
    return make<T>(s, 0, 0);
  case 1:
    return make<T>(s, 0, frac | 1);
  case 2:
    return make<T>(s, 0, 1 + rng() % 8); // the smallest denormals
  case 3:
    return make<T>(s, 1 + rng() % 2, frac);
  case 4:
    return make<T>(s, F::top - 1 - rng() % 2, rng() & 1 ? F::frac_mask : frac);
  case 5:
    return make<T>(s, F::top, 0);
  case 6:
    return make<T>(s, F::top, F::quiet | frac);
  case 7:
    return make<T>(s, F::top, (frac & (F::quiet - 1)) | 1);
  case 8:
    return make<T>(s, F::bias - 2 + rng() % 5, frac);
  case 9: { // a few leading fraction bits and nothing below: exact quotients
    const int keep = 1 + rng() % 4;
    const uint64_t lead = frac & ((uint64_t(1) << keep) - 1);
    return make<T>(s, 1 + rng() % (F::top - 1), lead << (F::M - keep));
  }
  default:
    return make<T>(s, rng() % F::top, frac);
  }
}

// A second operand that often relates to the first: the same value, its
// negation, its neighbours, a power-of-two multiple, or an exponent chosen so
// that a quotient lands near the overflow threshold or among the denormals.
template <typename T> T draw_partner(draw_rng& rng, T a) {
  using F = draw_fmt<T>;
  const int ea = exp_field_of(a);
  const T sign_bit = T(T(1) << (F::W - 1));
  switch (rng() % 10) {
  case 0:
    return a;
  case 1:
    return T(a ^ sign_bit);
  case 2:
    return T(a + 1);
  case 3:
    return T(a - 1);
  case 4:
    return make<T>(rng() & 1, ea + int(rng() % 7) - 3, a);
  case 5:
    return make<T>(rng() & 1, ea - (F::top - 1 - F::bias) + int(rng() % 5) - 2, rng());
  case 6:
    return make<T>(rng() & 1, ea + F::bias - 1 + int(rng() % (F::M + 6)) - 3, rng());
  default:
    return draw_operand<T>(rng);
  }
}

// A perfect square, or its neighbour one unit away: the square of an integer
// of half the mantissa's width, placed at a random exponent.
template <typename T> T draw_square(draw_rng& rng) {
  using F = draw_fmt<T>;
  const int half_bits = (F::M + 1) / 2;
  const uint64_t root =
      (uint64_t(1) << (half_bits - 1)) | (rng() & ((uint64_t(1) << half_bits) - 1));
  const uint64_t sq = root * root;
  int msb = 63;
  while (!(sq >> msb)) --msb;
  const int exp = 2 * int(rng() % (F::top / 2 - half_bits)) + 1 + (msb & 1);
  const T x = make<T>(0, exp, sq << (F::M - msb));
  switch (rng() % 4) {
  case 0:
    return T(x + 1);
  case 1:
    return T(x - 1);
  default:
    return x;
  }
}

// The normal number n x 2^scale for an integer n below 2^(M+1), with the
// exponent field kept in range by the caller.
template <typename T> T make_from_integer(uint64_t sign, uint64_t n, int scale) {
  int msb = 63;
  while (!(n >> msb)) --msb;
  return make<T>(sign, scale + msb + draw_fmt<T>::bias, n << (draw_fmt<T>::M - msb));
}

// A pair whose quotient is exact, or one unit of the dividend away from it:
// a divisor of a few significant bits times a quotient of the rest.
template <typename T> std::pair<T, T> draw_exact_quotient(draw_rng& rng) {
  using F = draw_fmt<T>;
  const int k = 1 + int(rng() % 5);
  const uint64_t d = (uint64_t(1) << (k - 1)) | (rng() & ((uint64_t(1) << (k - 1)) - 1));
  const int qbits = F::M + 1 - k;
  const uint64_t q = (uint64_t(1) << (qbits - 1)) | (rng() & ((uint64_t(1) << (qbits - 1)) - 1));
  const int scale = int(rng() % 9) - 4;
  const T a = make_from_integer<T>(rng() & 1, q * d, scale - F::M / 2);
  const T b = make_from_integer<T>(rng() & 1, d, scale);
  switch (rng() % 3) {
  case 0:
    return {T(a + 1), b};
  case 1:
    return {T(a - 1), b};
  default:
    return {a, b};
  }
}

// FPCR bits: RMode, FZ, DN, FZ16 and AHP, which nothing here may look at.
constexpr uint32_t kFz16 = 1u << 19, kFz = 1u << 24, kDn = 1u << 25, kAhp = 1u << 26;
constexpr uint32_t kFlagBits = 0x9f;
inline uint32_t draw_fpcr(draw_rng& rng) {
  uint32_t c = uint32_t(rng() % 4) << 22;
  if (rng() & 1) c |= kFz;
  if (rng() & 1) c |= kDn;
  if (rng() & 1) c |= kFz16;
  if (rng() & 1) c |= kAhp;
  return c;
}
