// Predicates as cpu_state holds them, one byte per vector byte, and the
// condition flags that a predicate result sets. Shared by every family that
// reads or writes predicates: compares, predicate generation, while, break,
// next-active and the first-fault register.
#pragma once

#include <cstdint>
#include <cstring>

#include <arm_neon.h>

#include "element.h"

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
// the 48-bit value is byte i. Unpacking writes exactly 0 or 1 to each byte.
//
// Packing: bit 0 of each byte moves to its place within its group of eight
// (a shift by the byte's position), and three pairwise additions sum each
// group into one byte. Unpacking spreads a byte to all eight, keeps bit k in
// byte k and turns each non-zero byte into 1 without a carry between bytes.
inline uint64_t pack_predicate(const uint8_t* pred) {
  const uint8x16_t one = vdupq_n_u8(1);
  const int8x16_t place = {0, 1, 2, 3, 4, 5, 6, 7, 0, 1, 2, 3, 4, 5, 6, 7};
  const uint8x16_t a = vshlq_u8(vandq_u8(vld1q_u8(pred), one), place);
  const uint8x16_t b = vshlq_u8(vandq_u8(vld1q_u8(pred + 16), one), place);
  const uint8x16_t c = vshlq_u8(vandq_u8(vld1q_u8(pred + 32), one), place);
  const uint8x16_t pairs = vpaddq_u8(vpaddq_u8(a, b), vpaddq_u8(c, c));
  return vgetq_lane_u64(vreinterpretq_u64_u8(vpaddq_u8(pairs, pairs)), 0) & 0xffffffffffffu;
}
inline void unpack_predicate(uint8_t* pred, uint64_t bits) {
  for (unsigned k = 0; k < 6; ++k) {
    const uint64_t spread = (bits >> (8 * k) & 0xff) * 0x0101010101010101u;
    const uint64_t x =
        ((spread & 0x8040201008040201u) + 0x7f7f7f7f7f7f7f7fu) >> 7 & 0x0101010101010101u;
    std::memcpy(pred + 8 * k, &x, 8);
  }
}

// The bits of the packed form where elements of sizeof(T) bytes start.
template <typename T> constexpr uint64_t element_starts() {
  uint64_t bits = 0;
  for (unsigned i = 0; i < 48; i += sizeof(T)) bits |= uint64_t{1} << i;
  return bits;
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
  const uint64_t m = pack_predicate(mask) & element_starts<T>(), r = pack_predicate(result);
  if (m == 0) return {false, true, true, false};
  const unsigned first = __builtin_ctzll(m), last = 63 - __builtin_clzll(m);
  return {(r >> first & 1) != 0, (m & r) == 0, (r >> last & 1) == 0, false};
}

// Sets NZCV from a governing mask and a result predicate, each the address of
// 48 predicate bytes: a P register, FFR or a local buffer. The signed and
// unsigned instances of a width behave the same.
template <typename T> inline void sve_ptest(cpu_state* s, char const* mask, char const* result) {
  write_flags(s, predicate_test<T>(reinterpret_cast<const uint8_t*>(mask),
                                   reinterpret_cast<const uint8_t*>(result)));
}

// A predicate result that also sets the flags: the flags see the old mask,
// and the destination (which may be the mask itself) is written last.
template <typename T>
inline void commit_with_flags(cpu_state* s, uint8_t* dst, const uint8_t* mask,
                              const vec48& result) {
  sve_ptest<T>(s, reinterpret_cast<const char*>(mask), reinterpret_cast<const char*>(result.b));
  commit(dst, result);
}
