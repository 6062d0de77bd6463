// The operand shapes of the thin decoders: which fields of the word become
// which handler arguments, in argument order. Decoders with the same shape
// share its code; the element size and the handler are the decoder's own.
#pragma once

#include "thin.h"

namespace shapes {
using namespace operands;

using zdn_pgm_zm = shape<Zrw<4, 0>, P<12, 10, kPMerging>, Z<9, 5>>;
using zd_zn_zm = shape<Z<4, 0>, Z<9, 5>, Z<20, 16>>;
using zt_pgz_xn_simm4 = shape<Z<4, 0>, P<12, 10, kPZeroing>, S<9, 5, 3>, Simm<19, 16>>;
using vd_pg_zn = shape<V<4, 0>, P<12, 10, kPPlain>, Z<9, 5>>;
using vdn_pg_zm = shape<Vrw<4, 0>, P<12, 10, kPPlain>, Z<9, 5>>;
// Dot products: the sources hold four elements of a quarter the size in each
// accumulator element; the handler takes their size from the accumulator.
using zda_zn4_zm4 = shape<Zrw<4, 0>, Z<9, 5>, Z<20, 16>>;
using zda_zn4_zm3_index2 = shape<Zrw<4, 0>, Z<9, 5>, Z<18, 16>, Uimm<20, 19>>;
using zda_zn4_zm4_index1 = shape<Zrw<4, 0>, Z<9, 5>, Z<19, 16>, Uimm<20, 20>>;
using zt_pgz_xn_xm = shape<Z<4, 0>, P<12, 10, kPZeroing>, S<9, 5, 3>, R<20, 16, 3>>;
using zd_pgm_zn = shape<Z<4, 0>, P<12, 10, kPMerging>, Z<9, 5>>;
using pd_pgz_zn_zm = shape<P<3, 0>, P<12, 10, kPZeroing>, Z<9, 5>, Z<20, 16>>;
using zt_pg_xn_xm = shape<Z<4, 0>, P<12, 10, kPPlain>, S<9, 5, 3>, R<20, 16, 3>>;
using zt_pg_xn_simm4 = shape<Z<4, 0>, P<12, 10, kPPlain>, S<9, 5, 3>, Simm<19, 16>>;
using zda_pgm_zn_zm = shape<Zrw<4, 0>, P<12, 10, kPMerging>, Z<9, 5>, Z<20, 16>>;
using pd_pgz_zn_simm5 = shape<P<3, 0>, P<12, 10, kPZeroing>, Z<9, 5>, Simm<20, 16>>;
using zt_pgz_zm_xn = shape<Z<4, 0>, P<12, 10, kPZeroing>, Z<20, 16>, S<9, 5, 3>>;
using zt_pgz_xn_uimm6 = shape<Z<4, 0>, P<12, 10, kPZeroing>, S<9, 5, 3>, Uimm<21, 16>>;
using pd_xn_xm = shape<P<3, 0>, R<9, 5, 3>, R<20, 16, 3>>;
using zt_pgz_zm32_xn = shape<Z<4, 0>, P<12, 10, kPZeroing>, Z<20, 16, 2>, S<9, 5, 3>>;
using pd_pn_pm = shape<P<3, 0>, P<8, 5>, P<19, 16>>;
using zt_pgz_zn_uimm5 = shape<Z<4, 0>, P<12, 10, kPZeroing>, Z<9, 5>, Uimm<20, 16>>;
using zt_pgz_xn_zm = shape<Z<4, 0>, P<12, 10, kPZeroing>, S<9, 5, 3>, Z<20, 16>>;
using pd_pgz_zn = shape<P<3, 0>, P<12, 10, kPZeroing>, Z<9, 5>>;
using zt_pgz_xn_zm32 = shape<Z<4, 0>, P<12, 10, kPZeroing>, S<9, 5, 3>, Z<20, 16, 2>>;
using zt_pg_zm_xn = shape<Z<4, 0>, P<12, 10, kPPlain>, Z<20, 16>, S<9, 5, 3>>;
using pd_wn_wm = shape<P<3, 0>, R<9, 5, 2>, R<20, 16, 2>>;
using xdn_pattern_step = shape<Rrw<4, 0, 3>, Uimm<9, 5>, PatternStep>;
using pd_pgz_zn_uimm7 = shape<P<3, 0>, P<12, 10, kPZeroing>, Z<9, 5>, Uimm<20, 14>>;
using zt_pg_zm32_xn = shape<Z<4, 0>, P<12, 10, kPPlain>, Z<20, 16, 2>, S<9, 5, 3>>;
using zdn_pgm_zm_za = shape<Zrw<4, 0>, P<12, 10, kPMerging>, Z<20, 16>, Z<9, 5>>;
using zdn_pgm_i1 = shape<Zrw<4, 0>, P<12, 10, kPMerging>, I1>;
using zdn_uimm8_shifted = shape<Zrw<4, 0>, Uimm8Shifted>;
using pd_pgz_pn_pm = shape<P<3, 0, 0>, P<13, 10, kPZeroing>, P<8, 5, 0>, P<19, 16, 0>>;
using zt_pg_xn_zm = shape<Z<4, 0>, P<12, 10, kPPlain>, S<9, 5, 3>, Z<20, 16>>;
using zt_pg_zn_uimm5 = shape<Z<4, 0>, P<12, 10, kPPlain>, Z<9, 5>, Uimm<20, 16>>;
using zd_zn = shape<Z<4, 0>, Z<9, 5>>;
using zt_pg_xn_zm32 = shape<Z<4, 0>, P<12, 10, kPPlain>, S<9, 5, 3>, Z<20, 16, 2>>;
using zdn_pattern_step = shape<Zrw<4, 0>, Uimm<9, 5>, PatternStep>;
using zd_zn_lane = shape<Z<4, 0>, Z<9, 5>, LaneIndex>;
using pd_pn = shape<P<3, 0>, P<8, 5>>;
using pd_pattern = shape<P<3, 0>, Uimm<9, 5>>;
using pdn_pg = shape<Prw<3, 0>, P<8, 5, kPPlain>>;
using rd_pg_zn = shape<R<4, 0>, P<12, 10, kPPlain>, Z<9, 5>>;
using xd_pg_pn = shape<R<4, 0, 3>, P<13, 10, kPPlain>, P<8, 5>>;
using xdn_pm = shape<Rrw<4, 0, 3>, P<8, 5>>;
using zd_pgm_rn = shape<Z<4, 0>, P<12, 10, kPMerging>, S<9, 5>>;
using zd_pgm_vn = shape<Z<4, 0>, P<12, 10, kPMerging>, V<9, 5>>;
using zd_pgm_zn32 = shape<Z<4, 0>, P<12, 10, kPMerging>, Z<9, 5, 2>>;
using zd_pgz_zn = shape<Z<4, 0>, P<12, 10, kPZeroing>, Z<9, 5>>;
using zd_pg_zn_zm = shape<Z<4, 0>, P<13, 10, kPPlain>, Z<9, 5>, Z<20, 16>>;
using zd_pgm_simm8_shifted = shape<Z<4, 0>, P<19, 16, kPMerging>, Simm8Shifted>;
using zd_pgz_simm8_shifted = shape<Z<4, 0>, P<19, 16, kPZeroing>, Simm8Shifted>;
using zd_rn_rm = shape<Z<4, 0>, R<9, 5>, R<20, 16>>;
using zd_rn_simm5 = shape<Z<4, 0>, R<9, 5>, Simm<20, 16>>;
using zd_rn_or_sp = shape<Z<4, 0>, S<9, 5>>;
using zd_zn_left_shift = shape<Z<4, 0>, Z<9, 5>, LeftShift<kUnpredicated>>;
using zd_zn_right_shift = shape<Z<4, 0>, Z<9, 5>, RightShift<kUnpredicated>>;
using zd_zn32 = shape<Z<4, 0>, Z<9, 5, 2>>;
using zd_simm5_rm = shape<Z<4, 0>, Simm<9, 5>, R<20, 16>>;
using zd_simm5_simm5 = shape<Z<4, 0>, Simm<9, 5>, Simm<20, 16>>;
using zd_simm8_shifted = shape<Z<4, 0>, Simm8Shifted>;
using zd32_pgm_zn = shape<Z<4, 0, 2>, P<12, 10, kPMerging>, Z<9, 5>>;
using zdn_pgm_left_shift = shape<Zrw<4, 0>, P<12, 10, kPMerging>, LeftShift<kPredicated>>;
using zdn_pgm_right_shift = shape<Zrw<4, 0>, P<12, 10, kPMerging>, RightShift<kPredicated>>;
using zdn_simm8 = shape<Zrw<4, 0>, Simm<12, 5>>;
using wdn_pg_zm = shape<Rrw<4, 0, 2>, P<12, 10, kPPlain>, Z<9, 5>>;
using zd_fp_imm8 = shape<Z<4, 0>, FpDup>;
using zdn_bitmask = shape<Zrw<4, 0>, Bitmask>;
using pd = shape<P<3, 0, 0>>;
using pd_pgm_pn = shape<P<3, 0, 0>, P<13, 10, kPMerging>, P<8, 5, 0>>;
using pd_pgz_pn = shape<P<3, 0, 0>, P<13, 10, kPZeroing>, P<8, 5, 0>>;
using pt_xn_simm9 = shape<P<3, 0, 0>, S<9, 5, 3>, Simm9>;
using pd16_pn = shape<P<3, 0, 1>, P<8, 5, 0>>;
using pdm_pgz_pn = shape<Prw<3, 0, 0>, P<13, 10, kPZeroing>, P<8, 5, 0>>;
using xd_xn_simm6 = shape<S<4, 0, 3>, S<20, 16, 3>, Simm<10, 5>>;
using zd_zn8 = shape<Z<4, 0>, Z<9, 5, 0>>;
using zd_zn16 = shape<Z<4, 0>, Z<9, 5, 1>>;
using zt_xn_simm9 = shape<Z<4, 0, 0>, S<9, 5, 3>, Simm9>;
using zda_pgm_zn_zm_rot = shape<Zrw<4, 0>, P<12, 10, kPMerging>, Z<9, 5>, Z<20, 16>, Uimm<14, 13>>;
using no_operands = shape<>;
using pg_pn = shape<P<13, 10, kPPlain>, P<8, 5, 0>>;
using pd_pg_pn_pm = shape<P<3, 0, 0>, P<13, 10, kPPlain>, P<8, 5, 0>, P<19, 16, 0>>;
using pd_pgz = shape<P<3, 0, 0>, P<8, 5, kPZeroing>>;
using pn = shape<P<8, 5, 0>>;
using xd_simm6 = shape<R<4, 0, 3>, Simm<10, 5>>;
using wdn_pattern_step = shape<Rrw<4, 0, 2>, Uimm<9, 5>, PatternStep>;
using xdn_pg_zm = shape<Rrw<4, 0, 3>, P<12, 10, kPPlain>, Z<9, 5>>;
using zd_bitmask = shape<Z<4, 0>, Bitmask>;
using zdn_zm_uimm8 = shape<Zrw<4, 0>, Z<9, 5>, UimmSplit>;

} // namespace shapes
