// Permutes and copies: handlers not written yet. Each reports "Unimplemented instruction";
// delete its line when the real handler lands.
#include "../handlers.h"
#include "../stub.h"

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
