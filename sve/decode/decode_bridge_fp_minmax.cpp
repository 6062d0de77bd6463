// Bridge decoders. Floating-point divide, square root, minimum and maximum, and
// the minimum and maximum reductions.
#include "../generic/fp_minmax_div.h"
#include "bridge_shapes_fp.h"

using namespace bridge_shapes;

BRIDGE_DECODER(VecF16DivVVM, zd_pgm_zn, ELEM_H)
BRIDGE_DECODER(VecF16DivRVVM, zd_pgm_zn, ELEM_H)
BRIDGE_DECODER(VecF16SqrtVM, zd_pgm_zn, ELEM_H)
BRIDGE_DECODER(VecF16MaxVVM, zd_pgm_zn, ELEM_H)
BRIDGE_DECODER(VecF16MinVVM, zd_pgm_zn, ELEM_H)
BRIDGE_DECODER(VecF16MaxNumVVM, zd_pgm_zn, ELEM_H)
BRIDGE_DECODER(VecF16MinNumVVM, zd_pgm_zn, ELEM_H)
BRIDGE_DECODER(VecF32MinVVM, zd_pgm_zn, ELEM_S)
BRIDGE_DECODER(VecD64MinVVM, zd_pgm_zn, ELEM_D)

BRIDGE_DECODER(VecF16MaxVIM, zdn_pgm_i1, ELEM_H)
BRIDGE_DECODER(VecF16MinVIM, zdn_pgm_i1, ELEM_H)
BRIDGE_DECODER(VecF16MaxNumVIM, zdn_pgm_i1, ELEM_H)
BRIDGE_DECODER(VecF16MinNumVIM, zdn_pgm_i1, ELEM_H)
BRIDGE_DECODER(VecF32MaxVIM, zdn_pgm_i1, ELEM_S)
BRIDGE_DECODER(VecF32MinVIM, zdn_pgm_i1, ELEM_S)
BRIDGE_DECODER(VecF32MaxNumVIM, zdn_pgm_i1, ELEM_S)
BRIDGE_DECODER(VecF32MinNumVIM, zdn_pgm_i1, ELEM_S)
BRIDGE_DECODER(VecD64MaxVIM, zdn_pgm_i1, ELEM_D)
BRIDGE_DECODER(VecD64MinVIM, zdn_pgm_i1, ELEM_D)
BRIDGE_DECODER(VecD64MaxNumVIM, zdn_pgm_i1, ELEM_D)
BRIDGE_DECODER(VecD64MinNumVIM, zdn_pgm_i1, ELEM_D)

BRIDGE_DECODER(VecF16MaxReduceFV, vd_pg_zn<2>, ELEM_H)
BRIDGE_DECODER(VecF16MinReduceFV, vd_pg_zn<2>, ELEM_H)
BRIDGE_DECODER(VecF32MaxReduceFV, vd_pg_zn<4>, ELEM_S)
BRIDGE_DECODER(VecF32MinReduceFV, vd_pg_zn<4>, ELEM_S)
BRIDGE_DECODER(VecD64MaxReduceFV, vd_pg_zn<8>, ELEM_D)
BRIDGE_DECODER(VecD64MinReduceFV, vd_pg_zn<8>, ELEM_D)
BRIDGE_DECODER(VecF16MaxNumReduceFV, vd_pg_zn<2>, ELEM_H)
BRIDGE_DECODER(VecF16MinNumReduceFV, vd_pg_zn<2>, ELEM_H)
