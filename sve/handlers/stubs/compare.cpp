// Integer compares into a predicate: handlers not written yet. Each reports "Unimplemented instruction";
// delete its line when the real handler lands.
#include "../handlers.h"
#include "../stub.h"

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
