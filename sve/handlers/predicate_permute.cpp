// Permutes of predicates: the vector routines on the predicate form,
// whose element is as many bytes as a vector element. Each goes through a
// local buffer, so Pd may be either source.
#include "../state/cpu_state.h"
#include "element.h"
#include "permute_routines.h"

namespace ZORVO_LENGTH {

namespace {

char* chars(uint8_t* p) { return reinterpret_cast<char*>(p); }

using two_source_routine = void (*)(char*, const char*, const char*, element_size);

aarch64_decode_rc two_sources(cpu_state* s, aarch64_p_reg pd, aarch64_p_reg pn, aarch64_p_reg pm,
                              two_source_routine routine) {
  vreg out;
  routine(chars(out.b), chars(s->p[pn.num]), chars(s->p[pm.num]),
          static_cast<element_size>(pd.elem));
  commit(s->p[pd.num], out);
  return AARCH64_DECODE_OK;
}

} // namespace

aarch64_decode_rc sve_uzp1_ppp(cpu_state* s, aarch64_p_reg pd, aarch64_p_reg pn, aarch64_p_reg pm) {
  return two_sources(s, pd, pn, pm, sve_uzp1);
}
aarch64_decode_rc sve_zip1_ppp(cpu_state* s, aarch64_p_reg pd, aarch64_p_reg pn, aarch64_p_reg pm) {
  return two_sources(s, pd, pn, pm, sve_zip1);
}
aarch64_decode_rc sve_zip2_ppp(cpu_state* s, aarch64_p_reg pd, aarch64_p_reg pn, aarch64_p_reg pm) {
  return two_sources(s, pd, pn, pm, sve_zip2);
}

aarch64_decode_rc sve_rev_pp(cpu_state* s, aarch64_p_reg pd, aarch64_p_reg pn) {
  vreg out;
  sve_rev(chars(out.b), chars(s->p[pn.num]), static_cast<element_size>(pd.elem));
  commit(s->p[pd.num], out);
  return AARCH64_DECODE_OK;
}

} // namespace ZORVO_LENGTH
