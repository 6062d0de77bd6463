#include "decode/operands.h"

#include <cinttypes>

namespace operands {

void show(line_writer& out, aarch64_z_reg r) {
  const char* const* names[] = {aarch64_z_reg::zname_b, aarch64_z_reg::zname_h,
                                aarch64_z_reg::zname_s, aarch64_z_reg::zname_d};
  const uint32_t size = r.elem != kZNone ? r.elem : r.rw_elem;
  out.printf("Z{%u, %u, %u, %u} ", r.num, r.elem, r.rw_elem, r.rw_elem2);
  if (r.num >= 32)
    out.printf("z?");
  else if (size < 4)
    out.printf("%s", names[size][r.num]);
  else
    out.printf("%s%s", aarch64_z_reg::zname[r.num], size == ELEM_Q ? ".q" : "");
}

void show(line_writer& out, aarch64_p_reg r) {
  const char* const* sized[] = {aarch64_p_reg::pname_b, aarch64_p_reg::pname_h,
                                aarch64_p_reg::pname_s, aarch64_p_reg::pname_d};
  out.printf("P{%u, %u, %u, %u} ", r.num, r.elem, r.rw_elem, r.rw_elem2);
  const uint32_t size = r.elem != kPNone ? r.elem : r.rw_elem;
  const char* const* names = size < 4            ? sized[size]
                             : size == kPMerging ? aarch64_p_reg::pname_m
                             : size == kPZeroing ? aarch64_p_reg::pname_z
                                                 : aarch64_p_reg::pname;
  out.printf("%s", r.num < 16 ? names[r.num] : "p?");
}

void show(line_writer& out, aarch64_i_reg r) {
  const uint32_t width = r.elem != kRNone ? r.elem : r.rw_elem;
  out.printf("R{%u, %u, %u, %u} ", r.num, r.elem, r.rw_elem, r.rw_elem2);
  if (r.num >= 32)
    out.printf("x?");
  else
    out.printf("%s", width == ELEM_D ? aarch64_i_reg::xname[r.num] : aarch64_i_reg::wname[r.num]);
}

void show(line_writer& out, aarch64_i_rsp_reg r) {
  out.printf("S{%u, %u} ", r.num, r.elem);
  if (r.num >= 32)
    out.printf("x?");
  else if (r.elem == ELEM_D)
    out.printf("%s", aarch64_i_rsp_reg::xname[r.num]);
  else // number 31 of a W-sized operand is WSP here
    out.printf("%s", r.num == 31 ? "wsp" : aarch64_i_rsp_reg::wname[r.num]);
}

// Counts and offsets read best in decimal; larger values, such as a shifted
// immediate, in hexadecimal as well.
void show(line_writer& out, unsigned int value) {
  if (value < 256)
    out.printf("%u", value);
  else
    out.printf("0x%x (%u)", value, value);
}

void show(line_writer& out, int value) { out.printf("%d", value); }

void show(line_writer& out, aarch64_sve_fp_arith_imm imm) { out.printf("%u", imm.i1); }

void show(line_writer& out, aarch64_sve_logical64_imm imm) {
  out.printf("0x%016" PRIx64, imm.value);
}

void show(line_writer& out, aarch64_sve_fp_dup_imm imm) {
  out.printf("{half 0x%04x, single 0x%08x, double 0x%016" PRIx64 "}", imm.half, imm.single,
             imm.dbl);
}

void show_field(line_writer& out, char kind, unsigned hi, unsigned lo, const char* extra,
                uint32_t size) {
  out.printf("%c(%u:%u", kind, hi, lo);
  if (extra) out.printf(", %s", extra);
  if (size != kKind) out.printf(", %u", size);
  out.printf(")");
}

void show_predicate_field(line_writer& out, unsigned hi, unsigned lo, uint32_t elem) {
  switch (elem) {
  case kPMerging:
    return show_field(out, 'P', hi, lo, "/m", kKind);
  case kPZeroing:
    return show_field(out, 'P', hi, lo, "/z", kKind);
  case kPPlain:
    return show_field(out, 'P', hi, lo, "plain", kKind);
  default:
    return show_field(out, 'P', hi, lo, nullptr, elem);
  }
}

} // namespace operands
