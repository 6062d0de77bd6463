// Fast handlers. Integer compares into a predicate.
#pragma once

#include "../decode/cpu_state.h"

aarch64_decode_rc sve_cmpeq_ppzi(cpu_state*, aarch64_p_reg pd, aarch64_p_reg pg, aarch64_z_reg zn,
                                 int imm);
aarch64_decode_rc sve_cmpeq_ppzz(cpu_state*, aarch64_p_reg pd, aarch64_p_reg pg, aarch64_z_reg zn,
                                 aarch64_z_reg zm);
aarch64_decode_rc sve_cmpge_ppzz(cpu_state*, aarch64_p_reg pd, aarch64_p_reg pg, aarch64_z_reg zn,
                                 aarch64_z_reg zm);
aarch64_decode_rc sve_cmpgt_ppzi(cpu_state*, aarch64_p_reg pd, aarch64_p_reg pg, aarch64_z_reg zn,
                                 int imm);
aarch64_decode_rc sve_cmpgt_ppzz(cpu_state*, aarch64_p_reg pd, aarch64_p_reg pg, aarch64_z_reg zn,
                                 aarch64_z_reg zm);
aarch64_decode_rc sve_cmphi_ppzi(cpu_state*, aarch64_p_reg pd, aarch64_p_reg pg, aarch64_z_reg zn,
                                 unsigned int imm);
aarch64_decode_rc sve_cmphi_ppzz(cpu_state*, aarch64_p_reg pd, aarch64_p_reg pg, aarch64_z_reg zn,
                                 aarch64_z_reg zm);
aarch64_decode_rc sve_cmphs_ppzz(cpu_state*, aarch64_p_reg pd, aarch64_p_reg pg, aarch64_z_reg zn,
                                 aarch64_z_reg zm);
aarch64_decode_rc sve_cmple_ppzi(cpu_state*, aarch64_p_reg pd, aarch64_p_reg pg, aarch64_z_reg zn,
                                 int imm);
aarch64_decode_rc sve_cmplo_ppzi(cpu_state*, aarch64_p_reg pd, aarch64_p_reg pg, aarch64_z_reg zn,
                                 unsigned int imm);
aarch64_decode_rc sve_cmplt_ppzi(cpu_state*, aarch64_p_reg pd, aarch64_p_reg pg, aarch64_z_reg zn,
                                 int imm);
aarch64_decode_rc sve_cmpne_ppzi(cpu_state*, aarch64_p_reg pd, aarch64_p_reg pg, aarch64_z_reg zn,
                                 int imm);
aarch64_decode_rc sve_cmpne_ppzz(cpu_state*, aarch64_p_reg pd, aarch64_p_reg pg, aarch64_z_reg zn,
                                 aarch64_z_reg zm);
