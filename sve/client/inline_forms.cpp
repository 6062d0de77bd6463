#include "inline_forms.h"

#include "../decode/names.h"
#include "../decode/sve_utils.h"
#include "inline_compare.h"
#include "inline_memory.h"
#include "inline_parts.h"
#include "inline_predicates.h"

namespace {

using namespace a64;

struct form_entry {
  const char* family;
  const char* decoder;
  element_size elem;
};

// Every row of forms.inc, by index, as find_form numbers them.
constexpr form_entry kForms[] = {
#define THIN(family, map, key, decoder, shape, elem, ...) {#family, #decoder, elem},
#define BRIDGE(family, map, key, decoder, shape, elem, ...) {#family, #decoder, elem},
#define EMPTY(map, key, decoder, ...) {"", #decoder, ELEM_B},
#include "../decode/forms.inc"
};
static_assert(sizeof kForms / sizeof kForms[0] == kFormCount);

// The inline forms by the name of their row's decoder; one name stands for
// its rows at every element size ("VecU*AddVVX": the size is the row's).
struct inline_row {
  const char* pattern;
  inline_op op;
};
constexpr inline_row kInlineRows[] = {
    {"VecU*AddVVX", inline_op::add_zzz},
    {"VecU*SubVVX", inline_op::sub_zzz},
    {"VecU64AndVVX", inline_op::and_zzz},
    {"VecU64OrVVX", inline_op::orr_zzz},
    {"VecU64XorVVX", inline_op::eor_zzz},
    {"VecU*AddVIX", inline_op::add_zi},
    {"VecU*SubVIX", inline_op::sub_zi},
    {"VecS*DupI", inline_op::dup_zi},
    {"VecU*DupS", inline_op::dup_zr},
    {"VecU*CountVLSI", inline_op::count_x},
    {"VecU*IncrVLSI", inline_op::increment_x},
    {"VecU*DecrVLSI", inline_op::decrement_x},
    {"VecU*IncrVLVI", inline_op::increment_z},
    {"VecU*DecrVLVI", inline_op::decrement_z},
    {"VecU8CLoad1SIZ", inline_op::load_imm},
    {"VecU16CLoad2SIZ", inline_op::load_imm},
    {"VecU32CLoad4SIZ", inline_op::load_imm},
    {"VecU64CLoad8SIZ", inline_op::load_imm},
    {"VecU8CLoad1LSSZ", inline_op::load_reg},
    {"VecU16CLoad2LSSZ", inline_op::load_reg},
    {"VecU32CLoad4LSSZ", inline_op::load_reg},
    {"VecU64CLoad8LSSZ", inline_op::load_reg},
    {"VecU8CStore1SIZ", inline_op::store_imm},
    {"VecU16CStore2SIZ", inline_op::store_imm},
    {"VecU32CStore4SIZ", inline_op::store_imm},
    {"VecU64CStore8SIZ", inline_op::store_imm},
    {"VecU8CStore1LSSZ", inline_op::store_reg},
    {"VecU16CStore2LSSZ", inline_op::store_reg},
    {"VecU32CStore4LSSZ", inline_op::store_reg},
    {"VecU64CStore8LSSZ", inline_op::store_reg},
    {"VecU16CLoad1SIZ", inline_op::load_widen_imm},
    {"VecU32CLoad1SIZ", inline_op::load_widen_imm},
    {"VecU64CLoad1SIZ", inline_op::load_widen_imm},
    {"VecU32CLoad2SIZ", inline_op::load_widen_imm},
    {"VecU64CLoad2SIZ", inline_op::load_widen_imm},
    {"VecU64CLoad4SIZ", inline_op::load_widen_imm},
    {"VecS*CLoad*SIZ", inline_op::load_widen_imm},
    {"VecU16CLoad1LSSZ", inline_op::load_widen_reg},
    {"VecU32CLoad1LSSZ", inline_op::load_widen_reg},
    {"VecU64CLoad1LSSZ", inline_op::load_widen_reg},
    {"VecU32CLoad2LSSZ", inline_op::load_widen_reg},
    {"VecU64CLoad2LSSZ", inline_op::load_widen_reg},
    {"VecU64CLoad4LSSZ", inline_op::load_widen_reg},
    {"VecS*CLoad*LSSZ", inline_op::load_widen_reg},
    {"VecU16CStore1SIZ", inline_op::store_narrow_imm},
    {"VecU32CStore1SIZ", inline_op::store_narrow_imm},
    {"VecU64CStore1SIZ", inline_op::store_narrow_imm},
    {"VecU32CStore2SIZ", inline_op::store_narrow_imm},
    {"VecU64CStore2SIZ", inline_op::store_narrow_imm},
    {"VecU64CStore4SIZ", inline_op::store_narrow_imm},
    {"VecU16CStore1LSSZ", inline_op::store_narrow_reg},
    {"VecU32CStore1LSSZ", inline_op::store_narrow_reg},
    {"VecU64CStore1LSSZ", inline_op::store_narrow_reg},
    {"VecU32CStore2LSSZ", inline_op::store_narrow_reg},
    {"VecU64CStore2LSSZ", inline_op::store_narrow_reg},
    {"VecU64CStore4LSSZ", inline_op::store_narrow_reg},
    {"VecF32AddVVX", inline_op::fadd_zzz},
    {"VecD64AddVVX", inline_op::fadd_zzz},
    {"VecF32SubVVX", inline_op::fsub_zzz},
    {"VecD64SubVVX", inline_op::fsub_zzz},
    {"VecF32MulVVX", inline_op::fmul_zzz},
    {"VecD64MulVVX", inline_op::fmul_zzz},
    {"VecF32AddVVM", inline_op::fadd_zpz},
    {"VecD64AddVVM", inline_op::fadd_zpz},
    {"VecF32SubVVM", inline_op::fsub_zpz},
    {"VecD64SubVVM", inline_op::fsub_zpz},
    {"VecF32MulVVM", inline_op::fmul_zpz},
    {"VecD64MulVVM", inline_op::fmul_zpz},
    {"VecF32FMAVVVM", inline_op::fmla_zpzz},
    {"VecD64FMAVVVM", inline_op::fmla_zpzz},
    {"VecF32FMSVVVM", inline_op::fmls_zpzz},
    {"VecD64FMSVVVM", inline_op::fmls_zpzz},
    {"VecF32FNMAVVVM", inline_op::fnmla_zpzz},
    {"VecD64FNMAVVVM", inline_op::fnmla_zpzz},
    {"VecF32FNMSVVVM", inline_op::fnmls_zpzz},
    {"VecD64FNMSVVVM", inline_op::fnmls_zpzz},
    {"VecF32FMADDVVVM", inline_op::fmad_zpzz},
    {"VecD64FMADDVVVM", inline_op::fmad_zpzz},
    {"VecF32FMSUBVVVM", inline_op::fmsb_zpzz},
    {"VecD64FMSUBVVVM", inline_op::fmsb_zpzz},
    {"VecU*While4LTSS", inline_op::while_lo},
    {"VecU*While8LTSS", inline_op::while_lo},
    {"VecS*While4LTSS", inline_op::while_lt},
    {"VecS*While8LTSS", inline_op::while_lt},
    {"VecU*AddVVM", inline_op::add_zpz},
    {"VecU*SubVVM", inline_op::sub_zpz},
    {"VecU*AndVVM", inline_op::and_zpz},
    {"VecU*OrVVM", inline_op::orr_zpz},
    {"VecU*XorVVM", inline_op::eor_zpz},
    {"VecS*MulVVM", inline_op::mul_zpz},
    {"VecS*MaxVVM", inline_op::smax_zpz},
    {"VecU*MaxVVM", inline_op::umax_zpz},
    {"VecS*MinVVM", inline_op::smin_zpz},
    {"VecU*MinVVM", inline_op::umin_zpz},
    {"VecS*MulHVVM", inline_op::smulh_zpz},
    {"VecU*MulHVVM", inline_op::umulh_zpz},
    {"VecS*NegVM", inline_op::neg_zp},
    {"VecS*AbsVM", inline_op::abs_zp},
    {"VecS*MLAVVVM", inline_op::mla_zpzz},
    {"VecS*MLSVVVM", inline_op::mls_zpzz},
    {"VecS*MADDVVVM", inline_op::mad_zpzz},
    {"VecS*MSUBVVVM", inline_op::msb_zpzz},
    {"VecU*SelVV", inline_op::sel_zpzz},
    {"VecU32SpecialMoveV", inline_op::movprfx_zz},
    {"VecU*ShlVIX", inline_op::lsl_zzi},
    {"VecS*ShrVIX", inline_op::asr_zzi},
    {"VecU*ShrVIX", inline_op::lsr_zzi},
    {"VecU*CmpFlgGEVVZ", inline_op::cmp_vv},
    {"VecU*CmpFlgGTVVZ", inline_op::cmp_vv},
    {"VecS*CmpFlgGEVVZ", inline_op::cmp_vv},
    {"VecS*CmpFlgGTVVZ", inline_op::cmp_vv},
    {"VecS*CmpFlgEQVVZ", inline_op::cmp_vv},
    {"VecS*CmpFlgNEVVZ", inline_op::cmp_vv},
    {"VecF32CmpGEVVZ", inline_op::fcmp_vv},
    {"VecF32CmpGTVVZ", inline_op::fcmp_vv},
    {"VecF32CmpEQVVZ", inline_op::fcmp_vv},
    {"VecF32CmpNEVVZ", inline_op::fcmp_vv},
    {"VecD64CmpGEVVZ", inline_op::fcmp_vv},
    {"VecD64CmpGTVVZ", inline_op::fcmp_vv},
    {"VecD64CmpEQVVZ", inline_op::fcmp_vv},
    {"VecD64CmpNEVVZ", inline_op::fcmp_vv},
    {"VecF32CmpUNVVZ", inline_op::fcmp_vv},
    {"VecD64CmpUNVVZ", inline_op::fcmp_vv},
    {"VecF32CmpGEV0Z", inline_op::fcmp_v0},
    {"VecF32CmpGTV0Z", inline_op::fcmp_v0},
    {"VecF32CmpLTV0Z", inline_op::fcmp_v0},
    {"VecF32CmpLEV0Z", inline_op::fcmp_v0},
    {"VecF32CmpEQV0Z", inline_op::fcmp_v0},
    {"VecF32CmpNEV0Z", inline_op::fcmp_v0},
    {"VecD64CmpGEV0Z", inline_op::fcmp_v0},
    {"VecD64CmpGTV0Z", inline_op::fcmp_v0},
    {"VecD64CmpLTV0Z", inline_op::fcmp_v0},
    {"VecD64CmpLEV0Z", inline_op::fcmp_v0},
    {"VecD64CmpEQV0Z", inline_op::fcmp_v0},
    {"VecD64CmpNEV0Z", inline_op::fcmp_v0},
};

constexpr uint8_t op_of_row(const form_entry& form) {
  // The marker of a region of interest shares its row with `add`: it
  // switches tracing, which only the call path does.
  if (names::same(form.family, "roi_marker")) return uint8_t(inline_op::none);
  uint8_t op = uint8_t(inline_op::none);
  for (const inline_row& r : kInlineRows)
    if (name_fits(r.pattern, form.decoder)) op = uint8_t(r.op);
  return op != uint8_t(inline_op::none) ? op : predicate_op_of(form.decoder);
}

struct form_ops {
  uint8_t op[kFormCount];
};
constexpr form_ops find_form_ops() {
  form_ops ops{};
  for (int form = 0; form < kFormCount; ++form) ops.op[form] = op_of_row(kForms[form]);
  return ops;
}
// Every form's operation, found as the client is compiled.
constexpr form_ops kFormOps = find_form_ops();

inline_op op_of_form(int form) { return inline_op(kFormOps.op[form]); }

// Vd = op(Vn, Vm) chunk by chunk, Zn and Zm into Q0 and Q1.
template <typename Op>
void each_chunk(inline_code& c, unsigned zd, unsigned zn, unsigned zm, Op op) {
  for (unsigned k = 0; k < vector_chunks(); ++k) {
    load_q(c, 0, kInlineRecord, z_offset(zn, k));
    load_q(c, 1, kInlineRecord, z_offset(zm, k));
    c.put(op(0, 0, 1));
    store_q(c, 0, kInlineRecord, z_offset(zd, k));
  }
}

// Zd = op(Zdn, V1), with V1 already holding the constant operand.
template <typename Op> void each_chunk_with_v1(inline_code& c, unsigned zdn, Op op) {
  for (unsigned k = 0; k < vector_chunks(); ++k) {
    load_q(c, 0, kInlineRecord, z_offset(zdn, k));
    c.put(op(0, 0, 1));
    store_q(c, 0, kInlineRecord, z_offset(zdn, k));
  }
}

void broadcast_v1(inline_code& c, simd_size size, uint64_t value) {
  move_constant(c, 9, value);
  c.put(dup_v_from_x(size, 1, 9));
}

void store_v1_everywhere(inline_code& c, unsigned zd) {
  for (unsigned k = 0; k < vector_chunks(); ++k) store_q(c, 1, kInlineRecord, z_offset(zd, k));
}

// The element count a pattern names, times the multiplier in bits 19:16.
unsigned multiplied_pattern_elements(uint32_t word, element_size elem) {
  const unsigned pattern = field(word, 9, 5), multiplier = field(word, 19, 16) + 1;
  return pattern_elements(simd_size(elem), pattern) * multiplier;
}

// An 8-bit immediate and its shift (bit 13), as add, sub and dup take it;
// false for the shifted byte form, which the architecture leaves unallocated.
bool shifted_imm8(uint32_t word, element_size elem, bool is_signed, uint64_t* value) {
  const bool shift = field(word, 13, 13);
  if (shift && elem == ELEM_B) return false;
  const unsigned raw = field(word, 12, 5);
  const int64_t imm = is_signed ? int64_t(int8_t(raw)) : int64_t(raw);
  *value = uint64_t(shift ? imm * 256 : imm);
  return true;
}

// The operation on one chunk: Vacc = Vacc op Vn, or Vacc +- Vn * Vm fused.
bool put_fp_operation(inline_code& c, inline_op op, bool is_double, unsigned acc, unsigned n,
                      unsigned m) {
  switch (op) {
  case inline_op::fadd_zzz:
  case inline_op::fadd_zpz:
    c.put(fadd_v(is_double, acc, acc, n));
    return true;
  case inline_op::fsub_zzz:
  case inline_op::fsub_zpz:
    c.put(fsub_v(is_double, acc, acc, n));
    return true;
  case inline_op::fmul_zzz:
  case inline_op::fmul_zpz:
    c.put(fmul_v(is_double, acc, acc, n));
    return true;
  case inline_op::fmla_zpzz:
  case inline_op::fmad_zpzz:
    c.put(fmla_v(is_double, acc, n, m));
    return true;
  case inline_op::fmls_zpzz:
  case inline_op::fmsb_zpzz:
    c.put(fmls_v(is_double, acc, n, m));
    return true;
  case inline_op::fnmla_zpzz:
    c.put(fneg_v(is_double, acc, acc));
    c.put(fmls_v(is_double, acc, n, m));
    return true;
  case inline_op::fnmls_zpzz:
    c.put(fneg_v(is_double, acc, acc));
    c.put(fmla_v(is_double, acc, n, m));
    return true;
  default:
    return false;
  }
}

// Floating point on whole vectors: unpredicated, or predicated with every
// element active, Q0 the accumulator or first operand. Under a partial
// predicate every operand of an inactive element is replaced by +0 first:
// 0 + 0, 0 - 0, 0 * 0 and their fused forms are exact zeros under any
// rounding mode and flush setting, so they raise no flag, and the FPSR
// gains exactly the active elements' flags; a mask then keeps the inactive
// elements of the destination. Without `masked` they take the call path.
bool emit_fp(inline_op op, simd_size size, uint32_t word, uint64_t pc, inline_code& c,
             bool masked) {
  const bool is_double = size == D;
  const unsigned zd = field(word, 4, 0), f5 = field(word, 9, 5), f16 = field(word, 20, 16);
  const unsigned pg = field(word, 12, 10);
  const bool predicated =
      op != inline_op::fadd_zzz && op != inline_op::fsub_zzz && op != inline_op::fmul_zzz;
  // The registers into Q0, Q1 and Q2; `merged` the one that holds the
  // destination's old value (Zdn of fmad and fmsb is their multiplicand).
  unsigned z[3] = {zd, f5, f16}, merged = 0, count = 3;
  switch (op) {
  case inline_op::fadd_zzz:
  case inline_op::fsub_zzz:
  case inline_op::fmul_zzz:
    z[0] = f5, z[1] = f16, count = 2;
    break;
  case inline_op::fadd_zpz:
  case inline_op::fsub_zpz:
  case inline_op::fmul_zpz:
    count = 2;
    break;
  case inline_op::fmad_zpzz:
  case inline_op::fmsb_zpzz:
    z[0] = f16, z[1] = zd, z[2] = f5, merged = 1; // Za + Zdn * Zm
    break;
  default:
    break; // Zda + Zn * Zm
  }
  auto load_operands = [&](unsigned k) {
    for (unsigned i = 0; i < count; ++i) load_q(c, i, kInlineRecord, z_offset(z[i], k));
  };

  const unsigned to_partial = predicated ? branch_unless_all_true(c, pg, size) : 0;
  fpsr_in(c);
  for (unsigned k = 0; k < vector_chunks(); ++k) {
    load_operands(k);
    if (!put_fp_operation(c, op, is_double, 0, 1, 2)) return false;
    store_q(c, 0, kInlineRecord, z_offset(zd, k));
  }
  fpsr_out(c);
  if (!predicated) return true;
  const unsigned to_end = c.put_branch(kBranch);

  c.land(to_partial);
  if (!masked) {
    const sve_decoder decoder = get_sve_handler(word);
    if (decoder == nullptr) return false;
    call_decoder(c, decoder, word, pc);
    c.land(to_end);
    return true;
  }
  lane_ones(c, size, 4);
  fpsr_in(c);
  // V3 the chunk's mask; V5 the zeroed copy of the merged operand.
  const unsigned at[3] = {merged == 0 ? 5u : 0u, merged == 1 ? 5u : 1u, 2};
  for (unsigned k = 0; k < vector_chunks(); ++k) {
    load_operands(k);
    load_element_mask(c, size, 3, pg, k, 4);
    for (unsigned i = 0; i < count; ++i) c.put(and_v(at[i], i, 3));
    put_fp_operation(c, op, is_double, at[0], at[1], at[2]);
    c.put(insert_if_true_v(merged, at[0], 3));
    store_q(c, merged, kInlineRecord, z_offset(zd, k));
  }
  fpsr_out(c);
  c.land(to_end);
  return true;
}

// Integer operations raise no flags, so a predicated one works on whole
// vectors and keeps its inactive elements with a mask (lane_ones, V4).
// Doublewords, which Advanced SIMD does not multiply, lane by lane in X9 to
// X12: X9 from V0, X10 from V1, X11 from V6, the result from X12 into V2.
void each_doubleword(inline_code& c, bool three, uint32_t operation) {
  for (unsigned lane = 0; lane < 2; ++lane) {
    c.put(umov_d(9, 0, lane));
    c.put(umov_d(10, 1, lane));
    if (three) c.put(umov_d(11, 6, lane));
    c.put(operation | 12);
    c.put((lane == 0 ? 0x4e081c00 : 0x4e181c00) | 12 << 5 | 2); // ins v2.d[lane], x12
  }
}

// The operation of a merging form on one chunk: V2 from V0 (the
// destination's old value), V1 (the operand in bits 9:5) and V6 (bits
// 20:16), with V5 and V7 as scratch. Every size has code.
void put_merging_operation(inline_code& c, inline_op op, simd_size size) {
  const uint32_t sz = uint32_t(size) << 22;
  // X12 = X9 op X10 (or with X11), as A64 multiplies give it.
  const uint32_t kMul = 0x9b007c00 | 10 << 16 | 9 << 5;
  switch (op) {
  case inline_op::add_zpz:
    c.put(add_v(size, 2, 0, 1));
    return;
  case inline_op::sub_zpz:
    c.put(sub_v(size, 2, 0, 1));
    return;
  case inline_op::and_zpz:
    c.put(and_v(2, 0, 1));
    return;
  case inline_op::orr_zpz:
    c.put(orr_v(2, 0, 1));
    return;
  case inline_op::eor_zpz:
    c.put(eor_v(2, 0, 1));
    return;
  case inline_op::neg_zp:
    c.put(neg_v(size, 2, 1));
    return;
  case inline_op::abs_zp:
    c.put(0x4e20b800 | sz | 1 << 5 | 2);
    return;
  case inline_op::smax_zpz:
  case inline_op::umax_zpz:
  case inline_op::smin_zpz:
  case inline_op::umin_zpz: {
    const bool is_signed = op == inline_op::smax_zpz || op == inline_op::smin_zpz;
    const bool max = op == inline_op::smax_zpz || op == inline_op::umax_zpz;
    if (size != D) {
      const uint32_t base =
          is_signed ? (max ? 0x4e206400 : 0x4e206c00) : (max ? 0x6e206400 : 0x6e206c00);
      c.put(base | sz | 1 << 16 | 0 << 5 | 2);
      return;
    }
    // No doubleword max or min: a compare picks (cmgt or cmhi, then bsl).
    const uint32_t greater = is_signed ? 0x4ee03400 : 0x6ee03400;
    c.put(greater | (max ? 1u << 16 | 0u << 5 : 0u << 16 | 1u << 5) | 2);
    c.put(0x6e601c00 | 1 << 16 | 0 << 5 | 2); // bsl v2, v0, v1
    return;
  }
  case inline_op::mul_zpz:
    if (size == D)
      each_doubleword(c, false, kMul);
    else
      c.put(0x4e209c00 | sz | 1 << 16 | 0 << 5 | 2);
    return;
  case inline_op::smulh_zpz:
  case inline_op::umulh_zpz: {
    const bool is_signed = op == inline_op::smulh_zpz;
    if (size == D) {
      each_doubleword(c, false, (is_signed ? 0x9b407c00 : 0x9bc07c00) | 10 << 16 | 9 << 5);
      return;
    }
    // The double-width products, then their high halves.
    const uint32_t multiply_long = is_signed ? 0x0e20c000 : 0x2e20c000;
    c.put(multiply_long | sz | 1 << 16 | 0 << 5 | 5);
    c.put(multiply_long | 1u << 30 | sz | 1 << 16 | 0 << 5 | 7);
    c.put(0x4e005800 | sz | 7 << 16 | 5 << 5 | 2); // uzp2 v2, v5, v7
    return;
  }
  case inline_op::mla_zpzz:
  case inline_op::mls_zpzz:
  case inline_op::mad_zpzz:
  case inline_op::msb_zpzz: {
    // mla, mls: Zda +- Zn * Zm; mad, msb: Za (bits 9:5) +- Zdn * Zm.
    const bool add = op == inline_op::mla_zpzz || op == inline_op::mad_zpzz;
    const bool accumulate_old = op == inline_op::mla_zpzz || op == inline_op::mls_zpzz;
    const unsigned addend = accumulate_old ? 0 : 1, multiplicand = accumulate_old ? 1 : 0;
    if (size == D) {
      // madd/msub x12, multiplicand, x11, addend
      const unsigned xa = 9 + addend, xn = 9 + multiplicand;
      each_doubleword(c, true, (add ? 0x9b000000 : 0x9b008000) | 11 << 16 | xa << 10 | xn << 5);
      return;
    }
    c.put(orr_v(2, addend, addend));
    c.put((add ? 0x4e209400 : 0x6e209400) | sz | 6 << 16 | multiplicand << 5 | 2);
    return;
  }
  default: // emit_merging passes only the operations above
    return;
  }
}

// Zd = Pg ? result : Zd, the result from put_merging_operation; sel: Zd =
// Pg ? Zn : Zm.
void emit_merging(inline_op op, simd_size size, uint32_t word, inline_code& c) {
  const unsigned zd = field(word, 4, 0), zn = field(word, 9, 5), zm = field(word, 20, 16);
  const bool select = op == inline_op::sel_zpzz;
  const bool three = op == inline_op::mla_zpzz || op == inline_op::mls_zpzz ||
                     op == inline_op::mad_zpzz || op == inline_op::msb_zpzz;
  const unsigned pg = select ? field(word, 13, 10) : field(word, 12, 10);
  lane_ones(c, size, 4);
  for (unsigned k = 0; k < vector_chunks(); ++k) {
    load_q(c, 0, kInlineRecord, z_offset(select ? zm : zd, k));
    load_q(c, select ? 2 : 1, kInlineRecord, z_offset(zn, k));
    if (three) load_q(c, 6, kInlineRecord, z_offset(zm, k));
    load_element_mask(c, size, 3, pg, k, 4);
    if (!select) put_merging_operation(c, op, size);
    c.put(insert_if_true_v(0, 2, 3));
    store_q(c, 0, kInlineRecord, z_offset(zd, k));
  }
}

// whilelo/whilelt: the first `count` elements active, count = the distance
// from Rn up to Rm, at most the element count, 0 unless Rn < Rm. Flags as a
// test of the result under an all-true predicate: N the first element
// active, Z none, C not the last, V clear.
bool emit_while(inline_op op, simd_size size, uint32_t word, inline_code& c) {
  const unsigned elements = process_vector_bytes() >> size; // at most 255 bytes: form_is_inline
  const unsigned pd = field(word, 3, 0), rn = field(word, 9, 5), rm = field(word, 20, 16);
  const bool wide = field(word, 12, 12), is_signed = op == inline_op::while_lt;
  const unsigned regs[2] = {rn, rm};
  for (unsigned i = 0; i < 2; ++i) {
    const unsigned x = 9 + i;
    if (regs[i] == 31) {
      move_constant(c, x, 0);
      continue;
    }
    load_x(c, x, kInlineRecord, x_offset(regs[i]));
    if (!wide) c.put(is_signed ? 0x93407c00 | x << 5 | x : 0x2a0003e0 | x << 16 | x); // sxtw, mov w
  }
  c.put(0xeb0a013f);                              // cmp x9, x10
  c.put(0xcb090140 | 11);                         // sub x11, x10, x9
  const uint32_t below = is_signed ? 0xb : 0x3;   // lt, lo
  c.put(0x9a9f0000 | below << 12 | 11 << 5 | 11); // csel x11, x11, xzr, below
  move_constant(c, 12, elements);
  c.put(0xf100001f | elements << 10 | 11 << 5); // cmp x11, #elements
  c.put(0x9a8c3000 | 11 << 5 | 11);             // csel x11, x11, x12, lo
  c.put(dup_v_from_x(size, 0, 11));
  move_constant(c, 13, reinterpret_cast<uint64_t>(lane_numbers(size)));
  for (unsigned k = 0; k < vector_chunks(); ++k) {
    load_q(c, 1, 13, k * kChunkBytes);
    c.put(cmhi_v(size, 1, 0, 1));
    c.put(lane_sign_to_one(size, 1, 1));
    store_q(c, 1, kInlineRecord, p_offset(pd, k));
  }
  // NZCV from the three cases: N C when 0 < count < elements, Z C when
  // count is 0, N alone when it is the element count (the flags of the
  // compare with the element count are still there).
  c.put(0x52a00000 | 0x8000 << 5 | 14);                  // mov w14, #0x80000000
  c.put(0x52a00000 | 0xa000 << 5 | 15);                  // mov w15, #0xa0000000
  c.put(0x1a800000 | 14 << 16 | 3 << 12 | 15 << 5 | 14); // csel w14, w15, w14, lo
  c.put(0x52a00000 | 0x6000 << 5 | 15);                  // mov w15, #0x60000000
  c.put(0xf100017f);                                     // cmp x11, #0
  c.put(0x1a800000 | 14 << 16 | 0 << 12 | 15 << 5 | 14); // csel w14, w15, w14, eq
  store_x(c, 14, kInlineRecord, offsetof(cpu_state, nzcv));
  return true;
}

bool emit(inline_op op, element_size elem, uint32_t word, uint64_t pc, inline_code& c) {
  const simd_size size = simd_size(elem);
  if (uint8_t(op) >= kPredicateOpFirst) return emit_predicate_op(uint8_t(op), elem, word, pc, c);
  const unsigned zd = field(word, 4, 0), zn = field(word, 9, 5), zm = field(word, 20, 16);
  switch (op) {
  case inline_op::add_zzz:
    each_chunk(c, zd, zn, zm,
               [size](unsigned d, unsigned n, unsigned m) { return add_v(size, d, n, m); });
    return true;
  case inline_op::sub_zzz:
    each_chunk(c, zd, zn, zm,
               [size](unsigned d, unsigned n, unsigned m) { return sub_v(size, d, n, m); });
    return true;
  case inline_op::and_zzz:
    each_chunk(c, zd, zn, zm, and_v);
    return true;
  case inline_op::orr_zzz:
    each_chunk(c, zd, zn, zm, orr_v);
    return true;
  case inline_op::eor_zzz:
    each_chunk(c, zd, zn, zm, eor_v);
    return true;
  case inline_op::add_zi:
  case inline_op::sub_zi: {
    uint64_t imm;
    if (!shifted_imm8(word, elem, false, &imm)) return false;
    broadcast_v1(c, size, imm);
    const bool add = op == inline_op::add_zi;
    each_chunk_with_v1(c, zd, [size, add](unsigned d, unsigned n, unsigned m) {
      return add ? add_v(size, d, n, m) : sub_v(size, d, n, m);
    });
    return true;
  }
  case inline_op::dup_zi: {
    uint64_t imm;
    if (!shifted_imm8(word, elem, true, &imm)) return false;
    broadcast_v1(c, size, imm);
    store_v1_everywhere(c, zd);
    return true;
  }
  case inline_op::dup_zr:
    load_x(c, 9, kInlineRecord, x_offset(zn)); // 31 is SP, which the record keeps there
    c.put(dup_v_from_x(size, 1, 9));
    store_v1_everywhere(c, zd);
    return true;
  case inline_op::count_x:
    if (zd == 31) return false; // the zero register: nothing to write
    move_constant(c, 9, multiplied_pattern_elements(word, elem));
    store_x(c, 9, kInlineRecord, x_offset(zd));
    return true;
  case inline_op::increment_x:
  case inline_op::decrement_x: {
    if (zd == 31) return false;
    const int64_t step = multiplied_pattern_elements(word, elem);
    load_x(c, 9, kInlineRecord, x_offset(zd));
    add_constant(c, 9, 9, op == inline_op::increment_x ? step : -step);
    store_x(c, 9, kInlineRecord, x_offset(zd));
    return true;
  }
  case inline_op::increment_z:
  case inline_op::decrement_z: {
    const uint64_t step = multiplied_pattern_elements(word, elem);
    broadcast_v1(c, size, step);
    const bool add = op == inline_op::increment_z;
    each_chunk_with_v1(c, zd, [size, add](unsigned d, unsigned n, unsigned m) {
      return add ? add_v(size, d, n, m) : sub_v(size, d, n, m);
    });
    return true;
  }
  case inline_op::load_imm:
  case inline_op::load_reg:
  case inline_op::store_imm:
  case inline_op::store_reg:
  case inline_op::load_widen_imm:
  case inline_op::load_widen_reg:
  case inline_op::store_narrow_imm:
  case inline_op::store_narrow_reg:
    return emit_contiguous(op, size, word, pc, c);
  case inline_op::while_lo:
  case inline_op::while_lt:
    return emit_while(op, size, word, c);
  case inline_op::cmp_vv:
    return emit_compare(size, word, pc, c);
  case inline_op::fcmp_vv:
  case inline_op::fcmp_v0:
    return emit_fp_compare(size, word, op == inline_op::fcmp_v0, c);
  case inline_op::lsl_zzi:
  case inline_op::asr_zzi:
  case inline_op::lsr_zzi: {
    // tsz:imm3 (bits 23:22, 20:16) says size and shift as shl, sshr and
    // ushr's immh:immb do: the same value serves.
    const unsigned shift_field = field(word, 23, 22) << 5 | field(word, 20, 16);
    if (shift_field >> 3 == 0) return false; // no element size: unallocated
    const uint32_t opcode = op == inline_op::lsl_zzi   ? 0x4f005400
                            : op == inline_op::asr_zzi ? 0x4f000400
                                                       : 0x6f000400;
    for (unsigned k = 0; k < vector_chunks(); ++k) {
      load_q(c, 0, kInlineRecord, z_offset(zn, k));
      c.put(opcode | shift_field << 16);
      store_q(c, 0, kInlineRecord, z_offset(zd, k));
    }
    return true;
  }
  case inline_op::movprfx_zz:
    for (unsigned k = 0; k < vector_chunks(); ++k) {
      load_q(c, 0, kInlineRecord, z_offset(zn, k));
      store_q(c, 0, kInlineRecord, z_offset(zd, k));
    }
    return true;
  case inline_op::add_zpz:
  case inline_op::sub_zpz:
  case inline_op::mul_zpz:
  case inline_op::and_zpz:
  case inline_op::orr_zpz:
  case inline_op::eor_zpz:
  case inline_op::smax_zpz:
  case inline_op::umax_zpz:
  case inline_op::smin_zpz:
  case inline_op::umin_zpz:
  case inline_op::sel_zpzz:
  case inline_op::smulh_zpz:
  case inline_op::umulh_zpz:
  case inline_op::neg_zp:
  case inline_op::abs_zp:
  case inline_op::mla_zpzz:
  case inline_op::mls_zpzz:
  case inline_op::mad_zpzz:
  case inline_op::msb_zpzz:
    emit_merging(op, size, word, c);
    return true;
  case inline_op::none:
    break;
  default: {
    // The masked code for partial predicates when it fits (it does not for
    // the longest vectors' fused forms), else the call path for them.
    inline_code masked = c;
    if (emit_fp(op, size, word, pc, masked, true) && !masked.overflow) {
      c = masked;
      return true;
    }
    return emit_fp(op, size, word, pc, c, false);
  }
  }
  return false;
}

} // namespace

bool form_is_inline(int form) {
  if (form < 0 || form >= kFormCount) return false;
  const inline_op op = op_of_form(form);
  if (uint8_t(op) >= kPredicateOpFirst) return predicate_op_at_this_length(uint8_t(op));
  // A byte lane counts the active elements of a while: up to 255 of them.
  const bool while_op = op == inline_op::while_lo || op == inline_op::while_lt;
  if (while_op && kForms[form].elem == ELEM_B && process_vector_bytes() > 255) return false;
  return op != inline_op::none;
}

bool translate_inline(uint32_t word, uint64_t pc, inline_code* code) {
  const int form = find_form(word);
  if (!form_is_inline(form)) return false;
  inline_code c;
  if (!emit(op_of_form(form), kForms[form].elem, word, pc, c) || c.overflow) return false;
  *code = c;
  return true;
}
