// Two complete fast handlers that no row routes to: FADDV and FADDA run on
// the generic tier at every size. They are kept, checked against the
// processor's own instructions, for a row that wants host-speed reductions.
#pragma once

#include "../state/cpu_state.h"

aarch64_decode_rc sve_faddv_vpz(cpu_state* s, unsigned int vd, aarch64_p_reg pg, aarch64_z_reg zn);
aarch64_decode_rc sve_fadda_vpz(cpu_state* s, unsigned int vdn, aarch64_p_reg pg, aarch64_z_reg zm);
