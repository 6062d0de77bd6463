// Reductions across a vector and extraction of its last active lane: handlers not written yet. Each reports "Unimplemented instruction";
// delete its line when the real handler lands.
#include "../handlers.h"
#include "../stub.h"

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
