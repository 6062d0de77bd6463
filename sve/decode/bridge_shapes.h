// The shapes of the bridge decoders: where the result goes, then which
// fields of the word become which generic-function arguments, in order.
#pragma once

#include "bridge.h"

namespace bridge_shapes {
using namespace operands;
using namespace bridge_kinds;

using Pattern = Imm<Uimm<9, 5>>;
using Imm4 = Imm<Uimm<19, 16>>;
using Pg = Pred<P<12, 10, kPPlain>>;
using PgPred = Pred<P<13, 10, kPPlain>>; // the governing predicate of predicate operations
using Pn = Pred<P<8, 5, 0>>;
using Pm = Pred<P<19, 16, 0>>;
using Pd = Pred<P<3, 0, 0>>;
using Zd = Vec<Z<4, 0>>;
using Zn = Vec<Z<9, 5>>;
using Zm = Vec<Z<20, 16>>;
using Xd = Scalar<R<4, 0, 3>>;
using Xn = Scalar<R<9, 5, 3>>;
using Xm = Scalar<R<20, 16, 3>>;
using Vd = SimdScalar<V<4, 0>>;

// cnt*: pattern and multiplier to Xd.
using xd_pattern_imm4 = bridge<ToX<64>, Pattern, Imm4>;
// Saturating inc/dec by pattern of a W (zero-extended) or X register.
using wdn_pattern_imm4 = bridge<ToX<32>, Xd, Pattern, Imm4>;
using xdn_pattern_imm4 = bridge<ToX<64>, Xd, Pattern, Imm4>;
using zdn_pattern_imm4 = bridge<ToZ<4, 0>, Zd, Pattern, Imm4>;

// Reductions and lane picks to a SIMD&FP scalar of 1, 2, 4 or 8 bytes.
template <unsigned Bytes> using vd_pg_zn = bridge<ToV<Bytes>, Pg, Zn>;
template <unsigned Bytes> using vdn_pg_zn = bridge<ToV<Bytes>, Pg, Vd, Zn>;
// Lane picks to a general register: W zero-extended, or X.
template <unsigned Bits> using rd_pg_zn = bridge<ToX<Bits>, Pg, Zn>;
template <unsigned Bits> using rdn_pg_zn = bridge<ToX<Bits>, Pg, Xd, Zn>;
using zdn_pg_zn = bridge<ToZ<4, 0>, Pg, Zd, Zn>;

} // namespace bridge_shapes

namespace bridge_shapes {

// Steps by the active count of Pn: of a W (zero-extended) or X register,
// or of each element of Zd.
using wdn_pn = bridge<ToX<32>, Pn, Xd>;
using xdn_pn = bridge<ToX<64>, Pn, Xd>;
using zdn_pn = bridge<ToZ<4, 0>, Pn, Zd>;

using zd_zn_zm = bridge<ToZ<4, 0>, Zn, Zm>;

// Predicate results.
using pd_pg_pn_pm = bridge<ToP<3, 0>, PgPred, Pn, Pm>;
using pd_pg_pn = bridge<ToP<3, 0>, PgPred, Pn>;
using pd_pn = bridge<ToP<3, 0>, Pn>;
using pd_pn_pdn = bridge<ToP<3, 0>, Pn, Pd>;
using pd_pn_pm = bridge<ToP<3, 0>, Pn, Pm>;
using pd_pattern = bridge<ToP<3, 0>, Pattern>;
using pd_xn_xm = bridge<ToP<3, 0>, Xn, Xm>;
using flags_xn_xm = bridge<FlagsOnly, Xn, Xm>;

} // namespace bridge_shapes

namespace bridge_shapes {

// Element-wise forms: the merge source (or first operand) in Zd.
using zd_pgm_zn = bridge<ToZ<4, 0>, Zd, Pg, Zn>;
using zdn_simm8 = bridge<ToZ<4, 0>, Zd, ImmElement<Simm<12, 5>>>;
using zdn_uimm8 = bridge<ToZ<4, 0>, Zd, ImmElement<Uimm<12, 5>>>;
using zdn_uimm8_shifted = bridge<ToZ<4, 0>, Zd, ImmElement<Uimm8Shifted>>;
using zd_zn_right_shift = bridge<ToZ<4, 0>, Zn, Imm<RightShift<kUnpredicated>>>;
using zdn_pgm_right_shift = bridge<ToZ<4, 0>, Zd, Pg, Imm<RightShift<kPredicated>>>;

} // namespace bridge_shapes

namespace bridge_shapes {

using pd_pg_zn_zm = bridge<ToP<3, 0>, Pg, Zn, Zm>;
using pd_pg_zn_simm5 = bridge<ToP<3, 0>, Pg, Zn, Imm<Simm<20, 16>>>;
using pd_pg_zn_uimm7 = bridge<ToP<3, 0>, Pg, Zn, Imm<Uimm<20, 14>>>;

using zdn_rn = bridge<ToZ<4, 0>, Zd, Scalar<R<9, 5, 3>>>;
using zdn_vn = bridge<ToZ<4, 0>, Zd, SimdScalar<V<9, 5>>>;
using zd_zn = bridge<ToZ<4, 0>, Zn>;
using zd_pg_zn = bridge<ToZ<4, 0>, Pg, Zn>;

// Dot products: the accumulator last; the indexed forms take Zm and the
// index from bits 20:16 by element size.
using zda_zn_zm = bridge<ToZ<4, 0>, Zn, Zm, Zd>;
using zda_zn_zm3_index2 = bridge<ToZ<4, 0>, Zn, Vec<Z<18, 16>>, Zd, Imm<Uimm<20, 19>>>;
using zda_zn_zm4_index1 = bridge<ToZ<4, 0>, Zn, Vec<Z<19, 16>>, Zd, Imm<Uimm<20, 20>>>;

} // namespace bridge_shapes
