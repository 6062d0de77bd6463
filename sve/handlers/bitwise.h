// Fast handlers. Bitwise logic, shifts, bit reversal and sign or zero extension.
#pragma once

#include "../decode/cpu_state.h"

aarch64_decode_rc sve_and_zi(cpu_state*, aarch64_z_reg zdn, aarch64_sve_logical64_imm imm);
aarch64_decode_rc sve_and_zpz(cpu_state*, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm);
aarch64_decode_rc sve_and_zzz(cpu_state*, aarch64_z_reg zd, aarch64_z_reg zn, aarch64_z_reg zm);
aarch64_decode_rc sve_asr_zpi(cpu_state*, aarch64_z_reg zdn, aarch64_p_reg pg, unsigned int shift);
aarch64_decode_rc sve_asr_zpz(cpu_state*, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm);
aarch64_decode_rc sve_asr_zzi(cpu_state*, aarch64_z_reg zd, aarch64_z_reg zn, unsigned int shift);
aarch64_decode_rc sve_bic_zpz(cpu_state*, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm);
aarch64_decode_rc sve_bic_zzz(cpu_state*, aarch64_z_reg zd, aarch64_z_reg zn, aarch64_z_reg zm);
aarch64_decode_rc sve_dupm_zi(cpu_state*, aarch64_z_reg zd, aarch64_sve_logical64_imm imm);
aarch64_decode_rc sve_eor_zi(cpu_state*, aarch64_z_reg zdn, aarch64_sve_logical64_imm imm);
aarch64_decode_rc sve_eor_zpz(cpu_state*, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm);
aarch64_decode_rc sve_eor_zzz(cpu_state*, aarch64_z_reg zd, aarch64_z_reg zn, aarch64_z_reg zm);
aarch64_decode_rc sve_lsl_zpi(cpu_state*, aarch64_z_reg zdn, aarch64_p_reg pg, unsigned int shift);
aarch64_decode_rc sve_lsl_zpz(cpu_state*, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm);
aarch64_decode_rc sve_lsl_zzi(cpu_state*, aarch64_z_reg zd, aarch64_z_reg zn, unsigned int shift);
aarch64_decode_rc sve_lsr_zpz(cpu_state*, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm);
aarch64_decode_rc sve_orr_zi(cpu_state*, aarch64_z_reg zdn, aarch64_sve_logical64_imm imm);
aarch64_decode_rc sve_orr_zpz(cpu_state*, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm);
aarch64_decode_rc sve_orr_zzz(cpu_state*, aarch64_z_reg zd, aarch64_z_reg zn, aarch64_z_reg zm);
aarch64_decode_rc sve_rbit_zpz(cpu_state*, aarch64_z_reg zd, aarch64_p_reg pg, aarch64_z_reg zn);
aarch64_decode_rc sve_revw_zpz(cpu_state*, aarch64_z_reg zd, aarch64_p_reg pg, aarch64_z_reg zn);
aarch64_decode_rc sve_sxtb_zpz(cpu_state*, aarch64_z_reg zd, aarch64_p_reg pg, aarch64_z_reg zn);
aarch64_decode_rc sve_sxth_zpz(cpu_state*, aarch64_z_reg zd, aarch64_p_reg pg, aarch64_z_reg zn);
aarch64_decode_rc sve_sxtw_zpz(cpu_state*, aarch64_z_reg zd, aarch64_p_reg pg, aarch64_z_reg zn);
aarch64_decode_rc sve_uxth_zpz(cpu_state*, aarch64_z_reg zd, aarch64_p_reg pg, aarch64_z_reg zn);
aarch64_decode_rc sve_uxtw_zpz(cpu_state*, aarch64_z_reg zd, aarch64_p_reg pg, aarch64_z_reg zn);
