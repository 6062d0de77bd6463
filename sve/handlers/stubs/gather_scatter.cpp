// Gather loads and scatter stores: handlers not written yet. Each reports "Unimplemented instruction";
// delete its line when the real handler lands.
#include "../handlers.h"
#include "../stub.h"

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
