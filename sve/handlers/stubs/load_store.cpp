// Contiguous loads and stores: handlers not written yet. Each reports "Unimplemented instruction";
// delete its line when the real handler lands.
#include "../handlers.h"
#include "../stub.h"

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
