// The predicate, first-fault and flag-setting forms carried out inline: the
// loops that search with first-fault loads (setffr, ldff1, rdffr, a compare
// with an immediate, then brkb and cntp) run without a call.
#pragma once

#include <cstdint>

#include "inline_emit.h"
#include "inline_parts.h"

// These forms number their operations from here on, after the other inline
// operations (inline_forms.cpp keeps both in one byte per form).
constexpr uint8_t kPredicateOpFirst = 128;

namespace predicate_forms {

enum pred_op : uint8_t {
  set_ffr = kPredicateOpFirst,
  read_ffr,         // rdffr Pd
  read_ffr_z,       // rdffr Pd, Pg/z
  read_ffr_flags,   // rdffrs Pd, Pg/z
  write_ffr,        // wrffr Pn
  load_first_fault, // ldff1[s]b/h/w/d Zt, Pg/z, [Xn, Xm, lsl #msize]
  compare_imm,      // cmp<cc> Pd, Pg/z, Zn, #imm, signed or unsigned
  test_p,           // ptest Pg, Pn.B
  true_p,           // ptrue Pd.T, pattern
  true_p_flags,     // ptrues
  false_p,          // pfalse
  break_p,          // brka, brkb Pd, Pg/z or Pg/m, Pn.B
  break_p_flags,    // brkas, brkbs
  count_p,          // cntp Xd, Pg, Pn.T
  increment_x,      // incp Xdn, Pm.T
  decrement_x,      // decp Xdn, Pm.T
  increment_z,      // incp Zdn.T, Pm.T
  decrement_z,      // decp Zdn.T, Pm.T
  logic_p,          // and, bic, eor, sel, orr, orn, nor, nand Pd, Pg/z, Pn.B, Pm.B
  logic_p_flags,    // their flag-setting forms
};

struct pred_row {
  const char* pattern; // a star stands for the element size in bits
  pred_op op;
};
constexpr pred_row kRows[] = {
    {"VecPClearFFSR", set_ffr},
    {"VecPReadFFSRP", read_ffr},
    {"VecPActualP", read_ffr_z},
    {"VecPActualFlgP", read_ffr_flags},
    {"VecPWriteFFSRP", write_ffr},
    {"VecU*CLoadFF1LSSZ", load_first_fault},
    {"VecU*CLoadFF2LSSZ", load_first_fault},
    {"VecU*CLoadFF4LSSZ", load_first_fault},
    {"VecU64CLoadFF8LSSZ", load_first_fault},
    {"VecS*CLoadFF1LSSZ", load_first_fault},
    {"VecS*CLoadFF2LSSZ", load_first_fault},
    {"VecS64CLoadFF4LSSZ", load_first_fault},
    {"VecS*CmpFlgEQVIZ", compare_imm},
    {"VecS*CmpFlgNEVIZ", compare_imm},
    {"VecS*CmpFlgGTVIZ", compare_imm},
    {"VecS*CmpFlgGEVIZ", compare_imm},
    {"VecS*CmpFlgLTVIZ", compare_imm},
    {"VecS*CmpFlgLEVIZ", compare_imm},
    {"VecU*CmpFlgGTVIZ", compare_imm},
    {"VecU*CmpFlgGEVIZ", compare_imm},
    {"VecU*CmpFlgLTVIZ", compare_imm},
    {"VecU*CmpFlgLEVIZ", compare_imm},
    {"VecPTestPZ", test_p},
    {"VecP*TrueI", true_p},
    {"VecP*TrueFlgI", true_p_flags},
    {"VecPFalse", false_p},
    {"VecPBreakAPZ", break_p},
    {"VecPBreakAPM", break_p},
    {"VecPBreakBPZ", break_p},
    {"VecPBreakBPM", break_p},
    {"VecPBreakAFlgPZ", break_p_flags},
    {"VecPBreakBFlgPZ", break_p_flags},
    {"VecU*SCountP", count_p},
    {"VecU*IncrSCountPS", increment_x},
    {"VecU*DecrSCountPS", decrement_x},
    {"VecU*IncrCountPV", increment_z},
    {"VecU*DecrCountPV", decrement_z},
    {"VecPAndPPZ", logic_p},
    {"VecPBicPPZ", logic_p},
    {"VecPXorPPZ", logic_p},
    {"VecPSelPP", logic_p},
    {"VecPOrPPZ", logic_p},
    {"VecPOrNPPZ", logic_p},
    {"VecPNorPPZ", logic_p},
    {"VecPNandPPZ", logic_p},
    {"VecPAndFlgPPZ", logic_p_flags},
    {"VecPBicFlgPPZ", logic_p_flags},
    {"VecPXorFlgPPZ", logic_p_flags},
    {"VecPOrFlgPPZ", logic_p_flags},
    {"VecPOrNFlgPPZ", logic_p_flags},
    {"VecPNorFlgPPZ", logic_p_flags},
    {"VecPNandFlgPPZ", logic_p_flags},
};

} // namespace predicate_forms

// The operation of the row whose decoder has this name, or 0 when the row is
// none of these forms.
constexpr uint8_t predicate_op_of(const char* decoder) {
  for (const predicate_forms::pred_row& r : predicate_forms::kRows)
    if (name_fits(r.pattern, decoder)) return r.op;
  return 0;
}

// Whether the operation has inline code at the process's vector length: the
// forms that find a predicate's first or last element number its bytes in
// byte lanes, which hold up to 255.
bool predicate_op_at_this_length(uint8_t op);

// The code for one word of such a row, or false when this encoding of it
// takes the call path.
bool emit_predicate_op(uint8_t op, element_size elem, uint32_t word, uint64_t pc, inline_code& c);
