// Bridge decoders. Integer vector arithmetic.
#include "../generic/arith.h"
#include "bridge_shapes.h"

using namespace bridge_shapes;

BRIDGE_DECODER(VecU32LEA1VV, zd_zn_zm, ELEM_S)
BRIDGE_DECODER(VecU32LEA2VV, zd_zn_zm, ELEM_S)
BRIDGE_DECODER(VecU32LEA4VV, zd_zn_zm, ELEM_S)
BRIDGE_DECODER(VecU32LEA8VV, zd_zn_zm, ELEM_S)
BRIDGE_DECODER(VecU64LEA1XVV, zd_zn_zm, ELEM_D)
BRIDGE_DECODER(VecU64LEA1YVV, zd_zn_zm, ELEM_D)
BRIDGE_DECODER(VecU64LEA2XVV, zd_zn_zm, ELEM_D)
BRIDGE_DECODER(VecU64LEA2YVV, zd_zn_zm, ELEM_D)
BRIDGE_DECODER(VecU64LEA4XVV, zd_zn_zm, ELEM_D)
BRIDGE_DECODER(VecU64LEA4YVV, zd_zn_zm, ELEM_D)
BRIDGE_DECODER(VecU64LEA8XVV, zd_zn_zm, ELEM_D)
BRIDGE_DECODER(VecU64LEA8YVV, zd_zn_zm, ELEM_D)
