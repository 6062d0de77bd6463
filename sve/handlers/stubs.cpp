// Fast handlers that are not written yet. Each stands in for its handler and
// reports "Unimplemented instruction"; delete its line when the real one lands.
#include "handlers.h"
#include "stub.h"

// Integer arithmetic
SVE_STUB_HANDLER(sve_addpl_rri, aarch64_i_rsp_reg, aarch64_i_rsp_reg, int)
SVE_STUB_HANDLER(sve_addvl_rri, aarch64_i_rsp_reg, aarch64_i_rsp_reg, int)
SVE_STUB_HANDLER(sve_adr_scaled_zzz, aarch64_z_reg, aarch64_z_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_index_zii, aarch64_z_reg, int, int)
SVE_STUB_HANDLER(sve_index_zir, aarch64_z_reg, int, aarch64_i_reg)
SVE_STUB_HANDLER(sve_index_zri, aarch64_z_reg, aarch64_i_reg, int)
SVE_STUB_HANDLER(sve_index_zrr, aarch64_z_reg, aarch64_i_reg, aarch64_i_reg)
SVE_STUB_HANDLER(sve_mad_zpzz, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_mla_zpzz, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_mls_zpzz, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_movprfx_zpz, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_movprfx_zz, aarch64_z_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_msb_zpzz, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_mul_zi, aarch64_z_reg, int)
SVE_STUB_HANDLER(sve_mul_zpz, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_neg_zpz, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_rdvl_ri, aarch64_i_reg, int)
SVE_STUB_HANDLER(sve_sdiv_zpz, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_sdivr_zpz, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_smax_zpz, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_smin_zpz, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_udiv_zpz, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_udivr_zpz, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_umax_zpz, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_umin_zpz, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg)

// Bitwise logic
SVE_STUB_HANDLER(sve_and_zi, aarch64_z_reg, aarch64_sve_logical64_imm)
SVE_STUB_HANDLER(sve_and_zpz, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_and_zzz, aarch64_z_reg, aarch64_z_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_asr_zpi, aarch64_z_reg, aarch64_p_reg, unsigned int)
SVE_STUB_HANDLER(sve_asr_zpz, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_asr_zzi, aarch64_z_reg, aarch64_z_reg, unsigned int)
SVE_STUB_HANDLER(sve_bic_zpz, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_bic_zzz, aarch64_z_reg, aarch64_z_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_dupm_zi, aarch64_z_reg, aarch64_sve_logical64_imm)
SVE_STUB_HANDLER(sve_eor_zi, aarch64_z_reg, aarch64_sve_logical64_imm)
SVE_STUB_HANDLER(sve_eor_zpz, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_eor_zzz, aarch64_z_reg, aarch64_z_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_lsl_zpi, aarch64_z_reg, aarch64_p_reg, unsigned int)
SVE_STUB_HANDLER(sve_lsl_zpz, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_lsl_zzi, aarch64_z_reg, aarch64_z_reg, unsigned int)
SVE_STUB_HANDLER(sve_lsr_zpz, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_orr_zi, aarch64_z_reg, aarch64_sve_logical64_imm)
SVE_STUB_HANDLER(sve_orr_zpz, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_orr_zzz, aarch64_z_reg, aarch64_z_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_rbit_zpz, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_revw_zpz, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_sxtb_zpz, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_sxth_zpz, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_sxtw_zpz, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_uxth_zpz, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_uxtw_zpz, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg)

// Permutes and copies
SVE_STUB_HANDLER(sve_cpy_zpi, aarch64_z_reg, aarch64_p_reg, int)
SVE_STUB_HANDLER(sve_cpy_zpr, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg)
SVE_STUB_HANDLER(sve_cpy_zpv, aarch64_z_reg, aarch64_p_reg, unsigned int)
SVE_STUB_HANDLER(sve_dup_zi, aarch64_z_reg, int)
SVE_STUB_HANDLER(sve_dup_zr, aarch64_z_reg, aarch64_i_rsp_reg)
SVE_STUB_HANDLER(sve_dup_zzi, aarch64_z_reg, aarch64_z_reg, unsigned int)
SVE_STUB_HANDLER(sve_ext_zzi, aarch64_z_reg, aarch64_z_reg, unsigned int)
SVE_STUB_HANDLER(sve_rev_zz, aarch64_z_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_sel_zpzz, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_sunpkhi_s2d_zz, aarch64_z_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_sunpklo_s2d_zz, aarch64_z_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_tbl_zzz, aarch64_z_reg, aarch64_z_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_trn1_zzz, aarch64_z_reg, aarch64_z_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_trn2_zzz, aarch64_z_reg, aarch64_z_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_uunpkhi_b2h_zz, aarch64_z_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_uunpkhi_h2s_zz, aarch64_z_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_uunpkhi_s2d_zz, aarch64_z_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_uunpklo_b2h_zz, aarch64_z_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_uunpklo_h2s_zz, aarch64_z_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_uunpklo_s2d_zz, aarch64_z_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_uzp1_zzz, aarch64_z_reg, aarch64_z_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_uzp2_zzz, aarch64_z_reg, aarch64_z_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_zip1_zzz, aarch64_z_reg, aarch64_z_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_zip2_zzz, aarch64_z_reg, aarch64_z_reg, aarch64_z_reg)

// Element counts and steps
SVE_STUB_HANDLER(sve_cntp_rpp, aarch64_i_reg, aarch64_p_reg, aarch64_p_reg)
SVE_STUB_HANDLER(sve_decb_rii, aarch64_i_reg, unsigned int, unsigned int)
SVE_STUB_HANDLER(sve_decd_rii, aarch64_i_reg, unsigned int, unsigned int)
SVE_STUB_HANDLER(sve_decd_zii, aarch64_z_reg, unsigned int, unsigned int)
SVE_STUB_HANDLER(sve_dech_rii, aarch64_i_reg, unsigned int, unsigned int)
SVE_STUB_HANDLER(sve_dech_zii, aarch64_z_reg, unsigned int, unsigned int)
SVE_STUB_HANDLER(sve_decw_rii, aarch64_i_reg, unsigned int, unsigned int)
SVE_STUB_HANDLER(sve_decw_zii, aarch64_z_reg, unsigned int, unsigned int)
SVE_STUB_HANDLER(sve_incb_rii, aarch64_i_reg, unsigned int, unsigned int)
SVE_STUB_HANDLER(sve_incd_rii, aarch64_i_reg, unsigned int, unsigned int)
SVE_STUB_HANDLER(sve_incd_zii, aarch64_z_reg, unsigned int, unsigned int)
SVE_STUB_HANDLER(sve_inch_rii, aarch64_i_reg, unsigned int, unsigned int)
SVE_STUB_HANDLER(sve_inch_zii, aarch64_z_reg, unsigned int, unsigned int)
SVE_STUB_HANDLER(sve_incp_rp, aarch64_i_reg, aarch64_p_reg)
SVE_STUB_HANDLER(sve_incw_rii, aarch64_i_reg, unsigned int, unsigned int)
SVE_STUB_HANDLER(sve_incw_zii, aarch64_z_reg, unsigned int, unsigned int)
SVE_STUB_HANDLER(sve_uqdecb_rii, aarch64_i_reg, unsigned int, unsigned int)

// Reductions across a vector and extraction of its last active lane
SVE_STUB_HANDLER(sve_andv_vpz, unsigned int, aarch64_p_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_clastb_rpz, aarch64_i_reg, aarch64_p_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_eorv_vpz, unsigned int, aarch64_p_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_lastb_rpz, aarch64_i_reg, aarch64_p_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_lastb_vpz, unsigned int, aarch64_p_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_orv_vpz, unsigned int, aarch64_p_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_smaxv_vpz, unsigned int, aarch64_p_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_sminv_vpz, unsigned int, aarch64_p_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_uaddv_vpz, unsigned int, aarch64_p_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_umaxv_vpz, unsigned int, aarch64_p_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_uminv_vpz, unsigned int, aarch64_p_reg, aarch64_z_reg)

// Predicates
SVE_STUB_HANDLER(sve_and_pppp, aarch64_p_reg, aarch64_p_reg, aarch64_p_reg, aarch64_p_reg)
SVE_STUB_HANDLER(sve_bic_pppp, aarch64_p_reg, aarch64_p_reg, aarch64_p_reg, aarch64_p_reg)
SVE_STUB_HANDLER(sve_brka_ppp, aarch64_p_reg, aarch64_p_reg, aarch64_p_reg)
SVE_STUB_HANDLER(sve_brkb_ppp, aarch64_p_reg, aarch64_p_reg, aarch64_p_reg)
SVE_STUB_HANDLER(sve_brkn_ppp, aarch64_p_reg, aarch64_p_reg, aarch64_p_reg)
SVE_STUB_HANDLER(sve_brkns_ppp, aarch64_p_reg, aarch64_p_reg, aarch64_p_reg)
SVE_STUB_HANDLER(sve_brkpb_pppp, aarch64_p_reg, aarch64_p_reg, aarch64_p_reg, aarch64_p_reg)
SVE_STUB_HANDLER(sve_brkpbs_pppp, aarch64_p_reg, aarch64_p_reg, aarch64_p_reg, aarch64_p_reg)
SVE_STUB_HANDLER(sve_eor_pppp, aarch64_p_reg, aarch64_p_reg, aarch64_p_reg, aarch64_p_reg)
SVE_STUB_HANDLER(sve_nor_pppp, aarch64_p_reg, aarch64_p_reg, aarch64_p_reg, aarch64_p_reg)
SVE_STUB_HANDLER(sve_orr_pppp, aarch64_p_reg, aarch64_p_reg, aarch64_p_reg, aarch64_p_reg)
SVE_STUB_HANDLER(sve_pfalse_p, aarch64_p_reg)
SVE_STUB_HANDLER(sve_pnext_pp, aarch64_p_reg, aarch64_p_reg)
SVE_STUB_HANDLER(sve_ptest_pp, aarch64_p_reg, aarch64_p_reg)
SVE_STUB_HANDLER(sve_ptrue_pi, aarch64_p_reg, unsigned int)
SVE_STUB_HANDLER(sve_punpkhi_pp, aarch64_p_reg, aarch64_p_reg)
SVE_STUB_HANDLER(sve_punpklo_pp, aarch64_p_reg, aarch64_p_reg)
SVE_STUB_HANDLER(sve_rdffr_p, aarch64_p_reg)
SVE_STUB_HANDLER(sve_rdffr_pp, aarch64_p_reg, aarch64_p_reg)
SVE_STUB_HANDLER(sve_rev_pp, aarch64_p_reg, aarch64_p_reg)
SVE_STUB_HANDLER(sve_sel_pppp, aarch64_p_reg, aarch64_p_reg, aarch64_p_reg, aarch64_p_reg)
SVE_STUB_HANDLER_NO_OPERANDS(sve_setffr)
SVE_STUB_HANDLER(sve_uzp1_ppp, aarch64_p_reg, aarch64_p_reg, aarch64_p_reg)
SVE_STUB_HANDLER(sve_whilelo_prr, aarch64_p_reg, aarch64_i_reg, aarch64_i_reg)
SVE_STUB_HANDLER(sve_whilels_prr, aarch64_p_reg, aarch64_i_reg, aarch64_i_reg)
SVE_STUB_HANDLER(sve_whilelt_prr, aarch64_p_reg, aarch64_i_reg, aarch64_i_reg)
SVE_STUB_HANDLER(sve_wrffr_p, aarch64_p_reg)
SVE_STUB_HANDLER(sve_zip1_ppp, aarch64_p_reg, aarch64_p_reg, aarch64_p_reg)
SVE_STUB_HANDLER(sve_zip2_ppp, aarch64_p_reg, aarch64_p_reg, aarch64_p_reg)

// Integer compares into a predicate
SVE_STUB_HANDLER(sve_cmpeq_ppzi, aarch64_p_reg, aarch64_p_reg, aarch64_z_reg, int)
SVE_STUB_HANDLER(sve_cmpeq_ppzz, aarch64_p_reg, aarch64_p_reg, aarch64_z_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_cmpge_ppzz, aarch64_p_reg, aarch64_p_reg, aarch64_z_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_cmpgt_ppzi, aarch64_p_reg, aarch64_p_reg, aarch64_z_reg, int)
SVE_STUB_HANDLER(sve_cmpgt_ppzz, aarch64_p_reg, aarch64_p_reg, aarch64_z_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_cmphi_ppzi, aarch64_p_reg, aarch64_p_reg, aarch64_z_reg, unsigned int)
SVE_STUB_HANDLER(sve_cmphi_ppzz, aarch64_p_reg, aarch64_p_reg, aarch64_z_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_cmphs_ppzz, aarch64_p_reg, aarch64_p_reg, aarch64_z_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_cmple_ppzi, aarch64_p_reg, aarch64_p_reg, aarch64_z_reg, int)
SVE_STUB_HANDLER(sve_cmplo_ppzi, aarch64_p_reg, aarch64_p_reg, aarch64_z_reg, unsigned int)
SVE_STUB_HANDLER(sve_cmplt_ppzi, aarch64_p_reg, aarch64_p_reg, aarch64_z_reg, int)
SVE_STUB_HANDLER(sve_cmpne_ppzi, aarch64_p_reg, aarch64_p_reg, aarch64_z_reg, int)
SVE_STUB_HANDLER(sve_cmpne_ppzz, aarch64_p_reg, aarch64_p_reg, aarch64_z_reg, aarch64_z_reg)

// Contiguous loads and stores
SVE_STUB_HANDLER(sve_ld1b_d_scaled_zprr, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_i_reg)
SVE_STUB_HANDLER(sve_ld1b_d_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, int)
SVE_STUB_HANDLER(sve_ld1b_h_scaled_zprr, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_i_reg)
SVE_STUB_HANDLER(sve_ld1b_h_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, int)
SVE_STUB_HANDLER(sve_ld1b_s_scaled_zprr, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_i_reg)
SVE_STUB_HANDLER(sve_ld1b_s_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, int)
SVE_STUB_HANDLER(sve_ld1b_scaled_zprr, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_i_reg)
SVE_STUB_HANDLER(sve_ld1b_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, int)
SVE_STUB_HANDLER(sve_ld1d_scaled_zprr, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_i_reg)
SVE_STUB_HANDLER(sve_ld1d_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, int)
SVE_STUB_HANDLER(sve_ld1h_d_scaled_zprr, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_i_reg)
SVE_STUB_HANDLER(sve_ld1h_d_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, int)
SVE_STUB_HANDLER(sve_ld1h_s_scaled_zprr, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_i_reg)
SVE_STUB_HANDLER(sve_ld1h_s_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, int)
SVE_STUB_HANDLER(sve_ld1h_scaled_zprr, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_i_reg)
SVE_STUB_HANDLER(sve_ld1h_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, int)
SVE_STUB_HANDLER(sve_ld1rb_d_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, unsigned int)
SVE_STUB_HANDLER(sve_ld1rb_h_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, unsigned int)
SVE_STUB_HANDLER(sve_ld1rb_s_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, unsigned int)
SVE_STUB_HANDLER(sve_ld1rb_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, unsigned int)
SVE_STUB_HANDLER(sve_ld1rd_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, unsigned int)
SVE_STUB_HANDLER(sve_ld1rh_d_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, unsigned int)
SVE_STUB_HANDLER(sve_ld1rh_s_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, unsigned int)
SVE_STUB_HANDLER(sve_ld1rh_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, unsigned int)
SVE_STUB_HANDLER(sve_ld1rsb_d_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, unsigned int)
SVE_STUB_HANDLER(sve_ld1rsb_h_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, unsigned int)
SVE_STUB_HANDLER(sve_ld1rsb_s_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, unsigned int)
SVE_STUB_HANDLER(sve_ld1rsh_d_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, unsigned int)
SVE_STUB_HANDLER(sve_ld1rsh_s_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, unsigned int)
SVE_STUB_HANDLER(sve_ld1rsw_d_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, unsigned int)
SVE_STUB_HANDLER(sve_ld1rw_d_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, unsigned int)
SVE_STUB_HANDLER(sve_ld1rw_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, unsigned int)
SVE_STUB_HANDLER(sve_ld1sb_d_scaled_zprr, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_i_reg)
SVE_STUB_HANDLER(sve_ld1sb_d_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, int)
SVE_STUB_HANDLER(sve_ld1sb_h_scaled_zprr, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_i_reg)
SVE_STUB_HANDLER(sve_ld1sb_h_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, int)
SVE_STUB_HANDLER(sve_ld1sb_s_scaled_zprr, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_i_reg)
SVE_STUB_HANDLER(sve_ld1sb_s_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, int)
SVE_STUB_HANDLER(sve_ld1sh_d_scaled_zprr, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_i_reg)
SVE_STUB_HANDLER(sve_ld1sh_d_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, int)
SVE_STUB_HANDLER(sve_ld1sh_s_scaled_zprr, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_i_reg)
SVE_STUB_HANDLER(sve_ld1sh_s_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, int)
SVE_STUB_HANDLER(sve_ld1sw_d_scaled_zprr, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_i_reg)
SVE_STUB_HANDLER(sve_ld1sw_d_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, int)
SVE_STUB_HANDLER(sve_ld1w_d_scaled_zprr, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_i_reg)
SVE_STUB_HANDLER(sve_ld1w_d_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, int)
SVE_STUB_HANDLER(sve_ld1w_scaled_zprr, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_i_reg)
SVE_STUB_HANDLER(sve_ld1w_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, int)
SVE_STUB_HANDLER(sve_ld2b_scaled_zprr, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_i_reg)
SVE_STUB_HANDLER(sve_ld2b_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, int)
SVE_STUB_HANDLER(sve_ld2d_scaled_zprr, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_i_reg)
SVE_STUB_HANDLER(sve_ld2d_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, int)
SVE_STUB_HANDLER(sve_ld2h_scaled_zprr, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_i_reg)
SVE_STUB_HANDLER(sve_ld2h_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, int)
SVE_STUB_HANDLER(sve_ld2w_scaled_zprr, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_i_reg)
SVE_STUB_HANDLER(sve_ld2w_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, int)
SVE_STUB_HANDLER(sve_ld3b_scaled_zprr, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_i_reg)
SVE_STUB_HANDLER(sve_ld3b_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, int)
SVE_STUB_HANDLER(sve_ld3d_scaled_zprr, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_i_reg)
SVE_STUB_HANDLER(sve_ld3d_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, int)
SVE_STUB_HANDLER(sve_ld3h_scaled_zprr, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_i_reg)
SVE_STUB_HANDLER(sve_ld3h_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, int)
SVE_STUB_HANDLER(sve_ld3w_scaled_zprr, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_i_reg)
SVE_STUB_HANDLER(sve_ld3w_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, int)
SVE_STUB_HANDLER(sve_ld4b_scaled_zprr, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_i_reg)
SVE_STUB_HANDLER(sve_ld4b_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, int)
SVE_STUB_HANDLER(sve_ld4d_scaled_zprr, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_i_reg)
SVE_STUB_HANDLER(sve_ld4d_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, int)
SVE_STUB_HANDLER(sve_ld4h_scaled_zprr, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_i_reg)
SVE_STUB_HANDLER(sve_ld4h_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, int)
SVE_STUB_HANDLER(sve_ld4w_scaled_zprr, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_i_reg)
SVE_STUB_HANDLER(sve_ld4w_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, int)
SVE_STUB_HANDLER(sve_ldff1b_d_scaled_zprr, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_i_reg)
SVE_STUB_HANDLER(sve_ldff1b_h_scaled_zprr, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_i_reg)
SVE_STUB_HANDLER(sve_ldff1b_s_scaled_zprr, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_i_reg)
SVE_STUB_HANDLER(sve_ldff1b_scaled_zprr, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_i_reg)
SVE_STUB_HANDLER(sve_ldff1d_scaled_zprr, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_i_reg)
SVE_STUB_HANDLER(sve_ldff1w_d_scaled_zprr, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_i_reg)
SVE_STUB_HANDLER(sve_ldff1w_scaled_zprr, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_i_reg)
SVE_STUB_HANDLER(sve_ldnf1b_d_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, int)
SVE_STUB_HANDLER(sve_ldnf1b_h_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, int)
SVE_STUB_HANDLER(sve_ldnf1b_s_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, int)
SVE_STUB_HANDLER(sve_ldnf1b_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, int)
SVE_STUB_HANDLER(sve_ldnf1d_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, int)
SVE_STUB_HANDLER(sve_ldnf1h_d_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, int)
SVE_STUB_HANDLER(sve_ldnf1h_s_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, int)
SVE_STUB_HANDLER(sve_ldnf1h_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, int)
SVE_STUB_HANDLER(sve_ldnf1sb_d_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, int)
SVE_STUB_HANDLER(sve_ldnf1sb_h_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, int)
SVE_STUB_HANDLER(sve_ldnf1sb_s_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, int)
SVE_STUB_HANDLER(sve_ldnf1sh_d_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, int)
SVE_STUB_HANDLER(sve_ldnf1sh_s_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, int)
SVE_STUB_HANDLER(sve_ldnf1sw_d_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, int)
SVE_STUB_HANDLER(sve_ldnf1w_d_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, int)
SVE_STUB_HANDLER(sve_ldnf1w_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, int)
SVE_STUB_HANDLER(sve_ldnt1b_scaled_zprr, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_i_reg)
SVE_STUB_HANDLER(sve_ldnt1b_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, int)
SVE_STUB_HANDLER(sve_ldnt1d_scaled_zprr, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_i_reg)
SVE_STUB_HANDLER(sve_ldnt1d_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, int)
SVE_STUB_HANDLER(sve_ldnt1h_scaled_zprr, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_i_reg)
SVE_STUB_HANDLER(sve_ldnt1h_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, int)
SVE_STUB_HANDLER(sve_ldnt1w_scaled_zprr, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_i_reg)
SVE_STUB_HANDLER(sve_ldnt1w_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, int)
SVE_STUB_HANDLER(sve_ldr_pri, aarch64_p_reg, aarch64_i_rsp_reg, int)
SVE_STUB_HANDLER(sve_ldr_zri, aarch64_z_reg, aarch64_i_rsp_reg, int)
SVE_STUB_HANDLER(sve_st1b_d_scaled_zprr, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_i_reg)
SVE_STUB_HANDLER(sve_st1b_d_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, int)
SVE_STUB_HANDLER(sve_st1b_h_scaled_zprr, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_i_reg)
SVE_STUB_HANDLER(sve_st1b_h_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, int)
SVE_STUB_HANDLER(sve_st1b_s_scaled_zprr, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_i_reg)
SVE_STUB_HANDLER(sve_st1b_s_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, int)
SVE_STUB_HANDLER(sve_st1b_scaled_zprr, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_i_reg)
SVE_STUB_HANDLER(sve_st1b_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, int)
SVE_STUB_HANDLER(sve_st1d_scaled_zprr, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_i_reg)
SVE_STUB_HANDLER(sve_st1d_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, int)
SVE_STUB_HANDLER(sve_st1h_d_scaled_zprr, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_i_reg)
SVE_STUB_HANDLER(sve_st1h_d_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, int)
SVE_STUB_HANDLER(sve_st1h_s_scaled_zprr, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_i_reg)
SVE_STUB_HANDLER(sve_st1h_s_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, int)
SVE_STUB_HANDLER(sve_st1h_scaled_zprr, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_i_reg)
SVE_STUB_HANDLER(sve_st1h_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, int)
SVE_STUB_HANDLER(sve_st1w_d_scaled_zprr, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_i_reg)
SVE_STUB_HANDLER(sve_st1w_d_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, int)
SVE_STUB_HANDLER(sve_st1w_scaled_zprr, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_i_reg)
SVE_STUB_HANDLER(sve_st1w_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, int)
SVE_STUB_HANDLER(sve_st2b_scaled_zprr, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_i_reg)
SVE_STUB_HANDLER(sve_st2b_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, int)
SVE_STUB_HANDLER(sve_st2d_scaled_zprr, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_i_reg)
SVE_STUB_HANDLER(sve_st2d_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, int)
SVE_STUB_HANDLER(sve_st2h_scaled_zprr, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_i_reg)
SVE_STUB_HANDLER(sve_st2h_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, int)
SVE_STUB_HANDLER(sve_st2w_scaled_zprr, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_i_reg)
SVE_STUB_HANDLER(sve_st2w_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, int)
SVE_STUB_HANDLER(sve_st3b_scaled_zprr, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_i_reg)
SVE_STUB_HANDLER(sve_st3b_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, int)
SVE_STUB_HANDLER(sve_st3d_scaled_zprr, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_i_reg)
SVE_STUB_HANDLER(sve_st3d_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, int)
SVE_STUB_HANDLER(sve_st3h_scaled_zprr, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_i_reg)
SVE_STUB_HANDLER(sve_st3h_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, int)
SVE_STUB_HANDLER(sve_st3w_scaled_zprr, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_i_reg)
SVE_STUB_HANDLER(sve_st3w_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, int)
SVE_STUB_HANDLER(sve_st4b_scaled_zprr, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_i_reg)
SVE_STUB_HANDLER(sve_st4b_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, int)
SVE_STUB_HANDLER(sve_st4d_scaled_zprr, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_i_reg)
SVE_STUB_HANDLER(sve_st4d_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, int)
SVE_STUB_HANDLER(sve_st4h_scaled_zprr, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_i_reg)
SVE_STUB_HANDLER(sve_st4h_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, int)
SVE_STUB_HANDLER(sve_st4w_scaled_zprr, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_i_reg)
SVE_STUB_HANDLER(sve_st4w_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, int)
SVE_STUB_HANDLER(sve_stnt1b_scaled_zprr, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_i_reg)
SVE_STUB_HANDLER(sve_stnt1b_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, int)
SVE_STUB_HANDLER(sve_stnt1d_scaled_zprr, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_i_reg)
SVE_STUB_HANDLER(sve_stnt1d_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, int)
SVE_STUB_HANDLER(sve_stnt1h_scaled_zprr, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_i_reg)
SVE_STUB_HANDLER(sve_stnt1h_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, int)
SVE_STUB_HANDLER(sve_stnt1w_scaled_zprr, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_i_reg)
SVE_STUB_HANDLER(sve_stnt1w_zpri, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, int)
SVE_STUB_HANDLER(sve_str_pri, aarch64_p_reg, aarch64_i_rsp_reg, int)
SVE_STUB_HANDLER(sve_str_zri, aarch64_z_reg, aarch64_i_rsp_reg, int)

// Gather loads and scatter stores
SVE_STUB_HANDLER(sve_ld1b_d_sxtw_zpzr, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg,
                 aarch64_i_rsp_reg)
SVE_STUB_HANDLER(sve_ld1b_d_uxtw_zpzr, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg,
                 aarch64_i_rsp_reg)
SVE_STUB_HANDLER(sve_ld1b_d_zpzi, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg, unsigned int)
SVE_STUB_HANDLER(sve_ld1b_d_zpzr, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg, aarch64_i_rsp_reg)
SVE_STUB_HANDLER(sve_ld1b_s_sxtw_zpzr, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg,
                 aarch64_i_rsp_reg)
SVE_STUB_HANDLER(sve_ld1b_s_uxtw_zpzr, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg,
                 aarch64_i_rsp_reg)
SVE_STUB_HANDLER(sve_ld1b_s_zpzi, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg, unsigned int)
SVE_STUB_HANDLER(sve_ld1d_scaled_zprz, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_z_reg)
SVE_STUB_HANDLER(sve_ld1d_sxtw_scaled_zprz, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_z_reg)
SVE_STUB_HANDLER(sve_ld1d_sxtw_zpzr, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg, aarch64_i_rsp_reg)
SVE_STUB_HANDLER(sve_ld1d_uxtw_scaled_zprz, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_z_reg)
SVE_STUB_HANDLER(sve_ld1d_uxtw_zpzr, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg, aarch64_i_rsp_reg)
SVE_STUB_HANDLER(sve_ld1d_zpzi, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg, unsigned int)
SVE_STUB_HANDLER(sve_ld1d_zpzr, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg, aarch64_i_rsp_reg)
SVE_STUB_HANDLER(sve_ld1h_d_scaled_zprz, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_z_reg)
SVE_STUB_HANDLER(sve_ld1h_d_sxtw_scaled_zprz, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_z_reg)
SVE_STUB_HANDLER(sve_ld1h_d_sxtw_zpzr, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg,
                 aarch64_i_rsp_reg)
SVE_STUB_HANDLER(sve_ld1h_d_uxtw_scaled_zprz, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_z_reg)
SVE_STUB_HANDLER(sve_ld1h_d_uxtw_zpzr, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg,
                 aarch64_i_rsp_reg)
SVE_STUB_HANDLER(sve_ld1h_d_zpzi, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg, unsigned int)
SVE_STUB_HANDLER(sve_ld1h_d_zpzr, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg, aarch64_i_rsp_reg)
SVE_STUB_HANDLER(sve_ld1h_s_sxtw_scaled_zprz, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_z_reg)
SVE_STUB_HANDLER(sve_ld1h_s_sxtw_zpzr, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg,
                 aarch64_i_rsp_reg)
SVE_STUB_HANDLER(sve_ld1h_s_uxtw_scaled_zprz, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_z_reg)
SVE_STUB_HANDLER(sve_ld1h_s_uxtw_zpzr, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg,
                 aarch64_i_rsp_reg)
SVE_STUB_HANDLER(sve_ld1h_s_zpzi, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg, unsigned int)
SVE_STUB_HANDLER(sve_ld1sb_d_sxtw_zpzr, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg,
                 aarch64_i_rsp_reg)
SVE_STUB_HANDLER(sve_ld1sb_d_uxtw_zpzr, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg,
                 aarch64_i_rsp_reg)
SVE_STUB_HANDLER(sve_ld1sb_d_zpzi, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg, unsigned int)
SVE_STUB_HANDLER(sve_ld1sb_d_zpzr, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg, aarch64_i_rsp_reg)
SVE_STUB_HANDLER(sve_ld1sb_s_sxtw_zpzr, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg,
                 aarch64_i_rsp_reg)
SVE_STUB_HANDLER(sve_ld1sb_s_uxtw_zpzr, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg,
                 aarch64_i_rsp_reg)
SVE_STUB_HANDLER(sve_ld1sb_s_zpzi, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg, unsigned int)
SVE_STUB_HANDLER(sve_ld1sh_d_scaled_zprz, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_z_reg)
SVE_STUB_HANDLER(sve_ld1sh_d_sxtw_scaled_zprz, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_z_reg)
SVE_STUB_HANDLER(sve_ld1sh_d_sxtw_zpzr, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg,
                 aarch64_i_rsp_reg)
SVE_STUB_HANDLER(sve_ld1sh_d_uxtw_scaled_zprz, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_z_reg)
SVE_STUB_HANDLER(sve_ld1sh_d_uxtw_zpzr, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg,
                 aarch64_i_rsp_reg)
SVE_STUB_HANDLER(sve_ld1sh_d_zpzi, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg, unsigned int)
SVE_STUB_HANDLER(sve_ld1sh_d_zpzr, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg, aarch64_i_rsp_reg)
SVE_STUB_HANDLER(sve_ld1sh_s_sxtw_scaled_zprz, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_z_reg)
SVE_STUB_HANDLER(sve_ld1sh_s_sxtw_zpzr, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg,
                 aarch64_i_rsp_reg)
SVE_STUB_HANDLER(sve_ld1sh_s_uxtw_scaled_zprz, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_z_reg)
SVE_STUB_HANDLER(sve_ld1sh_s_uxtw_zpzr, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg,
                 aarch64_i_rsp_reg)
SVE_STUB_HANDLER(sve_ld1sh_s_zpzi, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg, unsigned int)
SVE_STUB_HANDLER(sve_ld1sw_d_scaled_zprz, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_z_reg)
SVE_STUB_HANDLER(sve_ld1sw_d_sxtw_scaled_zprz, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_z_reg)
SVE_STUB_HANDLER(sve_ld1sw_d_sxtw_zpzr, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg,
                 aarch64_i_rsp_reg)
SVE_STUB_HANDLER(sve_ld1sw_d_uxtw_scaled_zprz, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_z_reg)
SVE_STUB_HANDLER(sve_ld1sw_d_uxtw_zpzr, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg,
                 aarch64_i_rsp_reg)
SVE_STUB_HANDLER(sve_ld1sw_d_zpzi, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg, unsigned int)
SVE_STUB_HANDLER(sve_ld1sw_d_zpzr, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg, aarch64_i_rsp_reg)
SVE_STUB_HANDLER(sve_ld1w_d_scaled_zprz, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_z_reg)
SVE_STUB_HANDLER(sve_ld1w_d_sxtw_scaled_zprz, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_z_reg)
SVE_STUB_HANDLER(sve_ld1w_d_sxtw_zpzr, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg,
                 aarch64_i_rsp_reg)
SVE_STUB_HANDLER(sve_ld1w_d_uxtw_scaled_zprz, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_z_reg)
SVE_STUB_HANDLER(sve_ld1w_d_uxtw_zpzr, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg,
                 aarch64_i_rsp_reg)
SVE_STUB_HANDLER(sve_ld1w_d_zpzi, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg, unsigned int)
SVE_STUB_HANDLER(sve_ld1w_d_zpzr, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg, aarch64_i_rsp_reg)
SVE_STUB_HANDLER(sve_ld1w_sxtw_scaled_zprz, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_z_reg)
SVE_STUB_HANDLER(sve_ld1w_sxtw_zpzr, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg, aarch64_i_rsp_reg)
SVE_STUB_HANDLER(sve_ld1w_uxtw_scaled_zprz, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_z_reg)
SVE_STUB_HANDLER(sve_ld1w_uxtw_zpzr, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg, aarch64_i_rsp_reg)
SVE_STUB_HANDLER(sve_ld1w_zpzi, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg, unsigned int)
SVE_STUB_HANDLER(sve_st1b_d_sxtw_zpzr, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg,
                 aarch64_i_rsp_reg)
SVE_STUB_HANDLER(sve_st1b_d_uxtw_zpzr, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg,
                 aarch64_i_rsp_reg)
SVE_STUB_HANDLER(sve_st1b_d_zpzi, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg, unsigned int)
SVE_STUB_HANDLER(sve_st1b_d_zpzr, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg, aarch64_i_rsp_reg)
SVE_STUB_HANDLER(sve_st1b_s_sxtw_zpzr, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg,
                 aarch64_i_rsp_reg)
SVE_STUB_HANDLER(sve_st1b_s_uxtw_zpzr, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg,
                 aarch64_i_rsp_reg)
SVE_STUB_HANDLER(sve_st1b_s_zpzi, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg, unsigned int)
SVE_STUB_HANDLER(sve_st1d_scaled_zprz, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_z_reg)
SVE_STUB_HANDLER(sve_st1d_sxtw_scaled_zprz, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_z_reg)
SVE_STUB_HANDLER(sve_st1d_sxtw_zpzr, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg, aarch64_i_rsp_reg)
SVE_STUB_HANDLER(sve_st1d_uxtw_scaled_zprz, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_z_reg)
SVE_STUB_HANDLER(sve_st1d_uxtw_zpzr, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg, aarch64_i_rsp_reg)
SVE_STUB_HANDLER(sve_st1d_zpzi, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg, unsigned int)
SVE_STUB_HANDLER(sve_st1d_zpzr, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg, aarch64_i_rsp_reg)
SVE_STUB_HANDLER(sve_st1h_d_scaled_zprz, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_z_reg)
SVE_STUB_HANDLER(sve_st1h_d_sxtw_scaled_zprz, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_z_reg)
SVE_STUB_HANDLER(sve_st1h_d_sxtw_zpzr, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg,
                 aarch64_i_rsp_reg)
SVE_STUB_HANDLER(sve_st1h_d_uxtw_scaled_zprz, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_z_reg)
SVE_STUB_HANDLER(sve_st1h_d_uxtw_zpzr, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg,
                 aarch64_i_rsp_reg)
SVE_STUB_HANDLER(sve_st1h_d_zpzi, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg, unsigned int)
SVE_STUB_HANDLER(sve_st1h_d_zpzr, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg, aarch64_i_rsp_reg)
SVE_STUB_HANDLER(sve_st1h_s_sxtw_scaled_zprz, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_z_reg)
SVE_STUB_HANDLER(sve_st1h_s_sxtw_zpzr, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg,
                 aarch64_i_rsp_reg)
SVE_STUB_HANDLER(sve_st1h_s_uxtw_scaled_zprz, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_z_reg)
SVE_STUB_HANDLER(sve_st1h_s_uxtw_zpzr, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg,
                 aarch64_i_rsp_reg)
SVE_STUB_HANDLER(sve_st1h_s_zpzi, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg, unsigned int)
SVE_STUB_HANDLER(sve_st1w_d_scaled_zprz, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_z_reg)
SVE_STUB_HANDLER(sve_st1w_d_sxtw_scaled_zprz, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_z_reg)
SVE_STUB_HANDLER(sve_st1w_d_sxtw_zpzr, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg,
                 aarch64_i_rsp_reg)
SVE_STUB_HANDLER(sve_st1w_d_uxtw_scaled_zprz, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_z_reg)
SVE_STUB_HANDLER(sve_st1w_d_uxtw_zpzr, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg,
                 aarch64_i_rsp_reg)
SVE_STUB_HANDLER(sve_st1w_d_zpzi, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg, unsigned int)
SVE_STUB_HANDLER(sve_st1w_d_zpzr, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg, aarch64_i_rsp_reg)
SVE_STUB_HANDLER(sve_st1w_sxtw_scaled_zprz, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_z_reg)
SVE_STUB_HANDLER(sve_st1w_sxtw_zpzr, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg, aarch64_i_rsp_reg)
SVE_STUB_HANDLER(sve_st1w_uxtw_scaled_zprz, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                 aarch64_z_reg)
SVE_STUB_HANDLER(sve_st1w_uxtw_zpzr, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg, aarch64_i_rsp_reg)
SVE_STUB_HANDLER(sve_st1w_zpzi, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg, unsigned int)

// Floating point
SVE_STUB_HANDLER(sve_fabs_zpz, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_fadd_zpi, aarch64_z_reg, aarch64_p_reg, aarch64_sve_fp_arith_imm)
SVE_STUB_HANDLER(sve_fadd_zpz, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_fadd_zzz, aarch64_z_reg, aarch64_z_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_fcmeq_ppz, aarch64_p_reg, aarch64_p_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_fcmeq_ppzz, aarch64_p_reg, aarch64_p_reg, aarch64_z_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_fcmge_ppz, aarch64_p_reg, aarch64_p_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_fcmge_ppzz, aarch64_p_reg, aarch64_p_reg, aarch64_z_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_fcmgt_ppz, aarch64_p_reg, aarch64_p_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_fcmgt_ppzz, aarch64_p_reg, aarch64_p_reg, aarch64_z_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_fcmla_zpzzr, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg, aarch64_z_reg,
                 unsigned int)
SVE_STUB_HANDLER(sve_fcmle_ppz, aarch64_p_reg, aarch64_p_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_fcmlt_ppz, aarch64_p_reg, aarch64_p_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_fcmne_ppzz, aarch64_p_reg, aarch64_p_reg, aarch64_z_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_fcmuo_ppzz, aarch64_p_reg, aarch64_p_reg, aarch64_z_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_fcvt_d2s_zpz, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_fcvt_s2d_zpz, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_fcvtzs_d2d_zpz, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_fcvtzs_d2s_zpz, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_fcvtzs_s2d_zpz, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_fcvtzs_s2s_zpz, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_fcvtzu_d2d_zpz, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_fcvtzu_d2s_zpz, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_fdiv_zpz, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_fdivr_zpz, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_fdup_zi, aarch64_z_reg, aarch64_sve_fp_dup_imm)
SVE_STUB_HANDLER(sve_fmad_zpzz, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_fmax_zpz, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_fmaxnm_zpz, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_fmaxnmv_vpz, unsigned int, aarch64_p_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_fminnm_zpz, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_fminnmv_vpz, unsigned int, aarch64_p_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_fmla_zpzz, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_fmls_zpzz, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_fmsb_zpzz, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_fmul_zpi, aarch64_z_reg, aarch64_p_reg, aarch64_sve_fp_arith_imm)
SVE_STUB_HANDLER(sve_fmul_zpz, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_fmul_zzz, aarch64_z_reg, aarch64_z_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_fneg_zpz, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_fnmad_zpzz, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_fnmla_zpzz, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_fnmls_zpzz, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_fnmsb_zpzz, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_frecpe_zz, aarch64_z_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_frecps_zzz, aarch64_z_reg, aarch64_z_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_frinta_zpz, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_fsqrt_zpz, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_fsub_zpi, aarch64_z_reg, aarch64_p_reg, aarch64_sve_fp_arith_imm)
SVE_STUB_HANDLER(sve_fsub_zpz, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_fsub_zzz, aarch64_z_reg, aarch64_z_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_fsubr_zpi, aarch64_z_reg, aarch64_p_reg, aarch64_sve_fp_arith_imm)
SVE_STUB_HANDLER(sve_fsubr_zpz, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_scvtf_d2d_zpz, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_scvtf_d2s_zpz, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_scvtf_s2d_zpz, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_scvtf_s2s_zpz, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_ucvtf_d2d_zpz, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_ucvtf_s2d_zpz, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg)
SVE_STUB_HANDLER(sve_ucvtf_s2s_zpz, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg)
