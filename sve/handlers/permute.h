// Fast handlers. Permutes and copies: dup, cpy, ext, select, table lookup, reverse, interleave
// and unpack of vectors.
#pragma once

#include "../decode/cpu_state.h"

aarch64_decode_rc sve_cpy_zpi(cpu_state*, aarch64_z_reg zd, aarch64_p_reg pg, int imm);
aarch64_decode_rc sve_cpy_zpr(cpu_state*, aarch64_z_reg zd, aarch64_p_reg pg, aarch64_i_rsp_reg rn);
aarch64_decode_rc sve_cpy_zpv(cpu_state*, aarch64_z_reg zd, aarch64_p_reg pg, unsigned int vn);
aarch64_decode_rc sve_dup_zi(cpu_state*, aarch64_z_reg zd, int imm);
aarch64_decode_rc sve_dup_zr(cpu_state*, aarch64_z_reg zd, aarch64_i_rsp_reg rn);
aarch64_decode_rc sve_dup_zzi(cpu_state*, aarch64_z_reg zd, aarch64_z_reg zn, unsigned int index);
aarch64_decode_rc sve_ext_zzi(cpu_state*, aarch64_z_reg zdn, aarch64_z_reg zm, unsigned int offset);
aarch64_decode_rc sve_rev_zz(cpu_state*, aarch64_z_reg zd, aarch64_z_reg zn);
aarch64_decode_rc sve_sel_zpzz(cpu_state*, aarch64_z_reg zd, aarch64_p_reg pg, aarch64_z_reg zn,
                               aarch64_z_reg zm);
aarch64_decode_rc sve_sunpkhi_s2d_zz(cpu_state*, aarch64_z_reg zd, aarch64_z_reg zn);
aarch64_decode_rc sve_sunpklo_s2d_zz(cpu_state*, aarch64_z_reg zd, aarch64_z_reg zn);
aarch64_decode_rc sve_tbl_zzz(cpu_state*, aarch64_z_reg zd, aarch64_z_reg zn, aarch64_z_reg zm);
aarch64_decode_rc sve_trn1_zzz(cpu_state*, aarch64_z_reg zd, aarch64_z_reg zn, aarch64_z_reg zm);
aarch64_decode_rc sve_trn2_zzz(cpu_state*, aarch64_z_reg zd, aarch64_z_reg zn, aarch64_z_reg zm);
aarch64_decode_rc sve_uunpkhi_b2h_zz(cpu_state*, aarch64_z_reg zd, aarch64_z_reg zn);
aarch64_decode_rc sve_uunpkhi_h2s_zz(cpu_state*, aarch64_z_reg zd, aarch64_z_reg zn);
aarch64_decode_rc sve_uunpkhi_s2d_zz(cpu_state*, aarch64_z_reg zd, aarch64_z_reg zn);
aarch64_decode_rc sve_uunpklo_b2h_zz(cpu_state*, aarch64_z_reg zd, aarch64_z_reg zn);
aarch64_decode_rc sve_uunpklo_h2s_zz(cpu_state*, aarch64_z_reg zd, aarch64_z_reg zn);
aarch64_decode_rc sve_uunpklo_s2d_zz(cpu_state*, aarch64_z_reg zd, aarch64_z_reg zn);
aarch64_decode_rc sve_uzp1_zzz(cpu_state*, aarch64_z_reg zd, aarch64_z_reg zn, aarch64_z_reg zm);
aarch64_decode_rc sve_uzp2_zzz(cpu_state*, aarch64_z_reg zd, aarch64_z_reg zn, aarch64_z_reg zm);
aarch64_decode_rc sve_zip1_zzz(cpu_state*, aarch64_z_reg zd, aarch64_z_reg zn, aarch64_z_reg zm);
aarch64_decode_rc sve_zip2_zzz(cpu_state*, aarch64_z_reg zd, aarch64_z_reg zn, aarch64_z_reg zm);
