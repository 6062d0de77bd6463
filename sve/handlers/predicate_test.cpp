// PTEST: the flags from a governing predicate and a second predicate, byte by
// byte, whatever element size either was last written at.
#include "../state/cpu_state.h"
#include "predicate_form.h"

namespace ZORVO_LENGTH {

aarch64_decode_rc sve_ptest_pp(cpu_state* s, aarch64_p_reg pg, aarch64_p_reg pn) {
  sve_ptest<signed char>(s, reinterpret_cast<const char*>(s->p[pg.num]),
                         reinterpret_cast<const char*>(s->p[pn.num]));
  return AARCH64_DECODE_OK;
}

} // namespace ZORVO_LENGTH
