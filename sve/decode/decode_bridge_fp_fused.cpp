// Bridge decoders. Floating-point fused multiply-add, indexed and complex
// forms.
#include "../generic/fp_fused.h"
#include "bridge_shapes_fp.h"

using namespace bridge_shapes;

BRIDGE_DECODER(VecF16FMAVVVM, zda_pgm_zn_zm, ELEM_H)
BRIDGE_DECODER(VecF16FMSVVVM, zda_pgm_zn_zm, ELEM_H)
BRIDGE_DECODER(VecF16FNMAVVVM, zda_pgm_zn_zm, ELEM_H)
BRIDGE_DECODER(VecF16FNMSVVVM, zda_pgm_zn_zm, ELEM_H)
BRIDGE_DECODER(VecF16FMADDVVVM, zda_pgm_zn_zm, ELEM_H)
BRIDGE_DECODER(VecF16FMSUBVVVM, zda_pgm_zn_zm, ELEM_H)
BRIDGE_DECODER(VecF16FNMADDVVVM, zda_pgm_zn_zm, ELEM_H)
BRIDGE_DECODER(VecF16FNMSUBVVVM, zda_pgm_zn_zm, ELEM_H)

BRIDGE_DECODER(VecF16MulVVIX, zd_zn_zm3_index3, ELEM_H)
BRIDGE_DECODER(VecF16FMAVVVIX, zda_zn_zm3_index3, ELEM_H)
BRIDGE_DECODER(VecF16FMSVVVIX, zda_zn_zm3_index3, ELEM_H)
BRIDGE_DECODER(VecF32MulVVIX, zd_zn_zm3_index2, ELEM_S)
BRIDGE_DECODER(VecF32FMAVVVIX, zda_zn_zm3_index2, ELEM_S)
BRIDGE_DECODER(VecF32FMSVVVIX, zda_zn_zm3_index2, ELEM_S)
BRIDGE_DECODER(VecD64MulVVIX, zd_zn_zm4_index1, ELEM_D)
BRIDGE_DECODER(VecD64FMAVVVIX, zda_zn_zm4_index1, ELEM_D)
BRIDGE_DECODER(VecD64FMSVVVIX, zda_zn_zm4_index1, ELEM_D)

BRIDGE_DECODER(VecF16FCADDVVM, zdn_pgm_zm_rot1, ELEM_H)
BRIDGE_DECODER(VecF32FCADDVVM, zdn_pgm_zm_rot1, ELEM_S)
BRIDGE_DECODER(VecD64FCADDVVM, zdn_pgm_zm_rot1, ELEM_D)
BRIDGE_DECODER(VecF16FCMLAVVVM, zda_pgm_zn_zm_rot2, ELEM_H)
BRIDGE_DECODER(VecF16FCMLAVVVIX, zda_zn_zm3_rot_index2, ELEM_H)
BRIDGE_DECODER(VecF32FCMLAVVVIX, zda_zn_zm4_rot_index1, ELEM_S)
