// Element counts and steps: handlers not written yet. Each reports "Unimplemented instruction";
// delete its line when the real handler lands.
#include "../handlers.h"
#include "../stub.h"

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
