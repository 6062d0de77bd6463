// Fast handlers. Integer arithmetic: add, subtract, multiply, divide, minimum and maximum,
// multiply-add, negate, index, vector-length arithmetic and move-prefix.
#pragma once

#include "../decode/cpu_state.h"

aarch64_decode_rc sve_add_zi(cpu_state*, aarch64_z_reg zdn, unsigned int imm);
aarch64_decode_rc sve_add_zpz(cpu_state*, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm);
aarch64_decode_rc sve_add_zzz(cpu_state*, aarch64_z_reg zd, aarch64_z_reg zn, aarch64_z_reg zm);
aarch64_decode_rc sve_addpl_rri(cpu_state*, aarch64_i_rsp_reg xd, aarch64_i_rsp_reg xn, int imm);
aarch64_decode_rc sve_addvl_rri(cpu_state*, aarch64_i_rsp_reg xd, aarch64_i_rsp_reg xn, int imm);
aarch64_decode_rc sve_adr_scaled_zzz(cpu_state*, aarch64_z_reg zd, aarch64_z_reg zn,
                                     aarch64_z_reg zm);
aarch64_decode_rc sve_index_zii(cpu_state*, aarch64_z_reg zd, int start, int step);
aarch64_decode_rc sve_index_zir(cpu_state*, aarch64_z_reg zd, int start, aarch64_i_reg step);
aarch64_decode_rc sve_index_zri(cpu_state*, aarch64_z_reg zd, aarch64_i_reg start, int step);
aarch64_decode_rc sve_index_zrr(cpu_state*, aarch64_z_reg zd, aarch64_i_reg start,
                                aarch64_i_reg step);
aarch64_decode_rc sve_mad_zpzz(cpu_state*, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm,
                               aarch64_z_reg za);
aarch64_decode_rc sve_mla_zpzz(cpu_state*, aarch64_z_reg zda, aarch64_p_reg pg, aarch64_z_reg zn,
                               aarch64_z_reg zm);
aarch64_decode_rc sve_mls_zpzz(cpu_state*, aarch64_z_reg zda, aarch64_p_reg pg, aarch64_z_reg zn,
                               aarch64_z_reg zm);
aarch64_decode_rc sve_movprfx_zpz(cpu_state*, aarch64_z_reg zd, aarch64_p_reg pg, aarch64_z_reg zn);
aarch64_decode_rc sve_movprfx_zz(cpu_state*, aarch64_z_reg zd, aarch64_z_reg zn);
aarch64_decode_rc sve_msb_zpzz(cpu_state*, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm,
                               aarch64_z_reg za);
aarch64_decode_rc sve_mul_zi(cpu_state*, aarch64_z_reg zdn, int imm);
aarch64_decode_rc sve_mul_zpz(cpu_state*, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm);
aarch64_decode_rc sve_neg_zpz(cpu_state*, aarch64_z_reg zd, aarch64_p_reg pg, aarch64_z_reg zn);
aarch64_decode_rc sve_rdvl_ri(cpu_state*, aarch64_i_reg xd, int imm);
aarch64_decode_rc sve_sdiv_zpz(cpu_state*, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm);
aarch64_decode_rc sve_sdivr_zpz(cpu_state*, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm);
aarch64_decode_rc sve_smax_zpz(cpu_state*, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm);
aarch64_decode_rc sve_smin_zpz(cpu_state*, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm);
aarch64_decode_rc sve_sub_zi(cpu_state*, aarch64_z_reg zdn, unsigned int imm);
aarch64_decode_rc sve_sub_zpz(cpu_state*, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm);
aarch64_decode_rc sve_sub_zzz(cpu_state*, aarch64_z_reg zd, aarch64_z_reg zn, aarch64_z_reg zm);
aarch64_decode_rc sve_udiv_zpz(cpu_state*, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm);
aarch64_decode_rc sve_udivr_zpz(cpu_state*, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm);
aarch64_decode_rc sve_umax_zpz(cpu_state*, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm);
aarch64_decode_rc sve_umin_zpz(cpu_state*, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm);
