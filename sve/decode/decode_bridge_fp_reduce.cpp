// Bridge decoders. Floating-point reductions.
#include "../generic/fp_reductions.h"
#include "bridge_shapes_fp.h"

using namespace bridge_shapes;

BRIDGE_DECODER(VecF16AddReduceAV, vdn_pg_zn<2>, ELEM_H)
BRIDGE_DECODER(VecF32AddReduceAV, vdn_pg_zn<4>, ELEM_S)
BRIDGE_DECODER(VecD64AddReduceAV, vdn_pg_zn<8>, ELEM_D)

BRIDGE_DECODER(VecF16AddReduceFV, vd_pg_zn<2>, ELEM_H)
BRIDGE_DECODER(VecF32AddReduceFV, vd_pg_zn<4>, ELEM_S)
BRIDGE_DECODER(VecD64AddReduceFV, vd_pg_zn<8>, ELEM_D)
