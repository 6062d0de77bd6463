// Predicate results: logic, breaks, first-fault reads, ptrues, predicate
// permutes, while, and the flags of cterm.
#pragma once

#include <cstdint>

#include "count.h"

namespace generic {

// ---- Logic, bit by bit under g; the flag forms test with element size 8 ----

template <bool (*Op)(bool, bool), bool SetFlags>
void predicate_logic(PredV* out, const PredV* g, const PredV* a, const PredV* b, CpuContext* ctx) {
  const unsigned bytes = predicate_bits(ctx);
  for (unsigned i = 0; i < bytes; ++i)
    set_pred_bit(*out, i, pred_bit(*g, i) && Op(pred_bit(*a, i), pred_bit(*b, i)));
  if (SetFlags) PredSetNZCV(*g, *out, 8, ctx);
}
constexpr bool logic_and(bool a, bool b) { return a && b; }
constexpr bool logic_bic(bool a, bool b) { return a && !b; }
constexpr bool logic_or(bool a, bool b) { return a || b; }
constexpr bool logic_orn(bool a, bool b) { return a || !b; }
constexpr bool logic_xor(bool a, bool b) { return a != b; }
constexpr bool logic_nand(bool a, bool b) { return !(a && b); }
constexpr bool logic_nor(bool a, bool b) { return !(a || b); }

// ---- Breaks ----

// brka (after: the breaking element stays active) and brkb (before).
constexpr bool kBreakAfter = true;
constexpr bool kBreakBefore = false;
template <bool After>
void break_flags(PredV* out, const PredV* g, const PredV* a, CpuContext* ctx) {
  const unsigned bytes = predicate_bits(ctx);
  bool broken = false;
  for (unsigned i = 0; i < bytes; ++i) {
    bool bit = false;
    if (pred_bit(*g, i)) {
      if (!After) broken = broken || pred_bit(*a, i);
      bit = !broken;
      if (After) broken = broken || pred_bit(*a, i);
    }
    set_pred_bit(*out, i, bit);
  }
  PredSetNZCV(*g, *out, 8, ctx);
}

// brkpa: if a is set at the last active bit of g, b's active bits up to and
// including its first set one.
template <bool SetFlags>
void break_propagate_after(PredV* out, const PredV* g, const PredV* a, const PredV* b,
                           CpuContext* ctx) {
  const unsigned bytes = predicate_bits(ctx);
  const int32_t last = FindLastActive(*g, 8, ctx);
  bool running = last >= 0 && pred_bit(*a, unsigned(last));
  for (unsigned i = 0; i < bytes; ++i) {
    const bool on = pred_bit(*g, i);
    set_pred_bit(*out, i, on && running);
    if (on) running = running && !pred_bit(*b, i);
  }
  if (SetFlags) PredSetNZCV(*g, *out, 8, ctx);
}

// ---- First-fault register and first active ----

inline void actual_flags(PredV* out, const PredV* g, CpuContext* ctx) {
  const unsigned bytes = predicate_bits(ctx);
  for (unsigned i = 0; i < bytes; ++i)
    set_pred_bit(*out, i, pred_bit(*g, i) && pred_bit(ctx->ffr, i));
  PredSetNZCV(*g, *out, 8, ctx);
}

inline void set_first_active(PredV* out, const PredV* g, const PredV* a, CpuContext* ctx) {
  const unsigned bytes = predicate_bits(ctx);
  for (unsigned i = 0; i < bytes; ++i) set_pred_bit(*out, i, pred_bit(*a, i));
  const int32_t first = FindFirstActive(*g, 8, ctx);
  if (first >= 0) set_pred_bit(*out, unsigned(first), true);
  PredSetNZCV(*g, *out, 8, ctx);
}

// ---- By element ----

template <typename T> void true_flags(PredV* out, uint32_t pattern, CpuContext* ctx) {
  const unsigned n = element_count(ctx, esize_of<T>);
  const unsigned count = VecTrueILength(pattern, n);
  for (unsigned i = 0; i < n; ++i) set_group(*out, i, sizeof(T), i < count);
  PredSetNZCV(*out, *out, esize_of<T>, ctx);
}

// Copies the whole group of element `from` of src to element `to` of out.
inline void copy_group(PredV& out, unsigned to, const PredV& src, unsigned from, unsigned group) {
  for (unsigned b = 0; b < group; ++b)
    set_pred_bit(out, to * group + b, pred_bit(src, from * group + b));
}

// trn1 (Odd false) and trn2 (Odd true).
template <typename T, bool Odd>
void transpose(PredV* out, const PredV* a, const PredV* b, CpuContext* ctx) {
  const unsigned n = element_count(ctx, esize_of<T>);
  for (unsigned pair = 0; pair + 1 < n; pair += 2) {
    copy_group(*out, pair, *a, pair + Odd, sizeof(T));
    copy_group(*out, pair + 1, *b, pair + Odd, sizeof(T));
  }
}

// uzp2: the odd elements of a, then those of b.
template <typename T> void unzip_odd(PredV* out, const PredV* a, const PredV* b, CpuContext* ctx) {
  const unsigned n = element_count(ctx, esize_of<T>);
  for (unsigned i = 0; i < n; ++i) {
    const unsigned from = 2 * i + 1;
    if (from < n)
      copy_group(*out, i, *a, from, sizeof(T));
    else
      copy_group(*out, i, *b, from - n, sizeof(T));
  }
}

// whilelt/whilele (and the unsigned whilelo/whilels) on Bits-wide scalars.
// The processor counts in the operand's width, so a count that passes the
// largest value wraps and stays at or below it: such an LE is all true.
constexpr bool kLessOrEqual = true;
template <typename T, unsigned Bits, bool OrEqual>
void while_less(PredV* out, uint64_t first, uint64_t limit, CpuContext* ctx) {
  const unsigned n = element_count(ctx, esize_of<T>);
  const wide start = Int(first, Bits, unsigned_kind<T>), end = Int(limit, Bits, unsigned_kind<T>);
  const wide largest = unsigned_kind<T> ? wide(ones(Bits)) : wide(ones(Bits - 1));
  PredV all{};
  bool run = true;
  for (unsigned i = 0; i < n; ++i) {
    run = run && ((OrEqual && end == largest) || (OrEqual ? start + i <= end : start + i < end));
    set_group(*out, i, sizeof(T), run);
    set_group(all, i, sizeof(T), true);
  }
  PredSetNZCV(all, *out, esize_of<T>, ctx);
}

// ctermeq/ctermne: N is the outcome, V is set when neither it nor C is.
template <unsigned Bits, bool Equal>
void compare_terminate(uint64_t a, uint64_t b, CpuContext* ctx) {
  const bool t = ((a ^ b) & ones(Bits)) == 0 ? Equal : !Equal;
  const bool carry = (ctx->nzcv >> 29) & 1;
  ctx->nzcv = (ctx->nzcv & ~0x90000000u) | uint32_t(t) << 31 | uint32_t(!t && !carry) << 28;
}

// clang-format off
constexpr auto VecPAndFlgPPZ = &predicate_logic<logic_and, true>;
constexpr auto VecPBicFlgPPZ = &predicate_logic<logic_bic, true>;
constexpr auto VecPOrFlgPPZ = &predicate_logic<logic_or, true>;
constexpr auto VecPOrNPPZ = &predicate_logic<logic_orn, false>;
constexpr auto VecPOrNFlgPPZ = &predicate_logic<logic_orn, true>;
constexpr auto VecPXorFlgPPZ = &predicate_logic<logic_xor, true>;
constexpr auto VecPNandPPZ = &predicate_logic<logic_nand, false>;
constexpr auto VecPNandFlgPPZ = &predicate_logic<logic_nand, true>;
constexpr auto VecPNorFlgPPZ = &predicate_logic<logic_nor, true>;

constexpr auto VecPBreakAFlgPZ = &break_flags<kBreakAfter>;
constexpr auto VecPBreakBFlgPZ = &break_flags<kBreakBefore>;
constexpr auto VecPBreakPrevAPZ = &break_propagate_after<false>;
constexpr auto VecPBreakPrevAFlgPZ = &break_propagate_after<true>;

constexpr auto VecPActualFlgP = &actual_flags;
constexpr auto VecPSetFirstActiveP = &set_first_active;

constexpr auto VecP8TrueFlgI = &true_flags<uint8_t>;
constexpr auto VecP16TrueFlgI = &true_flags<uint16_t>;
constexpr auto VecP32TrueFlgI = &true_flags<uint32_t>;
constexpr auto VecP64TrueFlgI = &true_flags<uint64_t>;

constexpr auto VecP8Trn1PP = &transpose<uint8_t, false>;
constexpr auto VecP8Trn2PP = &transpose<uint8_t, true>;
constexpr auto VecP8Uzp2PP = &unzip_odd<uint8_t>;
constexpr auto VecP16Trn1PP = &transpose<uint16_t, false>;
constexpr auto VecP16Trn2PP = &transpose<uint16_t, true>;
constexpr auto VecP16Uzp2PP = &unzip_odd<uint16_t>;
constexpr auto VecP32Trn1PP = &transpose<uint32_t, false>;
constexpr auto VecP32Trn2PP = &transpose<uint32_t, true>;
constexpr auto VecP32Uzp2PP = &unzip_odd<uint32_t>;
constexpr auto VecP64Trn1PP = &transpose<uint64_t, false>;
constexpr auto VecP64Trn2PP = &transpose<uint64_t, true>;
constexpr auto VecP64Uzp2PP = &unzip_odd<uint64_t>;

constexpr auto VecS8While4LESS = &while_less<int8_t, 32, kLessOrEqual>;
constexpr auto VecS8While8LESS = &while_less<int8_t, 64, kLessOrEqual>;
constexpr auto VecS16While4LESS = &while_less<int16_t, 32, kLessOrEqual>;
constexpr auto VecS16While8LESS = &while_less<int16_t, 64, kLessOrEqual>;
constexpr auto VecS32While4LESS = &while_less<int32_t, 32, kLessOrEqual>;
constexpr auto VecS32While8LESS = &while_less<int32_t, 64, kLessOrEqual>;
constexpr auto VecS64While4LESS = &while_less<int64_t, 32, kLessOrEqual>;
constexpr auto VecS64While8LESS = &while_less<int64_t, 64, kLessOrEqual>;

constexpr auto VecU32CTermEQ = &compare_terminate<32, true>;
constexpr auto VecU32CTermNE = &compare_terminate<32, false>;
constexpr auto VecU64CTermEQ = &compare_terminate<64, true>;
constexpr auto VecU64CTermNE = &compare_terminate<64, false>;
// clang-format on

} // namespace generic
