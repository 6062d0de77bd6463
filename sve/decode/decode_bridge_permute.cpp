// Bridge decoders. insr, sunpk, splice and compact.
#include "../generic/permute.h"
#include "bridge_shapes.h"

using namespace bridge_shapes;

BRIDGE_DECODER(VecU8InsertS, zdn_rn, ELEM_B)
BRIDGE_DECODER(VecB8InsertS, zdn_vn, ELEM_B)
BRIDGE_DECODER(VecU16InsertS, zdn_rn, ELEM_H)
BRIDGE_DECODER(VecS16UnpackLoV, zd_zn, ELEM_H)
BRIDGE_DECODER(VecS16UnpackHiV, zd_zn, ELEM_H)
BRIDGE_DECODER(VecH16InsertS, zdn_vn, ELEM_H)
BRIDGE_DECODER(VecU32InsertS, zdn_rn, ELEM_S)
BRIDGE_DECODER(VecS32UnpackLoV, zd_zn, ELEM_S)
BRIDGE_DECODER(VecS32UnpackHiV, zd_zn, ELEM_S)
BRIDGE_DECODER(VecF32InsertS, zdn_vn, ELEM_S)
BRIDGE_DECODER(VecU64InsertS, zdn_rn, ELEM_D)
BRIDGE_DECODER(VecD64InsertS, zdn_vn, ELEM_D)
BRIDGE_DECODER(VecU8SpliceVV, zdn_pg_zn, ELEM_B)
BRIDGE_DECODER(VecU16SpliceVV, zdn_pg_zn, ELEM_H)
BRIDGE_DECODER(VecU32CompressVV, zd_pg_zn, ELEM_S)
BRIDGE_DECODER(VecU32SpliceVV, zdn_pg_zn, ELEM_S)
BRIDGE_DECODER(VecU64CompressVV, zd_pg_zn, ELEM_D)
BRIDGE_DECODER(VecU64SpliceVV, zdn_pg_zn, ELEM_D)
