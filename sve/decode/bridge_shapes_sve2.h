// The shapes of the SVE2 bridge decoders.
#pragma once

#include "bridge_shapes.h"
#include "bridge_shapes_fp.h"

namespace bridge_shapes {

// eor3, bcax, bsl*: Zdn, Zm (20:16), Zk (9:5).
using zdn_zm_zk = bridge<ToZ<4, 0>, Zd, Zm, Zn>;
// xar: Zdn, Zm (9:5) and a rotation coded like an unpredicated right shift.
using zdn_zm_rotate = bridge<ToZ<4, 0>, Zd, Zn, Imm<RightShift<kUnpredicated>>>;
// The top-half forms keep the other halves of Zd.
using zd_zn_keep = bridge<ToZ<4, 0>, Zn, Zd>;
using zd_pgz_zn_zm = bridge<ToZ<4, 0>, Pred<P<12, 10, kPZeroing>>, Zn, Zm>;

} // namespace bridge_shapes

namespace bridge_shapes {

// The immediate shifts: the shifted operand Zn, the amount, and for the
// accumulating, inserting and top-half forms the old Zd last.
using zd_zn_left_shift = bridge<ToZ<4, 0>, Zn, Imm<LeftShift<kUnpredicated>>>;
using zda_zn_right_shift = bridge<ToZ<4, 0>, Zn, Imm<RightShift<kUnpredicated>>, Zd>;
using zda_zn_left_shift = bridge<ToZ<4, 0>, Zn, Imm<LeftShift<kUnpredicated>>, Zd>;
using zdn_pgm_left_shift = bridge<ToZ<4, 0>, Zd, Pg, Imm<LeftShift<kPredicated>>>;

} // namespace bridge_shapes

namespace bridge_shapes {

// The complex forms: the rotation last, in bit 10 (cadd) or bits 11:10.
// The indexed ones take the shapes of the floating-point complex forms.
using zdn_zm_rot = bridge<ToZ<4, 0>, Zd, Zn, Imm<Uimm<10, 10>>>;
using zda_zn_zm_rot = bridge<ToZ<4, 0>, Zn, Zm, Zd, Rot2Low>;

} // namespace bridge_shapes

namespace operands {

// The lane of the indexed long multiplies: bits Hi:Lo above bit 11.
template <unsigned Hi, unsigned Lo> struct LongLaneIndex : immediate_kind<LongLaneIndex<Hi, Lo>> {
  template <uint32_t> static unsigned int get(uint32_t w) {
    return field(w, Hi, Lo) << 1 | field(w, 11, 11);
  }
  static void notation(line_writer& out) { out.printf("uimm(%u:%u,11)", Hi, Lo); }
};

} // namespace operands

namespace bridge_shapes {

// The indexed long multiplies: halfwords take Zm from 18:16 and a lane of
// eight, words Zm from 19:16 and a lane of four; the accumulator before it.
using zd_zn_zm3_long_index = bridge<ToZ<4, 0>, Zn, Zm3, Imm<LongLaneIndex<20, 19>>>;
using zd_zn_zm4_long_index = bridge<ToZ<4, 0>, Zn, Zm4, Imm<LongLaneIndex<20, 20>>>;
using zda_zn_zm3_long_index = bridge<ToZ<4, 0>, Zn, Zm3, Zd, Imm<LongLaneIndex<20, 19>>>;
using zda_zn_zm4_long_index = bridge<ToZ<4, 0>, Zn, Zm4, Zd, Imm<LongLaneIndex<20, 20>>>;

} // namespace bridge_shapes

namespace operands {

// The register after Zn, wrapping past z31: the second of a pair of
// consecutive registers.
template <unsigned Hi, unsigned Lo> struct ZNext : register_kind<ZNext<Hi, Lo>> {
  template <uint32_t E> static aarch64_z_reg get(uint32_t w) {
    return {(field(w, Hi, Lo) + 1) % 32, E, kZNone, kZNone};
  }
  static void notation(line_writer& out) { show_field(out, 'Z', Hi, Lo, "+1", kKind); }
};

} // namespace operands

namespace bridge_shapes {

// The forms that read the pair Zn, Zn+1.
using ZnNext = Vec<ZNext<9, 5>>;
using zd_zn_pair_zm = bridge<ToZ<4, 0>, Zn, ZnNext, Zm>;
using zd_zn_pair_offset = bridge<ToZ<4, 0>, Zn, ZnNext, Imm<UimmSplit>>;
using zd_pg_zn_pair = bridge<ToZ<4, 0>, Pg, Zn, ZnNext>;
// tbx: the table, the old destination, the indices.
using zd_zn_zd_zm = bridge<ToZ<4, 0>, Zn, Zd, Zm>;

} // namespace bridge_shapes

namespace bridge_shapes {

// The destructive crypto forms: Zdn with Zm from 9:5, or Zdn alone.
using zdn_zm9 = bridge<ToZ<4, 0>, Zd, Zn>;
using zdn_alone = bridge<ToZ<4, 0>, Zd>;

} // namespace bridge_shapes
