// How a bridge decoder is made: it carries one instruction out on the
// generic tier. It fills a CpuContext from cpu_state, copies the operands
// into vector and predicate values, calls the generic function of its own
// name, and stores the result and the context back.
//
//   BRIDGE_DECODER(VecS32AddReduceV, vd_pg_zn, ELEM_S)
//
// defines the decoder VecS32AddReduceV, which calls generic::VecS32AddReduceV.
// A bridge shape is the result kind followed by the argument kinds, in the
// generic function's argument order.
#pragma once

#include <cstdint>
#include <cstring>
#include <tuple>
#include <utility>

#include "../generic/vector.h"
#include "../state/vector_length.h"
#include "decoders.h"
#include "names.h"
#include "operands.h"
#include "thin.h"

// The FPCR bits the generic tier may see: AHP, DN, FZ, RMode, FZ16 and the
// trap enables.
constexpr uint32_t kGenericFpcrMask = 0x07c89f00;

// Byte i of the register file's predicate form is bit i of the packed form.
PredV to_pred_v(const uint8_t* bytes);
void from_pred_v(const PredV& p, uint8_t* bytes);

// The context of one instruction, and its way back into cpu_state.
CpuContext enter_generic(const cpu_state* s);
void leave_generic(cpu_state* s, const CpuContext& ctx);

namespace bridge_kinds {
using operands::kKind;
using operands::show_field;

// ---- Arguments: an operand kind of operands.h, read as a value ----

// A vector register, copied into a vector value.
template <typename Kind> struct Vec : Kind {
  using held = VecV;
  template <uint32_t E> static VecV load(const cpu_state* s, uint32_t w) {
    VecV v;
    std::memcpy(v.b, s->z[Kind::template get<E>(w).num], vector_bytes());
    return v;
  }
  static const VecV* pass(const VecV& v) { return &v; }
};

// A predicate register, packed.
template <typename Kind> struct Pred : Kind {
  using held = PredV;
  template <uint32_t E> static PredV load(const cpu_state* s, uint32_t w) {
    return to_pred_v(s->p[Kind::template get<E>(w).num]);
  }
  static const PredV* pass(const PredV& p) { return &p; }
};

// A general register: all 64 bits, 0 for number 31 (or SP for an S kind).
template <typename Kind> struct Scalar : Kind {
  using held = uint64_t;
  template <uint32_t E> static uint64_t load(const cpu_state* s, uint32_t w) {
    return read_reg(s, Kind::template get<E>(w));
  }
  static uint64_t pass(uint64_t v) { return v; }
};

// The low 8 bytes of a SIMD&FP register.
template <typename Kind> struct SimdScalar : Kind {
  using held = uint64_t;
  template <uint32_t E> static uint64_t load(const cpu_state* s, uint32_t w) {
    uint64_t v;
    std::memcpy(&v, s->z[Kind::template get<E>(w)], sizeof v);
    return v;
  }
  static uint64_t pass(uint64_t v) { return v; }
};

// An immediate, as the operand kind computes it.
template <typename Kind> struct Imm : Kind {
  using held = decltype(Kind::template get<0>(0));
  template <uint32_t E> static held load(const cpu_state*, uint32_t w) {
    return Kind::template get<E>(w);
  }
  static held pass(held v) { return v; }
};

// An immediate cut to the element's width.
template <typename Kind> struct ImmElement : Kind {
  using held = uint64_t;
  template <uint32_t E> static uint64_t load(const cpu_state*, uint32_t w) {
    return static_cast<uint64_t>(Kind::template get<E>(w)) & (~uint64_t{0} >> (64 - (8u << E)));
  }
  static uint64_t pass(uint64_t v) { return v; }
};

// ---- Results ----

// A vector built in supplied storage, the whole register to Z register Hi:Lo.
template <unsigned Hi, unsigned Lo> struct ToZ {
  template <auto Fn, typename... A> static void call(cpu_state* s, uint32_t w, A... a) {
    VecV out;
    Fn(&out, a...);
    std::memcpy(s->z[field(w, Hi, Lo)], out.b, vector_bytes());
  }
  static void describe(line_writer& out, uint32_t w) { out.printf("z%u", field(w, Hi, Lo)); }
  static void notation(line_writer& out) { show_field(out, 'Z', Hi, Lo, nullptr, kKind); }
};

// A predicate built in supplied storage, unpacked into P register Hi:Lo.
template <unsigned Hi, unsigned Lo> struct ToP {
  template <auto Fn, typename... A> static void call(cpu_state* s, uint32_t w, A... a) {
    PredV out{};
    Fn(&out, a...);
    from_pred_v(out, s->p[field(w, Hi, Lo)]);
  }
  static void describe(line_writer& out, uint32_t w) { out.printf("p%u", field(w, Hi, Lo)); }
  static void notation(line_writer& out) { show_field(out, 'P', Hi, Lo, nullptr, kKind); }
};

// A returned scalar into general register 4:0 (31 discards it), cut to
// Bits and zero-extended.
template <unsigned Bits> struct ToX {
  template <auto Fn, typename... A> static void call(cpu_state* s, uint32_t w, A... a) {
    const uint64_t value = Fn(a...);
    write_reg(s, aarch64_i_reg{field(w, 4, 0), 3, kRNone, kRNone},
              Bits == 64 ? value : value & ((uint64_t{1} << Bits) - 1));
  }
  static void describe(line_writer& out, uint32_t w) {
    const char prefix = Bits == 64 ? 'x' : 'w';
    if (field(w, 4, 0) == 31)
      out.printf("%czr", prefix);
    else
      out.printf("%c%u", prefix, field(w, 4, 0));
  }
  static void notation(line_writer& out) {
    show_field(out, 'R', 4, 0, nullptr, Bits == 64 ? 3 : 2);
  }
};

// A returned scalar into the low Bytes of SIMD&FP register 4:0, the rest
// of the register cleared.
template <unsigned Bytes> struct ToV {
  template <auto Fn, typename... A> static void call(cpu_state* s, uint32_t w, A... a) {
    const uint64_t value = Fn(a...);
    uint8_t* z = s->z[field(w, 4, 0)];
    std::memset(z, 0, vector_bytes());
    std::memcpy(z, &value, Bytes);
  }
  static void describe(line_writer& out, uint32_t w) {
    out.printf("%c%u",
               Bytes == 1   ? 'b'
               : Bytes == 2 ? 'h'
               : Bytes == 4 ? 's'
                            : 'd',
               field(w, 4, 0));
  }
  static void notation(line_writer& out) { show_field(out, 'V', 4, 0, nullptr, kKind); }
};

// Only the flags in the context change.
struct FlagsOnly {
  template <auto Fn, typename... A> static void call(cpu_state*, uint32_t, A... a) { Fn(a...); }
  static void describe(line_writer& out, uint32_t) { out.printf("nzcv"); }
  static void notation(line_writer& out) { out.printf("NZCV"); }
};

} // namespace bridge_kinds

template <typename Result, typename... Args> struct bridge {
  template <uint32_t E, auto Fn> static aarch64_decode_rc run(cpu_state* s, uint32_t w) {
    CpuContext ctx = enter_generic(s);
    call<E, Fn>(s, w, ctx, std::index_sequence_for<Args...>{});
    leave_generic(s, ctx);
    return AARCH64_DECODE_OK;
  }

  // The arguments as a thin decoder describes them, then the destination.
  template <uint32_t E> static void describe(line_writer& out, uint32_t w) {
    shape<Args...>::template describe<E>(out, w);
    out.printf(" -> ");
    Result::describe(out, w);
  }
  static void notation(line_writer& out) {
    shape<Args...>::notation(out);
    out.printf(" -> ");
    Result::notation(out);
  }

private:
  template <uint32_t E, auto Fn, size_t... I>
  static void call(cpu_state* s, uint32_t w, CpuContext& ctx, std::index_sequence<I...>) {
    const std::tuple<typename Args::held...> held{Args::template load<E>(s, w)...};
    Result::template call<Fn>(s, w, Args::pass(std::get<I>(held))..., &ctx);
  }
};

// The quadword permutes and the octaword loads are undefined below 256 bits,
// as on a processor of that length.
constexpr bool needs_256_bits(const char* name) {
  using names::contains, names::starts_with;
  return (starts_with(name, "VecQ128") && !contains(name, "PMul")) || contains(name, "Dup1O") ||
         contains(name, "Dup2O") || contains(name, "Dup4O") || contains(name, "Dup8O");
}

#define BRIDGE_DECODER(name, shape_type, elem)                                                     \
  aarch64_decode_rc name(cpu_state* s, uint32_t w) {                                               \
    if constexpr (needs_256_bits(#name))                                                           \
      if (process_vector_bytes() < 32) return AARCH64_DECODE_UNIMPLEMENTED;                        \
    return shape_type::run<elem, generic::name>(s, w);                                             \
  }
