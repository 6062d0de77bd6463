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

namespace bridge_kinds {

// Nothing but memory changes: the stores.
struct MemoryOnly {
  template <auto Fn, typename... A> static void call(cpu_state*, uint32_t, A... a) { Fn(a...); }
  static void describe(line_writer& out, uint32_t) { out.printf("memory"); }
  static void notation(line_writer& out) { out.printf("memory"); }
};

} // namespace bridge_kinds

namespace bridge_shapes {

// The non-temporal gathers and scatters: a vector of bases in 9:5 plus Xm
// (31 is XZR); the stores take the data from Zt.
using zt_pgz_zn_xm = bridge<ToZ<4, 0>, PgZ, Zn, Xm>;
using memory_zt_pg_zn_xm = bridge<MemoryOnly, Zd, Pg, Zn, Xm>;

} // namespace bridge_shapes
