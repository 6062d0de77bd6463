// Bridge decoders. Floating-point estimates, Newton steps, scaling and the
// trigonometric and exponential helpers.
#include "../generic/fp_estimates.h"
#include "bridge_shapes_fp.h"

using namespace bridge_shapes;

BRIDGE_DECODER(VecF16RecpEV, zd_zn, ELEM_H)
BRIDGE_DECODER(VecF16RSqrtEV, zd_zn, ELEM_H)
BRIDGE_DECODER(VecF32RSqrtEV, zd_zn, ELEM_S)
BRIDGE_DECODER(VecD64RSqrtEV, zd_zn, ELEM_D)
BRIDGE_DECODER(VecF16EXPAV, zd_zn, ELEM_H)
BRIDGE_DECODER(VecF32EXPAV, zd_zn, ELEM_S)
BRIDGE_DECODER(VecD64EXPAV, zd_zn, ELEM_D)

BRIDGE_DECODER(VecF16RecpSVV, zd_zn_zm, ELEM_H)
BRIDGE_DECODER(VecF16RSqrtSVV, zd_zn_zm, ELEM_H)
BRIDGE_DECODER(VecF16TRISMULVV, zd_zn_zm, ELEM_H)
BRIDGE_DECODER(VecF16TRISSELVV, zd_zn_zm, ELEM_H)
BRIDGE_DECODER(VecF32RSqrtSVV, zd_zn_zm, ELEM_S)
BRIDGE_DECODER(VecF32TRISMULVV, zd_zn_zm, ELEM_S)
BRIDGE_DECODER(VecF32TRISSELVV, zd_zn_zm, ELEM_S)
BRIDGE_DECODER(VecD64RSqrtSVV, zd_zn_zm, ELEM_D)
BRIDGE_DECODER(VecD64TRISMULVV, zd_zn_zm, ELEM_D)
BRIDGE_DECODER(VecD64TRISSELVV, zd_zn_zm, ELEM_D)

BRIDGE_DECODER(VecF16RecpXVM, zd_pgm_zn, ELEM_H)
BRIDGE_DECODER(VecF16ScaleVVM, zd_pgm_zn, ELEM_H)
BRIDGE_DECODER(VecF32RecpXVM, zd_pgm_zn, ELEM_S)
BRIDGE_DECODER(VecF32ScaleVVM, zd_pgm_zn, ELEM_S)
BRIDGE_DECODER(VecD64RecpXVM, zd_pgm_zn, ELEM_D)
BRIDGE_DECODER(VecD64ScaleVVM, zd_pgm_zn, ELEM_D)

BRIDGE_DECODER(VecF16TRIMADDVVI, zdn_zm_imm3, ELEM_H)
BRIDGE_DECODER(VecF32TRIMADDVVI, zdn_zm_imm3, ELEM_S)
BRIDGE_DECODER(VecD64TRIMADDVVI, zdn_zm_imm3, ELEM_D)
