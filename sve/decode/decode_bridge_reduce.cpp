// Bridge decoders. Signed add reduction and the last-active-lane picks.
#include "../generic/reduce.h"
#include "bridge_shapes.h"

using namespace bridge_shapes;

BRIDGE_DECODER(VecS8AddReduceV, vd_pg_zn<8>, ELEM_B)
BRIDGE_DECODER(VecS16AddReduceV, vd_pg_zn<8>, ELEM_H)
BRIDGE_DECODER(VecS32AddReduceV, vd_pg_zn<8>, ELEM_S)

BRIDGE_DECODER(VecU8LastAV, rd_pg_zn<32>, ELEM_B)
BRIDGE_DECODER(VecU16LastAV, rd_pg_zn<32>, ELEM_H)
BRIDGE_DECODER(VecU32LastAV, rd_pg_zn<32>, ELEM_S)
BRIDGE_DECODER(VecU64LastAV, rd_pg_zn<64>, ELEM_D)
BRIDGE_DECODER(VecB8LastAV, vd_pg_zn<1>, ELEM_B)
BRIDGE_DECODER(VecH16LastAV, vd_pg_zn<2>, ELEM_H)
BRIDGE_DECODER(VecF32LastAV, vd_pg_zn<4>, ELEM_S)
BRIDGE_DECODER(VecD64LastAV, vd_pg_zn<8>, ELEM_D)

BRIDGE_DECODER(VecU8CondXASV, rdn_pg_zn<32>, ELEM_B)
BRIDGE_DECODER(VecU16CondXASV, rdn_pg_zn<32>, ELEM_H)
BRIDGE_DECODER(VecU32CondXASV, rdn_pg_zn<32>, ELEM_S)
BRIDGE_DECODER(VecU64CondXASV, rdn_pg_zn<64>, ELEM_D)
BRIDGE_DECODER(VecB8CondXASV, vdn_pg_zn<1>, ELEM_B)
BRIDGE_DECODER(VecB8CondXBSV, vdn_pg_zn<1>, ELEM_B)
BRIDGE_DECODER(VecH16CondXASV, vdn_pg_zn<2>, ELEM_H)
BRIDGE_DECODER(VecH16CondXBSV, vdn_pg_zn<2>, ELEM_H)
BRIDGE_DECODER(VecF32CondXASV, vdn_pg_zn<4>, ELEM_S)
BRIDGE_DECODER(VecF32CondXBSV, vdn_pg_zn<4>, ELEM_S)
BRIDGE_DECODER(VecD64CondXASV, vdn_pg_zn<8>, ELEM_D)
BRIDGE_DECODER(VecD64CondXBSV, vdn_pg_zn<8>, ELEM_D)

BRIDGE_DECODER(VecU8VCondXAVV, zdn_pg_zn, ELEM_B)
BRIDGE_DECODER(VecU8VCondXBVV, zdn_pg_zn, ELEM_B)
BRIDGE_DECODER(VecU16VCondXAVV, zdn_pg_zn, ELEM_H)
BRIDGE_DECODER(VecU16VCondXBVV, zdn_pg_zn, ELEM_H)
BRIDGE_DECODER(VecU32VCondXAVV, zdn_pg_zn, ELEM_S)
BRIDGE_DECODER(VecU32VCondXBVV, zdn_pg_zn, ELEM_S)
BRIDGE_DECODER(VecU64VCondXAVV, zdn_pg_zn, ELEM_D)
BRIDGE_DECODER(VecU64VCondXBVV, zdn_pg_zn, ELEM_D)
