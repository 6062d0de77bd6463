// Fast handlers. Floating point: arithmetic, multiply-add, compares, conversions, rounding,
// estimates and reductions.
#pragma once

#include "../decode/cpu_state.h"

aarch64_decode_rc sve_fabs_zpz(cpu_state*, aarch64_z_reg zd, aarch64_p_reg pg, aarch64_z_reg zn);
aarch64_decode_rc sve_fadd_zpi(cpu_state*, aarch64_z_reg zdn, aarch64_p_reg pg,
                               aarch64_sve_fp_arith_imm imm);
aarch64_decode_rc sve_fadd_zpz(cpu_state*, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm);
aarch64_decode_rc sve_fadd_zzz(cpu_state*, aarch64_z_reg zd, aarch64_z_reg zn, aarch64_z_reg zm);
aarch64_decode_rc sve_fcmeq_ppz(cpu_state*, aarch64_p_reg pd, aarch64_p_reg pg, aarch64_z_reg zn);
aarch64_decode_rc sve_fcmeq_ppzz(cpu_state*, aarch64_p_reg pd, aarch64_p_reg pg, aarch64_z_reg zn,
                                 aarch64_z_reg zm);
aarch64_decode_rc sve_fcmge_ppz(cpu_state*, aarch64_p_reg pd, aarch64_p_reg pg, aarch64_z_reg zn);
aarch64_decode_rc sve_fcmge_ppzz(cpu_state*, aarch64_p_reg pd, aarch64_p_reg pg, aarch64_z_reg zn,
                                 aarch64_z_reg zm);
aarch64_decode_rc sve_fcmgt_ppz(cpu_state*, aarch64_p_reg pd, aarch64_p_reg pg, aarch64_z_reg zn);
aarch64_decode_rc sve_fcmgt_ppzz(cpu_state*, aarch64_p_reg pd, aarch64_p_reg pg, aarch64_z_reg zn,
                                 aarch64_z_reg zm);
aarch64_decode_rc sve_fcmla_zpzzr(cpu_state*, aarch64_z_reg zda, aarch64_p_reg pg, aarch64_z_reg zn,
                                  aarch64_z_reg zm, unsigned int rotation);
aarch64_decode_rc sve_fcmle_ppz(cpu_state*, aarch64_p_reg pd, aarch64_p_reg pg, aarch64_z_reg zn);
aarch64_decode_rc sve_fcmlt_ppz(cpu_state*, aarch64_p_reg pd, aarch64_p_reg pg, aarch64_z_reg zn);
aarch64_decode_rc sve_fcmne_ppzz(cpu_state*, aarch64_p_reg pd, aarch64_p_reg pg, aarch64_z_reg zn,
                                 aarch64_z_reg zm);
aarch64_decode_rc sve_fcmuo_ppzz(cpu_state*, aarch64_p_reg pd, aarch64_p_reg pg, aarch64_z_reg zn,
                                 aarch64_z_reg zm);
aarch64_decode_rc sve_fcvt_d2s_zpz(cpu_state*, aarch64_z_reg zd, aarch64_p_reg pg,
                                   aarch64_z_reg zn);
aarch64_decode_rc sve_fcvt_s2d_zpz(cpu_state*, aarch64_z_reg zd, aarch64_p_reg pg,
                                   aarch64_z_reg zn);
aarch64_decode_rc sve_fcvtzs_d2d_zpz(cpu_state*, aarch64_z_reg zd, aarch64_p_reg pg,
                                     aarch64_z_reg zn);
aarch64_decode_rc sve_fcvtzs_d2s_zpz(cpu_state*, aarch64_z_reg zd, aarch64_p_reg pg,
                                     aarch64_z_reg zn);
aarch64_decode_rc sve_fcvtzs_s2d_zpz(cpu_state*, aarch64_z_reg zd, aarch64_p_reg pg,
                                     aarch64_z_reg zn);
aarch64_decode_rc sve_fcvtzs_s2s_zpz(cpu_state*, aarch64_z_reg zd, aarch64_p_reg pg,
                                     aarch64_z_reg zn);
aarch64_decode_rc sve_fcvtzu_d2d_zpz(cpu_state*, aarch64_z_reg zd, aarch64_p_reg pg,
                                     aarch64_z_reg zn);
aarch64_decode_rc sve_fcvtzu_d2s_zpz(cpu_state*, aarch64_z_reg zd, aarch64_p_reg pg,
                                     aarch64_z_reg zn);
aarch64_decode_rc sve_fdiv_zpz(cpu_state*, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm);
aarch64_decode_rc sve_fdivr_zpz(cpu_state*, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm);
aarch64_decode_rc sve_fdup_zi(cpu_state*, aarch64_z_reg zd, aarch64_sve_fp_dup_imm imm);
aarch64_decode_rc sve_fmad_zpzz(cpu_state*, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm,
                                aarch64_z_reg za);
aarch64_decode_rc sve_fmax_zpz(cpu_state*, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm);
aarch64_decode_rc sve_fmaxnm_zpz(cpu_state*, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm);
aarch64_decode_rc sve_fmaxnmv_vpz(cpu_state*, unsigned int vd, aarch64_p_reg pg, aarch64_z_reg zn);
aarch64_decode_rc sve_fminnm_zpz(cpu_state*, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm);
aarch64_decode_rc sve_fminnmv_vpz(cpu_state*, unsigned int vd, aarch64_p_reg pg, aarch64_z_reg zn);
aarch64_decode_rc sve_fmla_zpzz(cpu_state*, aarch64_z_reg zda, aarch64_p_reg pg, aarch64_z_reg zn,
                                aarch64_z_reg zm);
aarch64_decode_rc sve_fmls_zpzz(cpu_state*, aarch64_z_reg zda, aarch64_p_reg pg, aarch64_z_reg zn,
                                aarch64_z_reg zm);
aarch64_decode_rc sve_fmsb_zpzz(cpu_state*, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm,
                                aarch64_z_reg za);
aarch64_decode_rc sve_fmul_zpi(cpu_state*, aarch64_z_reg zdn, aarch64_p_reg pg,
                               aarch64_sve_fp_arith_imm imm);
aarch64_decode_rc sve_fmul_zpz(cpu_state*, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm);
aarch64_decode_rc sve_fmul_zzz(cpu_state*, aarch64_z_reg zd, aarch64_z_reg zn, aarch64_z_reg zm);
aarch64_decode_rc sve_fneg_zpz(cpu_state*, aarch64_z_reg zd, aarch64_p_reg pg, aarch64_z_reg zn);
aarch64_decode_rc sve_fnmad_zpzz(cpu_state*, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm,
                                 aarch64_z_reg za);
aarch64_decode_rc sve_fnmla_zpzz(cpu_state*, aarch64_z_reg zda, aarch64_p_reg pg, aarch64_z_reg zn,
                                 aarch64_z_reg zm);
aarch64_decode_rc sve_fnmls_zpzz(cpu_state*, aarch64_z_reg zda, aarch64_p_reg pg, aarch64_z_reg zn,
                                 aarch64_z_reg zm);
aarch64_decode_rc sve_fnmsb_zpzz(cpu_state*, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm,
                                 aarch64_z_reg za);
aarch64_decode_rc sve_frecpe_zz(cpu_state*, aarch64_z_reg zd, aarch64_z_reg zn);
aarch64_decode_rc sve_frecps_zzz(cpu_state*, aarch64_z_reg zd, aarch64_z_reg zn, aarch64_z_reg zm);
aarch64_decode_rc sve_frinta_zpz(cpu_state*, aarch64_z_reg zd, aarch64_p_reg pg, aarch64_z_reg zn);
aarch64_decode_rc sve_fsqrt_zpz(cpu_state*, aarch64_z_reg zd, aarch64_p_reg pg, aarch64_z_reg zn);
aarch64_decode_rc sve_fsub_zpi(cpu_state*, aarch64_z_reg zdn, aarch64_p_reg pg,
                               aarch64_sve_fp_arith_imm imm);
aarch64_decode_rc sve_fsub_zpz(cpu_state*, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm);
aarch64_decode_rc sve_fsub_zzz(cpu_state*, aarch64_z_reg zd, aarch64_z_reg zn, aarch64_z_reg zm);
aarch64_decode_rc sve_fsubr_zpi(cpu_state*, aarch64_z_reg zdn, aarch64_p_reg pg,
                                aarch64_sve_fp_arith_imm imm);
aarch64_decode_rc sve_fsubr_zpz(cpu_state*, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm);
aarch64_decode_rc sve_scvtf_d2d_zpz(cpu_state*, aarch64_z_reg zd, aarch64_p_reg pg,
                                    aarch64_z_reg zn);
aarch64_decode_rc sve_scvtf_d2s_zpz(cpu_state*, aarch64_z_reg zd, aarch64_p_reg pg,
                                    aarch64_z_reg zn);
aarch64_decode_rc sve_scvtf_s2d_zpz(cpu_state*, aarch64_z_reg zd, aarch64_p_reg pg,
                                    aarch64_z_reg zn);
aarch64_decode_rc sve_scvtf_s2s_zpz(cpu_state*, aarch64_z_reg zd, aarch64_p_reg pg,
                                    aarch64_z_reg zn);
aarch64_decode_rc sve_ucvtf_d2d_zpz(cpu_state*, aarch64_z_reg zd, aarch64_p_reg pg,
                                    aarch64_z_reg zn);
aarch64_decode_rc sve_ucvtf_s2d_zpz(cpu_state*, aarch64_z_reg zd, aarch64_p_reg pg,
                                    aarch64_z_reg zn);
aarch64_decode_rc sve_ucvtf_s2s_zpz(cpu_state*, aarch64_z_reg zd, aarch64_p_reg pg,
                                    aarch64_z_reg zn);

// Complete, but no decoder calls them: these reductions run on the generic
// tier. A caller puts the application's FPSR on the host around the call.
aarch64_decode_rc sve_faddv_vpz(cpu_state*, unsigned int vd, aarch64_p_reg pg, aarch64_z_reg zn);
aarch64_decode_rc sve_fadda_vpz(cpu_state*, unsigned int vdn, aarch64_p_reg pg, aarch64_z_reg zm);
