// Contiguous loads and stores: handlers not written yet. Each reports "Unimplemented instruction";
// delete its line when the real handler lands.
#include "../handlers.h"
#include "../stub.h"

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
