// Fast handlers. Gather loads and scatter stores.
#pragma once

#include "../decode/cpu_state.h"

aarch64_decode_rc sve_ld1b_d_sxtw_zpzr(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg,
                                       aarch64_z_reg zm, aarch64_i_rsp_reg xn);
aarch64_decode_rc sve_ld1b_d_uxtw_zpzr(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg,
                                       aarch64_z_reg zm, aarch64_i_rsp_reg xn);
aarch64_decode_rc sve_ld1b_d_zpzi(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg, aarch64_z_reg zn,
                                  unsigned int imm);
aarch64_decode_rc sve_ld1b_d_zpzr(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg, aarch64_z_reg zm,
                                  aarch64_i_rsp_reg xn);
aarch64_decode_rc sve_ld1b_s_sxtw_zpzr(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg,
                                       aarch64_z_reg zm, aarch64_i_rsp_reg xn);
aarch64_decode_rc sve_ld1b_s_uxtw_zpzr(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg,
                                       aarch64_z_reg zm, aarch64_i_rsp_reg xn);
aarch64_decode_rc sve_ld1b_s_zpzi(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg, aarch64_z_reg zn,
                                  unsigned int imm);
aarch64_decode_rc sve_ld1d_scaled_zprz(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg,
                                       aarch64_i_rsp_reg xn, aarch64_z_reg zm);
aarch64_decode_rc sve_ld1d_sxtw_scaled_zprz(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg,
                                            aarch64_i_rsp_reg xn, aarch64_z_reg zm);
aarch64_decode_rc sve_ld1d_sxtw_zpzr(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg,
                                     aarch64_z_reg zm, aarch64_i_rsp_reg xn);
aarch64_decode_rc sve_ld1d_uxtw_scaled_zprz(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg,
                                            aarch64_i_rsp_reg xn, aarch64_z_reg zm);
aarch64_decode_rc sve_ld1d_uxtw_zpzr(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg,
                                     aarch64_z_reg zm, aarch64_i_rsp_reg xn);
aarch64_decode_rc sve_ld1d_zpzi(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg, aarch64_z_reg zn,
                                unsigned int imm);
aarch64_decode_rc sve_ld1d_zpzr(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg, aarch64_z_reg zm,
                                aarch64_i_rsp_reg xn);
aarch64_decode_rc sve_ld1h_d_scaled_zprz(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg,
                                         aarch64_i_rsp_reg xn, aarch64_z_reg zm);
aarch64_decode_rc sve_ld1h_d_sxtw_scaled_zprz(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg,
                                              aarch64_i_rsp_reg xn, aarch64_z_reg zm);
aarch64_decode_rc sve_ld1h_d_sxtw_zpzr(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg,
                                       aarch64_z_reg zm, aarch64_i_rsp_reg xn);
aarch64_decode_rc sve_ld1h_d_uxtw_scaled_zprz(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg,
                                              aarch64_i_rsp_reg xn, aarch64_z_reg zm);
aarch64_decode_rc sve_ld1h_d_uxtw_zpzr(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg,
                                       aarch64_z_reg zm, aarch64_i_rsp_reg xn);
aarch64_decode_rc sve_ld1h_d_zpzi(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg, aarch64_z_reg zn,
                                  unsigned int imm);
aarch64_decode_rc sve_ld1h_d_zpzr(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg, aarch64_z_reg zm,
                                  aarch64_i_rsp_reg xn);
aarch64_decode_rc sve_ld1h_s_sxtw_scaled_zprz(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg,
                                              aarch64_i_rsp_reg xn, aarch64_z_reg zm);
aarch64_decode_rc sve_ld1h_s_sxtw_zpzr(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg,
                                       aarch64_z_reg zm, aarch64_i_rsp_reg xn);
aarch64_decode_rc sve_ld1h_s_uxtw_scaled_zprz(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg,
                                              aarch64_i_rsp_reg xn, aarch64_z_reg zm);
aarch64_decode_rc sve_ld1h_s_uxtw_zpzr(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg,
                                       aarch64_z_reg zm, aarch64_i_rsp_reg xn);
aarch64_decode_rc sve_ld1h_s_zpzi(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg, aarch64_z_reg zn,
                                  unsigned int imm);
aarch64_decode_rc sve_ld1sb_d_sxtw_zpzr(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg,
                                        aarch64_z_reg zm, aarch64_i_rsp_reg xn);
aarch64_decode_rc sve_ld1sb_d_uxtw_zpzr(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg,
                                        aarch64_z_reg zm, aarch64_i_rsp_reg xn);
aarch64_decode_rc sve_ld1sb_d_zpzi(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg, aarch64_z_reg zn,
                                   unsigned int imm);
aarch64_decode_rc sve_ld1sb_d_zpzr(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg, aarch64_z_reg zm,
                                   aarch64_i_rsp_reg xn);
aarch64_decode_rc sve_ld1sb_s_sxtw_zpzr(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg,
                                        aarch64_z_reg zm, aarch64_i_rsp_reg xn);
aarch64_decode_rc sve_ld1sb_s_uxtw_zpzr(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg,
                                        aarch64_z_reg zm, aarch64_i_rsp_reg xn);
aarch64_decode_rc sve_ld1sb_s_zpzi(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg, aarch64_z_reg zn,
                                   unsigned int imm);
aarch64_decode_rc sve_ld1sh_d_scaled_zprz(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg,
                                          aarch64_i_rsp_reg xn, aarch64_z_reg zm);
aarch64_decode_rc sve_ld1sh_d_sxtw_scaled_zprz(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg,
                                               aarch64_i_rsp_reg xn, aarch64_z_reg zm);
aarch64_decode_rc sve_ld1sh_d_sxtw_zpzr(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg,
                                        aarch64_z_reg zm, aarch64_i_rsp_reg xn);
aarch64_decode_rc sve_ld1sh_d_uxtw_scaled_zprz(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg,
                                               aarch64_i_rsp_reg xn, aarch64_z_reg zm);
aarch64_decode_rc sve_ld1sh_d_uxtw_zpzr(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg,
                                        aarch64_z_reg zm, aarch64_i_rsp_reg xn);
aarch64_decode_rc sve_ld1sh_d_zpzi(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg, aarch64_z_reg zn,
                                   unsigned int imm);
aarch64_decode_rc sve_ld1sh_d_zpzr(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg, aarch64_z_reg zm,
                                   aarch64_i_rsp_reg xn);
aarch64_decode_rc sve_ld1sh_s_sxtw_scaled_zprz(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg,
                                               aarch64_i_rsp_reg xn, aarch64_z_reg zm);
aarch64_decode_rc sve_ld1sh_s_sxtw_zpzr(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg,
                                        aarch64_z_reg zm, aarch64_i_rsp_reg xn);
aarch64_decode_rc sve_ld1sh_s_uxtw_scaled_zprz(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg,
                                               aarch64_i_rsp_reg xn, aarch64_z_reg zm);
aarch64_decode_rc sve_ld1sh_s_uxtw_zpzr(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg,
                                        aarch64_z_reg zm, aarch64_i_rsp_reg xn);
aarch64_decode_rc sve_ld1sh_s_zpzi(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg, aarch64_z_reg zn,
                                   unsigned int imm);
aarch64_decode_rc sve_ld1sw_d_scaled_zprz(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg,
                                          aarch64_i_rsp_reg xn, aarch64_z_reg zm);
aarch64_decode_rc sve_ld1sw_d_sxtw_scaled_zprz(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg,
                                               aarch64_i_rsp_reg xn, aarch64_z_reg zm);
aarch64_decode_rc sve_ld1sw_d_sxtw_zpzr(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg,
                                        aarch64_z_reg zm, aarch64_i_rsp_reg xn);
aarch64_decode_rc sve_ld1sw_d_uxtw_scaled_zprz(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg,
                                               aarch64_i_rsp_reg xn, aarch64_z_reg zm);
aarch64_decode_rc sve_ld1sw_d_uxtw_zpzr(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg,
                                        aarch64_z_reg zm, aarch64_i_rsp_reg xn);
aarch64_decode_rc sve_ld1sw_d_zpzi(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg, aarch64_z_reg zn,
                                   unsigned int imm);
aarch64_decode_rc sve_ld1sw_d_zpzr(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg, aarch64_z_reg zm,
                                   aarch64_i_rsp_reg xn);
aarch64_decode_rc sve_ld1w_d_scaled_zprz(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg,
                                         aarch64_i_rsp_reg xn, aarch64_z_reg zm);
aarch64_decode_rc sve_ld1w_d_sxtw_scaled_zprz(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg,
                                              aarch64_i_rsp_reg xn, aarch64_z_reg zm);
aarch64_decode_rc sve_ld1w_d_sxtw_zpzr(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg,
                                       aarch64_z_reg zm, aarch64_i_rsp_reg xn);
aarch64_decode_rc sve_ld1w_d_uxtw_scaled_zprz(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg,
                                              aarch64_i_rsp_reg xn, aarch64_z_reg zm);
aarch64_decode_rc sve_ld1w_d_uxtw_zpzr(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg,
                                       aarch64_z_reg zm, aarch64_i_rsp_reg xn);
aarch64_decode_rc sve_ld1w_d_zpzi(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg, aarch64_z_reg zn,
                                  unsigned int imm);
aarch64_decode_rc sve_ld1w_d_zpzr(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg, aarch64_z_reg zm,
                                  aarch64_i_rsp_reg xn);
aarch64_decode_rc sve_ld1w_sxtw_scaled_zprz(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg,
                                            aarch64_i_rsp_reg xn, aarch64_z_reg zm);
aarch64_decode_rc sve_ld1w_sxtw_zpzr(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg,
                                     aarch64_z_reg zm, aarch64_i_rsp_reg xn);
aarch64_decode_rc sve_ld1w_uxtw_scaled_zprz(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg,
                                            aarch64_i_rsp_reg xn, aarch64_z_reg zm);
aarch64_decode_rc sve_ld1w_uxtw_zpzr(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg,
                                     aarch64_z_reg zm, aarch64_i_rsp_reg xn);
aarch64_decode_rc sve_ld1w_zpzi(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg, aarch64_z_reg zn,
                                unsigned int imm);
aarch64_decode_rc sve_st1b_d_sxtw_zpzr(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg,
                                       aarch64_z_reg zm, aarch64_i_rsp_reg xn);
aarch64_decode_rc sve_st1b_d_uxtw_zpzr(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg,
                                       aarch64_z_reg zm, aarch64_i_rsp_reg xn);
aarch64_decode_rc sve_st1b_d_zpzi(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg, aarch64_z_reg zn,
                                  unsigned int imm);
aarch64_decode_rc sve_st1b_d_zpzr(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg, aarch64_z_reg zm,
                                  aarch64_i_rsp_reg xn);
aarch64_decode_rc sve_st1b_s_sxtw_zpzr(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg,
                                       aarch64_z_reg zm, aarch64_i_rsp_reg xn);
aarch64_decode_rc sve_st1b_s_uxtw_zpzr(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg,
                                       aarch64_z_reg zm, aarch64_i_rsp_reg xn);
aarch64_decode_rc sve_st1b_s_zpzi(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg, aarch64_z_reg zn,
                                  unsigned int imm);
aarch64_decode_rc sve_st1d_scaled_zprz(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg,
                                       aarch64_i_rsp_reg xn, aarch64_z_reg zm);
aarch64_decode_rc sve_st1d_sxtw_scaled_zprz(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg,
                                            aarch64_i_rsp_reg xn, aarch64_z_reg zm);
aarch64_decode_rc sve_st1d_sxtw_zpzr(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg,
                                     aarch64_z_reg zm, aarch64_i_rsp_reg xn);
aarch64_decode_rc sve_st1d_uxtw_scaled_zprz(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg,
                                            aarch64_i_rsp_reg xn, aarch64_z_reg zm);
aarch64_decode_rc sve_st1d_uxtw_zpzr(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg,
                                     aarch64_z_reg zm, aarch64_i_rsp_reg xn);
aarch64_decode_rc sve_st1d_zpzi(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg, aarch64_z_reg zn,
                                unsigned int imm);
aarch64_decode_rc sve_st1d_zpzr(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg, aarch64_z_reg zm,
                                aarch64_i_rsp_reg xn);
aarch64_decode_rc sve_st1h_d_scaled_zprz(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg,
                                         aarch64_i_rsp_reg xn, aarch64_z_reg zm);
aarch64_decode_rc sve_st1h_d_sxtw_scaled_zprz(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg,
                                              aarch64_i_rsp_reg xn, aarch64_z_reg zm);
aarch64_decode_rc sve_st1h_d_sxtw_zpzr(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg,
                                       aarch64_z_reg zm, aarch64_i_rsp_reg xn);
aarch64_decode_rc sve_st1h_d_uxtw_scaled_zprz(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg,
                                              aarch64_i_rsp_reg xn, aarch64_z_reg zm);
aarch64_decode_rc sve_st1h_d_uxtw_zpzr(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg,
                                       aarch64_z_reg zm, aarch64_i_rsp_reg xn);
aarch64_decode_rc sve_st1h_d_zpzi(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg, aarch64_z_reg zn,
                                  unsigned int imm);
aarch64_decode_rc sve_st1h_d_zpzr(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg, aarch64_z_reg zm,
                                  aarch64_i_rsp_reg xn);
aarch64_decode_rc sve_st1h_s_sxtw_scaled_zprz(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg,
                                              aarch64_i_rsp_reg xn, aarch64_z_reg zm);
aarch64_decode_rc sve_st1h_s_sxtw_zpzr(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg,
                                       aarch64_z_reg zm, aarch64_i_rsp_reg xn);
aarch64_decode_rc sve_st1h_s_uxtw_scaled_zprz(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg,
                                              aarch64_i_rsp_reg xn, aarch64_z_reg zm);
aarch64_decode_rc sve_st1h_s_uxtw_zpzr(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg,
                                       aarch64_z_reg zm, aarch64_i_rsp_reg xn);
aarch64_decode_rc sve_st1h_s_zpzi(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg, aarch64_z_reg zn,
                                  unsigned int imm);
aarch64_decode_rc sve_st1w_d_scaled_zprz(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg,
                                         aarch64_i_rsp_reg xn, aarch64_z_reg zm);
aarch64_decode_rc sve_st1w_d_sxtw_scaled_zprz(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg,
                                              aarch64_i_rsp_reg xn, aarch64_z_reg zm);
aarch64_decode_rc sve_st1w_d_sxtw_zpzr(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg,
                                       aarch64_z_reg zm, aarch64_i_rsp_reg xn);
aarch64_decode_rc sve_st1w_d_uxtw_scaled_zprz(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg,
                                              aarch64_i_rsp_reg xn, aarch64_z_reg zm);
aarch64_decode_rc sve_st1w_d_uxtw_zpzr(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg,
                                       aarch64_z_reg zm, aarch64_i_rsp_reg xn);
aarch64_decode_rc sve_st1w_d_zpzi(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg, aarch64_z_reg zn,
                                  unsigned int imm);
aarch64_decode_rc sve_st1w_d_zpzr(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg, aarch64_z_reg zm,
                                  aarch64_i_rsp_reg xn);
aarch64_decode_rc sve_st1w_sxtw_scaled_zprz(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg,
                                            aarch64_i_rsp_reg xn, aarch64_z_reg zm);
aarch64_decode_rc sve_st1w_sxtw_zpzr(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg,
                                     aarch64_z_reg zm, aarch64_i_rsp_reg xn);
aarch64_decode_rc sve_st1w_uxtw_scaled_zprz(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg,
                                            aarch64_i_rsp_reg xn, aarch64_z_reg zm);
aarch64_decode_rc sve_st1w_uxtw_zpzr(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg,
                                     aarch64_z_reg zm, aarch64_i_rsp_reg xn);
aarch64_decode_rc sve_st1w_zpzi(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg, aarch64_z_reg zn,
                                unsigned int imm);
