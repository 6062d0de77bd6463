// The shapes of the SVE2 bridge decoders.
#pragma once

#include "bridge_shapes.h"

namespace bridge_shapes {

// eor3, bcax, bsl*: Zdn, Zm (20:16), Zk (9:5).
using zdn_zm_zk = bridge<ToZ<4, 0>, Zd, Zm, Zn>;
// xar: Zdn, Zm (9:5) and a rotation coded like an unpredicated right shift.
using zdn_zm_rotate = bridge<ToZ<4, 0>, Zd, Zn, Imm<RightShift<kUnpredicated>>>;
// The top-half forms keep the other halves of Zd.
using zd_zn_keep = bridge<ToZ<4, 0>, Zn, Zd>;
using zd_pgz_zn_zm = bridge<ToZ<4, 0>, Pred<P<12, 10, kPZeroing>>, Zn, Zm>;

} // namespace bridge_shapes
