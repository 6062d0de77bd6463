// The shapes of the floating-point bridge decoders that the other families
// do not share.
#pragma once

#include <cinttypes>

#include "bridge_shapes.h"

namespace operands {

// The lane of the indexed half-precision forms: bit 22 above bits 20:19.
struct HalfLaneIndex : immediate_kind<HalfLaneIndex> {
  template <uint32_t> static unsigned int get(uint32_t w) {
    return field(w, 22, 22) << 2 | field(w, 20, 19);
  }
  static void notation(line_writer& out) { out.printf("uimm(22,20:19)"); }
};

// The 8-bit floating-point immediate of FCPY, expanded at the element's width.
struct FpImmAtWidth {
  template <uint32_t E> static uint64_t get(uint32_t w) {
    const aarch64_sve_fp_dup_imm imm = expand_fp_imm8(field(w, 12, 5));
    return E == ELEM_H ? imm.half : E == ELEM_S ? imm.single : imm.dbl;
  }
  static void notation(line_writer& out) { out.printf("fp-imm8(12:5)"); }
  template <uint32_t E> static void describe(line_writer& out, uint32_t w) {
    out.printf("fp-imm8(12:5) 0x%" PRIx64, get<E>(w));
  }
};

} // namespace operands

namespace bridge_shapes {

// Merging with a constant that bit 5 picks.
using zdn_pgm_i1 = bridge<ToZ<4, 0>, Zd, Pg, Imm<Uimm<5, 5>>>;
// FCPY: the governing predicate in 19:16.
using zd_pgm_fp_imm8 = bridge<ToZ<4, 0>, Zd, Pred<P<19, 16, kPPlain>>, Imm<FpImmAtWidth>>;

// Fused forms: the destination, Pg, then bits 9:5 and 20:16.
using zda_pgm_zn_zm = bridge<ToZ<4, 0>, Zd, Pg, Zn, Zm>;
// FCADD: the second operand in 9:5, the rotation in bit 16.
using zdn_pgm_zm_rot1 = bridge<ToZ<4, 0>, Zd, Pg, Zn, Imm<Uimm<16, 16>>>;
// FCMLA: the rotation in 14:13.
using zda_pgm_zn_zm_rot2 = bridge<ToZ<4, 0>, Zd, Pg, Zn, Zm, Imm<Uimm<14, 13>>>;

// Indexed forms: Zm and the lane by element size.
using Zm3 = Vec<Z<18, 16>>;
using Zm4 = Vec<Z<19, 16>>;
using zd_zn_zm3_index3 = bridge<ToZ<4, 0>, Zn, Zm3, Imm<HalfLaneIndex>>;
using zd_zn_zm3_index2 = bridge<ToZ<4, 0>, Zn, Zm3, Imm<Uimm<20, 19>>>;
using zd_zn_zm4_index1 = bridge<ToZ<4, 0>, Zn, Zm4, Imm<Uimm<20, 20>>>;
using zda_zn_zm3_index3 = bridge<ToZ<4, 0>, Zn, Zm3, Zd, Imm<HalfLaneIndex>>;
// FCMLA indexed: the rotation in 11:10, then the pair's index.
using Rot2Low = Imm<Uimm<11, 10>>;
using zda_zn_zm3_rot_index2 = bridge<ToZ<4, 0>, Zn, Zm3, Zd, Rot2Low, Imm<Uimm<20, 19>>>;
using zda_zn_zm4_rot_index1 = bridge<ToZ<4, 0>, Zn, Zm4, Zd, Rot2Low, Imm<Uimm<20, 20>>>;

// FTMAD: the coefficient number in 18:16.
using zdn_zm_imm3 = bridge<ToZ<4, 0>, Zd, Zn, Imm<Uimm<18, 16>>>;

// Comparisons against zero.
using pd_pg_zn = bridge<ToP<3, 0>, Pg, Zn>;

} // namespace bridge_shapes
