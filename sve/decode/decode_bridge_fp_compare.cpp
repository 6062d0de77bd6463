// Bridge decoders. Floating-point comparisons.
#include "../generic/fp_comparisons.h"
#include "bridge_shapes_fp.h"

using namespace bridge_shapes;

BRIDGE_DECODER(VecF16CmpEQVVZ, pd_pg_zn_zm, ELEM_H)
BRIDGE_DECODER(VecF16CmpNEVVZ, pd_pg_zn_zm, ELEM_H)
BRIDGE_DECODER(VecF16CmpGEVVZ, pd_pg_zn_zm, ELEM_H)
BRIDGE_DECODER(VecF16CmpGTVVZ, pd_pg_zn_zm, ELEM_H)
BRIDGE_DECODER(VecF16CmpUNVVZ, pd_pg_zn_zm, ELEM_H)
BRIDGE_DECODER(VecF16AcGEVVZ, pd_pg_zn_zm, ELEM_H)
BRIDGE_DECODER(VecF16AcGTVVZ, pd_pg_zn_zm, ELEM_H)
BRIDGE_DECODER(VecF32AcGEVVZ, pd_pg_zn_zm, ELEM_S)
BRIDGE_DECODER(VecF32AcGTVVZ, pd_pg_zn_zm, ELEM_S)
BRIDGE_DECODER(VecD64AcGEVVZ, pd_pg_zn_zm, ELEM_D)
BRIDGE_DECODER(VecD64AcGTVVZ, pd_pg_zn_zm, ELEM_D)

BRIDGE_DECODER(VecF16CmpEQV0Z, pd_pg_zn, ELEM_H)
BRIDGE_DECODER(VecF16CmpNEV0Z, pd_pg_zn, ELEM_H)
BRIDGE_DECODER(VecF16CmpGEV0Z, pd_pg_zn, ELEM_H)
BRIDGE_DECODER(VecF16CmpGTV0Z, pd_pg_zn, ELEM_H)
BRIDGE_DECODER(VecF16CmpLEV0Z, pd_pg_zn, ELEM_H)
BRIDGE_DECODER(VecF16CmpLTV0Z, pd_pg_zn, ELEM_H)
BRIDGE_DECODER(VecF32CmpNEV0Z, pd_pg_zn, ELEM_S)
BRIDGE_DECODER(VecD64CmpNEV0Z, pd_pg_zn, ELEM_D)
