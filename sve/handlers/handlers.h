// The fast handlers: each carries out one instruction form directly on a
// thread's cpu_state at the fixed vector length.
#pragma once

#include <cstdint>

#include "../decode/cpu_state.h"

// Add and subtract.
aarch64_decode_rc sve_add_zpz(cpu_state*, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm);
aarch64_decode_rc sve_sub_zpz(cpu_state*, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm);
aarch64_decode_rc sve_add_zzz(cpu_state*, aarch64_z_reg zd, aarch64_z_reg zn, aarch64_z_reg zm);
aarch64_decode_rc sve_sub_zzz(cpu_state*, aarch64_z_reg zd, aarch64_z_reg zn, aarch64_z_reg zm);
aarch64_decode_rc sve_add_zi(cpu_state*, aarch64_z_reg zdn, unsigned int imm);
aarch64_decode_rc sve_sub_zi(cpu_state*, aarch64_z_reg zdn, unsigned int imm);
