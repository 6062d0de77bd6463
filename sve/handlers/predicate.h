// Fast handlers. Predicates: ptrue, pfalse, while, logic, break, next active, test, select,
// permutes, and the first-fault register.
#pragma once

#include "../decode/cpu_state.h"

aarch64_decode_rc sve_and_pppp(cpu_state*, aarch64_p_reg pd, aarch64_p_reg pg, aarch64_p_reg pn,
                               aarch64_p_reg pm);
aarch64_decode_rc sve_bic_pppp(cpu_state*, aarch64_p_reg pd, aarch64_p_reg pg, aarch64_p_reg pn,
                               aarch64_p_reg pm);
aarch64_decode_rc sve_brka_ppp(cpu_state*, aarch64_p_reg pd, aarch64_p_reg pg, aarch64_p_reg pn);
aarch64_decode_rc sve_brkb_ppp(cpu_state*, aarch64_p_reg pd, aarch64_p_reg pg, aarch64_p_reg pn);
aarch64_decode_rc sve_brkn_ppp(cpu_state*, aarch64_p_reg pdm, aarch64_p_reg pg, aarch64_p_reg pn);
aarch64_decode_rc sve_brkns_ppp(cpu_state*, aarch64_p_reg pdm, aarch64_p_reg pg, aarch64_p_reg pn);
aarch64_decode_rc sve_brkpb_pppp(cpu_state*, aarch64_p_reg pd, aarch64_p_reg pg, aarch64_p_reg pn,
                                 aarch64_p_reg pm);
aarch64_decode_rc sve_brkpbs_pppp(cpu_state*, aarch64_p_reg pd, aarch64_p_reg pg, aarch64_p_reg pn,
                                  aarch64_p_reg pm);
aarch64_decode_rc sve_eor_pppp(cpu_state*, aarch64_p_reg pd, aarch64_p_reg pg, aarch64_p_reg pn,
                               aarch64_p_reg pm);
aarch64_decode_rc sve_nor_pppp(cpu_state*, aarch64_p_reg pd, aarch64_p_reg pg, aarch64_p_reg pn,
                               aarch64_p_reg pm);
aarch64_decode_rc sve_orr_pppp(cpu_state*, aarch64_p_reg pd, aarch64_p_reg pg, aarch64_p_reg pn,
                               aarch64_p_reg pm);
aarch64_decode_rc sve_pfalse_p(cpu_state*, aarch64_p_reg pd);
aarch64_decode_rc sve_pnext_pp(cpu_state*, aarch64_p_reg pdn, aarch64_p_reg pg);
aarch64_decode_rc sve_ptest_pp(cpu_state*, aarch64_p_reg pg, aarch64_p_reg pn);
aarch64_decode_rc sve_ptrue_pi(cpu_state*, aarch64_p_reg pd, unsigned int pattern);
aarch64_decode_rc sve_punpkhi_pp(cpu_state*, aarch64_p_reg pd, aarch64_p_reg pn);
aarch64_decode_rc sve_punpklo_pp(cpu_state*, aarch64_p_reg pd, aarch64_p_reg pn);
aarch64_decode_rc sve_rdffr_p(cpu_state*, aarch64_p_reg pd);
aarch64_decode_rc sve_rdffr_pp(cpu_state*, aarch64_p_reg pd, aarch64_p_reg pg);
aarch64_decode_rc sve_rev_pp(cpu_state*, aarch64_p_reg pd, aarch64_p_reg pn);
aarch64_decode_rc sve_sel_pppp(cpu_state*, aarch64_p_reg pd, aarch64_p_reg pg, aarch64_p_reg pn,
                               aarch64_p_reg pm);
aarch64_decode_rc sve_setffr(cpu_state*);
aarch64_decode_rc sve_uzp1_ppp(cpu_state*, aarch64_p_reg pd, aarch64_p_reg pn, aarch64_p_reg pm);
aarch64_decode_rc sve_whilelo_prr(cpu_state*, aarch64_p_reg pd, aarch64_i_reg rn, aarch64_i_reg rm);
aarch64_decode_rc sve_whilels_prr(cpu_state*, aarch64_p_reg pd, aarch64_i_reg rn, aarch64_i_reg rm);
aarch64_decode_rc sve_whilelt_prr(cpu_state*, aarch64_p_reg pd, aarch64_i_reg rn, aarch64_i_reg rm);
aarch64_decode_rc sve_wrffr_p(cpu_state*, aarch64_p_reg pn);
aarch64_decode_rc sve_zip1_ppp(cpu_state*, aarch64_p_reg pd, aarch64_p_reg pn, aarch64_p_reg pm);
aarch64_decode_rc sve_zip2_ppp(cpu_state*, aarch64_p_reg pd, aarch64_p_reg pn, aarch64_p_reg pm);
