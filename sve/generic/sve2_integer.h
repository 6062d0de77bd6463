// SVE2 integer forms of one element width: three-way bitwise logic, xar,
// pairwise operations, doubling high multiplies, while counting down, and
// the histogram and match forms.
#pragma once

#include <cstdint>

#include "compare.h"
#include "elementwise.h"
#include "predicate.h"
#include "widen_narrow.h"

namespace generic {

// eor3, bcax and the bit selects, on whole doublewords: d is also the result.
using TernaryOp = uint64_t (*)(uint64_t d, uint64_t m, uint64_t k);
inline uint64_t eor3_op(uint64_t d, uint64_t m, uint64_t k) { return d ^ m ^ k; }
inline uint64_t bcax_op(uint64_t d, uint64_t m, uint64_t k) { return d ^ (m & ~k); }
inline uint64_t bsl_op(uint64_t d, uint64_t m, uint64_t k) { return (d & k) | (m & ~k); }
inline uint64_t bsl1n_op(uint64_t d, uint64_t m, uint64_t k) { return (~d & k) | (m & ~k); }
inline uint64_t bsl2n_op(uint64_t d, uint64_t m, uint64_t k) { return (d & k) | (~m & ~k); }
inline uint64_t nbsl_op(uint64_t d, uint64_t m, uint64_t k) { return ~bsl_op(d, m, k); }

template <TernaryOp Op>
void ternary(VecV* out, const VecV* d, const VecV* m, const VecV* k, CpuContext* ctx) {
  VecV r;
  const unsigned n = element_count(ctx, 64);
  for (unsigned i = 0; i < n; ++i)
    set_element<uint64_t>(
        r, i, Op(element<uint64_t>(*d, i), element<uint64_t>(*m, i), element<uint64_t>(*k, i)));
  *out = r;
}

// xar: (d ^ m) rotated right; a rotation by the element's width is none.
template <typename T>
void exclusive_or_rotate(VecV* out, const VecV* d, const VecV* m, unsigned shift, CpuContext* ctx) {
  VecV r;
  const unsigned n = element_count(ctx, esize_of<T>), width = esize_of<T>;
  for (unsigned i = 0; i < n; ++i) {
    const uint64_t x = raw<T>(*d, i) ^ raw<T>(*m, i);
    const unsigned s = shift % width;
    set_raw<T>(r, i, s == 0 ? x : (x >> s | x << (width - s)));
  }
  *out = r;
}

// addp, smaxp...: an active even element takes a pair of a, an active odd
// one the pair of b at the same place; inactive elements keep a.
inline wide wide_max(wide a, wide b) { return a > b ? a : b; }
inline wide wide_min(wide a, wide b) { return a < b ? a : b; }
template <typename T, WideOp Op>
void pairwise(VecV* out, const PredV* g, const VecV* a, const VecV* b, CpuContext* ctx) {
  VecV r;
  const unsigned n = element_count(ctx, esize_of<T>);
  for (unsigned i = 0; i < n; ++i) {
    const VecV& from = i % 2 ? *b : *a;
    const unsigned first = i & ~1u;
    set_raw<T>(r, i,
               active(*g, i, sizeof(T))
                   ? bits(Op(widen<T>(raw<T>(from, first)), widen<T>(raw<T>(from, first + 1))))
                   : raw<T>(*a, i));
  }
  *out = r;
}

// sqdmulh, sqrdmulh: the high half of 2ab, saturated. Halving both sides
// keeps a product of two 64-bit elements inside 128 bits.
template <typename T, bool Round>
void doubling_multiply_high(VecV* out, const VecV* a, const VecV* b, CpuContext* ctx) {
  VecV r;
  const unsigned n = element_count(ctx, esize_of<T>), width = esize_of<T>;
  for (unsigned i = 0; i < n; ++i) {
    wide product = widen<T>(raw<T>(*a, i)) * widen<T>(raw<T>(*b, i));
    if (Round) product += wide(1) << (width - 2);
    set_raw<T>(r, i, SatQ(product >> (width - 1), width, false).value);
  }
  *out = r;
}

// whilege/whilegt (signed T) and whilehs/whilehi (unsigned T): the last
// element compares `first`, each one before it one less, in the scalars'
// own width, so the count wraps below the smallest value.
template <typename T, unsigned Bits, bool OrEqual>
void while_down(PredV* out, uint64_t first, uint64_t limit, CpuContext* ctx) {
  const unsigned n = element_count(ctx, esize_of<T>);
  const wide end = Int(limit, Bits, unsigned_kind<T>);
  uint64_t count = first & ones(Bits);
  PredV all{};
  bool run = true;
  for (unsigned i = n; i-- > 0;) {
    const wide c = Int(count, Bits, unsigned_kind<T>);
    run = run && (OrEqual ? c >= end : c > end);
    set_group(*out, i, sizeof(T), run);
    set_group(all, i, sizeof(T), true);
    count = (count - 1) & ones(Bits);
  }
  PredSetNZCV(all, *out, esize_of<T>, ctx);
}

// histcnt: for each active element of a, the active elements of b up to
// its place that equal it.
template <typename T>
void histogram_count(VecV* out, const PredV* g, const VecV* a, const VecV* b, CpuContext* ctx) {
  VecV r;
  const unsigned n = element_count(ctx, esize_of<T>);
  for (unsigned i = 0; i < n; ++i) {
    uint64_t count = 0;
    if (active(*g, i, sizeof(T)))
      for (unsigned j = 0; j <= i; ++j)
        count += active(*g, j, sizeof(T)) && raw<T>(*a, i) == raw<T>(*b, j);
    set_raw<T>(r, i, count);
  }
  *out = r;
}

// histseg: for each byte of a, the bytes of b's 128-bit segment that equal it.
inline void histogram_segment(VecV* out, const VecV* a, const VecV* b, CpuContext* ctx) {
  VecV r;
  const unsigned n = element_count(ctx, 8);
  for (unsigned i = 0; i < n; ++i) {
    const unsigned segment = i & ~15u;
    uint64_t count = 0;
    for (unsigned j = 0; j < 16; ++j) count += raw<uint8_t>(*a, i) == raw<uint8_t>(*b, segment + j);
    set_raw<uint8_t>(r, i, count);
  }
  *out = r;
}

// match/nmatch: whether an active element of a occurs in b's segment.
template <typename T, bool Found>
void segment_match(PredV* out, const PredV* g, const VecV* a, const VecV* b, CpuContext* ctx) {
  const unsigned n = element_count(ctx, esize_of<T>), per_segment = 16 / sizeof(T);
  for (unsigned i = 0; i < n; ++i) {
    const unsigned segment = i & ~(per_segment - 1);
    bool found = false;
    for (unsigned j = 0; j < per_segment; ++j) found |= raw<T>(*a, i) == raw<T>(*b, segment + j);
    set_group(*out, i, sizeof(T), active(*g, i, sizeof(T)) && found == Found);
  }
  PredSetNZCV(*g, *out, esize_of<T>, ctx);
}

// clang-format off
constexpr auto VecU64Eor3VVV = &ternary<eor3_op>;
constexpr auto VecU64BcaxVVV = &ternary<bcax_op>;
constexpr auto VecU64BslVVV = &ternary<bsl_op>;
constexpr auto VecU64Bsl1nVVV = &ternary<bsl1n_op>;
constexpr auto VecU64Bsl2nVVV = &ternary<bsl2n_op>;
constexpr auto VecU64NbslVVV = &ternary<nbsl_op>;

#define ZORVO_SIZED_FORMS(K, S, U)                                                    \
  constexpr auto VecU##K##XarVVI = &exclusive_or_rotate<U>;                           \
  constexpr auto VecU##K##AddPVVM = &pairwise<U, wide_add>;                           \
  constexpr auto VecS##K##MaxPVVM = &pairwise<S, wide_max>;                           \
  constexpr auto VecU##K##MaxPVVM = &pairwise<U, wide_max>;                           \
  constexpr auto VecS##K##MinPVVM = &pairwise<S, wide_min>;                           \
  constexpr auto VecU##K##MinPVVM = &pairwise<U, wide_min>;                           \
  constexpr auto VecS##K##QDMulHVV = &doubling_multiply_high<S, false>;               \
  constexpr auto VecS##K##QRDMulHVV = &doubling_multiply_high<S, true>;               \
  constexpr auto VecS##K##While4GESS = &while_down<S, 32, true>;                      \
  constexpr auto VecS##K##While4GTSS = &while_down<S, 32, false>;                     \
  constexpr auto VecU##K##While4HSSS = &while_down<U, 32, true>;                      \
  constexpr auto VecU##K##While4HISS = &while_down<U, 32, false>;                     \
  constexpr auto VecS##K##While8GESS = &while_down<S, 64, true>;                      \
  constexpr auto VecS##K##While8GTSS = &while_down<S, 64, false>;                     \
  constexpr auto VecU##K##While8HSSS = &while_down<U, 64, true>;                      \
  constexpr auto VecU##K##While8HISS = &while_down<U, 64, false>;
ZORVO_SIZED_FORMS(8, int8_t, uint8_t)
ZORVO_SIZED_FORMS(16, int16_t, uint16_t)
ZORVO_SIZED_FORMS(32, int32_t, uint32_t)
ZORVO_SIZED_FORMS(64, int64_t, uint64_t)
#undef ZORVO_SIZED_FORMS

constexpr auto VecU32HistCntVVZ = &histogram_count<uint32_t>;
constexpr auto VecU64HistCntVVZ = &histogram_count<uint64_t>;
constexpr auto VecU8HistSegVV = &histogram_segment;
constexpr auto VecU8MatchVVZ = &segment_match<uint8_t, true>;
constexpr auto VecU16MatchVVZ = &segment_match<uint16_t, true>;
constexpr auto VecU8NMatchVVZ = &segment_match<uint8_t, false>;
constexpr auto VecU16NMatchVVZ = &segment_match<uint16_t, false>;
// clang-format on

} // namespace generic
