// The values the generic tier computes on. It knows nothing of the emulated
// register file: it takes vectors and predicates by value and the vector
// length as a number, so every function works at any length up to 2048 bits.
#pragma once

#include <cstdint>
#include <cstring>

// A packed predicate: bit i belongs to byte i of the vector.
struct PredV {
  uint64_t w[4];
};

// A vector value. Only the first vl * 8 bytes mean anything.
struct VecV {
  uint8_t b[256];
};

// What one instruction sees of the machine. The flags sit where NZCV keeps
// them (N bit 31 .. V bit 28); vl is the vector length in 64-bit units.
struct CpuContext {
  uint32_t nzcv;
  uint32_t fpsr;
  uint32_t fpcr;
  uint32_t vl;
  PredV ffr;
};

namespace generic {

// The number of elements of `esize_bits` in a vector.
inline unsigned element_count(const CpuContext* ctx, unsigned esize_bits) {
  return ctx->vl * 64 / esize_bits;
}
// The number of predicate bits (= vector bytes).
inline unsigned predicate_bits(const CpuContext* ctx) { return ctx->vl * 8; }

template <typename T> T element(const VecV& v, unsigned i) {
  T x;
  std::memcpy(&x, v.b + i * sizeof(T), sizeof(T));
  return x;
}
template <typename T> void set_element(VecV& v, unsigned i, T x) {
  std::memcpy(v.b + i * sizeof(T), &x, sizeof(T));
}

inline bool pred_bit(const PredV& p, unsigned i) { return (p.w[i / 64] >> (i % 64)) & 1; }
inline void set_pred_bit(PredV& p, unsigned i, bool value) {
  const uint64_t bit = uint64_t{1} << (i % 64);
  p.w[i / 64] = value ? p.w[i / 64] | bit : p.w[i / 64] & ~bit;
}

// Element i of `esize_bytes` is active when the first bit of its group is set.
inline bool active(const PredV& p, unsigned i, unsigned esize_bytes) {
  return pred_bit(p, i * esize_bytes);
}
// Clears the element's group and sets its first bit to `value`.
inline void set_group(PredV& p, unsigned i, unsigned esize_bytes, bool value) {
  for (unsigned b = 0; b < esize_bytes; ++b) set_pred_bit(p, i * esize_bytes + b, false);
  set_pred_bit(p, i * esize_bytes, value);
}

} // namespace generic
