// The SVE2 permutes that read a pair of consecutive registers (tbl, ext,
// splice), tbx, the quadword zip/uzp/trn, and the address-conflict whiles.
#pragma once

#include <cstdint>
#include <cstring>

#include "elementwise.h"
#include "permute.h"

namespace generic {

// tbl with two registers: a then b form one table of twice the elements,
// and an index past it selects 0. tbx (Extend): a alone is the table, and
// an index past it keeps b's element, b being the old destination.
template <typename T, bool Extend>
void table_lookup(VecV* out, const VecV* a, const VecV* b, const VecV* indices, CpuContext* ctx) {
  VecV r;
  const unsigned n = element_count(ctx, esize_of<T>);
  for (unsigned i = 0; i < n; ++i) {
    const uint64_t index = raw<T>(*indices, i);
    uint64_t x = Extend ? raw<T>(*b, i) : 0;
    if (index < n)
      x = raw<T>(*a, unsigned(index));
    else if (!Extend && index < 2 * n)
      x = raw<T>(*b, unsigned(index - n));
    set_raw<T>(r, i, x);
  }
  *out = r;
}

// ext with two registers: the vector's length of bytes of the pair a:b
// from the offset; an offset past the vector acts as 0.
inline void extract_pair(VecV* out, const VecV* a, const VecV* b, unsigned offset,
                         CpuContext* ctx) {
  const unsigned bytes = predicate_bits(ctx);
  uint8_t pair[2 * sizeof(VecV::b)];
  std::memcpy(pair, a->b, bytes);
  std::memcpy(pair + bytes, b->b, bytes);
  VecV r{};
  std::memcpy(r.b, pair + (offset < bytes ? offset : 0), bytes);
  *out = r;
}

// zip and trn on 128-bit elements work on the first even number of
// quadwords of each operand, a last odd quadword of the result zero; uzp
// reads every quadword of both.
enum class QuadPermute { zip, unzip, transpose };
template <QuadPermute Kind, unsigned Part>
void quad_permute(VecV* out, const VecV* a, const VecV* b, CpuContext* ctx) {
  const unsigned quads = ctx->vl / 2, pairs = quads / 2;
  VecV r{};
  auto move = [&](unsigned to, const VecV& from, unsigned q) {
    std::memcpy(r.b + 16 * to, from.b + 16 * q, 16);
  };
  if (Kind == QuadPermute::unzip) {
    // Quadword 2q + Part of the pair a, b read as one vector of twice the length.
    for (unsigned q = 0; q < quads; ++q) {
      const unsigned from = 2 * q + Part;
      move(q, from < quads ? *a : *b, from < quads ? from : from - quads);
    }
  }
  for (unsigned p = 0; p < pairs && Kind != QuadPermute::unzip; ++p) {
    const unsigned from = Kind == QuadPermute::zip ? Part * pairs + p : 2 * p + Part;
    move(2 * p, *a, from);
    move(2 * p + 1, *b, from);
  }
  *out = r;
}

// whilewr, whilerw: as many elements from the first as whole elements fit
// between the two addresses, all of them when the addresses are equal or,
// for whilewr, when the second lies below the first. The addresses are
// unsigned and their difference exact; whilerw takes its absolute value.
template <typename T, bool ReadAfterWrite>
void while_no_conflict(PredV* out, uint64_t first, uint64_t second, CpuContext* ctx) {
  const unsigned n = element_count(ctx, esize_of<T>);
  const wide difference = wide(second) - wide(first);
  const wide distance = ReadAfterWrite ? AbsInt(difference) : difference;
  const bool all = first == second || (!ReadAfterWrite && first > second);
  const wide fit = distance / wide(sizeof(T));
  PredV every{};
  for (unsigned i = 0; i < n; ++i) {
    set_group(*out, i, sizeof(T), all || wide(i) < fit);
    set_group(every, i, sizeof(T), true);
  }
  PredSetNZCV(every, *out, esize_of<T>, ctx);
}

// clang-format off
#define ZORVO_PAIR_PERMUTE_FORMS(K, U)                                                    \
  constexpr auto VecU##K##TblPairVV = &table_lookup<U, false>;                              \
  constexpr auto VecU##K##TbxVVV = &table_lookup<U, true>;                                      \
  constexpr auto VecU##K##SplicePairV = &splice<U>;                                       \
  constexpr auto VecU##K##WhileWRSS = &while_no_conflict<U, false>;                       \
  constexpr auto VecU##K##WhileRWSS = &while_no_conflict<U, true>;
ZORVO_PAIR_PERMUTE_FORMS(8, uint8_t)
ZORVO_PAIR_PERMUTE_FORMS(16, uint16_t)
ZORVO_PAIR_PERMUTE_FORMS(32, uint32_t)
ZORVO_PAIR_PERMUTE_FORMS(64, uint64_t)
#undef ZORVO_PAIR_PERMUTE_FORMS
constexpr auto VecU8ExtPairVI = &extract_pair;
constexpr auto VecQ128Zip1VV = &quad_permute<QuadPermute::zip, 0>;
constexpr auto VecQ128Zip2VV = &quad_permute<QuadPermute::zip, 1>;
constexpr auto VecQ128Uzp1VV = &quad_permute<QuadPermute::unzip, 0>;
constexpr auto VecQ128Uzp2VV = &quad_permute<QuadPermute::unzip, 1>;
constexpr auto VecQ128Trn1VV = &quad_permute<QuadPermute::transpose, 0>;
constexpr auto VecQ128Trn2VV = &quad_permute<QuadPermute::transpose, 1>;
// clang-format on

} // namespace generic
