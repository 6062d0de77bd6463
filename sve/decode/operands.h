// The operand kinds of thin decoders. Each kind cuts one fast-handler
// argument out of an instruction word (`get`), names its own field layout
// (`notation`, as "Z(4:0, rw)") and tells what it passes (`describe`). A
// decoder's shape is a list of these kinds, so what the emulator passes and
// what a description shows come from the same code.
#pragma once

#include <cstdint>

#include "fields.h"
#include "immediates.h"
#include "line_writer.h"

namespace operands {

// A size parameter left at kKind takes the decoder's own element size.
constexpr uint32_t kKind = 0xff;
constexpr uint32_t size_or_kind(uint32_t size, uint32_t kind) {
  return size == kKind ? kind : size;
}

// How each argument type reads in a description.
void show(line_writer& out, aarch64_z_reg r);
void show(line_writer& out, aarch64_p_reg r);
void show(line_writer& out, aarch64_i_reg r);
void show(line_writer& out, aarch64_i_rsp_reg r);
void show(line_writer& out, unsigned int value);
void show(line_writer& out, int value);
void show(line_writer& out, aarch64_sve_fp_arith_imm imm);
void show(line_writer& out, aarch64_sve_logical64_imm imm);
void show(line_writer& out, aarch64_sve_fp_dup_imm imm);

// "X(hi:lo" followed by ", size" unless the size is the decoder's own.
void show_field(line_writer& out, char kind, unsigned hi, unsigned lo, const char* extra,
                uint32_t size);
// The predicate's `elem` word as the notation writes it: a size, /m, /z or plain.
void show_predicate_field(line_writer& out, unsigned hi, unsigned lo, uint32_t elem);

// A register describes itself by its descriptor; an immediate says which
// kind it is first.
template <typename Kind> struct register_kind {
  template <uint32_t E> static void describe(line_writer& out, uint32_t word) {
    show(out, Kind::template get<E>(word));
  }
};
template <typename Kind> struct immediate_kind {
  template <uint32_t E> static void describe(line_writer& out, uint32_t word) {
    Kind::notation(out);
    out.printf(" ");
    show(out, Kind::template get<E>(word));
  }
};

// ---- Registers ----

// An ordinary vector operand.
template <unsigned Hi, unsigned Lo, uint32_t Size = kKind>
struct Z : register_kind<Z<Hi, Lo, Size>> {
  template <uint32_t E> static aarch64_z_reg get(uint32_t w) {
    return z_operand(w, Hi, Lo, size_or_kind(Size, E));
  }
  static void notation(line_writer& out) { show_field(out, 'Z', Hi, Lo, nullptr, Size); }
};

// The destructive vector operand, destination and first source at once.
template <unsigned Hi, unsigned Lo> struct Zrw : register_kind<Zrw<Hi, Lo>> {
  template <uint32_t E> static aarch64_z_reg get(uint32_t w) { return z_destructive(w, Hi, Lo, E); }
  static void notation(line_writer& out) { show_field(out, 'Z', Hi, Lo, "rw", kKind); }
};

// A predicate operand; Elem is a size, kPMerging, kPZeroing or kPPlain.
template <unsigned Hi, unsigned Lo, uint32_t Elem = kKind>
struct P : register_kind<P<Hi, Lo, Elem>> {
  template <uint32_t E> static aarch64_p_reg get(uint32_t w) {
    return p_operand(w, Hi, Lo, size_or_kind(Elem, E));
  }
  static void notation(line_writer& out) { show_predicate_field(out, Hi, Lo, Elem); }
};

// A destructive predicate operand.
template <unsigned Hi, unsigned Lo, uint32_t Size = kKind>
struct Prw : register_kind<Prw<Hi, Lo, Size>> {
  template <uint32_t E> static aarch64_p_reg get(uint32_t w) {
    const uint32_t size = size_or_kind(Size, E);
    return {field(w, Hi, Lo), kPNone, size, size};
  }
  static void notation(line_writer& out) { show_field(out, 'P', Hi, Lo, "rw", Size); }
};

// A general register in which 31 is the zero register; Width 2 is W, 3 is X,
// or the decoder's element size where the handler wants that instead.
template <unsigned Hi, unsigned Lo, uint32_t Width = kKind>
struct R : register_kind<R<Hi, Lo, Width>> {
  template <uint32_t E> static aarch64_i_reg get(uint32_t w) {
    return {field(w, Hi, Lo), size_or_kind(Width, E), kRNone, kRNone};
  }
  static void notation(line_writer& out) { show_field(out, 'R', Hi, Lo, nullptr, Width); }
};

// A general register that is read and written.
template <unsigned Hi, unsigned Lo, uint32_t Width> struct Rrw : register_kind<Rrw<Hi, Lo, Width>> {
  template <uint32_t> static aarch64_i_reg get(uint32_t w) {
    return {field(w, Hi, Lo), kRNone, Width, Width};
  }
  static void notation(line_writer& out) { show_field(out, 'R', Hi, Lo, "rw", Width); }
};

// A general register in which 31 is SP.
template <unsigned Hi, unsigned Lo, uint32_t Width = kKind>
struct S : register_kind<S<Hi, Lo, Width>> {
  template <uint32_t E> static aarch64_i_rsp_reg get(uint32_t w) {
    return {field(w, Hi, Lo), size_or_kind(Width, E)};
  }
  static void notation(line_writer& out) { show_field(out, 'S', Hi, Lo, nullptr, Width); }
};

// The number of a SIMD&FP register.
template <unsigned Hi, unsigned Lo> struct V {
  template <uint32_t> static unsigned int get(uint32_t w) { return field(w, Hi, Lo); }
  static void notation(line_writer& out) { show_field(out, 'V', Hi, Lo, nullptr, kKind); }
  template <uint32_t E> static void describe(line_writer& out, uint32_t w) {
    out.printf("V{%u} v%u", get<E>(w), get<E>(w));
  }
};

// A SIMD&FP register that is read and written: the running value of an
// ordered reduction.
template <unsigned Hi, unsigned Lo> struct Vrw {
  template <uint32_t> static unsigned int get(uint32_t w) { return field(w, Hi, Lo); }
  static void notation(line_writer& out) { show_field(out, 'V', Hi, Lo, "rw", kKind); }
  template <uint32_t E> static void describe(line_writer& out, uint32_t w) {
    out.printf("V{%u} v%u", get<E>(w), get<E>(w));
  }
};

// ---- Immediates ----

template <unsigned Hi, unsigned Lo> struct Uimm : immediate_kind<Uimm<Hi, Lo>> {
  template <uint32_t> static unsigned int get(uint32_t w) { return field(w, Hi, Lo); }
  static void notation(line_writer& out) { out.printf("uimm(%u:%u)", Hi, Lo); }
};

template <unsigned Hi, unsigned Lo> struct Simm : immediate_kind<Simm<Hi, Lo>> {
  template <uint32_t> static int get(uint32_t w) {
    return sign_extend(field(w, Hi, Lo), Hi - Lo + 1);
  }
  static void notation(line_writer& out) { out.printf("simm(%u:%u)", Hi, Lo); }
};

// Bits 21..16 above bits 12..10, signed: the offset of LDR and STR.
struct Simm9 : immediate_kind<Simm9> {
  template <uint32_t> static int get(uint32_t w) {
    return sign_extend(field(w, 21, 16) << 3 | field(w, 12, 10), 9);
  }
  static void notation(line_writer& out) { out.printf("simm9(21:16,12:10)"); }
};

// Bits 20..16 above bits 12..10, unsigned: the byte offset of EXT.
struct UimmSplit : immediate_kind<UimmSplit> {
  template <uint32_t> static unsigned int get(uint32_t w) {
    return field(w, 20, 16) << 3 | field(w, 12, 10);
  }
  static void notation(line_writer& out) { out.printf("uimm(20:16,12:10)"); }
};

struct Uimm8Shifted : immediate_kind<Uimm8Shifted> {
  template <uint32_t> static unsigned int get(uint32_t w) { return uimm8_shifted(w); }
  static void notation(line_writer& out) { out.printf("uimm8-shifted"); }
};

struct Simm8Shifted : immediate_kind<Simm8Shifted> {
  template <uint32_t> static int get(uint32_t w) { return simm8_shifted(w); }
  static void notation(line_writer& out) { out.printf("simm8-shifted"); }
};

// The single bit that selects one of an instruction's two constants.
struct I1 : immediate_kind<I1> {
  template <uint32_t> static aarch64_sve_fp_arith_imm get(uint32_t w) {
    return {static_cast<uint8_t>(field(w, 5, 5))};
  }
  static void notation(line_writer& out) { out.printf("i1(5)"); }
};

struct PatternStep : immediate_kind<PatternStep> {
  template <uint32_t> static unsigned int get(uint32_t w) { return pattern_multiplier(w); }
  static void notation(line_writer& out) { out.printf("pattern-step"); }
};

constexpr bool kPredicated = true;
constexpr bool kUnpredicated = false;

template <bool Predicated> struct RightShift : immediate_kind<RightShift<Predicated>> {
  template <uint32_t E> static unsigned int get(uint32_t w) {
    return right_shift_amount(w, E, Predicated);
  }
  static void notation(line_writer& out) { out.printf("right-shift"); }
};

template <bool Predicated> struct LeftShift : immediate_kind<LeftShift<Predicated>> {
  template <uint32_t E> static unsigned int get(uint32_t w) {
    return left_shift_amount(w, E, Predicated);
  }
  static void notation(line_writer& out) { out.printf("left-shift"); }
};

struct LaneIndex : immediate_kind<LaneIndex> {
  template <uint32_t E> static unsigned int get(uint32_t w) { return lane_index(w, E); }
  static void notation(line_writer& out) { out.printf("lane-index"); }
};

struct Bitmask : immediate_kind<Bitmask> {
  template <uint32_t> static aarch64_sve_logical64_imm get(uint32_t w) {
    return logical_immediate(w);
  }
  static void notation(line_writer& out) { out.printf("bitmask(17:5)"); }
};

struct FpDup : immediate_kind<FpDup> {
  template <uint32_t> static aarch64_sve_fp_dup_imm get(uint32_t w) {
    return expand_fp_imm8(field(w, 12, 5));
  }
  static void notation(line_writer& out) { out.printf("fp-dup"); }
};

} // namespace operands
