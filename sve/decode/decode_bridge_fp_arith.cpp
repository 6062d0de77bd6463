// Bridge decoders. Floating-point add, subtract, multiply, sign and copy.
#include "../generic/fp_arith.h"
#include "bridge_shapes_fp.h"

using namespace bridge_shapes;

BRIDGE_DECODER(VecF16AddVVM, zd_pgm_zn, ELEM_H)
BRIDGE_DECODER(VecF16SubVVM, zd_pgm_zn, ELEM_H)
BRIDGE_DECODER(VecF16MulVVM, zd_pgm_zn, ELEM_H)
BRIDGE_DECODER(VecF16SubRVVM, zd_pgm_zn, ELEM_H)
BRIDGE_DECODER(VecF16MulXVVM, zd_pgm_zn, ELEM_H)
BRIDGE_DECODER(VecF16AbdVVM, zd_pgm_zn, ELEM_H)
BRIDGE_DECODER(VecF16AbsVM, zd_pgm_zn, ELEM_H)
BRIDGE_DECODER(VecF16NegVM, zd_pgm_zn, ELEM_H)
BRIDGE_DECODER(VecF32MulXVVM, zd_pgm_zn, ELEM_S)
BRIDGE_DECODER(VecF32AbdVVM, zd_pgm_zn, ELEM_S)
BRIDGE_DECODER(VecD64MulXVVM, zd_pgm_zn, ELEM_D)
BRIDGE_DECODER(VecD64AbdVVM, zd_pgm_zn, ELEM_D)

BRIDGE_DECODER(VecF16AddVVX, zd_zn_zm, ELEM_H)
BRIDGE_DECODER(VecF16SubVVX, zd_zn_zm, ELEM_H)
BRIDGE_DECODER(VecF16MulVVX, zd_zn_zm, ELEM_H)
BRIDGE_DECODER(VecF16AddVIM, zdn_pgm_i1, ELEM_H)
BRIDGE_DECODER(VecF16SubVIM, zdn_pgm_i1, ELEM_H)
BRIDGE_DECODER(VecF16SubRVIM, zdn_pgm_i1, ELEM_H)
BRIDGE_DECODER(VecF16MulVIM, zdn_pgm_i1, ELEM_H)

BRIDGE_DECODER(VecF16DupIM, zd_pgm_fp_imm8, ELEM_H)
BRIDGE_DECODER(VecF32DupIM, zd_pgm_fp_imm8, ELEM_S)
BRIDGE_DECODER(VecD64DupIM, zd_pgm_fp_imm8, ELEM_D)
