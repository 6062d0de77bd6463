// Predicates as cpu_state holds them, one byte per vector byte, and the
// condition flags that a predicate result sets. Shared by every family that
// reads or writes predicates: compares, predicate generation, while, break,
// next-active and the first-fault register.
#pragma once

#include <cstdint>
#include <cstring>

#include <arm_neon.h>

#include "element.h"

namespace ZORVO_LENGTH {

// ---- The byte-per-byte form ----
//
// Reading an element looks at bit 0 of its first byte only (`active` in
// element.h). Writing an element stores a whole element-wide word holding 0
// or 1, so the bytes behind the first become 0: that is what the instruction
// set's bit form of a predicate written at that size says of them too.
template <typename T> inline void set_pred_elem(uint8_t* pred, unsigned i, bool value) {
  store_elem<T>(pred, i, static_cast<T>(value));
}

// The packed form (memory images of LDR/STR and the generic tier): bit i of
// the value is byte i, word i / 64 holding bits i % 64. Bits past the vector
// length are 0. Unpacking writes exactly 0 or 1 to each byte.
constexpr unsigned kPredicateWords = kMaxVectorBytes / 64;
struct pred_bits {
  uint64_t w[kPredicateWords];
};
// The words the length uses: one for every length processors have.
inline unsigned used_words() { return (vector_bytes() + 63) / 64; }

// Packing: bit 0 of each byte moves to its place within its group of eight
// (a shift by the byte's position), and three pairwise additions sum each
// group into one byte, 64 bytes to a word (chunks past the length count as
// zeros). Unpacking spreads a byte to all eight, keeps bit k in byte k and
// turns each non-zero byte into 1 without a carry between bytes.
inline pred_bits pack_predicate(const uint8_t* pred) {
  const uint8x16_t one = vdupq_n_u8(1);
  const int8x16_t place = {0, 1, 2, 3, 4, 5, 6, 7, 0, 1, 2, 3, 4, 5, 6, 7};
  const auto chunk = [&](unsigned at) {
    return at < vector_bytes() ? vshlq_u8(vandq_u8(vld1q_u8(pred + at), one), place)
                               : vdupq_n_u8(0);
  };
  pred_bits bits{};
  for (unsigned k = 0; k < used_words(); ++k) {
    const unsigned at = 64 * k;
    const uint8x16_t pairs =
        vpaddq_u8(vpaddq_u8(chunk(at), chunk(at + 16)), vpaddq_u8(chunk(at + 32), chunk(at + 48)));
    bits.w[k] = vgetq_lane_u64(vreinterpretq_u64_u8(vpaddq_u8(pairs, pairs)), 0);
  }
  return bits;
}
inline void unpack_predicate(uint8_t* pred, const pred_bits& bits) {
  for (unsigned k = 0; k < vector_bytes() / 8; ++k) {
    const uint64_t spread = (bits.w[k / 8] >> (8 * (k % 8)) & 0xff) * 0x0101010101010101u;
    const uint64_t x =
        ((spread & 0x8040201008040201u) + 0x7f7f7f7f7f7f7f7fu) >> 7 & 0x0101010101010101u;
    std::memcpy(pred + 8 * k, &x, 8);
  }
}

// The bits of the packed form where elements of sizeof(T) bytes start.
template <typename T> inline pred_bits element_starts() {
  constexpr uint64_t pattern = sizeof(T) == 1   ? ~uint64_t{0}
                               : sizeof(T) == 2 ? 0x5555555555555555u
                               : sizeof(T) == 4 ? 0x1111111111111111u
                                                : 0x0101010101010101u;
  pred_bits bits{};
  for (unsigned k = 0; k < vector_bytes() / 64; ++k) bits.w[k] = pattern;
  if (vector_bytes() % 64)
    bits.w[vector_bytes() / 64] = pattern & ((uint64_t{1} << (vector_bytes() % 64)) - 1);
  return bits;
}

inline pred_bits operator&(const pred_bits& a, const pred_bits& b) {
  pred_bits r{};
  for (unsigned k = 0; k < used_words(); ++k) r.w[k] = a.w[k] & b.w[k];
  return r;
}
inline bool none_set(const pred_bits& p) {
  uint64_t any = 0;
  for (unsigned k = 0; k < used_words(); ++k) any |= p.w[k];
  return any == 0;
}
inline bool bit_set(const pred_bits& p, unsigned i) { return p.w[i / 64] >> (i % 64) & 1; }
inline unsigned count_set(const pred_bits& p) {
  unsigned n = 0;
  for (unsigned k = 0; k < used_words(); ++k)
    n += static_cast<unsigned>(__builtin_popcountll(p.w[k]));
  return n;
}
// The lowest and the highest set bit, or -1 when none is.
inline int first_set(const pred_bits& p) {
  for (unsigned k = 0; k < used_words(); ++k)
    if (p.w[k]) return static_cast<int>(64 * k + __builtin_ctzll(p.w[k]));
  return -1;
}
inline int last_set(const pred_bits& p) {
  for (unsigned k = used_words(); k-- > 0;)
    if (p.w[k]) return static_cast<int>(64 * k + 63 - __builtin_clzll(p.w[k]));
  return -1;
}
// Keeps the bits below `end`.
inline pred_bits bits_below(const pred_bits& p, unsigned end) {
  pred_bits r{};
  for (unsigned k = 0; k < used_words(); ++k) {
    if (64 * (k + 1) <= end)
      r.w[k] = p.w[k];
    else if (64 * k < end)
      r.w[k] = p.w[k] & ((uint64_t{1} << (end - 64 * k)) - 1);
  }
  return r;
}

// ---- Condition flags ----

// `nzcv` holds the flags where a read of the NZCV register puts them.
constexpr uint64_t kFlagN = uint64_t{1} << 31;
constexpr uint64_t kFlagZ = uint64_t{1} << 30;
constexpr uint64_t kFlagC = uint64_t{1} << 29;
constexpr uint64_t kFlagV = uint64_t{1} << 28;

struct nzcv_flags {
  bool n, z, c, v;
};

// Only the four flag bits change; whatever else the field holds is kept.
inline void write_flags(cpu_state* s, nzcv_flags f) {
  uint64_t nzcv = s->nzcv & ~(kFlagN | kFlagZ | kFlagC | kFlagV);
  if (f.n) nzcv |= kFlagN;
  if (f.z) nzcv |= kFlagZ;
  if (f.c) nzcv |= kFlagC;
  if (f.v) nzcv |= kFlagV;
  s->nzcv = nzcv;
}

// The predicate test at element stride sizeof(T): N is the result at the
// first active element, Z says no active element is true, C is the inverse
// of the result at the last active element, V is clear. Without any active
// element that gives N=0, Z=1, C=1. Result elements that the mask leaves
// inactive have no say, whatever they hold.
template <typename T> inline nzcv_flags predicate_test(const uint8_t* mask, const uint8_t* result) {
  const pred_bits m = pack_predicate(mask) & element_starts<T>(), r = pack_predicate(result);
  if (none_set(m)) return {false, true, true, false};
  const unsigned first = static_cast<unsigned>(first_set(m)),
                 last = static_cast<unsigned>(last_set(m));
  return {bit_set(r, first), none_set(m & r), !bit_set(r, last), false};
}

// Sets NZCV from a governing mask and a result predicate, each the address of
// a register's predicate bytes: a P register, FFR or a local buffer. The signed and
// unsigned instances of a width behave the same.
template <typename T> inline void sve_ptest(cpu_state* s, char const* mask, char const* result) {
  write_flags(s, predicate_test<T>(reinterpret_cast<const uint8_t*>(mask),
                                   reinterpret_cast<const uint8_t*>(result)));
}

// A predicate result that also sets the flags: the flags see the old mask,
// and the destination (which may be the mask itself) is written last.
template <typename T>
inline void commit_with_flags(cpu_state* s, uint8_t* dst, const uint8_t* mask, const vreg& result) {
  sve_ptest<T>(s, reinterpret_cast<const char*>(mask), reinterpret_cast<const char*>(result.b));
  commit(dst, result);
}

} // namespace ZORVO_LENGTH
