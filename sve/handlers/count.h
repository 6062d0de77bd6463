// Fast handlers. Element counts and steps: cntp, incp, and increments or decrements by a
// predicate pattern.
#pragma once

#include "../decode/cpu_state.h"

aarch64_decode_rc sve_cntp_rpp(cpu_state*, aarch64_i_reg xd, aarch64_p_reg pg, aarch64_p_reg pn);
aarch64_decode_rc sve_decb_rii(cpu_state*, aarch64_i_reg xdn, unsigned int pattern,
                               unsigned int multiplier);
aarch64_decode_rc sve_decd_rii(cpu_state*, aarch64_i_reg xdn, unsigned int pattern,
                               unsigned int multiplier);
aarch64_decode_rc sve_decd_zii(cpu_state*, aarch64_z_reg zdn, unsigned int pattern,
                               unsigned int multiplier);
aarch64_decode_rc sve_dech_rii(cpu_state*, aarch64_i_reg xdn, unsigned int pattern,
                               unsigned int multiplier);
aarch64_decode_rc sve_dech_zii(cpu_state*, aarch64_z_reg zdn, unsigned int pattern,
                               unsigned int multiplier);
aarch64_decode_rc sve_decw_rii(cpu_state*, aarch64_i_reg xdn, unsigned int pattern,
                               unsigned int multiplier);
aarch64_decode_rc sve_decw_zii(cpu_state*, aarch64_z_reg zdn, unsigned int pattern,
                               unsigned int multiplier);
aarch64_decode_rc sve_incb_rii(cpu_state*, aarch64_i_reg xdn, unsigned int pattern,
                               unsigned int multiplier);
aarch64_decode_rc sve_incd_rii(cpu_state*, aarch64_i_reg xdn, unsigned int pattern,
                               unsigned int multiplier);
aarch64_decode_rc sve_incd_zii(cpu_state*, aarch64_z_reg zdn, unsigned int pattern,
                               unsigned int multiplier);
aarch64_decode_rc sve_inch_rii(cpu_state*, aarch64_i_reg xdn, unsigned int pattern,
                               unsigned int multiplier);
aarch64_decode_rc sve_inch_zii(cpu_state*, aarch64_z_reg zdn, unsigned int pattern,
                               unsigned int multiplier);
aarch64_decode_rc sve_incp_rp(cpu_state*, aarch64_i_reg xdn, aarch64_p_reg pm);
aarch64_decode_rc sve_incw_rii(cpu_state*, aarch64_i_reg xdn, unsigned int pattern,
                               unsigned int multiplier);
aarch64_decode_rc sve_incw_zii(cpu_state*, aarch64_z_reg zdn, unsigned int pattern,
                               unsigned int multiplier);
aarch64_decode_rc sve_uqdecb_rii(cpu_state*, aarch64_i_reg rdn, unsigned int pattern,
                                 unsigned int multiplier);
