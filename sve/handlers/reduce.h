// Fast handlers. Reductions across a vector and extraction of its last active lane.
#pragma once

#include "../decode/cpu_state.h"

aarch64_decode_rc sve_andv_vpz(cpu_state*, unsigned int vd, aarch64_p_reg pg, aarch64_z_reg zn);
aarch64_decode_rc sve_clastb_rpz(cpu_state*, aarch64_i_reg rdn, aarch64_p_reg pg, aarch64_z_reg zm);
aarch64_decode_rc sve_eorv_vpz(cpu_state*, unsigned int vd, aarch64_p_reg pg, aarch64_z_reg zn);
aarch64_decode_rc sve_lastb_rpz(cpu_state*, aarch64_i_reg rd, aarch64_p_reg pg, aarch64_z_reg zn);
aarch64_decode_rc sve_lastb_vpz(cpu_state*, unsigned int vd, aarch64_p_reg pg, aarch64_z_reg zn);
aarch64_decode_rc sve_orv_vpz(cpu_state*, unsigned int vd, aarch64_p_reg pg, aarch64_z_reg zn);
aarch64_decode_rc sve_smaxv_vpz(cpu_state*, unsigned int vd, aarch64_p_reg pg, aarch64_z_reg zn);
aarch64_decode_rc sve_sminv_vpz(cpu_state*, unsigned int vd, aarch64_p_reg pg, aarch64_z_reg zn);
aarch64_decode_rc sve_uaddv_vpz(cpu_state*, unsigned int vd, aarch64_p_reg pg, aarch64_z_reg zn);
aarch64_decode_rc sve_umaxv_vpz(cpu_state*, unsigned int vd, aarch64_p_reg pg, aarch64_z_reg zn);
aarch64_decode_rc sve_uminv_vpz(cpu_state*, unsigned int vd, aarch64_p_reg pg, aarch64_z_reg zn);
