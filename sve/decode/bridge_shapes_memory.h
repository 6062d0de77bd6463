// The shapes of the bridge decoders of loads: the governing predicate, then
// the address operands in the generic function's order; the result to Zt.
#pragma once

#include "bridge_shapes.h"

namespace bridge_shapes {

using PgZ = Pred<P<12, 10, kPZeroing>>;
using Base = Scalar<S<9, 5, 3>>; // 31 is SP

using zt_pgz_xn_xm = bridge<ToZ<4, 0>, PgZ, Base, Xm>;
using zt_pgz_xn_simm4 = bridge<ToZ<4, 0>, PgZ, Base, Imm<Simm<19, 16>>>;
using zt_pgz_zn_uimm5 = bridge<ToZ<4, 0>, PgZ, Zn, Imm<Uimm<20, 16>>>;
using zt_pgz_zm_xn = bridge<ToZ<4, 0>, PgZ, Zm, Base>;
using zt_pgz_xn_zm = bridge<ToZ<4, 0>, PgZ, Base, Zm>;

} // namespace bridge_shapes
