// The SVE2 cryptographic forms, each on every 128-bit segment: the AES
// rounds and column mixes, the SM4 rounds and key expansion, and the
// 64-by-64-bit carry-less products. The substitution boxes are computed at
// compile time from their algebraic definitions (an inverse in a finite
// field between affine maps) rather than written out.
#pragma once

#include <cstdint>
#include <cstring>

#include "vector.h"

namespace generic {

// Products in GF(2^8) modulo `poly` (with its x^8 bit).
constexpr uint8_t field_multiply(uint8_t a, uint8_t b, unsigned poly) {
  unsigned p = 0, x = a;
  for (; b; b >>= 1) {
    if (b & 1) p ^= x;
    x <<= 1;
    if (x & 0x100) x ^= poly;
  }
  return uint8_t(p);
}
constexpr uint8_t field_inverse(uint8_t x, unsigned poly) { // x^254; 0 for 0
  uint8_t r = 1;
  for (unsigned i = 0; i < 254; ++i) r = field_multiply(r, x, poly);
  return x ? r : 0;
}
constexpr uint8_t rotate_left8(uint8_t x, unsigned n) {
  return uint8_t((x << (n & 7)) | (x >> ((8 - n) & 7)));
}
// Bit i of the result is the parity of x under `row` rotated left by i.
constexpr uint8_t circulant(uint8_t x, uint8_t row) {
  uint8_t out = 0;
  for (unsigned i = 0; i < 8; ++i) {
    unsigned v = rotate_left8(row, i) & x, parity = 0;
    for (; v; v >>= 1) parity ^= v & 1;
    out = uint8_t(out | parity << i);
  }
  return out;
}

struct SubstitutionBoxes {
  uint8_t aes[256], aes_inverse[256], sm4[256];
};
constexpr SubstitutionBoxes make_substitution_boxes() {
  SubstitutionBoxes t{};
  for (unsigned x = 0; x < 256; ++x) {
    const uint8_t inv = field_inverse(uint8_t(x), 0x11b);
    const uint8_t s = uint8_t(inv ^ rotate_left8(inv, 1) ^ rotate_left8(inv, 2) ^
                              rotate_left8(inv, 3) ^ rotate_left8(inv, 4) ^ 0x63);
    t.aes[x] = s;
    t.aes_inverse[s] = uint8_t(x);
    const uint8_t a = uint8_t(circulant(uint8_t(x), 0xa7) ^ 0xd3);
    t.sm4[x] = uint8_t(circulant(field_inverse(a, 0x1f5), 0xa7) ^ 0xd3);
  }
  return t;
}
inline constexpr SubstitutionBoxes kBoxes = make_substitution_boxes();

// The AES state is 16 bytes, byte 4c + r in column c, row r.
using AesState = uint8_t[16];

template <bool Inverse> void aes_round(AesState s) {
  AesState t;
  for (unsigned c = 0; c < 4; ++c)
    for (unsigned r = 0; r < 4; ++r) {
      // Row r turns left (right when inverse) by r columns.
      const unsigned from = Inverse ? 4 * ((c + 4 - r) % 4) + r : 4 * ((c + r) % 4) + r;
      t[4 * c + r] = Inverse ? kBoxes.aes_inverse[s[from]] : kBoxes.aes[s[from]];
    }
  std::memcpy(s, t, 16);
}

template <bool Inverse> void aes_mix_columns(AesState s) {
  // The first row of the circulant matrix; the others turn it right.
  constexpr uint8_t m[4] = {Inverse ? 14 : 2, Inverse ? 11 : 3, Inverse ? 13 : 1, Inverse ? 9 : 1};
  for (unsigned c = 0; c < 4; ++c) {
    uint8_t* col = s + 4 * c;
    uint8_t out[4];
    for (unsigned r = 0; r < 4; ++r) {
      out[r] = 0;
      for (unsigned k = 0; k < 4; ++k) out[r] ^= field_multiply(col[k], m[(k + 4 - r) % 4], 0x11b);
    }
    std::memcpy(col, out, 4);
  }
}

// aese, aesd: the round on a ^ b.
template <bool Inverse>
void aes_substitute(VecV* out, const VecV* a, const VecV* b, CpuContext* ctx) {
  VecV r;
  for (unsigned s = 0; s < ctx->vl / 2; ++s) {
    uint8_t* state = r.b + 16 * s;
    for (unsigned i = 0; i < 16; ++i) state[i] = a->b[16 * s + i] ^ b->b[16 * s + i];
    aes_round<Inverse>(state);
  }
  *out = r;
}

// aesmc, aesimc.
template <bool Inverse> void aes_mix(VecV* out, const VecV* a, CpuContext* ctx) {
  VecV r = *a;
  for (unsigned s = 0; s < ctx->vl / 2; ++s) aes_mix_columns<Inverse>(r.b + 16 * s);
  *out = r;
}

inline uint32_t rotate_left32(uint32_t x, unsigned n) { return (x << n) | (x >> (32 - n)); }

// sm4e (Key false) and sm4ekey (Key true): four rounds on the words of a's
// segment, with b's words as round keys or constants.
template <bool Key> void sm4_rounds(VecV* out, const VecV* a, const VecV* b, CpuContext* ctx) {
  VecV r;
  for (unsigned s = 0; s < ctx->vl / 2; ++s) {
    uint32_t w[4], k[4];
    std::memcpy(w, a->b + 16 * s, 16);
    std::memcpy(k, b->b + 16 * s, 16);
    for (unsigned i = 0; i < 4; ++i) {
      uint32_t x = w[3] ^ w[2] ^ w[1] ^ k[i], boxed = 0;
      for (unsigned byte = 0; byte < 4; ++byte)
        boxed |= uint32_t{kBoxes.sm4[(x >> 8 * byte) & 0xff]} << 8 * byte;
      x = Key ? boxed ^ rotate_left32(boxed, 13) ^ rotate_left32(boxed, 23)
              : boxed ^ rotate_left32(boxed, 2) ^ rotate_left32(boxed, 10) ^
                    rotate_left32(boxed, 18) ^ rotate_left32(boxed, 24);
      const uint32_t next = x ^ w[0];
      w[0] = w[1];
      w[1] = w[2];
      w[2] = w[3];
      w[3] = next;
    }
    std::memcpy(r.b + 16 * s, w, 16);
  }
  *out = r;
}

// pmullb, pmullt .q: the 128-bit carry-less product of the even (odd)
// doublewords of a and b.
template <unsigned Top>
void polynomial_multiply_long_quad(VecV* out, const VecV* a, const VecV* b, CpuContext* ctx) {
  VecV r;
  for (unsigned q = 0; q < ctx->vl / 2; ++q) {
    const uint64_t x = element<uint64_t>(*a, 2 * q + Top), y = element<uint64_t>(*b, 2 * q + Top);
    uint64_t lo = 0, hi = 0;
    for (unsigned k = 0; k < 64; ++k)
      if (y >> k & 1) {
        lo ^= x << k;
        hi ^= k ? x >> (64 - k) : 0;
      }
    set_element<uint64_t>(r, 2 * q, lo);
    set_element<uint64_t>(r, 2 * q + 1, hi);
  }
  *out = r;
}

constexpr auto VecU8AesEVV = &aes_substitute<false>;
constexpr auto VecU8AesDVV = &aes_substitute<true>;
constexpr auto VecU8AesMcV = &aes_mix<false>;
constexpr auto VecU8AesImcV = &aes_mix<true>;
constexpr auto VecU32Sm4EVV = &sm4_rounds<false>;
constexpr auto VecU32Sm4EKeyVV = &sm4_rounds<true>;
constexpr auto VecQ128PMulLBVV = &polynomial_multiply_long_quad<0>;
constexpr auto VecQ128PMulLTVV = &polynomial_multiply_long_quad<1>;

} // namespace generic
