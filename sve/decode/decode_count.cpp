// Thin decoders. Element counts and steps: cntp, incp, and increments or decrements by a
// predicate pattern.
#include "shapes.h"

using namespace shapes;

THIN_DECODER(VecU8SCountP, xd_pg_pn, ELEM_B, sve_cntp_rpp)
THIN_DECODER(VecU16SCountP, xd_pg_pn, ELEM_H, sve_cntp_rpp)
THIN_DECODER(VecU32SCountP, xd_pg_pn, ELEM_S, sve_cntp_rpp)
THIN_DECODER(VecU64SCountP, xd_pg_pn, ELEM_D, sve_cntp_rpp)
THIN_DECODER(VecU8DecrVLSI, xdn_pattern_step, ELEM_B, sve_decb_rii)
THIN_DECODER(VecU64DecrVLSI, xdn_pattern_step, ELEM_D, sve_decd_rii)
THIN_DECODER(VecU64DecrVLVI, zdn_pattern_step, ELEM_D, sve_decd_zii)
THIN_DECODER(VecU16DecrVLSI, xdn_pattern_step, ELEM_H, sve_dech_rii)
THIN_DECODER(VecU16DecrVLVI, zdn_pattern_step, ELEM_H, sve_dech_zii)
THIN_DECODER(VecU32DecrVLSI, xdn_pattern_step, ELEM_S, sve_decw_rii)
THIN_DECODER(VecU32DecrVLVI, zdn_pattern_step, ELEM_S, sve_decw_zii)
THIN_DECODER(VecU8IncrVLSI, xdn_pattern_step, ELEM_B, sve_incb_rii)
THIN_DECODER(VecU64IncrVLSI, xdn_pattern_step, ELEM_D, sve_incd_rii)
THIN_DECODER(VecU64IncrVLVI, zdn_pattern_step, ELEM_D, sve_incd_zii)
THIN_DECODER(VecU16IncrVLSI, xdn_pattern_step, ELEM_H, sve_inch_rii)
THIN_DECODER(VecU16IncrVLVI, zdn_pattern_step, ELEM_H, sve_inch_zii)
THIN_DECODER(VecU8IncrSCountPS, xdn_pm, ELEM_B, sve_incp_rp)
THIN_DECODER(VecU16IncrSCountPS, xdn_pm, ELEM_H, sve_incp_rp)
THIN_DECODER(VecU32IncrSCountPS, xdn_pm, ELEM_S, sve_incp_rp)
THIN_DECODER(VecU64IncrSCountPS, xdn_pm, ELEM_D, sve_incp_rp)
THIN_DECODER(VecU32IncrVLSI, xdn_pattern_step, ELEM_S, sve_incw_rii)
THIN_DECODER(VecU32IncrVLVI, zdn_pattern_step, ELEM_S, sve_incw_zii)
THIN_DECODER(VecU8QDecrVL4SI, wdn_pattern_step, ELEM_B, sve_uqdecb_rii)
THIN_DECODER(VecU8QDecrVL8SI, xdn_pattern_step, ELEM_B, sve_uqdecb_rii)
